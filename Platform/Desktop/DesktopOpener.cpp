#include "Platform/Desktop/DesktopOpener.h"

#include "Platform/OpenableUrl.h"

#include <QDir>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace brimquill::platform {
namespace {

/// Icon files are looked up by hand: the toolkit's icon loader belongs to the main thread.
QString iconFile(const QString& name, int size) {
    if (QDir::isAbsolutePath(name)) return name;
    QString best;
    int bestDistance = std::numeric_limits<int>::max();
    const QStringList roots = QStandardPaths::locateAll(
        QStandardPaths::GenericDataLocation, QStringLiteral("icons/hicolor"), QStandardPaths::LocateDirectory);
    for (const QString& root : roots) {
        for (const QString& directory : QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const int edge = directory.section(QLatin1Char('x'), 0, 0).toInt();
            for (const char* suffix : {".png", ".svg"}) {
                const QString file =
                    root + QLatin1Char('/') + directory + QStringLiteral("/apps/") + name + QLatin1String(suffix);
                const int distance = edge == 0 ? 0 : std::abs(edge - size);
                if (distance >= bestDistance || !QFile::exists(file)) continue;
                best = file;
                bestDistance = distance;
            }
        }
    }
    if (!best.isEmpty()) return best;
    for (const char* suffix : {".png", ".svg", ".xpm"}) {
        QString file = QStringLiteral("/usr/share/pixmaps/") + name + QLatin1String(suffix);
        if (QFile::exists(file)) return file;
    }
    return {};
}

}  // namespace

bool openWithDesktop(const std::string& url) {
    if (!isOpenableUrl(url)) return false;
    const QStringList arguments{QString::fromStdString(url)};
    return QProcess::startDetached(QStringLiteral("xdg-open"), arguments) ||
           QProcess::startDetached(QStringLiteral("gio"), QStringList{QStringLiteral("open")} + arguments);
}

RunningApplication thisApplication() {
    return {static_cast<int>(getpid()), "com.brimquill.app", "Brimquill"};
}

std::optional<Image> desktopIcon(const std::string& nameOrPath, int size) {
    const QString file = iconFile(QString::fromStdString(nameOrPath), size);
    if (file.isEmpty()) return std::nullopt;
    QImageReader reader(file);
    constexpr int largestEdge = 4096;
    const QSize natural = reader.size();
    if (natural.width() > largestEdge || natural.height() > largestEdge) return std::nullopt;
    const int edge = std::clamp(size, 1, largestEdge);
    if (natural.isValid()) reader.setScaledSize(natural.scaled(edge, edge, Qt::KeepAspectRatio));
    const QImage picture = reader.read().convertToFormat(QImage::Format_RGBA8888);
    if (picture.isNull()) return std::nullopt;
    Image image{picture.width(), picture.height(), {}};
    for (int row = 0; row < picture.height(); ++row) {
        const auto* line = picture.constScanLine(row);
        image.rgba.insert(image.rgba.end(), line, line + static_cast<std::ptrdiff_t>(picture.width()) * 4);
    }
    return image;
}

}  // namespace brimquill::platform

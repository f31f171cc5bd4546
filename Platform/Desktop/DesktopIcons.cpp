#include "Platform/Desktop/DesktopIcons.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QMimeDatabase>

#include <algorithm>

namespace brimquill::platform {
namespace {

std::optional<Image> readIcon(const QString& file, int size) {
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

}  // namespace

DesktopIcons::DesktopIcons() : themes_(QIcon::themeName()) {}

std::optional<Image> DesktopIcons::icon(const std::string& nameOrPath, int size) {
    const auto name = QString::fromStdString(nameOrPath);
    return readIcon(QDir::isAbsolutePath(name) ? name : themes_.file(name, size), size);
}

std::optional<Image> DesktopIcons::iconForFile(const std::string& path, int size) {
    // A file by its name alone: what is in it is nobody's business here.
    const QFileInfo file(QString::fromStdString(path));
    const auto type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension);
    for (const QString& name : {type.iconName(), type.genericIconName()}) {
        if (auto image = readIcon(themes_.file(name, size), size)) return image;
    }
    return std::nullopt;
}

}  // namespace brimquill::platform

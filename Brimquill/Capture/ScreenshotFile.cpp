#include "Brimquill/Capture/ScreenshotFile.h"

#include "BrimquillCore/Foundation/Text.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace brimquill::ScreenshotFile {
namespace {

QString nameOf(const std::filesystem::path& file) {
    return QFile::decodeName(QByteArray::fromStdString(file.string()));
}

/// Whether the boxes of which the file is made, each with its size at its front, end where the file ends.
bool hasWholeBoxes(QFile& file) {
    for (qint64 at = 0; at < file.size();) {
        file.seek(at);
        const QByteArray head = file.read(16);
        if (head.size() < 8) return false;
        auto size = static_cast<quint64>(qFromBigEndian<quint32>(head.constData()));
        if (size == 0) return true;  // the last one, as long as the file is
        if (size == 1 && head.size() == 16) size = qFromBigEndian<quint64>(head.constData() + 8);
        if (size < 8 || size > static_cast<quint64>(file.size() - at)) return false;
        at += static_cast<qint64>(size);
    }
    return true;
}

/// Whether the file has what a picture of its format ends with.
bool endsWhole(QFile& file, const QByteArray& head) {
    const auto tail = [&](qint64 size) {
        file.seek(std::max<qint64>(0, file.size() - size));
        return file.read(size);
    };
    if (head.startsWith("\x89PNG")) return tail(12).contains("IEND");
    if (head.startsWith("\xFF\xD8")) return tail(64).contains("\xFF\xD9");
    if (head.sliced(std::min<qsizetype>(4, head.size())).startsWith("ftyp")) return hasWholeBoxes(file);
    return true;
}

}  // namespace

bool isComplete(const std::filesystem::path& path) {
    QFile file(nameOf(path));
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0) return false;
    return endsWhole(file, file.read(8));
}

bool isScreenshot(const std::filesystem::path& path) {
    if (text::lowercased(path.filename().string()).starts_with("screenshot")) return true;
    // GNOME, KDE, Xfce and the small tools each name themselves in the text of the picture.
    static constexpr std::array tools = {"screenshot", "spectacle", "flameshot", "ksnip",
                                         "scrot",      "maim",      "shutter",   "grim"};
    QImageReader reader(nameOf(path));
    for (const auto& key : reader.textKeys()) {
        const auto written = text::lowercased((key + QLatin1Char(' ') + reader.text(key)).toStdString());
        const auto names = [&](const char* tool) { return written.find(tool) != std::string::npos; };
        if (std::any_of(tools.begin(), tools.end(), names)) return true;
    }
    return false;
}

}  // namespace brimquill::ScreenshotFile

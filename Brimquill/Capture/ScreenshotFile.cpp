#include "Brimquill/Capture/ScreenshotFile.h"

#include "BrimquillCore/Foundation/Text.h"

#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace brimquill::ScreenshotFile {
namespace {

QString nameOf(const std::filesystem::path& file) {
    return QFile::decodeName(QByteArray::fromStdString(file.string()));
}

/// The end of a picture of each format that has one, as bytes.
bool endsWhole(QFile& file, const QByteArray& head) {
    const auto tail = [&](qint64 size) {
        file.seek(std::max<qint64>(0, file.size() - size));
        return file.read(size);
    };
    if (head.startsWith("\x89PNG")) return tail(12).contains("IEND");
    if (head.startsWith("\xFF\xD8")) return tail(64).contains("\xFF\xD9");
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

#include "Platform/Helpers/PictureReader.h"

#include <QImageReader>
#include <QString>

#define ZX_USE_UTF8 1  // texts as UTF-8, which later versions of the library give anyway
#include <ZXing/ReadBarcode.h>

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace brimquill::helpers {
namespace {

/// What one picture may take when decoded, and what recognition is given at most: beyond that it is scaled down.
constexpr int decodedMebibytes = 512;
constexpr double recognizedPixels = 16e6;
/// Smaller pictures hold no words, and the engine complains about them.
constexpr int smallestSide = 8;

QImage grayscale(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    QImage picture = reader.read();
    if (picture.isNull()) return {};
    const double pixels = static_cast<double>(picture.width()) * picture.height();
    if (pixels > recognizedPixels) {
        const double scale = std::sqrt(recognizedPixels / pixels);
        picture = picture.scaled(std::max(1, static_cast<int>(picture.width() * scale)),
                                 std::max(1, static_cast<int>(picture.height() * scale)), Qt::IgnoreAspectRatio,
                                 Qt::SmoothTransformation);
    }
    if (picture.hasAlphaChannel()) {
        QImage onWhite(picture.size(), QImage::Format_RGB32);
        onWhite.fill(Qt::white);
        for (int y = 0; y < picture.height(); ++y) {
            auto* target = reinterpret_cast<QRgb*>(onWhite.scanLine(y));
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                const int alpha = qAlpha(pixel);
                const auto over = [alpha](int channel) { return (channel * alpha + 255 * (255 - alpha)) / 255; };
                target[x] = qRgb(over(qRed(pixel)), over(qGreen(pixel)), over(qBlue(pixel)));
            }
        }
        picture = std::move(onWhite);
    }
    return picture.convertToFormat(QImage::Format_Grayscale8);
}

std::vector<std::string> codes(const QImage& picture) {
    const ZXing::ImageView view(picture.constBits(), picture.width(), picture.height(), ZXing::ImageFormat::Lum,
                                static_cast<int>(picture.bytesPerLine()));
    ZXing::DecodeHints hints;
    hints.setTryHarder(true).setTryRotate(true);
    std::vector<std::string> payloads;
    for (const auto& result : ZXing::ReadBarcodes(view, hints)) {
        auto payload = result.text();
        if (!payload.empty()) payloads.push_back(std::move(payload));
    }
    return payloads;
}

/// The languages whose data is installed, English first: "eng+deu". Empty when there are none.
std::string installedLanguages(tesseract::TessBaseAPI& api) {
    std::vector<std::string> names;
    api.GetAvailableLanguagesAsVector(&names);
    std::erase_if(names, [](const std::string& name) { return name == "osd" || name == "equ" || name == "snum"; });
    std::sort(names.begin(), names.end());
    if (const auto english = std::find(names.begin(), names.end(), "eng"); english != names.end()) {
        std::rotate(names.begin(), english, english + 1);
    }
    std::string joined;
    for (const auto& name : names)
        joined += (joined.empty() ? "" : "+") + name;
    return joined;
}

std::string withoutLineEnd(std::string_view line) {
    const auto end = line.find_last_not_of(" \t\r\n");
    return end == std::string_view::npos ? std::string() : std::string(line.substr(0, end + 1));
}

}  // namespace

PictureReader::PictureReader() {
    QImageReader::setAllocationLimit(decodedMebibytes);
}

PictureReader::~PictureReader() = default;

PictureReader::Reading PictureReader::read(const std::string& path) {
    const QImage picture = grayscale(path);
    if (picture.isNull()) return {};
    Reading reading;
    reading.codes = codes(picture);
    if (picture.width() >= smallestSide && picture.height() >= smallestSide) reading.lines = lines(picture);
    return reading;
}

bool PictureReader::prepareRecognition() {
    if (isPrepared_) return recognition_ != nullptr;
    isPrepared_ = true;
    auto api = std::make_unique<tesseract::TessBaseAPI>();
    api->SetVariable("debug_file", "/dev/null");
    // The list of languages can be asked for only after a first initialisation.
    if (api->Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY) != 0 && api->Init(nullptr, nullptr) != 0) return false;
    const auto languages = installedLanguages(*api);
    if (languages.empty()) return false;
    if (languages != "eng" && api->Init(nullptr, languages.c_str(), tesseract::OEM_LSTM_ONLY) != 0) return false;
    api->SetPageSegMode(tesseract::PSM_AUTO);
    recognition_ = std::move(api);
    return true;
}

std::vector<std::string> PictureReader::lines(const QImage& picture) {
    std::vector<std::string> found;
    if (!prepareRecognition()) return found;
    recognition_->SetImage(picture.constBits(), picture.width(), picture.height(), 1,
                           static_cast<int>(picture.bytesPerLine()));
    recognition_->SetSourceResolution(70);
    if (recognition_->Recognize(nullptr) == 0) {
        const std::unique_ptr<tesseract::ResultIterator> at(recognition_->GetIterator());
        if (at) {
            do {
                const std::unique_ptr<char[]> text(at->GetUTF8Text(tesseract::RIL_TEXTLINE));
                auto line = text ? withoutLineEnd(text.get()) : std::string();
                if (!line.empty()) found.push_back(std::move(line));
            } while (at->Next(tesseract::RIL_TEXTLINE));
        }
    }
    recognition_->Clear();
    return found;
}

}  // namespace brimquill::helpers

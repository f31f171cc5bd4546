#include "Platform/Helpers/PictureReader.h"

#include <QImageReader>
#include <QRect>
#include <QString>

#define ZX_USE_UTF8 1  // texts as UTF-8, which later versions of the library give anyway
#include <ZXing/ReadBarcode.h>

#include <leptonica/allheaders.h>
#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>
#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace brimquill::helpers {
namespace {

/// What one picture may take when decoded, and what recognition is given at most: beyond that it is scaled down.
constexpr int decodedMebibytes = 512;
constexpr double recognizedPixels = 16e6;
/// Text on the screen is often smaller than print: when of the shapes that may be letters more than one in so many is
/// lower than so many pixels, which is what "x" has in a font of 14, the picture is read at twice its size.
constexpr int smallestLetter = 4, smallLetter = 8, largestLetter = 100, smallLetterShare = 5;
/// How many codes of bars are looked for in a picture.
constexpr int mostBarCodes = 16;
/// Smaller pictures hold no words, and the engine complains about them.
constexpr int smallestSide = 8;

struct Destroy {
    void operator()(Pix* pix) const { pixDestroy(&pix); }
    void operator()(Boxa* boxes) const { boxaDestroy(&boxes); }
};
using PixPointer = std::unique_ptr<Pix, Destroy>;
using BoxesPointer = std::unique_ptr<Boxa, Destroy>;

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

ZXing::ImageView viewOf(const QImage& picture) {
    return {picture.constBits(), picture.width(), picture.height(), ZXing::ImageFormat::Lum,
            static_cast<int>(picture.bytesPerLine())};
}

/// The part of a picture in which a barcode was found.
QRect frameOf(const ZXing::Position& position) {
    QRect frame;
    for (const auto& corner : position)
        frame = frame.united(QRect(corner.x - 1, corner.y - 1, 3, 3));
    return frame;
}

void cover(QImage& picture, const QRect& frame) {
    for (int y = frame.top(); y <= frame.bottom(); ++y)
        std::fill_n(picture.scanLine(y) + frame.left(), frame.width(), uchar{255});
}

/// Bars are looked for one code at a time, each covered before the next: version 1.4 of the library ends the process
/// when it finds the same one twice, as it does at two scales.
void takeBarCodes(QImage& picture, std::vector<std::string>& payloads) {
    ZXing::DecodeHints hints;
    hints.setTryHarder(true).setTryRotate(true).setFormats(ZXing::BarcodeFormat::LinearCodes);
    hints.setMaxNumberOfSymbols(1);
    for (int round = 0; round < mostBarCodes; ++round) {
        const auto result = ZXing::ReadBarcode(viewOf(picture), hints);
        if (!result.isValid()) return;
        auto payload = result.text();
        const QRect frame = frameOf(result.position()).intersected(picture.rect());
        const bool isKnown = std::find(payloads.begin(), payloads.end(), payload) != payloads.end();
        if (!payload.empty() && !isKnown) payloads.push_back(std::move(payload));
        if (frame.isEmpty()) return;
        cover(picture, frame);
    }
}

/// What the codes say. They are covered in the picture: their dots and bars would be taken for words.
std::vector<std::string> takeCodes(QImage& picture) {
    ZXing::DecodeHints hints;
    hints.setTryHarder(true).setTryRotate(true).setFormats(ZXing::BarcodeFormat::MatrixCodes);
    std::vector<std::string> payloads;
    const auto results = ZXing::ReadBarcodes(viewOf(picture), hints);
    for (const auto& result : results) {
        auto payload = result.text();
        if (payload.empty()) continue;
        payloads.push_back(std::move(payload));
        cover(picture, frameOf(result.position()).intersected(picture.rect()));
    }
    takeBarCodes(picture, payloads);
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
    QImage picture = grayscale(path);
    if (picture.isNull()) return {};
    Reading reading;
    reading.codes = takeCodes(picture);
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

void PictureReader::give(const QImage& picture) {
    recognition_->SetImage(picture.constBits(), picture.width(), picture.height(), 1,
                           static_cast<int>(picture.bytesPerLine()));
    recognition_->SetSourceResolution(70);
}

/// Whether a good part of the letters that were given is smaller than what the engine was trained on.
bool PictureReader::isTextSmall() {
    const PixPointer ink(recognition_->GetThresholdedImage());
    if (!ink) return false;
    l_float32 share = 0;
    // Light on dark: what is wanted are the letters, not the holes between them.
    if (pixForegroundFraction(ink.get(), &share) == 0 && share > 0.5F) pixInvert(ink.get(), ink.get());
    const BoxesPointer boxes(pixConnCompBB(ink.get(), 8));
    if (!boxes) return false;
    int letters = 0, smallLetters = 0;
    for (int index = 0; index < boxaGetCount(boxes.get()); ++index) {
        int height = 0;
        boxaGetBoxGeometry(boxes.get(), index, nullptr, nullptr, nullptr, &height);
        if (height < smallestLetter || height > largestLetter) continue;
        ++letters;
        if (height < smallLetter) ++smallLetters;
    }
    return smallLetters * smallLetterShare > letters;
}

std::vector<std::string> PictureReader::lines(const QImage& picture) {
    std::vector<std::string> found;
    if (!prepareRecognition()) return found;
    give(picture);
    if (4.0 * picture.width() * picture.height() <= recognizedPixels && isTextSmall()) {
        give(picture.scaled(picture.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                 .convertToFormat(QImage::Format_Grayscale8));
    }
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

#include "Brimquill/Capture/PictureFile.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

namespace brimquill::PictureFile {
namespace {

/// What one decoded picture may take, in MiB: a screen of 8K at four bytes a pixel takes 127.
constexpr int allocationLimit = 256;

}  // namespace

std::optional<platform::Bytes> pngFrom(const platform::Bytes& bytes) {
    if (QImageReader::allocationLimit() != allocationLimit) QImageReader::setAllocationLimit(allocationLimit);
    QByteArray source =
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
    QBuffer input(&source);
    input.open(QIODevice::ReadOnly);
    QImageReader reader(&input);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull()) return std::nullopt;

    QByteArray png;
    QBuffer output(&png);
    output.open(QIODevice::WriteOnly);
    QImageWriter writer(&output, "png");
    if (!writer.write(image)) return std::nullopt;
    return platform::Bytes(png.begin(), png.end());
}

}  // namespace brimquill::PictureFile

#include "Brimquill/Palette/Thumbnails.h"

#include <QImageReader>
#include <QMutexLocker>
#include <QPainter>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace brimquill {
namespace {

/// What the caches hold at most, in bytes of decoded pictures, and what one file may take while it is decoded, in MiB.
constexpr qsizetype thumbnailBytes = 48 << 20, iconBytes = 2 << 20;
constexpr int decodedMebibytes = 256;

/// Computes an image on a pool, for a view that waits for it.
class Response final : public QQuickImageResponse {
public:
    Response(QThreadPool& pool, std::function<QImage()> compute) {
        pool.start([this, compute = std::move(compute)] {
            image_ = compute();
            Q_EMIT finished();
        });
    }

    QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(image_);
    }

private:
    QImage image_;
};

/// Stands for an icon that there is not: one point, which nobody sees; a view would complain about none.
QImage noIcon() {
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// What shows through the transparent parts of a picture.
QImage onCheckerboard(const QImage& picture) {
    if (!picture.hasAlphaChannel()) return picture;
    constexpr int square = 8;
    QImage result(picture.size(), QImage::Format_RGB32);
    result.fill(QColor(0xFF, 0xFF, 0xFF));
    QPainter painter(&result);
    for (int y = 0; y < result.height(); y += square) {
        for (int x = (y / square) % 2 * square; x < result.width(); x += 2 * square) {
            painter.fillRect(x, y, square, square, QColor(0xDD, 0xDD, 0xDD));
        }
    }
    painter.drawImage(0, 0, picture);
    return result;
}

QString decoded(const QString& id) {
    return QUrl::fromPercentEncoding(id.toUtf8());
}

/// All of an image that some formats do not let be read smaller, or its middle: at most `size`.
QImage fitted(const QImage& image, const QSize& size, Thumbnails::Fit fit) {
    const auto kept = image.size().boundedTo(size);
    if (kept == image.size() || size.isEmpty()) return image;
    if (fit == Thumbnails::Fit::whole) return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image.copy(QRect(QPoint((image.width() - kept.width()) / 2, (image.height() - kept.height()) / 2), kept));
}

/// Whether it lies on its side until it is held upright.
bool isTurned(const QImageReader& reader) {
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
}

}  // namespace

QSize uprightSize(const QImageReader& reader) {
    return isTurned(reader) ? reader.size().transposed() : reader.size();
}

QString imageUrl(const char* provider, const std::string& name) {
    if (name.empty()) return {};
    // The name as a whole: a slash in it is no part of the address.
    const auto encoded = QUrl::toPercentEncoding(QString::fromStdString(name));
    return QStringLiteral("image://%1/%2").arg(QLatin1String(provider), QString::fromLatin1(encoded));
}

QImage ImageCache::image(const QString& key, const std::function<QImage()>& compute) {
    {
        const QMutexLocker lock(&mutex_);
        if (const auto found = images_.constFind(key); found != images_.constEnd()) return *found;
    }
    QImage image = compute();
    if (image.isNull()) return image;
    const QMutexLocker lock(&mutex_);
    if (images_.size() >= countLimit || bytes_ + image.sizeInBytes() > byteLimit_) {
        images_.clear();
        bytes_ = 0;
    }
    bytes_ += image.sizeInBytes() - images_.value(key).sizeInBytes();
    images_.insert(key, image);
    return image;
}

qsizetype ImageCache::count() {
    const QMutexLocker lock(&mutex_);
    return images_.size();
}

Thumbnails::Thumbnails(Fit fit) : fit_(fit), cache_(thumbnailBytes) {
    QImageReader::setAllocationLimit(decodedMebibytes);
    pool_.setMaxThreadCount(1);
}

Thumbnails::~Thumbnails() {
    pool_.waitForDone();
}

QImage Thumbnails::read(const QString& path, const QSize& size, Fit fit) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    const QSize whole = uprightSize(reader);
    if (whole.isValid() && !whole.isEmpty() && size.isValid() && !size.isEmpty()) {
        const QSize scaled =
            whole.scaled(size, fit == Fit::cover ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio);
        if (scaled.width() < whole.width() || scaled.height() < whole.height())
            reader.setScaledSize((isTurned(reader) ? scaled.transposed() : scaled).expandedTo(QSize(1, 1)));
    }
    return onCheckerboard(fitted(reader.read(), size, fit));
}

QQuickImageResponse* Thumbnails::requestImageResponse(const QString& id, const QSize& requestedSize) {
    const auto path = decoded(id);
    const auto key = QStringLiteral("%1x%2 %3").arg(requestedSize.width()).arg(requestedSize.height()).arg(path);
    return new Response(pool_, [this, path, key, requestedSize] {
        return cache_.image(key, [&] { return read(path, requestedSize, fit_); });
    });
}

DesktopIconImages::DesktopIconImages(Read read) : read_(std::move(read)), cache_(iconBytes) {
    pool_.setMaxThreadCount(1);
}

DesktopIconImages::~DesktopIconImages() {
    pool_.waitForDone();
}

QQuickImageResponse* DesktopIconImages::requestImageResponse(const QString& id, const QSize& requestedSize) {
    const auto name = decoded(id);
    const int size = std::max(requestedSize.width(), 16);
    return new Response(pool_, [this, name, size] {
        return cache_.image(QStringLiteral("%1 %2").arg(size).arg(name), [&] {
            const auto icon = read_(name.toStdString(), size);
            if (!icon || icon->rgba.empty()) return noIcon();
            const qsizetype bytesPerLine = qsizetype{icon->width} * 4;
            return QImage(icon->rgba.data(), icon->width, icon->height, bytesPerLine, QImage::Format_RGBA8888).copy();
        });
    });
}

}  // namespace brimquill

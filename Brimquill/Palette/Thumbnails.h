#pragma once

#include "Platform/Workspace.h"

#include <QHash>
#include <QImage>
#include <QMutex>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>

#include <functional>

namespace brimquill {

/// The images last computed: 200 and a bound of bytes at most; emptied when full. Any thread.
class ImageCache final {
public:
    static constexpr qsizetype countLimit = 200;

    explicit ImageCache(qsizetype byteLimit) : byteLimit_(byteLimit) {}
    /// The image under `key`, computed when there is none; a null one is computed again each time.
    QImage image(const QString& key, const std::function<QImage()>& compute);
    qsizetype count();

private:
    const qsizetype byteLimit_;
    QMutex mutex_;
    QHash<QString, QImage> images_;
    qsizetype bytes_ = 0;
};

/// Pictures for the cards, read and scaled away from the main thread: "image://thumbnails/<percent-encoded path>". A
/// file that is no picture, is damaged or would take too much memory gives an empty image. Keeps the last ones. Any
/// thread.
class Thumbnails final : public QQuickAsyncImageProvider {
public:
    Thumbnails();
    ~Thumbnails() override;
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

    /// Reads one picture, made so small that it just covers `size`, in pixels, and cut to it around its centre. It is
    /// never made larger: where it is smaller, so is the result. Null when it cannot be read.
    static QImage read(const QString& path, const QSize& size);

private:
    ImageCache cache_;
    QThreadPool pool_;
};

/// The icons of the programs that clips come from: "image://icons/<percent-encoded bundle id>".
class SourceIcons final : public QQuickAsyncImageProvider {
public:
    explicit SourceIcons(platform::Workspace& workspace);
    ~SourceIcons() override;
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

private:
    platform::Workspace& workspace_;
    ImageCache cache_;
    QThreadPool pool_;
};

}  // namespace brimquill

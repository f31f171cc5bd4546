#pragma once

#include "Platform/Workspace.h"

#include <QCache>
#include <QMutex>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>

namespace brimquill {

/// Pictures for the cards, read and scaled away from the main thread: "image://thumbnails/<percent-encoded path>". A
/// file that is no picture, is damaged or would take too much memory gives an empty image. Keeps the last ones. Any
/// thread.
class Thumbnails final : public QQuickAsyncImageProvider {
public:
    Thumbnails();
    ~Thumbnails() override;
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

    /// Reads one picture so that it covers `size`, in pixels; null when it cannot be read.
    static QImage read(const QString& path, const QSize& size);

private:
    QMutex mutex_;
    QCache<QString, QImage> cache_;
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
    QMutex mutex_;
    QCache<QString, QImage> cache_;
    QThreadPool pool_;
};

}  // namespace brimquill

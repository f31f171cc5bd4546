#pragma once

#include "Platform/Types.h"

#include <QHash>
#include <QImage>
#include <QImageReader>
#include <QMutex>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>

#include <functional>
#include <optional>
#include <string>

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

/// The address at which a view gets a named image of a provider; empty for an empty name.
QString imageUrl(const char* provider, const std::string& name);

/// The size in pixels that a picture has when it is held upright, as a camera may ask for; not valid when unknown.
QSize uprightSize(const QImageReader& reader);

/// Pictures for the cards and the preview, read and scaled away from the main thread; their names are paths. A file
/// that is no picture, is damaged or would take too much memory gives an empty image. Keeps the last ones. Any thread.
class Thumbnails final : public QQuickAsyncImageProvider {
public:
    /// The names of the providers: of those that cover their place, and of those that show the whole picture.
    static constexpr const char* coverProvider = "thumbnails";
    static constexpr const char* wholeProvider = "pictures";
    enum class Fit { cover, whole };

    explicit Thumbnails(Fit fit);
    ~Thumbnails() override;
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

    /// Reads one picture, made so small that it just covers `size`, in pixels, and cut to it around its centre, or so
    /// small that all of it fits. It is never made larger: where it is smaller, so is the result. Null when it cannot
    /// be read.
    static QImage read(const QString& path, const QSize& size, Fit fit);

private:
    const Fit fit_;
    ImageCache cache_;
    QThreadPool pool_;
};

/// The desktop's icons, read away from the main thread. Keeps the last ones.
class DesktopIconImages final : public QQuickAsyncImageProvider {
public:
    /// The names of the providers: of the programs that clips come from, by bundle id, and of files, by path.
    static constexpr const char* programProvider = "icons";
    static constexpr const char* fileProvider = "file-icons";
    /// Gives the icon of a name, about so many pixels square; on any thread.
    using Read = std::function<std::optional<platform::Image>(const std::string& name, int size)>;

    explicit DesktopIconImages(Read read);
    ~DesktopIconImages() override;
    QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

private:
    const Read read_;
    ImageCache cache_;
    QThreadPool pool_;
};

}  // namespace brimquill

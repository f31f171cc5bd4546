#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <mutex>
#include <vector>

namespace brimquill::platform {

/// Where the desktop's icons are, as its icon themes say; the toolkit's own loader belongs to the main thread. Any
/// thread.
class IconThemes final {
public:
    /// Looks in the theme of this name first, then in what it inherits from, then in those found on most desktops.
    explicit IconThemes(QString theme) : theme_(std::move(theme)) {}
    /// The file of the named icon that suits `size`, in pixels, best; empty when there is none.
    QString file(const QString& name, int size);

private:
    /// A folder of icons for these sizes.
    struct Folder {
        QString path;
        int smallest, largest;
        int distance(int size) const { return size < smallest ? smallest - size : size > largest ? size - largest : 0; }
    };
    struct Theme {
        QStringList inherits;
        std::vector<Folder> folders;
    };

    static Theme read(const QString& name);
    const Theme& theme(const QString& name);
    QString fileIn(const Theme& theme, const QString& name, int size);

    const QString theme_;
    std::mutex mutex_;
    std::map<QString, Theme> themes_;
};

}  // namespace brimquill::platform

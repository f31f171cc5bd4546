#include "Platform/Desktop/ScreenshotDirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QString>
#include <QUrl>

#include <algorithm>
#include <array>

namespace brimquill::platform {
namespace {

/// A screenshot tool's preference for where to save.
struct Preference {
    /// Part of the name that the desktop with this tool goes by; empty for a tool of no desktop.
    const char* desktop;
    /// Below the user's configuration directory.
    const char* file;
    const char* key;
};

constexpr std::array preferences = {
    Preference{"KDE", "spectaclerc", "ImageSave/imageSaveLocation"},
    Preference{"KDE", "spectaclerc", "Save/defaultSaveLocation"},
    Preference{"XFCE", "xfce4/xfce4-screenshooter", "screenshot_dir"},
    Preference{"", "flameshot/flameshot.ini", "savePath"},
};

bool isDirectory(const QString& path) {
    return QDir::isAbsolutePath(path) && QFileInfo(path).isDir();
}

/// The folder that a preference names; empty when it names none that is there.
QString directoryOf(const Preference& preference) {
    const auto file =
        QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + u'/' + QString::fromLatin1(preference.file);
    const QSettings settings(file, QSettings::IniFormat);
    const auto key = QString::fromLatin1(preference.key);
    auto value = settings.value(key).toString();
    // KDE marks values in which it replaced the home directory by the name of its variable.
    if (value.isEmpty()) value = settings.value(key + QStringLiteral("[$e]")).toString();
    value.replace(QStringLiteral("$HOME"), QDir::homePath());
    if (value.startsWith(QStringLiteral("file:"))) value = QUrl(value).toLocalFile();
    return isDirectory(value) ? value : QString();
}

}  // namespace

std::optional<std::string> screenshotDirectory() {
    const auto desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    auto ordered = preferences;
    std::stable_partition(ordered.begin(), ordered.end(), [&](const Preference& preference) {
        return *preference.desktop != '\0' && desktop.contains(QLatin1String(preference.desktop), Qt::CaseInsensitive);
    });
    for (const auto& preference : ordered) {
        if (const auto found = directoryOf(preference); !found.isEmpty()) return QFile::encodeName(found).toStdString();
    }
    const auto pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const auto gnome = pictures + QStringLiteral("/Screenshots");
    if (isDirectory(gnome)) return QFile::encodeName(gnome).toStdString();
    return std::nullopt;
}

}  // namespace brimquill::platform

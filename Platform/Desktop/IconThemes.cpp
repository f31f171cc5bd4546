#include "Platform/Desktop/IconThemes.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

namespace brimquill::platform {
namespace {

QStringList locate(const QString& path, QStandardPaths::LocateOptions options) {
    QStringList found =
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QLatin1String("icons/") + path, options);
    // An older place, still in use.
    const QString own = QDir::homePath() + QLatin1String("/.icons/") + path;
    if (QFile::exists(own)) found.prepend(own);
    return found;
}

QString firstOf(const QString& stem, std::initializer_list<const char*> suffixes) {
    for (const char* suffix : suffixes) {
        QString file = stem + QLatin1String(suffix);
        if (QFile::exists(file)) return file;
    }
    return {};
}

}  // namespace

IconThemes::Theme IconThemes::read(const QString& name) {
    Theme theme;
    const QStringList described = locate(name + QLatin1String("/index.theme"), QStandardPaths::LocateFile);
    if (described.isEmpty()) return theme;
    const QSettings index(described.front(), QSettings::IniFormat);
    theme.inherits = index.value(QStringLiteral("Icon Theme/Inherits")).toStringList();
    const QStringList roots = locate(name, QStandardPaths::LocateDirectory);
    for (const QString& folder : index.value(QStringLiteral("Icon Theme/Directories")).toStringList()) {
        const auto number = [&](const char* key, int absent) {
            return index.value(folder + QLatin1Char('/') + QLatin1String(key), absent).toInt();
        };
        const QString type = index.value(folder + QLatin1String("/Type")).toString();
        const int size = number("Size", 0), scale = std::max(1, number("Scale", 1));
        const int around = type == QLatin1String("Fixed") ? 0 : number("Threshold", 2);
        const bool isScalable = type == QLatin1String("Scalable");
        const int smallest = isScalable ? number("MinSize", size) : size - around;
        const int largest = isScalable ? number("MaxSize", size) : size + around;
        for (const QString& root : roots)
            theme.folders.push_back({root + QLatin1Char('/') + folder, smallest * scale, largest * scale});
    }
    return theme;
}

const IconThemes::Theme& IconThemes::theme(const QString& name) {
    const auto known = themes_.find(name);
    return known != themes_.end() ? known->second : themes_.emplace(name, read(name)).first->second;
}

QString IconThemes::fileIn(const Theme& theme, const QString& name, int size) {
    auto folders = theme.folders;
    std::stable_sort(folders.begin(), folders.end(), [size](const Folder& one, const Folder& other) {
        return one.distance(size) < other.distance(size);
    });
    for (const auto& folder : folders) {
        if (auto file = firstOf(folder.path + QLatin1Char('/') + name, {".png", ".svg"}); !file.isEmpty()) return file;
    }
    return {};
}

QString IconThemes::file(const QString& name, int size) {
    // A name is no path.
    if (name.isEmpty() || name.contains(QLatin1Char('/'))) return {};
    const std::lock_guard lock(mutex_);
    QStringList wanted{theme_, QStringLiteral("Adwaita"), QStringLiteral("hicolor")};
    for (qsizetype next = 0; next < wanted.size(); ++next) {
        if (wanted.indexOf(wanted[next]) < next) continue;
        const Theme& found = theme(wanted[next]);
        if (auto file = fileIn(found, name, size); !file.isEmpty()) return file;
        for (qsizetype parent = found.inherits.size(); parent > 0; --parent)
            wanted.insert(next + 1, found.inherits[parent - 1]);
    }
    return firstOf(QLatin1String("/usr/share/pixmaps/") + name, {".png", ".svg", ".xpm"});
}

}  // namespace brimquill::platform

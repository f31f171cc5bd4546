#include "BrimquillCore/ClipStore.h"

#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Files.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <utility>

namespace brimquill {
namespace {

namespace fs = std::filesystem;

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

fs::path homeDirectory() {
    if (const auto home = environment("HOME"); !home.empty()) return home;
    const passwd* const user = ::getpwuid(::getuid());
    return user ? user->pw_dir : "/";
}

/// What the store is given may be relative, what it hands out (paths of images) never is.
fs::path absolutePath(const fs::path& path) {
    std::error_code error;
    const auto result = fs::absolute(path, error);
    return error ? path : result;
}

/// A directory that holds other things already is the user's own affair and keeps its mode.
void makePrivate(const fs::path& directory) {
    std::error_code error;
    files::makePrivateDirectory(directory);
    if (fs::is_empty(directory, error)) fs::permissions(directory, fs::perms::owner_all, error);
}

}  // namespace

fs::path ClipStore::defaultDirectory() {
    if (const auto directory = environment("BRIMQUILL_DATA_DIR"); !directory.empty()) return directory;
    const fs::path dataHome = environment("XDG_DATA_HOME");
    return (dataHome.is_absolute() ? dataHome : homeDirectory() / ".local/share") / "Brimquill";
}

ClipStore& ClipStore::shared() {
    static auto* const store = new ClipStore(defaultDirectory());
    return *store;
}

ClipStore::ClipStore(const fs::path& directory, NotificationCenter& center, Clock clock)
    : imagesDirectory(absolutePath(directory) / "images"),
      databaseURL(absolutePath(directory) / "brimquill.db"),
      center_(center),
      clock_(std::move(clock)) {
    makePrivate(databaseURL.parent_path());
    makePrivate(imagesDirectory);
    db_ = std::make_unique<sqlite::Connection>(databaseURL);
    sqlite::migrate(*db_);
}

ClipStore::~ClipStore() = default;

void ClipStore::postDidChange() {
    center_.post({didChangeNotification, this, {}});
}

}  // namespace brimquill

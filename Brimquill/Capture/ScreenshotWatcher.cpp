#include "Brimquill/Capture/ScreenshotWatcher.h"

#include "Brimquill/Capture/ScreenshotFile.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"

#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <system_error>
#include <vector>

namespace brimquill {
namespace {

namespace fs = std::filesystem;

bool hasPictureExtension(const fs::path& file) {
    static constexpr std::array extensions = {"png", "jpg", "jpeg", "heic"};
    const auto extension = text::lowercased(text::pathExtension(file.string()));
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

/// When the file was made; where the file system does not tell, when it was last changed. Nothing when it is gone.
std::optional<Date> creationDate(const fs::path& file) {
    struct statx status {};
    if (statx(AT_FDCWD, file.c_str(), 0, STATX_BTIME | STATX_MTIME, &status) != 0) return std::nullopt;
    const auto& time = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime;
    return Date{static_cast<double>(time.tv_sec) + time.tv_nsec * 1e-9};
}

fs::path expandingTilde(const std::string& path) {
    const char* home = std::getenv("HOME");
    const bool isHome = path == "~" || path.starts_with("~/");
    return isHome && home != nullptr ? fs::path(home + path.substr(1)) : fs::path(path);
}

/// Nothing of it stays when it fails, as on a full disk.
bool copyPrivately(const fs::path& file, const fs::path& target) {
    std::error_code error;
    if (!fs::copy_file(file, target, error)) {
        files::removeFile(target);
        return false;
    }
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write, error);
    return true;
}

}  // namespace

fs::path ScreenshotWatcher::directory() const {
    if (const auto location = environment_.screenCapture.string("location")) return expandingTilde(*location);
    if (const auto directory = environment_.desktop.savingDirectory()) return *directory;
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation).toStdString();
}

void ScreenshotWatcher::start() {
    stop();
    directory_ = directory();
    startedAt_ = environment_.runLoop.now();
    watch_ = environment_.folderWatcher.watch(directory_.string(), [this] { changed(); });
    log::write((watch_ ? "watching screenshot folder " : "cannot watch screenshot folder ") + directory_.string());
}

void ScreenshotWatcher::stop() {
    watch_.reset();
    secondScan_.reset();
    thirdScan_.reset();
}

/// Names and contents may come a moment after the file: it is looked at again.
void ScreenshotWatcher::changed() {
    scan();
    secondScan_ = environment_.runLoop.after(0.4, [this] { scan(); });
    thirdScan_ = environment_.runLoop.after(1.5, [this] { scan(); });
}

void ScreenshotWatcher::scan() {
    if (environment_.settings.capturePaused()) return;
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator at(directory_, error), end; !error && at != end; at.increment(error)) {
        if (isNew(*at)) found.push_back(at->path());
    }
    for (const auto& file : found) {
        if (!ScreenshotFile::isScreenshot(file) || !ScreenshotFile::isComplete(file)) continue;
        processed_.insert(file.filename().string());
        ingest(file);
    }
}

bool ScreenshotWatcher::isNew(const fs::directory_entry& entry) const {
    const auto name = entry.path().filename().string();
    std::error_code error;
    if (name.starts_with('.') || !hasPictureExtension(entry.path()) || processed_.contains(name)) return false;
    if (!entry.is_regular_file(error)) return false;
    const auto created = creationDate(entry.path());
    return created && *created > startedAt_;
}

void ScreenshotWatcher::ingest(const fs::path& file) {
    const auto target = environment_.store.imagesDirectory /
                        ("shot-" + text::uppercased(makeUuid()) + "." + text::pathExtension(file.string()));
    work_.add([file, target] { return copyPrivately(file, target); }, [this, path = target.string()] { store(path); });
}

void ScreenshotWatcher::store(const std::string& path) {
    const auto clip = environment_.store.insert({}, ClipKind::image, {.app = "Screenshot", .bundleId = {}}, path);
    environment_.toast.show({path, "Screenshot captured", "In your hoard — reading text…"},
                            CaptureToast::Occasion::answer);
    work_.addNext([this, id = clip ? clip->id : 0, path] {
        tell();
        if (id != 0) recognize(id, path);
    });
}

void ScreenshotWatcher::recognize(std::int64_t id, const std::string& path) {
    environment_.ocr.recognizeText(path, platform::QualityOfService::utility,
                                   [weak = std::weak_ptr(self_), &store = environment_.store,
                                    &runLoop = environment_.runLoop, id](const std::string& text) {
                                       if (text.empty()) return;
                                       store.updateText(id, text);
                                       // In a turn of its own, so that keys are answered in between.
                                       runLoop.async([weak] {
                                           if (const auto self = weak.lock()) (*self)->tell();
                                       });
                                   });
}

void ScreenshotWatcher::tell() const {
    if (onCapture) onCapture();
}

}  // namespace brimquill

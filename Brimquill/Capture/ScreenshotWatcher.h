#pragma once

#include "Brimquill/Capture/OCRService.h"
#include "Brimquill/Capture/OrderedWork.h"
#include "Brimquill/Settings/AppSettings.h"
#include "Platform/FolderWatcher.h"
#include "Platform/ScreenCapture.h"
#include "Platform/UserDefaults.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>

namespace brimquill {

/// Follows the folder that screenshots are saved into: each new one becomes a clip, findable by the words in it. The
/// file itself stays as it is. Main thread.
class ScreenshotWatcher final {
public:
    /// What it works with; everything must outlive it. `screenCapture` holds the user's preferences for screenshots.
    struct Environment {
        ClipStore& store;
        AppSettings& settings;
        CaptureToast& toast;
        OCRService& ocr;
        platform::UserDefaults& screenCapture;
        platform::FolderWatcher& folderWatcher;
        platform::RunLoop& runLoop;
        platform::ScreenCapture& desktop;
    };

    explicit ScreenshotWatcher(Environment environment) : environment_(environment), work_(environment_.runLoop) {}

    /// Called whenever the clips changed.
    std::function<void()> onCapture;

    /// Takes what is saved from now on. Logs it when the folder cannot be watched.
    void start();
    void stop();

    /// The folder that the preferences name, else that into which the desktop's own tool saves, else the user's desktop
    /// folder. Looked up at each start.
    std::filesystem::path directory() const;

private:
    void changed();
    void scan();
    bool isNew(const std::filesystem::directory_entry& entry) const;
    void ingest(const std::filesystem::path& file);
    void store(const std::string& path);
    void recognize(std::int64_t id, const std::string& path);
    void tell() const;

    Environment environment_;
    OrderedWork work_;
    std::filesystem::path directory_;
    Date startedAt_;
    /// The names taken so far in this run.
    std::set<std::string> processed_;
    /// Gone with this object; what was read later finds nobody.
    std::shared_ptr<ScreenshotWatcher*> self_ = std::make_shared<ScreenshotWatcher*>(this);
    platform::Token watch_, secondScan_, thirdScan_;
};

}  // namespace brimquill

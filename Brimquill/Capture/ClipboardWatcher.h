#pragma once

#include "Brimquill/Capture/ClipboardKeeper.h"
#include "Brimquill/Capture/OrderedWork.h"
#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Settings/AppSettings.h"
#include "Brimquill/Surfaces/CaptureToast.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/EventMonitors.h"
#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"
#include "Platform/Workspace.h"

#include <QObject>

#include <functional>
#include <future>
#include <string>
#include <vector>

namespace brimquill {

/// Turns each copy made on the desktop into a stored clip, unless it may not be captured, and publishes the list that
/// the popover shows. Lives as long as the process. Main thread.
class ClipboardWatcher final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int capturedToday READ capturedToday NOTIFY capturedTodayChanged)

public:
    /// Reads the words off the picture file at a path; the completion gets them on the main thread, empty when there
    /// are none.
    using RecognizeText = std::function<void(const std::string& path, platform::QualityOfService qos,
                                             std::function<void(std::string text)> completion)>;
    /// What it works with; everything must outlive it.
    struct Environment {
        ClipStore& store;
        AppSettings& settings;
        PasteService& pasteService;
        CaptureToast& toast;
        /// Null when pictures cannot be read.
        RecognizeText recognizeText;
        NotificationCenter& center;
        platform::Pasteboard& pasteboard;
        platform::Workspace& workspace;
        platform::EventMonitors& eventMonitors;
        platform::RunLoop& runLoop;
        /// The first list, when somebody reads it already; none: `start` reads it.
        std::shared_future<std::vector<ClipItem>> firstItems = {};
    };
    /// The list that answers the empty query. Any thread.
    static std::vector<ClipItem> allItems(ClipStore& store);

    /// What lies on the pasteboard now is never captured.
    explicit ClipboardWatcher(Environment environment);

    /// Starts capturing. To be called once.
    void start();
    /// Makes `items` answer `query` from now on, the empty one meaning everything.
    void reload(const std::string& query);

    /// The clips of the last search, at most 200 by text and what matches by name or tag.
    const std::vector<ClipItem>& items() const { return items_; }
    /// How many clips were captured since midnight.
    int capturedToday() const { return capturedToday_; }

Q_SIGNALS:
    void itemsChanged();
    void capturedTodayChanged();

private:
    /// Where a copy comes from, and what of its words the toast shows.
    using Source = ClipStore::Source;

    void noteKey(const platform::Event& event);
    void sweep();
    void checkPasteboard();
    bool mayCaptureChange(int changeCount, const std::optional<platform::RunningApplication>& application) const;
    bool mayCapture(const std::optional<platform::RunningApplication>& application) const;
    void captureFiles(const std::vector<std::string>& paths, const Source& source);
    void captureGifFile(const std::string& path, const Source& source);
    void captureText(const std::string& text, const Source& source);
    void noteSecret(int changeCount, const std::string& text, Date expiry, const std::optional<ClipItem>& stored);
    void captureImage(const Source& source);
    void storePicture(const std::string& path, const Source& source, const std::string& toastTitle, bool recognizes);
    void recognize(std::int64_t id, const std::string& path);
    /// Tells of the clip just stored in a turn of its own, then runs `then`.
    void finishCapture(ClipKind kind, const std::function<void()>& then = nullptr);
    void didCapture(ClipKind kind);
    void refreshItems();
    std::string newPicturePath(const char* extension) const;
    void showToast(const CaptureToast::Content& content);

    Environment environment_;
    ClipboardKeeper keeper_;
    OrderedWork work_;
    std::vector<ClipItem> items_;
    int capturedToday_ = 0;
    int lastChangeCount_;
    /// On the run loop's `uptime` clock.
    double lastCmdC_ = 0;
    std::string lastSearch_;
    platform::Token timer_, sweepTimer_, copyKeyMonitor_;
};

}  // namespace brimquill

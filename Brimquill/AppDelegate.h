#pragma once

#include "Brimquill/Capture/ClipboardWatcher.h"
#include "Brimquill/Capture/OCRService.h"
#include "Brimquill/Capture/ScreenshotWatcher.h"
#include "Brimquill/Capture/SecureInputMonitor.h"
#include "Brimquill/Palette/PickerPanelController.h"
#include "Brimquill/Paste/HotKeyCenter.h"
#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Paste/StackManager.h"
#include "Brimquill/Settings/AppSettings.h"
#include "Brimquill/Surfaces/CaptureToastPanel.h"
#include "Brimquill/Surfaces/EditPanelController.h"
#include "Brimquill/Surfaces/HUDPanel.h"
#include "Brimquill/Surfaces/TagPanelController.h"
#include "Brimquill/Views/ViewHost.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/Services.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimquill {

/// The program's frame: builds the services and panels, starts them in one order, and connects them. No rules of their
/// own stand here. Main thread.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    /// What it works with; everything must outlive it. `screenCapture` holds the desktop's preferences for screenshots,
    /// `arguments` the command line.
    struct Environment {
        platform::Services& services;
        ClipStore& store;
        AppSettings& settings;
        NotificationCenter& center;
        platform::UserDefaults& screenCapture;
        std::vector<std::string> arguments;
        /// Shows the welcome tour. Absent: there is none, and whoever opens the program again gets the palette.
        std::function<void()> showTour = {};
        /// As `ClipboardWatcher` takes it.
        std::shared_future<std::vector<ClipItem>> firstItems = {};
    };

    /// Starts nothing.
    explicit AppDelegate(Environment environment);

    /// Starts everything. To be called once.
    void applicationDidFinishLaunching();
    /// The program was opened again while it runs.
    void applicationShouldHandleReopen();

    ClipboardWatcher& watcher() { return watcher_; }
    PasteService& pasteService() { return pasteService_; }
    HUDPanel& hud() { return hud_; }
    CaptureToastPanel& toast() { return toast_; }
    TagPanelController& tagPanel() { return tagPanel_; }
    EditPanelController& editPanel() { return editPanel_; }
    ViewHost& viewHost() { return viewHost_; }
    PickerPanelController& palette() { return palette_; }

private:
    void connectSettings();
    void registerHotKeys();
    void snip();
    void pasteNextFromStack();
    void finishSnip(const std::optional<ClipItem>& captured);
    void applyLaunchAtLogin();
    bool isTourDue() const;

    Environment environment_;
    platform::Services& services_;
    ClipStore& store_;
    AppSettings& settings_;
    ViewHost viewHost_;
    HUDPanel hud_;
    CaptureToastPanel toast_;
    TagPanelController tagPanel_;
    EditPanelController editPanel_;
    int snipsUnderWay_ = 0;
    PasteService pasteService_;
    StackManager stack_;
    OCRService ocr_;
    ClipboardWatcher watcher_;
    SecureInputMonitor secureInput_;
    ScreenshotWatcher screenshots_;
    PickerModel picker_;
    PickerActions pickerActions_;
    PickerPanelController palette_;
    HotKeyCenter hotKeys_;
};

}  // namespace brimquill

#pragma once

#include "Brimquill/Capture/ClipboardWatcher.h"
#include "Brimquill/Paste/HotKeyCenter.h"
#include "Brimquill/Paste/PasteService.h"
#include "Brimquill/Settings/AppSettings.h"
#include "Brimquill/Surfaces/CaptureToastPanel.h"
#include "Brimquill/Surfaces/HUDPanel.h"
#include "Brimquill/Views/ViewHost.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/Services.h"

#include <QObject>

namespace brimquill {

/// The program's frame: builds the services and panels, starts them in one order, and connects them. No rules of their
/// own stand here. Main thread.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    /// All must outlive it. Starts nothing.
    AppDelegate(platform::Services& services, ClipStore& store, AppSettings& settings, NotificationCenter& center);

    /// Starts everything. To be called once.
    void applicationDidFinishLaunching();
    /// The program was opened again while it runs.
    void applicationShouldHandleReopen();

    ClipboardWatcher& watcher() { return watcher_; }
    PasteService& pasteService() { return pasteService_; }
    HUDPanel& hud() { return hud_; }
    CaptureToastPanel& toast() { return toast_; }
    ViewHost& viewHost() { return viewHost_; }

private:
    void connectSettings();
    void prepareViews();

    platform::Services& services_;
    ClipStore& store_;
    AppSettings& settings_;
    ViewHost viewHost_;
    HUDPanel hud_;
    CaptureToastPanel toast_;
    PasteService pasteService_;
    ClipboardWatcher watcher_;
    HotKeyCenter hotKeys_;
};

}  // namespace brimquill

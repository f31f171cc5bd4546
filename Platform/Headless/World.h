#pragma once

#include "Platform/Headless/HeadlessCapture.h"
#include "Platform/Headless/HeadlessDefaults.h"
#include "Platform/Headless/HeadlessDesktop.h"
#include "Platform/Headless/HeadlessEventMonitors.h"
#include "Platform/Headless/HeadlessHotKeys.h"
#include "Platform/Headless/HeadlessPanels.h"
#include "Platform/Headless/HeadlessPasteboard.h"
#include "Platform/Headless/HeadlessRunLoop.h"
#include "Platform/Headless/HeadlessSyntheticKeys.h"
#include "Platform/Headless/HeadlessWorkspace.h"
#include "Platform/Services.h"

#include <string>

namespace brimquill::platform {

/// What became of a key that was pressed while a panel had the keyboard.
enum class Delivery { swallowed, passed };

/// A whole desktop in memory, for tests and for machines without one: time is virtual, nothing happens by itself, every
/// service records what was asked of it and can be told what to answer. As many as wanted live side by side.
class World final : public Services {
public:
    World() = default;

    /// Runs what is due now; moves the clock and runs what falls due on the way.
    void run() { runLoop_.run(); }
    void advance(double seconds) { runLoop_.advance(seconds); }

    /// Seconds that pass with every copy: people do not copy twice in the same instant.
    static constexpr double copyTime = 0.02;
    /// Another program copies, and what falls due in the time of a copy runs.
    void copy(const ForeignCopy& copy);
    void copyText(const std::string& text);
    void copyFiles(const std::vector<std::string>& paths);

    /// A key goes down while one of our panels has the keyboard.
    Delivery press(int keyCode, Modifiers modifiers = {}, const std::string& characters = {});
    /// A key goes down in another program.
    void globalKey(int keyCode, Modifiers modifiers = {}, const std::string& characters = {});
    /// The held modifiers change to these; our monitors see it locally when a panel of ours has the keyboard.
    void changeModifiers(Modifiers modifiers);
    /// A mouse button goes down at a point, in one of our panels or elsewhere.
    void click(Point point);

    HeadlessRunLoop& runLoop() override { return runLoop_; }
    HeadlessPasteboard& pasteboard() override { return pasteboard_; }
    HeadlessWorkspace& workspace() override { return workspace_; }
    HeadlessEventMonitors& eventMonitors() override { return eventMonitors_; }
    HeadlessHotKeys& hotKeys() override { return hotKeys_; }
    HeadlessSyntheticKeys& syntheticKeys() override { return syntheticKeys_; }
    HeadlessAccessibility& accessibility() override { return accessibility_; }
    HeadlessScreens& screens() override { return screens_; }
    HeadlessPanels& panels() override { return panels_; }
    HeadlessDefaults& defaults() override { return defaults_; }
    HeadlessAppearance& appearance() override { return appearance_; }
    HeadlessOpenPanel& openPanel() override { return openPanel_; }
    HeadlessTextRecognizer& textRecognizer() override { return textRecognizer_; }
    HeadlessScreenCapture& screenCapture() override { return screenCapture_; }
    HeadlessFolderWatcher& folderWatcher() override { return folderWatcher_; }
    HeadlessSecureInput& secureInput() override { return secureInput_; }
    HeadlessInstance& instance() override { return instance_; }
    HeadlessLoginItem& loginItem() override { return loginItem_; }

private:
    Event event(EventType type, Modifiers modifiers) const;

    HeadlessRunLoop runLoop_;
    HeadlessPasteboard pasteboard_{runLoop_};
    HeadlessWorkspace workspace_;
    HeadlessEventMonitors eventMonitors_;
    HeadlessHotKeys hotKeys_;
    HeadlessSyntheticKeys syntheticKeys_;
    HeadlessAccessibility accessibility_;
    HeadlessScreens screens_;
    HeadlessPanels panels_;
    HeadlessDefaults defaults_;
    HeadlessAppearance appearance_;
    HeadlessOpenPanel openPanel_{runLoop_};
    HeadlessTextRecognizer textRecognizer_{runLoop_};
    HeadlessScreenCapture screenCapture_{runLoop_};
    HeadlessFolderWatcher folderWatcher_;
    HeadlessSecureInput secureInput_;
    HeadlessInstance instance_;
    HeadlessLoginItem loginItem_;
};

}  // namespace brimquill::platform

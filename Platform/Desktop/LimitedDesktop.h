#pragma once

#include "Platform/Desktop/DesktopAppearance.h"
#include "Platform/Desktop/DesktopFolderWatcher.h"
#include "Platform/Desktop/DesktopInstance.h"
#include "Platform/Desktop/DesktopLoginItem.h"
#include "Platform/Desktop/DesktopOpenPanel.h"
#include "Platform/Desktop/DesktopRunLoop.h"
#include "Platform/Desktop/DesktopScreenCapture.h"
#include "Platform/Desktop/DesktopTextRecognizer.h"
#include "Platform/Desktop/LocalMonitors.h"
#include "Platform/Headless/HeadlessPasteboard.h"
#include "Platform/Services.h"

#include <string>

namespace brimquill::platform {

/// A desktop of which only the toolkit is known: windows, files and time work; there are no global keys, no keys
/// pressed for the user, no knowledge of other programs, and the clipboard is the program's own.
class LimitedDesktop final : public Services {
public:
    LimitedDesktop(std::unique_ptr<UserDefaults> defaults, const std::string& dataDirectory);
    ~LimitedDesktop() override;

    RunLoop& runLoop() override { return runLoop_; }
    Pasteboard& pasteboard() override { return pasteboard_; }
    Workspace& workspace() override;
    EventMonitors& eventMonitors() override;
    HotKeys& hotKeys() override;
    SyntheticKeys& syntheticKeys() override;
    Accessibility& accessibility() override;
    Screens& screens() override;
    Panels& panels() override;
    UserDefaults& defaults() override { return *defaults_; }
    SystemAppearance& appearance() override { return appearance_; }
    OpenPanel& openPanel() override { return openPanel_; }
    TextRecognizer& textRecognizer() override { return textRecognizer_; }
    ScreenCapture& screenCapture() override { return screenCapture_; }
    FolderWatcher& folderWatcher() override { return folderWatcher_; }
    SecureInput& secureInput() override;
    Instance& instance() override { return instance_; }
    LoginItem& loginItem() override { return loginItem_; }

private:
    struct Refusals;
    const std::unique_ptr<DesktopRunLoop, DesktopRunLoop::End> ownedRunLoop_ = DesktopRunLoop::make();
    DesktopRunLoop& runLoop_ = *ownedRunLoop_;
    HeadlessPasteboard pasteboard_{runLoop_};
    std::unique_ptr<UserDefaults> defaults_;
    DesktopAppearance appearance_;
    DesktopOpenPanel openPanel_;
    DesktopTextRecognizer textRecognizer_{runLoop_, {}};
    DesktopScreenCapture screenCapture_{runLoop_, {}};
    DesktopFolderWatcher folderWatcher_;
    DesktopInstance instance_;
    DesktopLoginItem loginItem_{autostartDirectory(), programPath()};
    std::unique_ptr<Refusals> refusals_;
};

}  // namespace brimquill::platform

#include "Platform/X11/X11Desktop.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/DesktopAppearance.h"
#include "Platform/Desktop/DesktopFolderWatcher.h"
#include "Platform/Desktop/DesktopInstance.h"
#include "Platform/Desktop/DesktopLoginItem.h"
#include "Platform/Desktop/DesktopOpenPanel.h"
#include "Platform/Desktop/DesktopRunLoop.h"
#include "Platform/Desktop/DesktopScreenCapture.h"
#include "Platform/Desktop/DesktopTextRecognizer.h"
#include "Platform/X11/X11Accessibility.h"
#include "Platform/X11/X11EventMonitors.h"
#include "Platform/X11/X11HotKeys.h"
#include "Platform/X11/X11Panels.h"
#include "Platform/X11/X11Pasteboard.h"
#include "Platform/X11/X11Screens.h"
#include "Platform/X11/X11SecureInput.h"
#include "Platform/X11/X11SyntheticKeys.h"
#include "Platform/X11/X11Workspace.h"

#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace brimquill::platform {
namespace {

class X11Desktop final : public Services {
public:
    X11Desktop(xcb_connection_t* interface, std::unique_ptr<UserDefaults> defaults, const std::string& dataDirectory)
        : panels_(connection_, interface, runLoop_),
          hotKeys_(interface, connection_, input_, runLoop_),
          defaults_(std::move(defaults)),
          instance_(dataDirectory) {}

    bool isAlive() const { return connection_.isAlive(); }
    bool canWatch() const { return input_.isAvailable(); }

    RunLoop& runLoop() override { return runLoop_; }
    Pasteboard& pasteboard() override { return pasteboard_; }
    Workspace& workspace() override { return workspace_; }
    EventMonitors& eventMonitors() override { return eventMonitors_; }
    HotKeys& hotKeys() override { return hotKeys_; }
    SyntheticKeys& syntheticKeys() override { return syntheticKeys_; }
    Accessibility& accessibility() override { return accessibility_; }
    Screens& screens() override { return screens_; }
    Panels& panels() override { return panels_; }
    UserDefaults& defaults() override { return *defaults_; }
    SystemAppearance& appearance() override { return appearance_; }
    OpenPanel& openPanel() override { return openPanel_; }
    TextRecognizer& textRecognizer() override { return textRecognizer_; }
    ScreenCapture& screenCapture() override { return screenCapture_; }
    FolderWatcher& folderWatcher() override { return folderWatcher_; }
    SecureInput& secureInput() override { return secureInput_; }
    Instance& instance() override { return instance_; }
    LoginItem& loginItem() override { return loginItem_; }

private:
    X11EventMonitors::Ownership ownership() {
        X11EventMonitors::Ownership ownership;
        // A panel that has just closed counts as focused for a while yet; its grab is what tells.
        ownership.ownsKeyboard = [this] {
            const QWindow* focus = QGuiApplication::focusWindow();
            return panels_.holdsKeyboard() || (focus != nullptr && !panels_.isPanel(focus));
        };
        ownership.ownsPoint = [this](Point point) {
            const QWindow* window =
                QGuiApplication::topLevelAt(QPoint(static_cast<int>(point.x), static_cast<int>(point.y)));
            return panels_.takesClick(point) || (window != nullptr && !panels_.isPanel(window));
        };
        ownership.mouseLocation = [this] { return screens_.mouseLocation(); };
        return ownership;
    }

    const std::unique_ptr<DesktopRunLoop, DesktopRunLoop::End> ownedRunLoop_ = DesktopRunLoop::make();
    DesktopRunLoop& runLoop_ = *ownedRunLoop_;
    X11Connection connection_;
    X11InjectedKeys injected_;
    X11RawInput input_{injected_};
    X11Screens screens_{connection_};
    X11Panels panels_;
    X11EventMonitors eventMonitors_{connection_, input_, ownership()};
    X11HotKeys hotKeys_;
    X11Pasteboard pasteboard_{runLoop_};
    X11SyntheticKeys syntheticKeys_{injected_, runLoop_, [this] { pasteboard_.offerPrimary(); }};
    X11Accessibility accessibility_{syntheticKeys_.isAvailable(), input_.isAvailable()};
    X11Workspace workspace_{connection_};
    X11SecureInput secureInput_{connection_, workspace_, runLoop_,
                                [this] { return panels_.holdsKeyboard() || screenCapture_.isUnderWay(); }};
    std::unique_ptr<UserDefaults> defaults_;
    DesktopAppearance appearance_;
    DesktopOpenPanel openPanel_;
    DesktopTextRecognizer textRecognizer_{runLoop_, {}};
    DesktopScreenCapture screenCapture_{runLoop_, {}};
    DesktopFolderWatcher folderWatcher_;
    DesktopInstance instance_;
    DesktopLoginItem loginItem_{autostartDirectory(), programPath()};
};

}  // namespace

std::unique_ptr<Services> createX11Desktop(std::unique_ptr<UserDefaults>& defaults, const std::string& dataDirectory,
                                           std::string& reason) {
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    auto* x11 = application == nullptr ? nullptr : application->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        reason = "the user interface runs on " + QGuiApplication::platformName().toStdString() + ", not on X11";
        return nullptr;
    }
    if (!X11Connection().isAlive()) {
        reason = "no further connection to the X server can be made";
        return nullptr;
    }
    auto desktop = std::make_unique<X11Desktop>(x11->connection(), std::move(defaults), dataDirectory);
    if (!desktop->canWatch()) log::write("keys of other programs cannot be observed: the X server has no XInput 2.2");
    if (!desktop->accessibility().isProcessTrusted()) log::write("keys cannot be pressed or observed on this display");
    return desktop;
}

}  // namespace brimquill::platform

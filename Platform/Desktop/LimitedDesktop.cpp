#include "Platform/Desktop/LimitedDesktop.h"

#include "Platform/Desktop/DesktopFiles.h"
#include "Platform/Desktop/DesktopIcons.h"
#include "Platform/Desktop/DesktopOpener.h"
#include "Platform/Desktop/ScreenChanges.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace brimquill::platform {
namespace {

Rect rectOf(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

class LimitedWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
    RunningApplication currentApplication() const override { return thisApplication(); }
    std::optional<Image> icon(const std::string& bundleIdentifier, int size) override {
        const auto file = files_.byId(bundleIdentifier);
        return file && !file->icon.empty() ? icons_.icon(file->icon, size) : std::nullopt;
    }
    std::optional<Image> iconForFile(const std::string& path, int size) override {
        return icons_.iconForFile(path, size);
    }
    bool open(const std::string& url) override { return openWithDesktop(url); }

private:
    DesktopFiles files_;
    DesktopIcons icons_;
};

class LimitedMonitors final : public EventMonitors {
public:
    Token addGlobalMonitor(EventMask, std::function<void(const Event&)>) override { return nullptr; }
    Token addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) override {
        return local_.add(mask, std::move(handler));
    }

private:
    LocalMonitors local_{eventFromQt};
};

class NoHotKeys final : public HotKeys {
    Registration registerHotKey(int, Modifiers, std::function<void()>) override { return {}; }
};

class NoSyntheticKeys final : public SyntheticKeys {
    bool post(int, Modifiers) override { return false; }
    bool type(const std::string&) override { return false; }
};

class NoAccessibility final : public Accessibility {
    bool isProcessTrusted() override { return false; }
    bool isProcessTrustedWithPrompt() override { return false; }
};

class LimitedScreens final : public Screens {
    std::optional<Screen> main() override {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (screen == nullptr) return std::nullopt;
        return Screen{rectOf(screen->geometry()), rectOf(screen->availableGeometry()), screen->devicePixelRatio()};
    }
    Point mouseLocation() override {
        const QPoint pointer = QCursor::pos();
        return {static_cast<double>(pointer.x()), static_cast<double>(pointer.y())};
    }
    Token observe(std::function<void()> changed) override { return changes_.observe(std::move(changed)); }

    ScreenChanges changes_;
};

/// A plain window: it takes the focus as any window does.
class WindowPanel final : public Panel {
public:
    WindowPanel(QWindow& window, PanelRole role) : window_(window), role_(role) {
        Qt::WindowFlags flags = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool;
        if (role != PanelRole::keyable) flags |= Qt::WindowDoesNotAcceptFocus;
        if (role == PanelRole::display) flags |= Qt::WindowTransparentForInput;
        window_.setFlags(flags);
    }
    ~WindowPanel() override { close(); }
    bool show(Rect frame) override {
        setFrame(frame);
        window_.show();
        if (role_ == PanelRole::keyable) window_.requestActivate();
        return true;
    }
    void close() override { window_.hide(); }
    bool isVisible() const override { return window_.isVisible(); }
    bool isKey() const override { return window_.isVisible() && window_.isActive(); }
    /// Who clicks elsewhere moves the focus away by that.
    void resignKey() override {}
    void setFrame(Rect frame) override {
        window_.setGeometry(QRectF(frame.x, frame.y, frame.width, frame.height).toRect());
    }
    /// Nothing is translucent here, so nothing has a shadow.
    void setClickMargin(double) override {}

private:
    QWindow& window_;
    PanelRole role_;
};

class LimitedPanels final : public Panels {
    std::unique_ptr<Panel> makePanel(QWindow& window, PanelRole role) override {
        return std::make_unique<WindowPanel>(window, role);
    }
    bool isTranslucencyAvailable() override { return false; }
};

class NoSecureInput final : public SecureInput {
    bool isEnabled() override { return false; }
    Token observe(std::function<void()>) override { return nullptr; }
    std::optional<std::string> holderName() override { return std::nullopt; }
};

}  // namespace

struct LimitedDesktop::Refusals {
    LimitedWorkspace workspace;
    LimitedMonitors eventMonitors;
    NoHotKeys hotKeys;
    NoSyntheticKeys syntheticKeys;
    NoAccessibility accessibility;
    LimitedScreens screens;
    LimitedPanels panels;
    NoSecureInput secureInput;
};

LimitedDesktop::LimitedDesktop(std::unique_ptr<UserDefaults> defaults, const std::string& dataDirectory)
    : defaults_(std::move(defaults)), instance_(dataDirectory), refusals_(std::make_unique<Refusals>()) {}

LimitedDesktop::~LimitedDesktop() = default;

Workspace& LimitedDesktop::workspace() {
    return refusals_->workspace;
}
EventMonitors& LimitedDesktop::eventMonitors() {
    return refusals_->eventMonitors;
}
HotKeys& LimitedDesktop::hotKeys() {
    return refusals_->hotKeys;
}
SyntheticKeys& LimitedDesktop::syntheticKeys() {
    return refusals_->syntheticKeys;
}
Accessibility& LimitedDesktop::accessibility() {
    return refusals_->accessibility;
}
Screens& LimitedDesktop::screens() {
    return refusals_->screens;
}
Panels& LimitedDesktop::panels() {
    return refusals_->panels;
}
SecureInput& LimitedDesktop::secureInput() {
    return refusals_->secureInput;
}

}  // namespace brimquill::platform

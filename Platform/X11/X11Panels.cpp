#include "Platform/X11/X11Panels.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSurfaceFormat>
#include <QWindow>

#include <xcb/xfixes.h>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace brimquill::platform {
namespace {

/// The shape extension's name for where a window takes clicks.
constexpr std::uint8_t inputShape = 2;

QRect rectOf(Rect frame) {
    return QRectF(frame.x, frame.y, frame.width, frame.height).toRect();
}

Qt::WindowFlags flagsOf(PanelRole role) {
    const Qt::WindowFlags common =
        Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::BypassWindowManagerHint | Qt::Tool;
    switch (role) {
        case PanelRole::keyable:
            return common;
        case PanelRole::passive:
            return common | Qt::WindowDoesNotAcceptFocus;
        case PanelRole::display:
            return common | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput;
    }
    return common;
}

}  // namespace

/// Which panels are up, and whose the keyboard is. The panels share it, so that it may go before or after them.
struct X11Panels::State {
    State(xcb_connection_t* connection, RunLoop& loop) : interface(connection), runLoop(loop) {}

    /// Asks for the keyboard for the panel shown last; while another program holds it (an open menu, say), again and
    /// again.
    void claimKeyboard();
    void releaseKeyboard();
    void syncInterface() const;

    xcb_connection_t* interface;
    RunLoop& runLoop;
    std::vector<X11Panel*> panels;
    std::vector<X11Panel*> keyOrder;
    X11Panel* keyPanel = nullptr;
    int attempts = 0;
    Token retry;
};

class X11Panels::X11Panel final : public Panel {
public:
    X11Panel(std::shared_ptr<State> state, QWindow& window, PanelRole role)
        : state_(std::move(state)), window_(window), role_(role) {
        window_.setFlags(flagsOf(role));
        if (window_.handle() == nullptr) {
            QSurfaceFormat format = window_.requestedFormat();
            format.setAlphaBufferSize(8);
            window_.setFormat(format);
        }
        window_.create();  // once: a window that exists is on the screen sooner
        state_->panels.push_back(this);
        // Somebody else may hide the window; the keyboard must not stay with it.
        if (role == PanelRole::keyable) window_.installEventFilter(&presses_);
        hidden_ = QObject::connect(&window_, &QWindow::visibleChanged, [this](bool visible) {
            if (!visible) close();
        });
    }
    ~X11Panel() override {
        close();
        QObject::disconnect(hidden_);
        std::erase(state_->panels, this);
    }

    bool show(Rect frame) override {
        setFrame(frame);
        isVisible_ = true;
        window_.show();
        window_.raise();
        state_->syncInterface();
        if (role_ == PanelRole::keyable) becomeKey();
        return true;
    }
    void close() override {
        if (!std::exchange(isVisible_, false)) return;
        resignKey();
        window_.hide();
        state_->syncInterface();
    }
    bool isVisible() const override { return isVisible_; }
    bool isKey() const override { return state_->keyPanel == this; }
    void resignKey() override {
        std::erase(state_->keyOrder, this);
        if (state_->keyPanel == this || state_->keyOrder.empty()) state_->releaseKeyboard();
    }
    void setFrame(Rect frame) override {
        frame_ = frame;
        window_.setGeometry(rectOf(frame));
        if (role_ != PanelRole::display) shapeInput();
    }
    void setClickMargin(double points) override { clickMargin_ = points; }

    bool grab() { return window_.setKeyboardGrabEnabled(true); }
    void ungrab() { window_.setKeyboardGrabEnabled(false); }
    const QWindow* window() const { return &window_; }
    bool takesClick(Point point) const {
        return isVisible_ && role_ != PanelRole::display && clickFrame().contains(point);
    }

private:
    /// Tells its panel of clicks on the window.
    class Presses final : public QObject {
    public:
        explicit Presses(X11Panel& panel) : panel_(panel) {}
        bool eventFilter(QObject* watched, QEvent* event) override {
            if (event->type() == QEvent::MouseButtonPress) panel_.clicked();
            return QObject::eventFilter(watched, event);
        }

    private:
        X11Panel& panel_;
    };

    Rect clickFrame() const {
        return {frame_.x + clickMargin_, frame_.y + clickMargin_, frame_.width - 2 * clickMargin_,
                frame_.height - 2 * clickMargin_};
    }
    /// The margin stays visible; the server alone leaves it out when it looks for the window under the pointer.
    void shapeInput() {
        const double scale = window_.devicePixelRatio(), margin = clickMargin_ * scale;
        const QRect inside =
            QRectF(margin, margin, frame_.width * scale - 2 * margin, frame_.height * scale - 2 * margin)
                .toRect()
                .intersected({0, 0, 32767, 32767});
        const xcb_rectangle_t rectangle{static_cast<std::int16_t>(inside.x()), static_cast<std::int16_t>(inside.y()),
                                        static_cast<std::uint16_t>(inside.width()),
                                        static_cast<std::uint16_t>(inside.height())};
        xcb_connection_t* const xcb = state_->interface;
        const auto window = static_cast<xcb_window_t>(window_.winId());
        const bool isWhole = clickMargin_ <= 0;
        const xcb_xfixes_region_t region = isWhole ? XCB_NONE : xcb_generate_id(xcb);
        if (!isWhole) xcb_xfixes_create_region(xcb, region, 1, &rectangle);
        xcb_xfixes_set_window_shape_region(xcb, window, inputShape, 0, 0, region);
        if (!isWhole) xcb_xfixes_destroy_region(xcb, region);
    }
    void becomeKey() {
        std::erase(state_->keyOrder, this);
        state_->keyOrder.push_back(this);
        state_->attempts = 0;
        state_->claimKeyboard();
    }
    void clicked() {
        if (!isVisible_ || isKey()) return;
        state_->keyOrder.clear();
        becomeKey();
    }

    std::shared_ptr<State> state_;
    QWindow& window_;
    PanelRole role_;
    Rect frame_;
    double clickMargin_ = 0;
    bool isVisible_ = false;
    QMetaObject::Connection hidden_;
    Presses presses_{*this};
};

void X11Panels::State::claimKeyboard() {
    retry.reset();
    if (keyOrder.empty()) return;
    if (keyOrder.back()->grab()) {
        keyPanel = keyOrder.back();
        return;
    }
    // Often at first, for what lets go at once (a window manager's own key binding); then at a pace that costs nothing.
    constexpr int quickAttempts = 15;
    const double pause = ++attempts <= quickAttempts ? 0.02 : 0.1;
    retry = runLoop.after(pause, [this] { claimKeyboard(); });
}

/// To the panel below, if there is one; else to the program that has the focus.
void X11Panels::State::releaseKeyboard() {
    retry.reset();
    X11Panel* const before = std::exchange(keyPanel, nullptr);
    if (!keyOrder.empty()) {
        attempts = 0;
        claimKeyboard();
    } else if (before != nullptr) {
        before->ungrab();
    }
}

void X11Panels::State::syncInterface() const {
    const X11Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(interface, xcb_get_input_focus(interface), nullptr));
}

X11Panels::X11Panels(X11Connection& connection, xcb_connection_t* interface, RunLoop& runLoop)
    : connection_(connection), state_(std::make_shared<State>(interface, runLoop)) {}

X11Panels::~X11Panels() {
    state_->retry.reset();
}

bool X11Panels::holdsKeyboard() const {
    return state_->keyPanel != nullptr;
}

bool X11Panels::isPanel(const QWindow* window) const {
    return std::any_of(state_->panels.begin(), state_->panels.end(),
                       [&](const X11Panel* panel) { return panel->window() == window; });
}

bool X11Panels::takesClick(Point point) const {
    return std::any_of(state_->panels.begin(), state_->panels.end(),
                       [&](const X11Panel* panel) { return panel->takesClick(point); });
}

std::unique_ptr<Panel> X11Panels::makePanel(QWindow& window, PanelRole role) {
    return std::make_unique<X11Panel>(state_, window, role);
}

bool X11Panels::isTranslucencyAvailable() {
    const xcb_atom_t compositor = connection_.atom("_NET_WM_CM_S" + std::to_string(connection_.screenNumber()));
    const X11Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection_.xcb(), xcb_get_selection_owner(connection_.xcb(), compositor), nullptr));
    return owner && owner->owner != XCB_NONE;
}

}  // namespace brimquill::platform

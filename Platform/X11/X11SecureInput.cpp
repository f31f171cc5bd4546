#include "Platform/X11/X11SecureInput.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brimquill::platform {

namespace {

/// Seconds that a hold must last to count.
constexpr double confirmationDelay = 0.5;

}  // namespace

X11SecureInput::X11SecureInput(X11Connection& connection, Workspace& workspace, RunLoop& runLoop,
                               std::function<bool()> ownsKeyboard)
    : connection_(connection), workspace_(workspace), runLoop_(runLoop), ownsKeyboard_(std::move(ownsKeyboard)) {
    if (!connection_.isAlive()) return;
    probe_ = xcb_generate_id(connection_.xcb());
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection_.xcb(), 0, probe_, connection_.root(), -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    xcb_map_window(connection_.xcb(), probe_);
    connection_.sync();
}

X11SecureInput::~X11SecureInput() {
    if (probe_ == XCB_NONE) return;
    xcb_destroy_window(connection_.xcb(), probe_);
    xcb_flush(connection_.xcb());
}

bool X11SecureInput::isEnabled() {
    if (!isHeld()) {
        confirmation_.reset();
        isEnabled_ = false;
    } else if (!isEnabled_ && !confirmation_) {
        confirmation_ = runLoop_.after(confirmationDelay, [this] { confirm(); });
    }
    return isEnabled_;
}

void X11SecureInput::confirm() {
    const Token confirmation = std::move(confirmation_);
    isEnabled_ = isHeld();
    if (isEnabled_) observers_.callAll();
}

bool X11SecureInput::isHeld() {
    return !ownsKeyboard_() && isKeyboardHeld() && !isMenuOpen();
}

std::optional<std::string> X11SecureInput::holderName() {
    if (!isEnabled_) return std::nullopt;
    const auto front = workspace_.frontmostApplication();
    return front ? front->localizedName : std::nullopt;
}

bool X11SecureInput::isKeyboardHeld() {
    if (!connection_.isAlive()) return false;
    auto* xcb = connection_.xcb();
    xcb_grab_server(xcb);
    const auto cookie = xcb_grab_keyboard(xcb, 0, probe_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
    xcb_ungrab_server(xcb);
    const X11Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(xcb, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool X11SecureInput::isPointerHeld() {
    auto* xcb = connection_.xcb();
    xcb_grab_server(xcb);
    const auto cookie = xcb_grab_pointer(xcb, 0, probe_, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                                         XCB_NONE, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(xcb, XCB_CURRENT_TIME);
    xcb_ungrab_server(xcb);
    const X11Reply<xcb_grab_pointer_reply_t> reply(xcb_grab_pointer_reply(xcb, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

/// Whether somebody's menu is what holds the keyboard. A menu has a window on the screen that is not the window
/// manager's, and holds the pointer too, to see a click elsewhere. A password dialog may hold both but has no such
/// window; a terminal with a secure keyboard leaves the pointer alone. That is asked last: taking a pointer that is
/// free makes the program below it believe for an instant that it left.
bool X11SecureInput::isMenuOpen() {
    const X11Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_.xcb(), xcb_query_tree(connection_.xcb(), connection_.root()), nullptr));
    if (!tree) return false;
    const auto* children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                       [this](xcb_window_t window) { return isMenu(window); }) &&
           isPointerHeld();
}

bool X11SecureInput::isMenu(xcb_window_t window) {
    static constexpr std::array menuTypes = {"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                             "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_COMBO"};
    auto* xcb = connection_.xcb();
    const X11Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !attributes->override_redirect) return false;
    const auto types = connection_.numbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM);
    const auto isOf = [&](const char* name) {
        return std::find(types.begin(), types.end(), connection_.atom(name)) != types.end();
    };
    if (std::any_of(menuTypes.begin(), menuTypes.end(), isOf)) return true;
    // Qt 6 calls context menus and lists of choices normal windows, but tells what they belong to. Panels and toasts
    // name another type first.
    const bool isPlain = types.empty() || types.front() == connection_.atom("_NET_WM_WINDOW_TYPE_NORMAL");
    return isPlain && !connection_.numbers(window, "WM_TRANSIENT_FOR", XCB_ATOM_WINDOW).empty();
}

}  // namespace brimquill::platform

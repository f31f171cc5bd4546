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

/// Whether somebody's menu is on the screen: such a window is not the window manager's and says what it is.
bool X11SecureInput::isMenuOpen() {
    const X11Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_.xcb(), xcb_query_tree(connection_.xcb(), connection_.root()), nullptr));
    if (!tree) return false;
    const auto* children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + xcb_query_tree_children_length(tree.get()),
                       [this](xcb_window_t window) { return isMenu(window); });
}

bool X11SecureInput::isMenu(xcb_window_t window) {
    static constexpr std::array menuTypes = {"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                             "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_COMBO"};
    auto* xcb = connection_.xcb();
    const X11Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE || !attributes->override_redirect) return false;
    const auto types = connection_.numbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM);
    return std::any_of(types.begin(), types.end(), [this](std::uint32_t type) {
        return std::any_of(menuTypes.begin(), menuTypes.end(),
                           [&](const char* name) { return connection_.atom(name) == type; });
    });
}

}  // namespace brimquill::platform

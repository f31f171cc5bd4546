#include "tests/platform/ForeignClient.h"

#include "Platform/X11/X11Modifiers.h"

#include <xcb/xtest.h>

#include <algorithm>

namespace brimquill::platform {

ForeignClient::ForeignClient() : window_(xcb_generate_id(connection_.xcb())) {
    const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(connection_.xcb(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, 20, 20, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                      values);
    xcb_map_window(connection_.xcb(), window_);
    connection_.sync();
}

void ForeignClient::fake(std::uint8_t type, const std::vector<xcb_keycode_t>& keycodes) {
    for (const xcb_keycode_t keycode : keycodes)
        xcb_test_fake_input(connection_.xcb(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    connection_.sync();
}

void ForeignClient::press(const std::vector<xcb_keycode_t>& keycodes) {
    keysDown(keycodes);
    keysUp({keycodes.rbegin(), keycodes.rend()});
}

void ForeignClient::click(int x, int y) {
    auto* xcb = connection_.xcb();
    xcb_warp_pointer(xcb, XCB_NONE, connection_.root(), 0, 0, 0, 0, static_cast<std::int16_t>(x),
                     static_cast<std::int16_t>(y));
    for (const std::uint8_t type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
        xcb_test_fake_input(xcb, type, 1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    connection_.sync();
}

void ForeignClient::takeFocus() {
    xcb_set_input_focus(connection_.xcb(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    connection_.sync();
}

std::optional<ForeignClient::Key> ForeignClient::nextKey() {
    connection_.sync();
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.xcb())}) {
        if ((event->response_type & 0x7f) != XCB_KEY_PRESS) continue;
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        const auto modifierKeys = {position::control, position::shift, position::alt, position::super};
        if (std::find(modifierKeys.begin(), modifierKeys.end(), press.detail) != modifierKeys.end()) continue;
        return Key{press.detail, static_cast<std::uint16_t>(press.state & x11_modifiers::compared)};
    }
    return std::nullopt;
}

bool ForeignClient::carries(xcb_keycode_t keycode, xcb_keysym_t symbol) {
    const X11Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        connection_.xcb(), xcb_get_keyboard_mapping(connection_.xcb(), keycode, 1), nullptr));
    if (!mapping) return false;
    const auto* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const auto* end = symbols + xcb_get_keyboard_mapping_keysyms_length(mapping.get());
    return std::find(symbols, end, symbol) != end;
}

bool ForeignClient::isDown(xcb_keycode_t keycode) {
    const X11Reply<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(connection_.xcb(), xcb_query_keymap(connection_.xcb()), nullptr));
    return keys && (keys->keys[keycode / 8] & (1 << (keycode % 8))) != 0;
}

bool ForeignClient::holdKeyboard() {
    auto* xcb = connection_.xcb();
    const X11Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, window_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void ForeignClient::releaseKeyboard() {
    xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);
    connection_.sync();
}

bool ForeignClient::holdKey(xcb_keycode_t keycode, std::uint16_t modifiers) {
    const auto cookie = xcb_grab_key_checked(connection_.xcb(), 1, connection_.root(), modifiers, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const X11Reply<xcb_generic_error_t> error(xcb_request_check(connection_.xcb(), cookie));
    return error == nullptr;
}

void ForeignClient::releaseKey(xcb_keycode_t keycode, std::uint16_t modifiers) {
    xcb_ungrab_key(connection_.xcb(), keycode, connection_.root(), modifiers);
    connection_.sync();
}

}  // namespace brimquill::platform

#pragma once

#include "Platform/X11/X11Connection.h"

#include <optional>
#include <vector>

namespace brimquill::platform {

/// The server's numbers of some keys of a PC keyboard.
namespace position {
inline constexpr xcb_keycode_t two = 11, y = 29, a = 38, b = 56, v = 55, control = 37, shift = 50, alt = 64,
                               super = 133;
}

/// Another client of the display. It presses keys, can have the focus and read what arrives, and can hold the keyboard
/// or one key of it. What it holds goes with it.
class ForeignClient final {
public:
    /// A key that arrived, with the modifiers then in force.
    struct Key {
        xcb_keycode_t keycode = 0;
        std::uint16_t modifiers = 0;
    };

    ForeignClient();

    void keysDown(const std::vector<xcb_keycode_t>& keycodes) { fake(XCB_KEY_PRESS, keycodes); }
    void keysUp(const std::vector<xcb_keycode_t>& keycodes) { fake(XCB_KEY_RELEASE, keycodes); }
    /// Down in this order, and up.
    void press(const std::vector<xcb_keycode_t>& keycodes);
    void click(int x, int y);

    void takeFocus();
    /// The next key that arrived, modifiers themselves left out.
    std::optional<Key> nextKey();
    /// Whether a symbol is on a key now.
    bool carries(xcb_keycode_t keycode, xcb_keysym_t symbol);
    bool isDown(xcb_keycode_t keycode);

    bool holdKeyboard();
    void releaseKeyboard();
    bool holdKey(xcb_keycode_t keycode, std::uint16_t modifiers);
    void releaseKey(xcb_keycode_t keycode, std::uint16_t modifiers);

private:
    void fake(std::uint8_t type, const std::vector<xcb_keycode_t>& keycodes);

    X11Connection connection_;
    xcb_window_t window_ = XCB_NONE;
};

}  // namespace brimquill::platform

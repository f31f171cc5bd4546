#pragma once

#include "Platform/EventMonitors.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The keyboard's layout as the server has it now. It is a copy: take a fresh one when the server says that the mapping
/// changed. Main thread.
class X11Keymap final {
public:
    explicit X11Keymap(xcb_connection_t* connection);

    /// False when the server has no XKB.
    bool isUsable() const { return keymap_ != nullptr; }
    /// The symbol of a key without modifiers; a Latin one from another group where the group has none.
    xkb_keysym_t plainKeysym(xkb_keycode_t keycode, unsigned group) const;
    /// Its symbol with the modifiers of a core protocol state.
    xkb_keysym_t keysym(xkb_keycode_t keycode, std::uint16_t mask, unsigned group) const;
    /// All keys that carry a virtual key code's symbol in some group, else the one where it usually is.
    std::vector<xkb_keycode_t> keycodes(int keyCode) const;

    /// Fills what a key event says of a key: its code and what it types. `mask` is the core protocol's state.
    void describe(Event& event, xkb_keycode_t keycode, std::uint16_t mask, unsigned group) const;

private:
    std::string typed(xkb_keycode_t keycode, xkb_mod_mask_t mask, unsigned group) const;
    xkb_keysym_t keysymAt(xkb_keycode_t keycode, unsigned group) const;

    struct Unref {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };
    std::unique_ptr<xkb_context, Unref> context_;
    std::unique_ptr<xkb_keymap, Unref> keymap_;
};

}  // namespace brimquill::platform

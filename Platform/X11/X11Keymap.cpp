#include "Platform/X11/X11Keymap.h"

#include "Platform/X11/X11Modifiers.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <array>

namespace brimquill::platform {
namespace {

bool isLatin(xkb_keysym_t keysym) {
    return keysym < 0x80 || keysym >= 0xfe00;
}

std::string withoutControlCharacters(std::string text) {
    if (text.size() == 1 && (static_cast<unsigned char>(text[0]) < ' ' || text[0] == '\x7f')) text.clear();
    return text;
}

}  // namespace

X11Keymap::X11Keymap(xcb_connection_t* connection) : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    const bool hasXkb =
        xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr) == 1;
    const int device = hasXkb ? xkb_x11_get_core_keyboard_device_id(connection) : -1;
    if (device < 0 || !context_) return;
    keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

xkb_keysym_t X11Keymap::keysymAt(xkb_keycode_t keycode, unsigned group) const {
    const xkb_keysym_t* keysyms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), keycode, group, 0, &keysyms);
    return count > 0 ? keysyms[0] : xkb_keysym_t{XKB_KEY_NoSymbol};
}

xkb_keysym_t X11Keymap::plainKeysym(xkb_keycode_t keycode, unsigned group) const {
    if (!keymap_) return XKB_KEY_NoSymbol;
    const unsigned groups = xkb_keymap_num_layouts_for_key(keymap_.get(), keycode);
    const xkb_keysym_t own = keysymAt(keycode, group < groups ? group : 0);
    for (unsigned other = 0; !isLatin(own) && other < groups; ++other) {
        if (const xkb_keysym_t keysym = keysymAt(keycode, other); isLatin(keysym)) return keysym;
    }
    return own;
}

xkb_keysym_t X11Keymap::keysym(xkb_keycode_t keycode, std::uint16_t mask, unsigned group) const {
    if (!keymap_) return XKB_KEY_NoSymbol;
    const std::unique_ptr<xkb_state, Unref> state(xkb_state_new(keymap_.get()));
    if (!state) return XKB_KEY_NoSymbol;
    xkb_state_update_mask(state.get(), mask & 0xffU, 0, 0, 0, 0, group);
    return xkb_state_key_get_one_sym(state.get(), keycode);
}

std::vector<xkb_keycode_t> X11Keymap::keycodes(int keyCode) const {
    std::vector<xkb_keycode_t> found;
    const xkb_keysym_t wanted = x11_modifiers::keysym(keyCode);
    if (!keymap_ || wanted == XKB_KEY_NoSymbol) return found;
    const xkb_keycode_t last = xkb_keymap_max_keycode(keymap_.get());
    for (xkb_keycode_t keycode = xkb_keymap_min_keycode(keymap_.get()); keycode <= last; ++keycode) {
        const unsigned groups = xkb_keymap_num_layouts_for_key(keymap_.get(), keycode);
        for (unsigned group = 0; group < groups; ++group) {
            if (keysymAt(keycode, group) != wanted) continue;
            found.push_back(keycode);
            break;
        }
    }
    if (found.empty()) found.push_back(x11_modifiers::usualPosition(keyCode));
    return found;
}

std::string X11Keymap::typed(xkb_keycode_t keycode, xkb_mod_mask_t mask, unsigned group) const {
    const std::unique_ptr<xkb_state, Unref> state(xkb_state_new(keymap_.get()));
    if (!state) return {};
    xkb_state_update_mask(state.get(), mask, 0, 0, 0, 0, group);
    std::array<char, 64> text{};
    xkb_state_key_get_utf8(state.get(), keycode, text.data(), text.size());
    return withoutControlCharacters(text.data());
}

void X11Keymap::describe(Event& event, xkb_keycode_t keycode, std::uint16_t mask, unsigned group) const {
    if (!keymap_) return;
    event.keyCode = x11_modifiers::keyCode(plainKeysym(keycode, group));
    event.modifiers = x11_modifiers::seen(mask);
    event.characters = typed(keycode, mask & 0xffU, group);
    const xkb_mod_mask_t shiftOnly = mask & x11_modifiers::shift;
    event.charactersIgnoringModifiers = typed(keycode, shiftOnly, group);
    // With Num Lock the keypad types.
    const xkb_keysym_t plain = plainKeysym(keycode, group);
    if (plain >= XKB_KEY_KP_Home && plain <= XKB_KEY_KP_Delete && !event.characters.empty()) event.keyCode = key::other;
    if (!event.modifiers.command || event.keyCode == key::other) return;
    const xkb_keysym_t latin = x11_modifiers::keysym(event.keyCode);
    if (event.charactersIgnoringModifiers.size() > 1 && latin > ' ' && latin < 0x7f) {
        event.charactersIgnoringModifiers = std::string(1, static_cast<char>(latin));
    }
}

}  // namespace brimquill::platform

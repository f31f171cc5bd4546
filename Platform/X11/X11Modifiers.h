#pragma once

#include "Platform/Types.h"

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <optional>

namespace brimquill::platform {

/// The one table that says what the modifier symbols are on a PC keyboard:
///
///     symbol | global hot keys | seen in keys              | sent to other programs
///     ⌘      | Super           | Super or Control          | Control
///     ⌥      | Alt             | Alt                       | Alt
///     ⌃      | Control         | never                     | never
///     ⇧      | Shift           | Shift                     | Shift
///
/// Masks are those of the core protocol; Super is Mod4 and Alt is Mod1, as every keymap of today has them.
namespace x11_modifiers {

inline constexpr std::uint16_t shift = 1, lock = 2, control = 4, alt = 8, numLock = 16, super = 64, level3 = 128;
/// What a hot key compares; the locks are left out.
inline constexpr std::uint16_t compared = shift | control | alt | super;

std::uint16_t hotKeyMask(Modifiers modifiers);
Modifiers seen(std::uint16_t mask);

/// The bit of a modifier key by its symbol on the key; 0 for other keys.
std::uint16_t maskOfModifierKey(xkb_keysym_t keysym);

/// The virtual key code of a key by the symbol that it has without modifiers, and back. `key::other` and
/// `XKB_KEY_NoSymbol` where there is none.
int keyCode(xkb_keysym_t keysym);
xkb_keysym_t keysym(int keyCode);
/// Where the key is found on a PC keyboard whatever its layout: the server's number of it; 0 where unknown.
xkb_keycode_t usualPosition(int keyCode);

}  // namespace x11_modifiers
}  // namespace brimquill::platform

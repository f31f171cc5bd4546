#include "Platform/X11/X11Modifiers.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace brimquill::platform::x11_modifiers {
namespace {

struct Row {
    int keyCode;
    xkb_keysym_t keysym;
    xkb_keycode_t position;
};

/// The first row of a key code is the one to send. Positions are those of a US keyboard.
constexpr Row rows[] = {
    {key::a, XKB_KEY_a, 38},
    {key::s, XKB_KEY_s, 39},
    {key::d, XKB_KEY_d, 40},
    {key::f, XKB_KEY_f, 41},
    {key::h, XKB_KEY_h, 43},
    {key::g, XKB_KEY_g, 42},
    {key::z, XKB_KEY_z, 52},
    {key::x, XKB_KEY_x, 53},
    {key::c, XKB_KEY_c, 54},
    {key::v, XKB_KEY_v, 55},
    {key::b, XKB_KEY_b, 56},
    {key::q, XKB_KEY_q, 24},
    {key::w, XKB_KEY_w, 25},
    {key::e, XKB_KEY_e, 26},
    {key::r, XKB_KEY_r, 27},
    {key::y, XKB_KEY_y, 29},
    {key::t, XKB_KEY_t, 28},
    {key::o, XKB_KEY_o, 32},
    {key::u, XKB_KEY_u, 30},
    {key::i, XKB_KEY_i, 31},
    {key::p, XKB_KEY_p, 33},
    {key::l, XKB_KEY_l, 46},
    {key::j, XKB_KEY_j, 44},
    {key::k, XKB_KEY_k, 45},
    {key::n, XKB_KEY_n, 57},
    {key::m, XKB_KEY_m, 58},
    {key::one, XKB_KEY_1, 10},
    {key::two, XKB_KEY_2, 11},
    {key::three, XKB_KEY_3, 12},
    {key::four, XKB_KEY_4, 13},
    {key::five, XKB_KEY_5, 14},
    {key::six, XKB_KEY_6, 15},
    {key::seven, XKB_KEY_7, 16},
    {key::eight, XKB_KEY_8, 17},
    {key::nine, XKB_KEY_9, 18},
    {key::zero, XKB_KEY_0, 19},
    {key::slash, XKB_KEY_slash, 61},
    {key::returnKey, XKB_KEY_Return, 36},
    {key::returnKey, XKB_KEY_KP_Enter, 104},
    {key::tab, XKB_KEY_Tab, 23},
    {key::tab, XKB_KEY_ISO_Left_Tab, 23},
    {key::space, XKB_KEY_space, 65},
    {key::deleteKey, XKB_KEY_BackSpace, 22},
    {key::deleteKey, XKB_KEY_Delete, 119},
    {key::escape, XKB_KEY_Escape, 9},
    {key::left, XKB_KEY_Left, 113},
    {key::left, XKB_KEY_KP_Left, 83},
    {key::right, XKB_KEY_Right, 114},
    {key::right, XKB_KEY_KP_Right, 85},
    {key::down, XKB_KEY_Down, 116},
    {key::down, XKB_KEY_KP_Down, 88},
    {key::up, XKB_KEY_Up, 111},
    {key::up, XKB_KEY_KP_Up, 80},
};

const Row* rowOfKeyCode(int keyCode) {
    const auto* row =
        std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.keyCode == keyCode; });
    return row == std::end(rows) ? nullptr : row;
}

}  // namespace

std::uint16_t hotKeyMask(Modifiers modifiers) {
    return static_cast<std::uint16_t>((modifiers.command ? super : 0) | (modifiers.option ? alt : 0) |
                                      (modifiers.control ? control : 0) | (modifiers.shift ? shift : 0));
}

Modifiers seen(std::uint16_t mask) {
    return {(mask & (super | control)) != 0, (mask & shift) != 0, (mask & alt) != 0, false};
}

std::uint16_t maskOfModifierKey(xkb_keysym_t keysym) {
    switch (keysym) {
        case XKB_KEY_Super_L:
        case XKB_KEY_Super_R:
            return super;
        case XKB_KEY_Control_L:
        case XKB_KEY_Control_R:
            return control;
        case XKB_KEY_Alt_L:
        case XKB_KEY_Alt_R:
        case XKB_KEY_Meta_L:
        case XKB_KEY_Meta_R:
            return alt;
        case XKB_KEY_Shift_L:
        case XKB_KEY_Shift_R:
            return shift;
        case XKB_KEY_ISO_Level3_Shift:
            return level3;
        default:
            return 0;
    }
}

int keyCode(xkb_keysym_t keysym) {
    const xkb_keysym_t lower = xkb_keysym_to_lower(keysym);
    const auto* row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.keysym == lower; });
    return row == std::end(rows) ? key::other : row->keyCode;
}

xkb_keysym_t keysym(int keyCode) {
    const Row* row = rowOfKeyCode(keyCode);
    return row == nullptr ? xkb_keysym_t{XKB_KEY_NoSymbol} : row->keysym;
}

xkb_keycode_t usualPosition(int keyCode) {
    const Row* row = rowOfKeyCode(keyCode);
    return row == nullptr ? 0 : row->position;
}

}  // namespace brimquill::platform::x11_modifiers

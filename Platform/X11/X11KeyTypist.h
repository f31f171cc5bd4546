#pragma once

#include "Platform/Types.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11InjectedKeys.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The hands of the synthetic keys: presses keys through XTEST and types characters. Those that the keyboard lacks are
/// put on keys without symbols, a batch at a time; they stay there for a while, since programs look up what a key means
/// only when they get round to it. One thread at a time.
class X11KeyTypist final {
public:
    explicit X11KeyTypist(X11InjectedKeys& injected);
    ~X11KeyTypist();

    /// False when the server has no XTEST.
    bool isAvailable() const { return isAvailable_; }
    X11Connection& connection() { return connection_; }

    /// Modifier keys that are down, whoever holds them; the locks are left out.
    std::vector<xcb_keycode_t> heldModifiers();
    void release(const std::vector<xcb_keycode_t>& keycodes);
    /// Whether any key at all is down.
    bool isAnyKeyHeld();
    /// Sees to it that the keyboard has a key; one that no group of the layout has is borrowed as for typing. How many
    /// seconds from now it can be pressed; until it says 0, ask again.
    double makeReady(xcb_keysym_t keysym);
    /// Presses a key that is ready, with modifiers around it, all by their symbols; false when the keyboard lacks one.
    bool press(xcb_keysym_t keysym, const std::vector<xcb_keysym_t>& modifiers);
    /// Types UTF-32. Blocks some 50 ms for each batch of characters that the keyboard lacks.
    void type(const std::vector<std::uint32_t>& characters);
    bool hasBorrowed() const { return !borrowed_.empty(); }
    /// Takes the borrowed keys back once nothing has been typed for a while; false when it is too early.
    bool clearSpares();

private:
    struct Key {
        xcb_keycode_t keycode = 0;
        bool needsShift = false;
    };
    void readMapping();
    std::optional<xcb_keycode_t> keycodeFor(xcb_keysym_t keysym) const;
    std::size_t prepare(const std::vector<xcb_keysym_t>& keysyms, std::size_t from);
    void borrow(xcb_keysym_t keysym);
    /// The spare keys are given away from the first one on.
    void borrowAnew();
    void map(xcb_keycode_t keycode, xcb_keysym_t keysym);
    void tap(xcb_keysym_t keysym, Key key, bool capsLock);
    void fake(std::uint8_t type, xcb_keycode_t keycode);
    std::uint16_t state();

    X11InjectedKeys& injected_;
    X11Connection connection_;
    bool isAvailable_ = false;
    /// The keys of the first group, those of the second, and those put on spare keys.
    std::map<xcb_keysym_t, Key> keys_, otherKeys_, borrowed_;
    std::vector<xcb_keycode_t> spares_;
    std::size_t nextSpare_ = 0;
    std::chrono::steady_clock::time_point lastTyped_, lastBorrowed_;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/HandlerList.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11InjectedKeys.h"

#include <QSocketNotifier>

#include <memory>

namespace brimquill::platform {

/// What the keyboards and pointers do, whoever gets it: seen on a connection of its own, during grabs too. Keys that
/// this program makes itself are left out. Main thread.
class X11RawInput final {
public:
    struct Input {
        enum class Kind { keyPress, keyRelease, buttonPress };
        Kind kind = Kind::keyPress;
        std::uint8_t detail = 0;
        /// When the server saw it, on the `uptime` clock and on its own, in milliseconds.
        double uptime = 0;
        std::uint32_t serverTime = 0;
    };

    explicit X11RawInput(X11InjectedKeys& injected);
    ~X11RawInput();

    /// False when the server has no XInput 2.2.
    bool isAvailable() const { return notifier_ != nullptr; }
    [[nodiscard]] Token observe(std::function<void(const Input&)> handler) { return inputs_.add(std::move(handler)); }
    /// Called after keys changed their meaning.
    [[nodiscard]] Token observeMapping(std::function<void()> handler) { return mappings_.add(std::move(handler)); }
    /// The locked and latched modifiers (core protocol masks) and the group in force.
    std::uint16_t lockedMask() const { return lockedMask_; }
    unsigned group() const { return group_; }
    /// Hands on everything that has happened so far.
    void catchUp();

private:
    void drain();
    bool selectInput();
    void selectKeyboardChanges();
    void findSyntheticKeyboard();
    void handle(const xcb_generic_event_t& event);
    void handleRaw(const xcb_ge_generic_event_t& event);
    void handleKeyboard(const xcb_generic_event_t& event);
    double uptimeOf(std::uint32_t serverTime);

    X11InjectedKeys& injected_;
    X11Connection connection_;
    HandlerList<std::function<void(const Input&)>> inputs_;
    HandlerList<std::function<void()>> mappings_;
    std::uint8_t inputOpcode_ = 0, keyboardEvent_ = 0;
    std::uint16_t syntheticKeyboard_ = 0, lockedMask_ = 0;
    unsigned group_ = 0;
    double clockOffset_ = 0;
    bool hasClockOffset_ = false, mappingChanged_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace brimquill::platform

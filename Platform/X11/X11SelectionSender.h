#pragma once

#include "Platform/Types.h"
#include "Platform/X11/X11PasteboardConnection.h"

#include <map>
#include <optional>
#include <utility>

namespace brimquill::platform {

/// Hands values over to programs that asked for them: small ones at once, large ones piece by piece as they are taken
/// (INCR), to several programs side by side. A program that dies or takes nothing more is forgotten. The worker's
/// thread.
class X11SelectionSender final {
public:
    using Clock = X11PasteboardConnection::Clock;

    explicit X11SelectionSender(X11PasteboardConnection& connection) : connection_(connection) {}

    /// What is handed over: the type of the property that holds it, the bits of its units (8, 16 or 32), the bytes.
    struct Value {
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;
        SharedBytes bytes = {};
    };

    /// Puts `value`, or the beginning of its handing over, into the property. False when too many are under way.
    bool send(xcb_window_t requestor, xcb_atom_t property, Value value);

    void handle(const xcb_property_notify_event_t& event);
    void handle(const xcb_destroy_notify_event_t& event);
    /// When `expire` has something to do; nothing when nothing is under way.
    std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    using Key = std::pair<xcb_window_t, xcb_atom_t>;
    struct Transfer {
        Value value;
        std::size_t sent;
        Clock::time_point progress;
    };
    using Transfers = std::map<Key, Transfer>;

    void put(xcb_window_t requestor, xcb_atom_t property, const Value& value, std::size_t offset, std::size_t length);
    void watch(xcb_window_t requestor, std::uint32_t events);
    Transfers::iterator forget(Transfers::iterator transfer);

    X11PasteboardConnection& connection_;
    Transfers transfers_;
};

}  // namespace brimquill::platform

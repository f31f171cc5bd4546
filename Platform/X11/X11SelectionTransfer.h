#pragma once

#include "Platform/Types.h"
#include "Platform/X11/X11PasteboardConnection.h"

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace brimquill::platform {

/// One question to the clipboard's owner and its answer, whole or in the pieces of the INCR protocol, taken event by
/// event: nothing here waits. The worker's thread.
class X11SelectionTransfer final {
public:
    using Clock = X11PasteboardConnection::Clock;
    enum class Outcome { done, refused, timedOut, tooLarge };
    /// `type` is the property's type, `format` the bits of its units, `value` everything that came; they say nothing
    /// unless `outcome` is done.
    struct Result {
        Outcome outcome;
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;
        Bytes value;
    };
    using Finished = std::function<void(Result)>;

    /// What a read of one copy, which may be many questions, allows each of them.
    struct Bounds {
        /// The bytes that are taken.
        std::size_t limit;
        /// When the read began, from which its bound counts, and what it has brought before.
        Clock::time_point started;
        std::size_t received;
    };

    explicit X11SelectionTransfer(X11PasteboardConnection& connection) : connection_(connection) {}

    /// Asks for the clipboard in the form `target`, as of `time`; a question that is open is forgotten. `finished` is
    /// called from the operations below and may begin the next one.
    void begin(xcb_atom_t target, xcb_timestamp_t time, Bounds bounds, Finished finished);
    /// Forgets the question; a late answer is dropped. Calls nothing.
    void abandon();

    void handle(const xcb_selection_notify_event_t& event);
    void handle(const xcb_property_notify_event_t& event);
    /// Takes the next piece of a large property. False when there is none to take.
    bool pump();
    /// When `expire` has something to do; nothing when no question is open.
    std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    enum class State { idle, asked, taking, betweenPieces };

    xcb_atom_t takeProperty();
    void retireProperty();
    void take();
    void finish(Outcome outcome);
    bool isSteady(Clock::time_point now) const;

    X11PasteboardConnection& connection_;
    Finished finished_;
    State state_ = State::idle;
    bool incremental_ = false;
    xcb_atom_t property_ = XCB_ATOM_NONE, type_ = XCB_ATOM_NONE;
    xcb_timestamp_t time_ = 0;
    std::uint8_t format_ = 8;
    Bytes value_;
    Bounds bounds_{};
    std::size_t pieceOffset_ = 0;
    Clock::time_point progress_;
    std::vector<xcb_atom_t> freeProperties_;
    std::deque<xcb_atom_t> retiredProperties_;
    int propertiesNamed_ = 0;
};

}  // namespace brimquill::platform

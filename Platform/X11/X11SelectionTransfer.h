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
    /// `type` is the property's type, `value` everything that came; both are empty unless `outcome` is done.
    struct Result {
        Outcome outcome;
        xcb_atom_t type = XCB_ATOM_NONE;
        Bytes value;
    };
    using Finished = std::function<void(Result)>;

    /// `finished` is called from the operations below and may begin the next transfer.
    X11SelectionTransfer(X11PasteboardConnection& connection, Finished finished);

    /// Asks for the clipboard in the form `target`, as of `time`. `limit` bounds the bytes that are taken; `started` is
    /// when the read of this copy began, from which its bound counts, and `received` what it has brought before.
    void begin(xcb_atom_t target, xcb_timestamp_t time, std::size_t limit, Clock::time_point started,
               std::size_t received);
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
    Bytes value_;
    std::size_t limit_ = 0, pieceOffset_ = 0, receivedBefore_ = 0;
    Clock::time_point started_, progress_;
    std::vector<xcb_atom_t> freeProperties_;
    std::deque<xcb_atom_t> retiredProperties_;
    int propertiesNamed_ = 0;
};

}  // namespace brimquill::platform

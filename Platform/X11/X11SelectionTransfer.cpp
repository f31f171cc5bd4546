#include "Platform/X11/X11SelectionTransfer.h"

#include <algorithm>
#include <utility>

namespace brimquill::platform {
namespace {

// Names of properties live as long as the X server, so there is an end to how many are made.
constexpr int mostProperties = 4096;

}  // namespace

void X11SelectionTransfer::begin(xcb_atom_t target, xcb_timestamp_t time, Bounds bounds, Finished finished) {
    abandon();
    finished_ = std::move(finished);
    state_ = State::asked;
    incremental_ = false;
    type_ = XCB_ATOM_NONE;
    format_ = 8;
    time_ = time;
    value_.clear();
    bounds_ = bounds;
    pieceOffset_ = 0;
    progress_ = Clock::now();
    property_ = takeProperty();
    xcb_delete_property(connection_.xcb(), connection_.window(), property_);
    xcb_convert_selection(connection_.xcb(), connection_.window(), connection_.atom("CLIPBOARD"), target, property_,
                          time);
}

// An owner that was given up may answer much later. So a property comes back into use only after its question was
// answered to the end; the others are retired, and an answer that arrives in one of them is seen to be late.
xcb_atom_t X11SelectionTransfer::takeProperty() {
    auto reuse = [](auto& from) {
        const xcb_atom_t property = from.front();
        from.erase(from.begin());
        return property;
    };
    if (!freeProperties_.empty()) return reuse(freeProperties_);
    if (propertiesNamed_ >= mostProperties && !retiredProperties_.empty()) return reuse(retiredProperties_);
    return connection_.atom("_BRIMQUILL_ANSWER_" + std::to_string(propertiesNamed_++));
}

void X11SelectionTransfer::retireProperty() {
    xcb_delete_property(connection_.xcb(), connection_.window(), property_);
    retiredProperties_.push_back(std::exchange(property_, XCB_ATOM_NONE));
}

void X11SelectionTransfer::abandon() {
    if (state_ == State::idle) return;
    retireProperty();
    state_ = State::idle;
    Bytes().swap(value_);
}

void X11SelectionTransfer::handle(const xcb_selection_notify_event_t& event) {
    const bool refused = event.property == XCB_ATOM_NONE;
    // A refusal names no property; that it belongs to this question shows in the time that it repeats.
    const bool ours = state_ == State::asked &&
                      (refused ? event.time == time_ || event.time == XCB_CURRENT_TIME : event.property == property_);
    if (!ours) {
        if (!refused && event.property != property_)
            xcb_delete_property(connection_.xcb(), connection_.window(), event.property);
        return;
    }
    if (refused) return finish(Outcome::refused);
    state_ = State::taking;
    take();
}

void X11SelectionTransfer::handle(const xcb_property_notify_event_t& event) {
    if (state_ != State::betweenPieces || event.atom != property_ || event.state != XCB_PROPERTY_NEW_VALUE) return;
    state_ = State::taking;
    take();
}

bool X11SelectionTransfer::pump() {
    if (state_ != State::taking) return false;
    take();
    return true;
}

// The property is deleted by the read that reaches its end. Deleting one of type INCR is what starts the pieces.
void X11SelectionTransfer::take() {
    const auto cookie = xcb_get_property(connection_.xcb(), 1, connection_.window(), property_,
                                         XCB_GET_PROPERTY_TYPE_ANY, static_cast<std::uint32_t>(pieceOffset_ / 4),
                                         static_cast<std::uint32_t>(connection_.chunk() / 4));
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    // The display is lost, or the owner put something shorter into the property while it was read.
    if (!reply) return finish(Outcome::refused);
    if (reply->type == XCB_ATOM_NONE) {
        // Nothing there. An owner that does not wait until a piece is taken gives two notices of what was one piece to
        // us: that is not the empty piece of the end, which has a type.
        state_ = State::betweenPieces;
        pieceOffset_ = 0;
        if (!incremental_) finish(Outcome::refused);
        return;
    }
    progress_ = Clock::now();
    if (!incremental_ && reply->type == connection_.atom("INCR")) {
        // The size that it announces is a mere word of the owner's: nothing is allocated by it.
        incremental_ = true;
        state_ = State::betweenPieces;
        return;
    }
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    if (value_.size() + length + reply->bytes_after > bounds_.limit) return finish(Outcome::tooLarge);
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    value_.insert(value_.end(), bytes, bytes + length);
    type_ = reply->type;
    if (length > 0) format_ = reply->format;
    pieceOffset_ += length;
    if (reply->bytes_after > 0) return;
    const bool lastPiece = pieceOffset_ == 0;
    pieceOffset_ = 0;
    if (incremental_ && !lastPiece)
        state_ = State::betweenPieces;
    else
        finish(Outcome::done);
}

void X11SelectionTransfer::finish(Outcome outcome) {
    const bool answered = outcome == Outcome::done || outcome == Outcome::refused;
    if (answered)
        freeProperties_.push_back(std::exchange(property_, XCB_ATOM_NONE));
    else
        retireProperty();
    state_ = State::idle;
    Result result{.outcome = outcome, .type = XCB_ATOM_NONE, .format = format_, .value = {}};
    if (outcome == Outcome::done) {
        result.type = type_;
        result.value = std::move(value_);
    }
    Bytes().swap(value_);
    // The next question replaces it while it runs.
    const Finished finished = std::exchange(finished_, nullptr);
    finished(std::move(result));
}

std::optional<X11SelectionTransfer::Clock::time_point> X11SelectionTransfer::deadline() const {
    if (state_ == State::idle) return std::nullopt;
    const Clock::time_point step = progress_ + connection_.options().stepDeadline;
    const Clock::time_point bound = bounds_.started + connection_.options().readBound;
    // Past the bound, a transfer that is steady so far is looked at again from step to step.
    return bound > Clock::now() ? std::min(step, bound) : std::min(step, Clock::now() + std::chrono::milliseconds(100));
}

bool X11SelectionTransfer::isSteady(Clock::time_point now) const {
    const double seconds = std::chrono::duration<double>(now - bounds_.started).count();
    const auto received = static_cast<double>(bounds_.received + value_.size());
    return received >= seconds * static_cast<double>(connection_.options().steadyBytesPerSecond);
}

void X11SelectionTransfer::expire(Clock::time_point now) {
    if (state_ == State::idle) return;
    const bool stalled = now >= progress_ + connection_.options().stepDeadline;
    const bool tooSlow = now >= bounds_.started + connection_.options().readBound && !isSteady(now);
    // A large property that lies in the server already is no reason for impatience with its owner.
    if ((stalled && state_ != State::taking) || tooSlow) finish(Outcome::timedOut);
}

}  // namespace brimquill::platform

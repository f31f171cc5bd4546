#include "Platform/X11/X11SelectionSender.h"

#include <algorithm>

namespace brimquill::platform {
namespace {

constexpr std::size_t mostTransfers = 256;

}  // namespace

bool X11SelectionSender::send(xcb_window_t requestor, xcb_atom_t property, Value value) {
    const std::size_t size = value.bytes->size();
    if (size <= connection_.chunk()) {
        put(requestor, property, value, 0, size);
        return true;
    }
    if (transfers_.size() >= mostTransfers) return false;
    watch(requestor, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    const auto announced = static_cast<std::uint32_t>(std::min<std::size_t>(size, UINT32_MAX));
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, connection_.atom("INCR"), 32, 1,
                        &announced);
    transfers_[{requestor, property}] = {std::move(value), 0, Clock::now()};
    return true;
}

void X11SelectionSender::put(xcb_window_t requestor, xcb_atom_t property, const Value& value, std::size_t offset,
                             std::size_t length) {
    const std::size_t units = length / (value.format / 8U);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, value.type, value.format,
                        static_cast<std::uint32_t>(units), value.bytes->data() + offset);
}

void X11SelectionSender::handle(const xcb_property_notify_event_t& event) {
    if (event.state != XCB_PROPERTY_DELETE) return;
    const auto found = transfers_.find({event.window, event.atom});
    if (found == transfers_.end()) return;
    Transfer& transfer = found->second;
    const std::size_t length = std::min(connection_.chunk(), transfer.value.bytes->size() - transfer.sent);
    put(event.window, event.atom, transfer.value, transfer.sent, length);
    transfer.sent += length;
    transfer.progress = Clock::now();
    if (length == 0) forget(found);  // the empty piece was the sign of the end
}

void X11SelectionSender::handle(const xcb_destroy_notify_event_t& event) {
    std::erase_if(transfers_, [&](const auto& transfer) { return transfer.first.first == event.window; });
}

std::optional<X11SelectionSender::Clock::time_point> X11SelectionSender::deadline() const {
    std::optional<Clock::time_point> earliest;
    for (const auto& [key, transfer] : transfers_) {
        const Clock::time_point end = transfer.progress + connection_.options().requestorDeadline;
        earliest = earliest ? std::min(*earliest, end) : end;
    }
    return earliest;
}

void X11SelectionSender::expire(Clock::time_point now) {
    for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
        const bool stalled = now >= transfer->second.progress + connection_.options().requestorDeadline;
        transfer = stalled ? forget(transfer) : std::next(transfer);
    }
}

X11SelectionSender::Transfers::iterator X11SelectionSender::forget(Transfers::iterator transfer) {
    const xcb_window_t requestor = transfer->first.first;
    const auto next = transfers_.erase(transfer);
    const bool last = std::none_of(transfers_.begin(), transfers_.end(),
                                   [&](const auto& other) { return other.first.first == requestor; });
    if (last) watch(requestor, XCB_EVENT_MASK_NO_EVENT);
    return next;
}

// On a window that is gone already the server answers with an error, which nobody waits for.
void X11SelectionSender::watch(xcb_window_t requestor, std::uint32_t events) {
    xcb_change_window_attributes(connection_.xcb(), requestor, XCB_CW_EVENT_MASK, &events);
}

}  // namespace brimquill::platform

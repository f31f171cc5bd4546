#include "Platform/X11/X11SelectionOffer.h"

#include <utility>

namespace brimquill::platform {
namespace {

// More pairs than any program asks for at once; the rest of a longer list goes unanswered.
constexpr std::uint32_t mostMultiplePairs = 256;

/// Server times and sequence numbers are 32 bits and wrap.
bool isBefore(std::uint32_t a, std::uint32_t b) {
    return static_cast<std::int32_t>(a - b) < 0;
}

}  // namespace

X11SelectionOffer::Values X11SelectionOffer::values(const std::vector<x11_formats::Offered>& offered) const {
    Values values;
    for (const x11_formats::Offered& one : offered)
        values[connection_.atom(one.target)] = {connection_.atom(one.type), 8, one.value};
    return values;
}

bool X11SelectionOffer::claim(xcb_atom_t selection, Values values, xcb_timestamp_t time) {
    Owned owned{.since = time, .claimSequence = 0, .values = std::move(values)};
    owned.claimSequence = xcb_set_selection_owner(connection_.xcb(), connection_.window(), selection, time).sequence;
    // A claim with a time before the present owner's is ignored without an error.
    if (connection_.owner(selection) != connection_.window()) {
        lose(selection);
        return false;
    }
    owned_[selection] = std::move(owned);
    return true;
}

// As of the time of the claim, so that a claim of somebody else's since then stands.
void X11SelectionOffer::release(xcb_atom_t selection) {
    const auto found = owned_.find(selection);
    if (found == owned_.end()) return;
    xcb_set_selection_owner(connection_.xcb(), XCB_NONE, selection, found->second.since);
    owned_.erase(found);
}

// The server stamps each event with the last request of ours that it had worked on: exact, where its times are too
// coarse to tell two owners of the same millisecond apart.
bool X11SelectionOffer::isOutdated(xcb_atom_t selection, const xcb_generic_event_t& event) const {
    const auto found = owned_.find(selection);
    return found != owned_.end() && isBefore(event.full_sequence, found->second.claimSequence);
}

const X11SelectionOffer::Owned* X11SelectionOffer::offeredTo(const xcb_selection_request_event_t& event) const {
    const auto found = owned_.find(event.selection);
    if (found == owned_.end()) return nullptr;
    const bool older = event.time != XCB_CURRENT_TIME && isBefore(event.time, found->second.since);
    return older ? nullptr : &found->second;
}

void X11SelectionOffer::handle(const xcb_selection_request_event_t& event) {
    // Old programs name no property and mean the target's name.
    const xcb_atom_t property = event.property != XCB_ATOM_NONE ? event.property : event.target;
    const Owned* owned = offeredTo(event);
    const bool isMultiple = event.target == connection_.atom("MULTIPLE");
    const bool done = owned && (isMultiple ? event.property != XCB_ATOM_NONE &&
                                                 answerMultiple(*owned, event.requestor, event.property)
                                           : answer(*owned, event.requestor, event.target, property));
    notify(event, done ? property : xcb_atom_t{XCB_ATOM_NONE});
}

bool X11SelectionOffer::answer(const Owned& owned, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    if (target == connection_.atom("TARGETS")) {
        answerTargets(owned, requestor, property);
        return true;
    }
    if (target == connection_.atom("TIMESTAMP")) {
        xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1,
                            &owned.since);
        return true;
    }
    // There is nothing left to save.
    if (target == connection_.atom("SAVE_TARGETS")) return finishSave(requestor, property);
    const auto value = owned.values.find(target);
    return value != owned.values.end() && sender_.send(requestor, property, value->second);
}

// The empty answer is what says that it was done.
bool X11SelectionOffer::finishSave(xcb_window_t requestor, xcb_atom_t property) {
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, connection_.atom("NULL"), 32, 0,
                        nullptr);
    return true;
}

void X11SelectionOffer::answerSave(const xcb_selection_request_event_t& event, bool isDone) {
    const xcb_atom_t property = event.property != XCB_ATOM_NONE ? event.property : event.target;
    if (isDone) finishSave(event.requestor, property);
    notify(event, isDone ? property : xcb_atom_t{XCB_ATOM_NONE});
}

void X11SelectionOffer::answerTargets(const Owned& owned, xcb_window_t requestor, xcb_atom_t property) {
    std::vector<xcb_atom_t> targets;
    for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS"})
        targets.push_back(connection_.atom(name));
    for (const auto& [target, value] : owned.values)
        targets.push_back(target);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
}

// The property lists pairs of target and property; a pair that cannot be served is marked in the list.
bool X11SelectionOffer::answerMultiple(const Owned& owned, xcb_window_t requestor, xcb_atom_t property) {
    const auto cookie = xcb_get_property(connection_.xcb(), 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                         mostMultiplePairs * 2);
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.xcb(), cookie, nullptr));
    if (!reply || reply->format != 32) return false;
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    std::vector<xcb_atom_t> pairs(atoms, atoms + reply->value_len);
    // Saving takes its time, and has to be asked for by itself.
    const xcb_atom_t multiple = connection_.atom("MULTIPLE"), save = connection_.atom("SAVE_TARGETS");
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const bool askable = pairs[i] != multiple && pairs[i] != save && pairs[i + 1] != XCB_ATOM_NONE;
        if (!askable || !answer(owned, requestor, pairs[i], pairs[i + 1])) pairs[i + 1] = XCB_ATOM_NONE;
    }
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, requestor, property, connection_.atom("ATOM_PAIR"),
                        32, static_cast<std::uint32_t>(pairs.size()), pairs.data());
    return true;
}

void X11SelectionOffer::notify(const xcb_selection_request_event_t& event, xcb_atom_t property) {
    // Events travel in 32 bytes whatever their kind.
    union {
        xcb_selection_notify_event_t event;
        char padding[32];
    } answer{};
    answer.event.response_type = XCB_SELECTION_NOTIFY;
    answer.event.time = event.time;
    answer.event.requestor = event.requestor;
    answer.event.selection = event.selection;
    answer.event.target = event.target;
    answer.event.property = property;
    xcb_send_event(connection_.xcb(), 0, event.requestor, 0, answer.padding);
}

}  // namespace brimquill::platform

#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/X11/X11PasteboardConnection.h"
#include "Platform/X11/X11SelectionSender.h"

#include <map>
#include <optional>
#include <vector>

namespace brimquill::platform {

/// What the program owns, CLIPBOARD and PRIMARY each by itself, and the answers to those who ask for it. The worker's
/// thread.
class X11SelectionOffer final {
public:
    X11SelectionOffer(X11PasteboardConnection& connection, X11SelectionSender& sender)
        : connection_(connection), sender_(sender) {}

    /// Takes `selection` as of `time` and offers `contents`, which may be empty. False when somebody else got it.
    bool claim(xcb_atom_t selection, const PasteboardContents& contents, xcb_timestamp_t time);
    /// Whether an event about the owner of `selection` tells of a time before our present claim.
    bool isOutdated(xcb_atom_t selection, const xcb_generic_event_t& event) const;
    /// Somebody else owns `selection` from now on. What is being handed over still goes to its end.
    void lose(xcb_atom_t selection) { owned_.erase(selection); }

    void handle(const xcb_selection_request_event_t& event);

private:
    struct Value {
        xcb_atom_t type;
        SharedBytes bytes;
    };
    struct Owned {
        xcb_timestamp_t since;
        std::uint32_t claimSequence;
        std::map<xcb_atom_t, Value> values;
    };

    const Owned* offeredTo(const xcb_selection_request_event_t& event) const;
    bool answer(const Owned& owned, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool answerMultiple(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    void answerTargets(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    void notify(const xcb_selection_request_event_t& event, xcb_atom_t property);

    X11PasteboardConnection& connection_;
    X11SelectionSender& sender_;
    std::map<xcb_atom_t, Owned> owned_;
};

}  // namespace brimquill::platform

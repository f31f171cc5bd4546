#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/X11/X11PasteboardConnection.h"
#include "Platform/X11/X11PasteboardFormats.h"
#include "Platform/X11/X11SelectionSender.h"

#include <map>
#include <optional>
#include <vector>

namespace brimquill::platform {

/// What the program owns, CLIPBOARD, PRIMARY and CLIPBOARD_MANAGER each by itself, and the answers to those who ask for
/// it. The worker's thread.
class X11SelectionOffer final {
public:
    X11SelectionOffer(X11PasteboardConnection& connection, X11SelectionSender& sender)
        : connection_(connection), sender_(sender) {}

    /// By target.
    using Values = std::map<xcb_atom_t, X11SelectionSender::Value>;

    Values values(const std::vector<x11_formats::Offered>& offered) const;
    /// Takes `selection` as of `time` and offers `values`, which may be empty. False when somebody else got it.
    bool claim(xcb_atom_t selection, Values values, xcb_timestamp_t time);
    bool owns(xcb_atom_t selection) const { return owned_.contains(selection); }
    /// Gives `selection` up if it is ours: nobody owns it from then on.
    void release(xcb_atom_t selection);
    /// Whether an event about the owner of `selection` tells of a time before our present claim.
    bool isOutdated(xcb_atom_t selection, const xcb_generic_event_t& event) const;
    /// Somebody else owns `selection` from now on. What is being handed over still goes to its end.
    void lose(xcb_atom_t selection) { owned_.erase(selection); }

    void handle(const xcb_selection_request_event_t& event);
    /// Answers a request to save a clipboard: either it was done or it is refused.
    void answerSave(const xcb_selection_request_event_t& event, bool isDone);

private:
    struct Owned {
        xcb_timestamp_t since;
        std::uint32_t claimSequence;
        Values values;
    };

    const Owned* offeredTo(const xcb_selection_request_event_t& event) const;
    bool answer(const Owned& owned, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    bool answerMultiple(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    void answerTargets(const Owned& owned, xcb_window_t requestor, xcb_atom_t property);
    bool finishSave(xcb_window_t requestor, xcb_atom_t property);
    void notify(const xcb_selection_request_event_t& event, xcb_atom_t property);

    X11PasteboardConnection& connection_;
    X11SelectionSender& sender_;
    std::map<xcb_atom_t, Owned> owned_;
};

}  // namespace brimquill::platform

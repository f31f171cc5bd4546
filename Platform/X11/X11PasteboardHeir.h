#pragma once

#include "Platform/X11/X11PasteboardSnapshot.h"
#include "Platform/X11/X11SelectionOffer.h"
#include "Platform/X11/X11SelectionTransfer.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// Lets another program's copy outlive that program: holds what was read of it, one copy at a time, and offers that
/// once its owner is gone. As the desktop's clipboard manager it also reads what else a program about to quit wants
/// saved. Nothing of it is done before the word has come that this copy may be kept. The worker's thread.
class X11PasteboardHeir final {
public:
    using Clock = X11PasteboardConnection::Clock;
    using Snapshot = std::shared_ptr<const PasteboardSnapshot>;
    enum class Decision { keep, drop };

    /// `lost` is called when the copy of an owner that is gone turns out not to be kept, or is given up later: the
    /// clipboard is empty then.
    X11PasteboardHeir(X11PasteboardConnection& connection, X11SelectionTransfer& transfer, X11SelectionOffer& offer,
                      std::function<void()> lost);

    /// The clipboard has an owner whose copy is being read: nothing is held yet.
    void await();
    /// The copy was read, with what its owner listed, as of `time`. It waits for the decision.
    void hold(Snapshot snapshot, std::vector<xcb_atom_t> targets, xcb_timestamp_t time);
    /// The copy that is held is no longer on the clipboard. Whoever waits for it to be saved is refused.
    void forget();
    /// Whether a copy of another program's is held, taken over or not.
    bool holds() const { return snapshot_ != nullptr; }
    /// What is decided of `snapshot`, if that is the one that is held. One that was taken over is given up by a drop.
    void decide(const Snapshot& snapshot, Decision decision);
    /// The owner is gone since `time`. False when nothing of its copy is held or will be: the clipboard is empty.
    bool inherit(xcb_timestamp_t time);
    /// A program asks the clipboard manager to save what it has on the clipboard; it is answered when that is done.
    void save(const xcb_selection_request_event_t& event);

    /// When `expire` has something to do; nothing when nobody waits for a decision.
    std::optional<Clock::time_point> deadline() const { return decisionDue_; }
    void expire(Clock::time_point now);

private:
    enum class State { nothing, awaited, undecided, kept };

    bool holdsSomething() const;
    void takeOver();
    void waitForDecision();
    void saveNext();
    void askFurther(std::vector<xcb_atom_t> targets);
    void askNext();
    void take(xcb_atom_t target, X11SelectionTransfer::Result result);
    void answerSaves(bool isDone);
    std::vector<xcb_atom_t> listed(const xcb_selection_request_event_t& event) const;
    std::vector<xcb_atom_t> further(const std::vector<xcb_atom_t>& targets) const;

    X11PasteboardConnection& connection_;
    X11SelectionTransfer& transfer_;
    X11SelectionOffer& offer_;
    std::function<void()> lost_;
    const xcb_atom_t clipboard_;
    State state_ = State::nothing;
    Snapshot snapshot_;
    std::vector<xcb_atom_t> targets_;
    xcb_timestamp_t time_ = 0;
    /// What was read beyond the snapshot, as it came.
    X11SelectionOffer::Values further_;
    std::size_t furtherSize_ = 0;
    /// Since when the owner is gone, while nobody took its place.
    std::optional<xcb_timestamp_t> orphanedAt_;
    std::optional<Clock::time_point> decisionDue_;
    std::deque<xcb_selection_request_event_t> saves_;
    bool isSaving_ = false;
    std::deque<xcb_atom_t> wanted_;
    Clock::time_point savingSince_;
};

}  // namespace brimquill::platform

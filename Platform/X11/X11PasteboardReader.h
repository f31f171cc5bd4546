#pragma once

#include "Platform/X11/X11PasteboardFormats.h"
#include "Platform/X11/X11PasteboardSnapshot.h"
#include "Platform/X11/X11SelectionTransfer.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brimquill::platform {

/// Reads one copy into a snapshot: the list of targets, then the secret hint, then only what capture may want, in its
/// order. The worker's thread.
class X11PasteboardReader final {
public:
    using Clock = X11SelectionTransfer::Clock;
    using Finished = std::function<void(std::shared_ptr<const PasteboardSnapshot>)>;

    /// `finished` gets the snapshot once it stands. A copy that is too large, or whose owner stops answering, stands
    /// with its types, as far as they were told, and without content.
    X11PasteboardReader(X11PasteboardConnection& connection, X11SelectionTransfer& transfer, Finished finished);

    /// Begins with what the clipboard holds since `time`; a read under way is abandoned.
    void start(xcb_timestamp_t time);
    /// Ends a read under way without a snapshot.
    void abandon();
    bool reading() const { return snapshot_ != nullptr; }
    /// What the owner of the copy that was read last listed, in its order.
    const std::vector<xcb_atom_t>& offered() const { return offered_; }

private:
    void ask(const std::string& target);
    void answered(X11SelectionTransfer::Result result);
    void takeTargets(const X11SelectionTransfer::Result& result);
    void take(const x11_formats::Target& target, X11SelectionTransfer::Result result);
    void askNext();
    bool isWanted(x11_formats::ContentKind kind) const;
    bool isOffered(const x11_formats::Target& target);
    bool addType(x11_formats::ContentKind kind);
    void finish();
    void finishWithoutContent();

    X11PasteboardConnection& connection_;
    X11SelectionTransfer& transfer_;
    Finished finished_;
    xcb_timestamp_t time_ = 0;
    Clock::time_point started_;
    std::shared_ptr<PasteboardSnapshot> snapshot_;
    /// Empty, too, when the owner told no list.
    std::vector<xcb_atom_t> offered_;
    bool isListed_ = false;
    std::size_t received_ = 0;
    /// The place in the list of targets; nothing while the owner's own list is awaited.
    std::optional<std::size_t> place_;
};

}  // namespace brimquill::platform

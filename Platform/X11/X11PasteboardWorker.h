#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/X11/X11PasteboardConnection.h"
#include "Platform/X11/X11PasteboardHeir.h"
#include "Platform/X11/X11PasteboardReader.h"
#include "Platform/X11/X11SelectionOffer.h"
#include "Platform/X11/X11SelectionSender.h"
#include "Platform/X11/X11SelectionTransfer.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace brimquill::platform {

/// The thread that watches, reads and serves the clipboard, and that is the desktop's clipboard manager unless there is
/// another. It waits for nothing but its display: other programs are
/// answered event by event, so that a paste from us works while somebody else's owner hangs.
class X11PasteboardWorker final {
public:
    /// What the clipboard held at a change made by others.
    struct Change {
        std::shared_ptr<const PasteboardSnapshot> snapshot;
        /// The number of the program's last write that had taken the clipboard before.
        int writeNumber = 0;
        /// It was there when the program started: no change.
        bool isInitial = false;
    };
    /// Both are called on the worker's thread.
    struct Handlers {
        std::function<void(Change)> changed;
        std::function<void()> displayLost;
    };

    X11PasteboardWorker(X11PasteboardOptions options, Handlers handlers);
    /// Ends at once, whatever others do.
    ~X11PasteboardWorker();

    /// False when there was no display at the start. Main thread.
    bool hasDisplay() const { return hasDisplay_; }
    /// Whether changes by others are noticed. Main thread.
    bool watches() const { return watches_; }

    /// Takes CLIPBOARD for `contents`, soon. `number` counts the writes. Any thread.
    void write(int number, std::shared_ptr<const PasteboardContents> contents);
    /// Takes PRIMARY for `contents`, soon, then calls `done` on the worker's thread. Any thread.
    void offerPrimary(std::shared_ptr<const PasteboardContents> contents, std::function<void(bool)> done);
    /// Decides, soon, whether the copy that gave `snapshot` outlives its owner; a drop takes it off the clipboard if it
    /// was taken over. Any thread.
    void decide(std::shared_ptr<const PasteboardSnapshot> snapshot, X11PasteboardHeir::Decision decision);
    /// Takes the write of that number off the clipboard, soon, if it is still there, and off PRIMARY. Any thread.
    void withdraw(int number);

private:
    using Clock = X11PasteboardConnection::Clock;
    struct Claim {
        int writeNumber = 0;
        std::shared_ptr<const PasteboardContents> contents;
        std::function<void(bool)> done;
        bool isWithdrawn = false;
    };

    void run();
    void startWatching();
    void runTasks();
    bool dispatchEvents();
    void dispatch(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& event);
    void ownerChanged(xcb_window_t owner, xcb_timestamp_t time, xcb_timestamp_t now);
    void startRead();
    void takeRead(std::shared_ptr<const PasteboardSnapshot> snapshot);
    void deliver(std::shared_ptr<const PasteboardSnapshot> snapshot);
    void requestClaim(xcb_atom_t selection, Claim claim);
    void claimAsOf(xcb_timestamp_t time);
    void claimClipboard(const Claim& claim, xcb_timestamp_t time);
    void claimManager(xcb_timestamp_t time);
    void expire();
    void sleep();
    void wake();
    void post(std::function<void()> task);

    Handlers handlers_;
    X11PasteboardConnection connection_;
    X11SelectionTransfer transfer_;
    X11PasteboardReader reader_;
    X11SelectionSender sender_;
    X11SelectionOffer offer_;
    X11PasteboardHeir heir_;
    xcb_atom_t clipboard_ = XCB_ATOM_NONE, primary_ = XCB_ATOM_NONE, manager_ = XCB_ATOM_NONE, clock_ = XCB_ATOM_NONE;
    bool hasDisplay_ = false, watches_ = false;

    // The worker's own from here on.
    std::map<xcb_atom_t, Claim> claims_;
    int writeNumber_ = 0;
    bool isInitial_ = true;
    xcb_timestamp_t readTime_ = 0;
    int restarts_ = 0;
    std::optional<Clock::time_point> readAgainAt_;

    std::mutex tasksMutex_;
    std::vector<std::function<void()>> tasks_;
    std::atomic<bool> ending_ = false;
    int wakeDescriptor_ = -1;
    std::thread thread_;
};

}  // namespace brimquill::platform

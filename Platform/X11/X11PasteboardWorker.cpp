#include "Platform/X11/X11PasteboardWorker.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <utility>

namespace brimquill::platform {
namespace {

// A program that floods us with events shall not keep the rest of the loop from its turn.
constexpr int mostEventsAtOnce = 256;

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

}  // namespace

X11PasteboardWorker::X11PasteboardWorker(X11PasteboardOptions options, Handlers handlers)
    : handlers_(std::move(handlers)),
      connection_(std::move(options)),
      transfer_(connection_),
      reader_(connection_, transfer_,
              [this](std::shared_ptr<const PasteboardSnapshot> snapshot) { takeRead(std::move(snapshot)); }),
      sender_(connection_),
      offer_(connection_, sender_),
      heir_(connection_, transfer_, offer_, [this] { deliver(std::make_shared<const PasteboardSnapshot>()); }),
      wakeDescriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    hasDisplay_ = connection_.alive();
    if (!hasDisplay_) {
        connection_.log("There is no display to share a clipboard on");
        return;
    }
    watches_ = connection_.ownerChangeEvent() != 0;
    clipboard_ = connection_.atom("CLIPBOARD");
    primary_ = connection_.atom("PRIMARY");
    manager_ = connection_.atom("CLIPBOARD_MANAGER");
    clock_ = connection_.atom("_BRIMQUILL_CLOCK");
    thread_ = std::thread([this] { run(); });
}

X11PasteboardWorker::~X11PasteboardWorker() {
    ending_ = true;
    wake();
    connection_.interrupt();
    if (thread_.joinable()) thread_.join();
    if (wakeDescriptor_ >= 0) close(wakeDescriptor_);
}

void X11PasteboardWorker::write(int number, std::shared_ptr<const PasteboardContents> contents) {
    post([this, number, contents = std::move(contents)] { requestClaim(clipboard_, {number, contents, {}}); });
}

void X11PasteboardWorker::offerPrimary(std::shared_ptr<const PasteboardContents> contents,
                                       std::function<void(bool)> done) {
    post([this, contents = std::move(contents), done = std::move(done)] {
        requestClaim(primary_, {0, contents, done});
    });
}

void X11PasteboardWorker::decide(std::shared_ptr<const PasteboardSnapshot> snapshot,
                                 X11PasteboardHeir::Decision decision) {
    post([this, snapshot = std::move(snapshot), decision] { heir_.decide(snapshot, decision); });
}

void X11PasteboardWorker::withdraw(int number) {
    post([this, number] {
        const auto pending = claims_.find(clipboard_);
        if (pending != claims_.end()) {
            if (pending->second.writeNumber == number) pending->second.isWithdrawn = true;
        } else if (writeNumber_ == number && !heir_.holds()) {
            offer_.release(clipboard_);
        }
        offer_.release(primary_);
    });
}

void X11PasteboardWorker::post(std::function<void()> task) {
    {
        const std::lock_guard lock(tasksMutex_);
        tasks_.push_back(std::move(task));
    }
    wake();
}

void X11PasteboardWorker::wake() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wakeDescriptor_, &one, sizeof one);
}

void X11PasteboardWorker::run() {
    startWatching();
    while (!ending_ && connection_.alive()) {
        runTasks();
        expire();
        bool busy = transfer_.pump();
        // Sending and waiting for replies both take in events that no poll would show: sleep only when there were none
        // after everything was sent.
        xcb_flush(connection_.xcb());
        busy |= dispatchEvents();
        if (!busy) sleep();
    }
    if (!ending_) {
        connection_.log("The display was lost: the clipboard is empty from now on");
        handlers_.displayLost();
    }
}

void X11PasteboardWorker::startWatching() {
    if (connection_.owner(manager_) == XCB_NONE)
        requestClaim(manager_, {0, std::make_shared<const PasteboardContents>(), {}});
    if (connection_.owner(clipboard_) == XCB_NONE) {
        isInitial_ = false;
        return;
    }
    readTime_ = XCB_CURRENT_TIME;
    startRead();
}

void X11PasteboardWorker::runTasks() {
    std::vector<std::function<void()>> tasks;
    {
        const std::lock_guard lock(tasksMutex_);
        tasks.swap(tasks_);
    }
    for (const auto& task : tasks)
        task();
}

bool X11PasteboardWorker::dispatchEvents() {
    int count = 0;
    for (; count < mostEventsAtOnce && !ending_; ++count) {
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(connection_.xcb()));
        if (!event) break;
        dispatch(*event);
    }
    return count > 0;
}

// Errors (type 0) come from windows of others that vanished: what was meant for them has no taker any more.
void X11PasteboardWorker::dispatch(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (type == 0) return;
    if (watches_ && type == connection_.ownerChangeEvent()) {
        const auto& change = as<xcb_xfixes_selection_notify_event_t>(event);
        if (change.selection == clipboard_ && !offer_.isOutdated(clipboard_, event))
            ownerChanged(change.owner, change.selection_timestamp, change.timestamp);
    } else if (type == XCB_SELECTION_NOTIFY) {
        transfer_.handle(as<xcb_selection_notify_event_t>(event));
    } else if (type == XCB_SELECTION_REQUEST) {
        answer(as<xcb_selection_request_event_t>(event));
    } else if (type == XCB_SELECTION_CLEAR) {
        const xcb_atom_t selection = as<xcb_selection_clear_event_t>(event).selection;
        if (!offer_.isOutdated(selection, event)) offer_.lose(selection);
    } else if (type == XCB_DESTROY_NOTIFY) {
        sender_.handle(as<xcb_destroy_notify_event_t>(event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = as<xcb_property_notify_event_t>(event);
        if (change.window != connection_.window())
            sender_.handle(change);
        else if (change.atom == clock_)
            claimAsOf(change.time);
        else
            transfer_.handle(change);
    }
}

void X11PasteboardWorker::answer(const xcb_selection_request_event_t& event) {
    const bool isSave = event.selection == manager_ && event.target == connection_.atom("SAVE_TARGETS");
    if (isSave && offer_.owns(manager_))
        heir_.save(event);
    else
        offer_.handle(event);
}

// `time` is since when the present owner, or the last one, has it, `now` when that changed.
void X11PasteboardWorker::ownerChanged(xcb_window_t owner, xcb_timestamp_t time, xcb_timestamp_t now) {
    const bool cutOff = reader_.reading();
    reader_.abandon();
    isInitial_ = false;
    readTime_ = time;
    if (owner == connection_.window()) return readAgainAt_.reset();
    offer_.lose(clipboard_);
    if (owner == XCB_NONE) {
        readAgainAt_.reset();
        if (heir_.inherit(now)) return;
        return deliver(std::make_shared<const PasteboardSnapshot>());
    }
    heir_.forget();
    restarts_ = cutOff ? restarts_ + 1 : restarts_;
    if (restarts_ < connection_.options().restartLimit) return startRead();
    // Somebody takes the clipboard anew whenever it is read. It is looked at again in a while, once it stays as it is;
    // until then it counts as empty, for what it held before is gone.
    if (restarts_ == connection_.options().restartLimit) {
        connection_.log("A copy cannot be read: the clipboard changes faster than it answers");
        deliver(std::make_shared<const PasteboardSnapshot>());
        restarts_ = connection_.options().restartLimit + 1;
    }
    if (!readAgainAt_) readAgainAt_ = Clock::now() + connection_.options().restartPause;
}

void X11PasteboardWorker::startRead() {
    readAgainAt_.reset();
    heir_.await();
    reader_.start(readTime_);
}

void X11PasteboardWorker::takeRead(std::shared_ptr<const PasteboardSnapshot> snapshot) {
    if (isInitial_)
        heir_.forget();
    else
        heir_.hold(snapshot, reader_.offered(), readTime_);
    deliver(std::move(snapshot));
}

void X11PasteboardWorker::deliver(std::shared_ptr<const PasteboardSnapshot> snapshot) {
    restarts_ = 0;
    handlers_.changed({std::move(snapshot), writeNumber_, std::exchange(isInitial_, false)});
}

// A claim needs the server's present time, which a change to a property of our own window tells.
void X11PasteboardWorker::requestClaim(xcb_atom_t selection, Claim claim) {
    Claim& place = claims_[selection];
    if (place.done) place.done(false);
    place = std::move(claim);
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_APPEND, connection_.window(), clock_, XCB_ATOM_INTEGER, 32, 0,
                        nullptr);
    xcb_flush(connection_.xcb());
}

void X11PasteboardWorker::claimAsOf(xcb_timestamp_t time) {
    for (auto& [selection, claim] : std::exchange(claims_, {})) {
        if (selection == clipboard_)
            claimClipboard(claim, time);
        else if (selection == manager_)
            claimManager(time);
        else
            claim.done(offer_.claim(selection, offer_.values(x11_formats::encode(*claim.contents)), time));
    }
}

void X11PasteboardWorker::claimClipboard(const Claim& claim, xcb_timestamp_t time) {
    const bool claimed = offer_.claim(clipboard_, offer_.values(x11_formats::encode(*claim.contents)), time);
    // Whatever was copied before this write is replaced by it. When the claim came too late, the copy that won is newer
    // than the write: its event is on the way, and the read of it counts after the write.
    writeNumber_ = claim.writeNumber;
    if (!claimed) return;
    reader_.abandon();
    heir_.forget();
    if (claim.isWithdrawn) offer_.release(clipboard_);
}

// A manager that came before us stays; one that comes after us and takes it may have it.
void X11PasteboardWorker::claimManager(xcb_timestamp_t time) {
    if (connection_.owner(manager_) == XCB_NONE && offer_.claim(manager_, {}, time))
        connection_.announceManager(manager_, time);
}

void X11PasteboardWorker::expire() {
    const Clock::time_point now = Clock::now();
    transfer_.expire(now);
    sender_.expire(now);
    heir_.expire(now);
    if (readAgainAt_ && now >= *readAgainAt_) startRead();
}

void X11PasteboardWorker::sleep() {
    std::optional<Clock::time_point> until = readAgainAt_;
    for (const auto& deadline : {transfer_.deadline(), sender_.deadline(), heir_.deadline()})
        if (deadline) until = until ? std::min(*until, *deadline) : *deadline;
    int timeout = -1;
    if (until) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - Clock::now()).count();
        timeout = static_cast<int>(std::max<std::int64_t>(left, 0));
    }
    pollfd waited[] = {{connection_.descriptor(), POLLIN, 0}, {wakeDescriptor_, POLLIN, 0}};
    poll(waited, 2, timeout);
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = read(wakeDescriptor_, &count, sizeof count);
}

}  // namespace brimquill::platform

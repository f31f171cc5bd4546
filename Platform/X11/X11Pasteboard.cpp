#include "Platform/X11/X11Pasteboard.h"

#include "Platform/X11/X11PasteboardFormats.h"
#include "Platform/X11/X11PasteboardWorker.h"

#include <chrono>
#include <deque>
#include <future>
#include <mutex>
#include <utility>

namespace brimquill::platform {
namespace {

constexpr std::chrono::milliseconds longestPrimaryWait{250};

using Change = X11PasteboardWorker::Change;

/// Changes on their way to the main thread. Each arrives by itself, also when that thread was busy for a while, and the
/// next only when what the one before it had posted there is done: who is told of a change may look at it a turn later.
/// Should the main thread be busy for long, the oldest go, so that what waits stays within the limit of one copy.
class Mailbox final {
public:
    explicit Mailbox(std::size_t limit) : limit_(limit) {}

    /// True when nobody is on the way to take it.
    bool put(Change change) {
        const std::lock_guard lock(mutex_);
        size_ += change.snapshot->size();
        changes_.push_back(std::move(change));
        while (size_ > limit_ && changes_.size() > 1)
            drop();
        return !std::exchange(isBeingTaken_, true);
    }

    /// Whether there is more to take; if not, the next `put` says so.
    bool hasMore() {
        const std::lock_guard lock(mutex_);
        return isBeingTaken_ = !changes_.empty();
    }

    std::optional<Change> take() {
        const std::lock_guard lock(mutex_);
        if (changes_.empty()) return std::nullopt;
        return drop();
    }

private:
    Change drop() {
        Change oldest = std::move(changes_.front());
        changes_.pop_front();
        size_ -= oldest.snapshot->size();
        return oldest;
    }

    const std::size_t limit_;
    std::mutex mutex_;
    std::deque<Change> changes_;
    std::size_t size_ = 0;
    bool isBeingTaken_ = false;
};

}  // namespace

/// Everything but the mailbox is the main thread's. Work that was posted holds it weakly.
struct X11Pasteboard::State {
    explicit State(std::size_t cap) : mailbox(cap) {}

    void deliverNext() {
        accept(mailbox.take());
        if (mailbox.hasMore()) postDelivery();
    }

    void accept(const std::optional<Change>& change) {
        if (!change || change->writeNumber < writeNumber) return;
        snapshot = change->snapshot;
        isOurs = false;
        if (change->isInitial) return;
        ++changeCount;
        announce();
    }

    void loseDisplay() {
        hasDisplay = false;
        snapshot = std::make_shared<const PasteboardSnapshot>();
        isOurs = false;
        ++changeCount;
        announce();
    }

    void announce() {
        if (const auto called = handler; called && *called) (*called)();
    }

    Mailbox mailbox;
    std::shared_ptr<const PasteboardSnapshot> snapshot = std::make_shared<const PasteboardSnapshot>();
    std::shared_ptr<std::function<void()>> handler;
    std::function<void()> postDelivery;
    int changeCount = 1, writeNumber = 0;
    bool hasDisplay = true, isOurs = false;
};

X11Pasteboard::X11Pasteboard(RunLoop& runLoop, X11PasteboardOptions options)
    : runLoop_(runLoop), state_(std::make_shared<State>(options.cap)) {
    const std::weak_ptr<State> weak = state_;
    auto onMain = [&runLoop, weak](void (State::*operation)()) {
        runLoop.async([weak, operation] {
            if (const auto state = weak.lock()) (state.get()->*operation)();
        });
    };
    X11PasteboardWorker::Handlers handlers;
    handlers.changed = [mailbox = std::shared_ptr<Mailbox>(state_, &state_->mailbox), onMain](Change change) {
        if (mailbox->put(std::move(change))) onMain(&State::deliverNext);
    };
    state_->postDelivery = [onMain] { onMain(&State::deliverNext); };
    handlers.displayLost = [onMain] { onMain(&State::loseDisplay); };
    worker_ = std::make_unique<X11PasteboardWorker>(std::move(options), std::move(handlers));
    state_->hasDisplay = worker_->hasDisplay();
}

X11Pasteboard::~X11Pasteboard() = default;

int X11Pasteboard::changeCount() const {
    return state_->changeCount;
}

std::optional<std::vector<std::string>> X11Pasteboard::types() const {
    return state_->snapshot->types;
}

std::vector<std::string> X11Pasteboard::filePaths() const {
    return state_->snapshot->filePaths;
}

std::optional<std::string> X11Pasteboard::string() const {
    return state_->snapshot->string;
}

SharedBytes X11Pasteboard::data(const std::string& type) const {
    const PasteboardSnapshot& snapshot = *state_->snapshot;
    if (type == pasteboard_type::gif) return snapshot.gif;
    if (type == pasteboard_type::png) return snapshot.png;
    return type == pasteboard_type::tiff ? snapshot.tiff : nullptr;
}

int X11Pasteboard::write(const PasteboardContents& contents) {
    if (!state_->hasDisplay) return state_->changeCount;
    state_->snapshot = std::make_shared<const PasteboardSnapshot>(x11_formats::snapshot(contents));
    state_->isOurs = true;
    ++state_->changeCount;
    worker_->write(++state_->writeNumber, std::make_shared<const PasteboardContents>(contents));
    // Later, as every other change: the caller first learns the count by which it knows its own.
    runLoop_.async([weak = std::weak_ptr(state_)] {
        if (const auto state = weak.lock()) state->announce();
    });
    return state_->changeCount;
}

void X11Pasteboard::keep(int changeCount) {
    if (changeCount != state_->changeCount || state_->isOurs) return;
    worker_->decide(state_->snapshot, X11PasteboardHeir::Decision::keep);
}

void X11Pasteboard::drop(int changeCount) {
    if (changeCount != state_->changeCount) return;
    if (state_->isOurs)
        worker_->withdraw(state_->writeNumber);
    else
        worker_->decide(state_->snapshot, X11PasteboardHeir::Decision::drop);
}

bool X11Pasteboard::setChangeHandler(std::function<void()> handler) {
    state_->handler = std::make_shared<std::function<void()>>(std::move(handler));
    return state_->hasDisplay && worker_->watches();
}

bool X11Pasteboard::offerPrimary() {
    if (!state_->hasDisplay || !state_->snapshot->string) return false;
    PasteboardContents text;
    text.string = state_->snapshot->string;
    auto promise = std::make_shared<std::promise<bool>>();
    std::future<bool> offered = promise->get_future();
    worker_->offerPrimary(std::make_shared<const PasteboardContents>(std::move(text)),
                          [promise = std::move(promise)](bool done) { promise->set_value(done); });
    if (offered.wait_for(longestPrimaryWait) != std::future_status::ready) return false;
    try {
        return offered.get();
    } catch (const std::future_error&) {
        return false;  // the thread ended first
    }
}

}  // namespace brimquill::platform

#include "BrimquillCore/Foundation/NotificationCenter.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace brimquill {

struct NotificationCenter::State {
    std::mutex mutex;
    std::condition_variable callEnded;
    std::vector<std::shared_ptr<Observation::Entry>> entries;  // in the order of registration
};

struct NotificationCenter::Observation::Entry {
    std::string name;
    const void* object = nullptr;
    Handler handler;
    std::weak_ptr<State> state;
    // Guarded by the state's mutex.
    bool cancelled = false;
    std::vector<std::thread::id> callers;  // one for each call under way

    bool matches(const Notification& notification) const {
        return name == notification.name && (object == nullptr || object == notification.object);
    }

    bool isCalledByOtherThread() const {
        const auto self = std::this_thread::get_id();
        return std::any_of(callers.begin(), callers.end(), [self](std::thread::id id) { return id != self; });
    }
};

NotificationCenter::Observation::Observation(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}

NotificationCenter::Observation::~Observation() {
    cancel();
}

NotificationCenter::Observation::Observation(Observation&&) noexcept = default;

NotificationCenter::Observation& NotificationCenter::Observation::operator=(Observation&& other) noexcept {
    if (this != &other) {
        cancel();
        entry_ = std::move(other.entry_);
    }
    return *this;
}

void NotificationCenter::Observation::cancel() {
    const auto entry = std::exchange(entry_, nullptr);
    if (!entry) return;
    const auto state = entry->state.lock();
    if (!state) return;
    std::unique_lock lock(state->mutex);
    entry->cancelled = true;
    std::erase(state->entries, entry);
    // Whoever cancels may free at once what the handler uses.
    state->callEnded.wait(lock, [&entry] { return !entry->isCalledByOtherThread(); });
}

NotificationCenter::NotificationCenter() : state_(std::make_shared<State>()) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::defaultCenter() {
    static auto* const center = new NotificationCenter;
    return *center;
}

NotificationCenter::Observation NotificationCenter::observe(std::string name, const void* object, Handler handler) {
    auto entry = std::make_shared<Observation::Entry>();
    entry->name = std::move(name);
    entry->object = object;
    entry->handler = std::move(handler);
    entry->state = state_;
    const std::lock_guard lock(state_->mutex);
    state_->entries.push_back(entry);
    return Observation(entry);
}

void NotificationCenter::post(const Notification& notification) {
    const auto state = state_;  // an observer may destroy the centre
    std::unique_lock lock(state->mutex);
    std::vector<std::shared_ptr<Observation::Entry>> matching;
    for (const auto& entry : state->entries) {
        if (entry->matches(notification)) matching.push_back(entry);
    }
    for (const auto& entry : matching) {
        if (entry->cancelled) continue;
        const auto self = std::this_thread::get_id();
        entry->callers.push_back(self);
        lock.unlock();
        entry->handler(notification);
        lock.lock();
        entry->callers.erase(std::find(entry->callers.begin(), entry->callers.end(), self));
        state->callEnded.notify_all();
    }
}

}  // namespace brimquill

#include "Platform/Headless/HeadlessSerialQueue.h"

#include <utility>

namespace brimquill::platform {

struct HeadlessSerialQueue::State {
    explicit State(HeadlessRunLoop& runLoop) : loop(runLoop) {}

    void awaitTurn(std::unique_lock<std::mutex>& lock, Turn mine) {
        changed.wait(lock, [&] { return turn == mine; });
    }
    void pass(Turn to) {
        turn = to;
        changed.notify_all();
    }

    HeadlessRunLoop& loop;
    std::mutex mutex;
    std::condition_variable changed;
    Turn turn = Turn::world;
    std::deque<std::function<void()>> work;
    /// A piece runs or waits, or the turn of the next one is posted already.
    bool isBusy = false;
    bool isStopping = false;
    bool hasEnded = false;
};

HeadlessSerialQueue::HeadlessSerialQueue(HeadlessRunLoop& loop)
    : state_(std::make_shared<State>(loop)), thread_([state = state_] { serve(state); }) {}

HeadlessSerialQueue::~HeadlessSerialQueue() {
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(state_->mutex);
        state_->isStopping = true;
        dropped.swap(state_->work);
    }
    giveTurn(state_);
    thread_.join();
}

void HeadlessSerialQueue::async(std::function<void()> work) {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->isStopping) return;
        state_->work.push_back(std::move(work));
        if (std::exchange(state_->isBusy, true)) return;
    }
    schedule(state_, 0);
}

void HeadlessSerialQueue::wait(double seconds) {
    const auto state = state_;
    {
        const std::lock_guard lock(state->mutex);
        if (state->isStopping) return;
    }
    schedule(state, seconds);
    std::unique_lock lock(state->mutex);
    state->pass(Turn::world);
    state->awaitTurn(lock, Turn::queue);
}

void HeadlessSerialQueue::schedule(const std::shared_ptr<State>& state, double seconds) {
    state->loop.asyncAfter(seconds, [weak = std::weak_ptr(state)] {
        if (const auto due = weak.lock()) giveTurn(due);
    });
}

/// On the world's thread: lets the queue run until it waits or has nothing left.
void HeadlessSerialQueue::giveTurn(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    if (state->hasEnded) return;
    state->pass(Turn::queue);
    state->awaitTurn(lock, Turn::world);
}

void HeadlessSerialQueue::serve(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    for (;;) {
        state->awaitTurn(lock, Turn::queue);
        while (!state->work.empty()) {
            auto work = std::move(state->work.front());
            state->work.pop_front();
            lock.unlock();
            work();
            work = nullptr;  // what it holds may call back here
            lock.lock();
        }
        state->isBusy = false;
        state->hasEnded = state->isStopping;
        state->pass(Turn::world);
        if (state->hasEnded) return;
    }
}

}  // namespace brimquill::platform

#pragma once

#include "Platform/Headless/HeadlessRunLoop.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace brimquill::platform {

/// A serial queue in virtual time. Its thread is a real one, so that work can stop in the middle to wait, but it never
/// runs beside the world: one hands the turn to the other and stands still until it comes back.
class HeadlessSerialQueue final : public SerialQueue {
public:
    explicit HeadlessSerialQueue(HeadlessRunLoop& loop);
    ~HeadlessSerialQueue() override;
    void async(std::function<void()> work) override;
    void wait(double seconds) override;

private:
    enum class Turn { world, queue };
    struct State;
    static void serve(const std::shared_ptr<State>& state);
    static void giveTurn(const std::shared_ptr<State>& state);
    static void schedule(const std::shared_ptr<State>& state, double seconds);

    std::shared_ptr<State> state_;
    std::thread thread_;
};

}  // namespace brimquill::platform

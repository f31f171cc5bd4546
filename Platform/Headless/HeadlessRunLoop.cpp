#include "Platform/Headless/HeadlessRunLoop.h"

#include "Platform/Headless/HeadlessSerialQueue.h"

#include <algorithm>

namespace brimquill::platform {
namespace {

/// A timer that its token holds; work that is already posted finds it gone.
struct Timer {
    RunLoop::Work work;
    double interval = 0;
};

class TimerToken final : public Held {
public:
    explicit TimerToken(std::shared_ptr<Timer> timer) : timer_(std::move(timer)) {}

private:
    std::shared_ptr<Timer> timer_;
};

void repeat(HeadlessRunLoop& loop, const std::weak_ptr<Timer>& weak) {
    const auto timer = weak.lock();
    if (!timer) return;
    loop.asyncAfter(timer->interval, [&loop, weak] {
        if (const auto due = weak.lock()) {
            repeat(loop, weak);
            due->work();
        }
    });
}

}  // namespace

HeadlessRunLoop::~HeadlessRunLoop() = default;

void HeadlessRunLoop::advance(double seconds) {
    const double limit = uptime() + std::max(0.0, seconds);
    while (const Work work = takeDue(limit))
        work();
    const std::lock_guard lock(mutex_);
    uptime_ = limit;
}

RunLoop::Work HeadlessRunLoop::takeDue(double limit) {
    const std::lock_guard lock(mutex_);
    if (work_.empty() || work_.begin()->first.first > limit) return {};
    auto node = work_.extract(work_.begin());
    uptime_ = std::max(uptime_, node.key().first);
    return std::move(node.mapped());
}

std::size_t HeadlessRunLoop::pendingCount() const {
    const std::lock_guard lock(mutex_);
    return work_.size();
}

void HeadlessRunLoop::setNow(Date now) {
    const std::lock_guard lock(mutex_);
    epoch_ = now.seconds - uptime_;
}

Date HeadlessRunLoop::now() const {
    const std::lock_guard lock(mutex_);
    return {epoch_ + uptime_};
}

double HeadlessRunLoop::uptime() const {
    const std::lock_guard lock(mutex_);
    return uptime_;
}

void HeadlessRunLoop::asyncAfter(double seconds, Work work) {
    const std::lock_guard lock(mutex_);
    work_.emplace(std::pair(uptime_ + std::max(0.0, seconds), nextSequence_++), std::move(work));
}

Token HeadlessRunLoop::after(double seconds, Work work) {
    auto timer = std::make_shared<Timer>(Timer{std::move(work), 0});
    asyncAfter(seconds, [weak = std::weak_ptr(timer)] {
        if (const auto due = weak.lock()) due->work();
    });
    return std::make_unique<TimerToken>(std::move(timer));
}

Token HeadlessRunLoop::every(double seconds, Work work) {
    // An interval of nothing would keep the clock from ever moving on.
    auto timer = std::make_shared<Timer>(Timer{std::move(work), std::max(seconds, 0.001)});
    repeat(*this, timer);
    return std::make_unique<TimerToken>(std::move(timer));
}

void HeadlessRunLoop::global(QualityOfService, Work work) {
    async(std::move(work));
}

std::unique_ptr<SerialQueue> HeadlessRunLoop::serialQueue(std::string) {
    return std::make_unique<HeadlessSerialQueue>(*this);
}

}  // namespace brimquill::platform

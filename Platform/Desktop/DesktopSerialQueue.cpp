#include "Platform/Desktop/DesktopSerialQueue.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace brimquill::platform {

DesktopSerialQueue::DesktopSerialQueue(std::string label)
    : thread_([this, label = std::move(label)] {
          constexpr std::size_t roomForName = 15;
          const std::size_t dot = label.find_last_of('.');
          const std::string name = dot == std::string::npos ? label : label.substr(dot + 1);
          pthread_setname_np(pthread_self(), name.substr(0, roomForName).c_str());
          serve();
      }) {}

DesktopSerialQueue::~DesktopSerialQueue() {
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
        dropped.swap(work_);
    }
    changed_.notify_all();
    thread_.join();
}

void DesktopSerialQueue::async(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        if (isStopping_) return;
        work_.push_back(std::move(work));
    }
    changed_.notify_all();
}

void DesktopSerialQueue::wait(double seconds) {
    const auto bounded = std::chrono::duration<double>(std::clamp(seconds, 0.0, 86400.0));
    const auto until =
        std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(bounded);
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, until, [this] { return isStopping_; });
}

void DesktopSerialQueue::serve() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isStopping_ || !work_.empty(); });
        if (isStopping_) return;
        auto work = std::move(work_.front());
        work_.pop_front();
        lock.unlock();
        work();
        work = nullptr;  // what it holds may call back here
        lock.lock();
    }
}

}  // namespace brimquill::platform

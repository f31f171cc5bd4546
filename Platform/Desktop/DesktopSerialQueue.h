#pragma once

#include "Platform/RunLoop.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace brimquill::platform {

class DesktopSerialQueue final : public SerialQueue {
public:
    /// The label names the thread, as far as the system has room for it.
    explicit DesktopSerialQueue(std::string label);
    ~DesktopSerialQueue() override;
    void async(std::function<void()> work) override;
    void wait(double seconds) override;

private:
    void serve();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> work_;
    bool isStopping_ = false;
    std::thread thread_;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/RunLoop.h"

#include <map>
#include <mutex>
#include <utility>

namespace brimquill::platform {

/// Virtual time: nothing happens until the owner advances the clock, then everything that falls due runs in the order
/// of its time, and of its posting where times are equal. Work for background queues is run the same way, one piece at
/// a time, so that every run is the same.
class HeadlessRunLoop final : public RunLoop {
public:
    HeadlessRunLoop() = default;
    ~HeadlessRunLoop() override;

    /// Runs what is due now, what that posts for now included.
    void run() { advance(0); }
    /// Moves the clock, running what falls due on the way.
    void advance(double seconds);
    /// Pieces of work that wait, timers included.
    std::size_t pendingCount() const;
    /// Moves the wall clock alone, as when the user sets it.
    void setNow(Date now);

    Date now() const override;
    double uptime() const override;
    void async(Work work) override { asyncAfter(0, std::move(work)); }
    void asyncAfter(double seconds, Work work) override;
    Token after(double seconds, Work work) override;
    Token every(double seconds, Work work) override;
    void global(QualityOfService qos, Work work) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label) override;

private:
    Work takeDue(double limit);

    mutable std::mutex mutex_;
    double uptime_ = 1000;
    double epoch_ = 1'700'000'000 - 1000;
    std::uint64_t nextSequence_ = 0;
    std::map<std::pair<double, std::uint64_t>, Work> work_;
};

}  // namespace brimquill::platform

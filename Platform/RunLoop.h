#pragma once

#include "BrimquillCore/Foundation/Date.h"
#include "Platform/Types.h"

#include <functional>
#include <memory>
#include <string>

namespace brimquill::platform {

enum class QualityOfService { userInitiated, utility };

/// One piece of work after the other, in order, on a thread of its own. Destroying it waits for the piece that runs
/// and drops the rest.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    virtual void async(std::function<void()> work) = 0;
    /// Blocks this queue's own thread; called from work on this queue only. Cut short when the queue is being
    /// destroyed.
    virtual void wait(double seconds) = 0;
};

/// Time and queues. The main queue is the thread that made the services; its timers run there too, also while a menu or
/// a drag is under way. `async`, `asyncAfter` and `global` may be called from any thread, the rest from the main one.
class RunLoop {
public:
    using Work = std::function<void()>;
    virtual ~RunLoop() = default;

    virtual Date now() const = 0;
    /// Seconds on a clock that never goes back.
    virtual double uptime() const = 0;
    /// On the main queue, soon; work keeps its order.
    virtual void async(Work work) = 0;
    /// On the main queue, `seconds` from now; cannot be called off.
    virtual void asyncAfter(double seconds, Work work) = 0;
    /// The same, called off when the token goes.
    [[nodiscard]] virtual Token after(double seconds, Work work) = 0;
    [[nodiscard]] virtual Token every(double seconds, Work work) = 0;
    /// On a background thread, beside others.
    virtual void global(QualityOfService qos, Work work) = 0;
    virtual std::unique_ptr<SerialQueue> serialQueue(std::string label) = 0;
};

}  // namespace brimquill::platform

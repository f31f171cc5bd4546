#pragma once

#include <functional>

namespace brimquill::platform {

/// One running program for each user and data directory. Main thread.
class Instance {
public:
    virtual ~Instance() = default;
    /// True: this is the first, and stays it until it ends. False: one is running already and was told of this start;
    /// one that does not answer hears of it when it goes on. Waits for the other program for two seconds at most.
    virtual bool claim() = 0;
    /// Called when the program is opened again while it runs.
    virtual void setReopenHandler(std::function<void()> handler) = 0;
};

}  // namespace brimquill::platform

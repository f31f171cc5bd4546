#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/RunLoop.h"

#include <functional>
#include <vector>

namespace brimquill {

/// Recognises two quick presses of ⌘ alone, in any program. Main thread.
class DoubleTapCommandMonitor final {
public:
    /// From press to press, in seconds; how long a press lasts does not matter.
    static constexpr double maximumGap = 0.35;

    DoubleTapCommandMonitor(platform::EventMonitors& eventMonitors, platform::RunLoop& runLoop)
        : eventMonitors_(eventMonitors), runLoop_(runLoop) {}

    std::function<void()> onDoubleTap;

    /// Watches from now on; where the system lets nobody watch other programs' keys, within our own panels only.
    void start();
    void stop() { monitors_.clear(); }

private:
    void handle(const platform::Event& event);
    void commandPressed();

    platform::EventMonitors& eventMonitors_;
    platform::RunLoop& runLoop_;
    std::vector<platform::Token> monitors_;
    /// On the run loop's `uptime` clock; 0 when the pair it began was used up.
    double lastTap_ = 0;
    bool commandWasDown_ = false;
    bool interrupted_ = false;
};

}  // namespace brimquill

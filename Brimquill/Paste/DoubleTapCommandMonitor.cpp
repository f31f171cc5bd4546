#include "Brimquill/Paste/DoubleTapCommandMonitor.h"

#include <utility>

namespace brimquill {

void DoubleTapCommandMonitor::start() {
    stop();
    const auto mask = platform::EventMask::keyDown | platform::EventMask::flagsChanged;
    auto global = eventMonitors_.addGlobalMonitor(mask, [this](const platform::Event& event) { handle(event); });
    if (global) monitors_.push_back(std::move(global));
    monitors_.push_back(eventMonitors_.addLocalMonitor(mask, [this](const platform::Event& event) {
        handle(event);
        return false;
    }));
}

void DoubleTapCommandMonitor::handle(const platform::Event& event) {
    const bool isKey = event.type == platform::EventType::keyDown;
    const bool isCommandAlone = event.modifiers == platform::Modifiers{.command = true};
    if (isKey || (event.modifiers.command && !isCommandAlone)) {
        interrupted_ = true;
    } else if (!isCommandAlone) {
        commandWasDown_ = false;
    } else if (!commandWasDown_) {
        commandPressed();
    }
}

void DoubleTapCommandMonitor::commandPressed() {
    const double now = runLoop_.uptime();
    const bool isSecondTap = !interrupted_ && now - lastTap_ < maximumGap;
    lastTap_ = isSecondTap ? 0 : now;
    commandWasDown_ = true;
    interrupted_ = false;
    if (isSecondTap && onDoubleTap) onDoubleTap();
}

}  // namespace brimquill

#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/HandlerList.h"

namespace brimquill::platform {

/// Monitors that are fed by hand.
class HeadlessEventMonitors final : public EventMonitors {
public:
    /// Off: the system declines global monitors.
    void setAllowsGlobalMonitors(bool allows) { allowsGlobal_ = allows; }
    /// An event that goes to another program.
    void sendGlobal(const Event& event);
    /// An event that goes to this program's own panels; whether a monitor swallowed it.
    bool sendLocal(const Event& event);
    bool hasGlobalMonitors() const { return !global_.isEmpty(); }
    bool hasLocalMonitors() const { return !local_.isEmpty(); }

    Token addGlobalMonitor(EventMask mask, std::function<void(const Event&)> handler) override;
    Token addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) override;

private:
    HandlerList<std::function<void(const Event&)>> global_;
    HandlerList<std::function<bool(const Event&)>> local_;
    bool allowsGlobal_ = true;
};

}  // namespace brimquill::platform

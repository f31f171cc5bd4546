#include "Platform/Headless/HeadlessEventMonitors.h"

#include <utility>

namespace brimquill::platform {

Token HeadlessEventMonitors::addGlobalMonitor(EventMask mask, std::function<void(const Event&)> handler) {
    if (!allowsGlobal_) return nullptr;
    return global_.add([mask, handler = std::move(handler)](const Event& event) {
        if (contains(mask, maskOf(event.type))) handler(event);
    });
}

Token HeadlessEventMonitors::addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) {
    return local_.add([mask, handler = std::move(handler)](const Event& event) {
        return contains(mask, maskOf(event.type)) && handler(event);
    });
}

void HeadlessEventMonitors::sendGlobal(const Event& event) {
    global_.callAll(event);
}

bool HeadlessEventMonitors::sendLocal(const Event& event) {
    return local_.anyOf([&](const auto& handler) { return handler(event); });
}

}  // namespace brimquill::platform

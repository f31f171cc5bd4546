#pragma once

#include "Platform/Types.h"

#include <functional>
#include <string>

namespace brimquill::platform {

enum class EventType { keyDown, flagsChanged, mouseDown };

/// Which types a monitor wants; combine with `|`.
enum class EventMask : unsigned { keyDown = 1, flagsChanged = 2, mouseDown = 4 };
constexpr EventMask operator|(EventMask a, EventMask b) {
    return static_cast<EventMask>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(EventMask mask, EventMask part) {
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(part)) != 0;
}

constexpr EventMask maskOf(EventType type) {
    switch (type) {
        case EventType::keyDown:
            return EventMask::keyDown;
        case EventType::flagsChanged:
            return EventMask::flagsChanged;
        case EventType::mouseDown:
            return EventMask::mouseDown;
    }
    return EventMask::keyDown;
}

struct Event {
    EventType type = EventType::keyDown;
    /// A value of `key`, or `key::other`.
    int keyCode = key::other;
    /// What the key types as it was pressed, UTF-8; empty for keys that type nothing, and while a dead key waits.
    std::string characters;
    /// What it types with no modifier but Shift. With ⌘ on a keyboard of another script, the Latin letter of the key.
    std::string charactersIgnoringModifiers;
    /// The modifiers held, the changed one included.
    Modifiers modifiers;
    /// Where the pointer was, for `mouseDown`.
    Point location;
    /// When it happened, on the run loop's `uptime` clock.
    double uptime = 0;
};

/// Sees events. A global monitor sees those that go to other programs and cannot change them; a local one sees keys
/// that go to this program's own panels, before they do, and may swallow them. Main thread.
class EventMonitors {
public:
    virtual ~EventMonitors() = default;
    /// Null when the system declines.
    [[nodiscard]] virtual Token addGlobalMonitor(EventMask mask, std::function<void(const Event&)> handler) = 0;
    /// The handler answers whether the event is swallowed.
    [[nodiscard]] virtual Token addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) = 0;
};

}  // namespace brimquill::platform

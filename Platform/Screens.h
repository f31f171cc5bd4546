#pragma once

#include "Platform/Types.h"

#include <functional>
#include <optional>

namespace brimquill::platform {

struct Screen {
    /// The whole screen, and what panels and docks leave of it.
    Rect frame, visibleFrame;
    /// Pixels a point.
    double scale = 1;
};

/// Main thread.
class Screens {
public:
    virtual ~Screens() = default;
    /// The screen the user works on: that of the active window, else of the pointer; nothing when there is none.
    virtual std::optional<Screen> main() = 0;
    virtual Point mouseLocation() = 0;
    /// Calls `changed` after screens come or go, or change in size or place or in what docks leave of them.
    [[nodiscard]] virtual Token observe(std::function<void()> changed) = 0;
};

}  // namespace brimquill::platform

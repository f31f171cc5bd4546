#pragma once

#include "Platform/Desktop/ScreenChanges.h"
#include "Platform/Screens.h"
#include "Platform/X11/X11Connection.h"

#include <utility>

namespace brimquill::platform {

/// Screens as the user interface knows them (RandR), cut to the window manager's work area.
class X11Screens final : public Screens {
public:
    explicit X11Screens(X11Connection& connection) : connection_(connection) {}
    std::optional<Screen> main() override;
    Point mouseLocation() override;
    Token observe(std::function<void()> changed) override { return changes_.observe(std::move(changed)); }

private:
    std::optional<Point> activeWindowCentre();

    X11Connection& connection_;
    ScreenChanges changes_;
};

}  // namespace brimquill::platform

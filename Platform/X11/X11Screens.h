#pragma once

#include "Platform/Screens.h"
#include "Platform/X11/X11Connection.h"

namespace brimquill::platform {

/// Screens as the user interface knows them (RandR), cut to the window manager's work area.
class X11Screens final : public Screens {
public:
    explicit X11Screens(X11Connection& connection) : connection_(connection) {}
    std::optional<Screen> main() override;
    Point mouseLocation() override;

private:
    std::optional<Point> activeWindowCentre();

    X11Connection& connection_;
};

}  // namespace brimquill::platform

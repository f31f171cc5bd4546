#pragma once

#include "Platform/X11/X11Connection.h"

#include <optional>
#include <string>

namespace brimquill::platform {

/// The active window as the server knows it; no program is asked anything.
struct X11Frontmost {
    int processIdentifier = 0;
    /// The two halves of WM_CLASS.
    std::string instance, windowClass;
    /// The desktop-file id that the program itself gives, without ".desktop"; or empty.
    std::string desktopFile;
};

/// Nothing when no window is active or it has just gone.
std::optional<X11Frontmost> x11Frontmost(X11Connection& connection);

}  // namespace brimquill::platform

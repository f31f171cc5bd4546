#pragma once

#include "Platform/Workspace.h"

#include <string>

namespace brimquill::platform {

/// Starts the desktop's opener with a URL, as a process that is nobody's child, so that none is left behind.
bool openWithDesktop(const std::string& url);

/// This program, as `Workspace` describes it.
RunningApplication thisApplication();

}  // namespace brimquill::platform

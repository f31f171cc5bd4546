#pragma once

#include "Platform/Services.h"

#include <functional>
#include <memory>
#include <string>

namespace brimquill::platform {

/// Turns the event loop until `condition` holds; false when it does not within 20 seconds.
bool eventually(const std::function<bool()>& condition);

/// Runs a command of the test's own display to its end; its exit status.
int runCommand(const std::string& command);

}  // namespace brimquill::platform

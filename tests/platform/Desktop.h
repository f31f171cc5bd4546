#pragma once

#include "Platform/Services.h"

#include <functional>
#include <memory>
#include <string>

namespace brimquill::platform {

/// Turns the event loop until `condition` holds; false when it does not within 20 seconds.
bool eventually(const std::function<bool()>& condition);

/// The address of a message bus on which nobody is yet, for the tests alone; empty when there is none.
std::string privateBus();

/// Runs a command of the test's own display to its end; its exit status.
int runCommand(const std::string& command);

}  // namespace brimquill::platform

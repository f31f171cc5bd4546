#pragma once

#include "Platform/Services.h"

#include <memory>
#include <string>

namespace brimquill::platform {

/// The services on an X server; the user interface must be its client too. Null when that is not so or the server lacks
/// what cannot be done without; `reason` then says what.
std::unique_ptr<Services> createX11Desktop(std::unique_ptr<UserDefaults>& defaults, const std::string& dataDirectory,
                                           std::string& reason);

}  // namespace brimquill::platform

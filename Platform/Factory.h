#pragma once

#include "Platform/Services.h"

#include <memory>
#include <string>

namespace brimquill::platform {

/// The services of the system at hand, chosen by what it can do; what it lacks is logged, once, with the reason. Needs
/// the application object of the user interface to exist, and must go before it does. Of the programs that keep their
/// data in the same directory one runs at a time.
std::unique_ptr<Services> createServices(const std::string& dataDirectory);

/// The preferences alone, for what runs without a user interface: the suite of that name; when empty the program's own,
/// which is the one that the environment variable BRIMQUILL_DEFAULTS_SUITE names, or else the standard one. A name that
/// cannot be a file name gives the standard one, with a log line.
std::unique_ptr<UserDefaults> createUserDefaults(const std::string& suite);

/// Sends the program's log lines to the system log and to standard error.
void installSystemLog();

}  // namespace brimquill::platform

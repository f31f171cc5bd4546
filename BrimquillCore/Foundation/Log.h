#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace brimquill::log {

/// Where lines go. Replaced once by the program at start (system log); a test installs its own.
using Sink = std::function<void(std::string_view line)>;

/// Writes one line, which begins with "Brimquill: "; the prefix is added here. There are no levels. Any thread.
void write(std::string_view message);

/// Replaces the sink and returns the one before. An empty sink stands for the default: standard error.
Sink setSink(Sink sink);

}  // namespace brimquill::log

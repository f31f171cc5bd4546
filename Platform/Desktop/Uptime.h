#pragma once

namespace brimquill::platform {

/// Seconds on a clock that never goes back; that of every event and timer. Any thread.
double uptime();

}  // namespace brimquill::platform

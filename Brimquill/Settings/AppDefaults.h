#pragma once

#include "Platform/UserDefaults.h"

namespace brimquill::AppDefaults {

/// The running program's one store of preferences, opened at first use and never released: the suite that the
/// environment variable BRIMQUILL_DEFAULTS_SUITE names, else the standard one. Needs no user interface. Main thread.
platform::UserDefaults& store();

/// The desktop's preferences for screenshots, which other programs change too.
platform::UserDefaults& screenCapture();

}  // namespace brimquill::AppDefaults

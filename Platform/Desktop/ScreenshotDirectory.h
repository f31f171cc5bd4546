#pragma once

#include <optional>
#include <string>

namespace brimquill::platform {

/// Where the screenshot tool of the desktop saves: what Spectacle, Xfce's tool or Flameshot were told, that of the
/// desktop in use first; else the folder in which GNOME's keeps them. Nothing when none of these folders is there. Read
/// anew each time. Any thread.
std::optional<std::string> screenshotDirectory();

}  // namespace brimquill::platform

#pragma once

#include <string>
#include <vector>

/// What the command line says of how the program's windows show.
namespace brimquill::AppCapture {

/// Whether the program's windows may appear in screenshots and recordings. A wish: a window system that cannot leave a
/// window out shows it anyway, as X11 does.
enum class SharingType { none = 0, readOnly = 1 };

/// `readOnly` when the arguments hold "--capturable".
SharingType sharingType(const std::vector<std::string>& arguments);

/// The popover's first tab: the decimal integer behind the first "--popover-tab="; 0 without one, or when what follows
/// is no integer.
int initialPopoverTab(const std::vector<std::string>& arguments);

}  // namespace brimquill::AppCapture

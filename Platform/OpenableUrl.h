#pragma once

#include <string_view>

namespace brimquill::platform {

/// Whether a URL is of a kind that `Workspace::open` hands to the desktop: http, https or a local file, without control
/// characters or blanks, so that it can be nothing but one argument.
bool isOpenableUrl(std::string_view url);

}  // namespace brimquill::platform

#pragma once

#include <string>
#include <string_view>

namespace brimquill {

/// A fresh random (version 4) UUID: 36 lower-case characters with dashes. Any thread.
std::string makeUuid();

/// Whether `text` is a UUID in the 8-4-4-4-12 form, in either case.
bool isUuid(std::string_view text);

}  // namespace brimquill

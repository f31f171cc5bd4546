#pragma once

#include "Platform/Types.h"

#include <string>

namespace brimquill::platform {

/// Keys pressed in the user's place. They go to the program that has the keyboard. Main thread, except `type`.
class SyntheticKeys {
public:
    virtual ~SyntheticKeys() = default;
    /// Presses and releases a key. ⌘V is sent as the program in front takes a paste. False when it could not be made.
    virtual bool post(int keyCode, Modifiers modifiers) = 0;
    /// Types any Unicode text, UTF-8; blocks while it types, so from a serial queue. False when it could not.
    virtual bool type(const std::string& text) = 0;
};

}  // namespace brimquill::platform

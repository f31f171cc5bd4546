#pragma once

#include "Platform/Types.h"

#include <string>

namespace brimquill::platform {

/// Keys pressed in the user's place. They go to the program that has the keyboard. Modifiers that the user still holds
/// are waited for briefly, then let go. `post` on the main thread never waits: the key may follow a moment later, in
/// order; from another thread it blocks until the key is pressed.
class SyntheticKeys {
public:
    virtual ~SyntheticKeys() = default;
    /// Presses and releases a key. ⌘V is sent as the program in front takes a paste. False when it could not be made.
    virtual bool post(int keyCode, Modifiers modifiers) = 0;
    /// Types any Unicode text, UTF-8; blocks while it types, so from a serial queue. False when it could not.
    virtual bool type(const std::string& text) = 0;
};

}  // namespace brimquill::platform

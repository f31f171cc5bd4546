#pragma once

#include "Platform/Types.h"

#include <functional>
#include <optional>
#include <string>

namespace brimquill::platform {

/// Whether somebody else holds the keyboard, so that no program can watch or press keys. Main thread.
class SecureInput {
public:
    virtual ~SecureInput() = default;
    /// To be asked every second or two: a hold counts once it has lasted, so that an open menu does not.
    virtual bool isEnabled() = 0;
    /// Calls `changed` when a hold that did not count when it was asked for has lasted long enough since.
    [[nodiscard]] virtual Token observe(std::function<void()> changed) = 0;
    /// The name of the program that holds it, where that can be known; nothing when nobody does.
    virtual std::optional<std::string> holderName() = 0;
};

}  // namespace brimquill::platform

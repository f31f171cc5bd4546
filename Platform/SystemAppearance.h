#pragma once

#include "Platform/Types.h"

#include <functional>

namespace brimquill::platform {

/// How the user's desktop likes to look. Main thread.
class SystemAppearance {
public:
    virtual ~SystemAppearance() = default;
    /// False where the desktop does not tell.
    virtual bool prefersDark() const = 0;
    virtual bool reduceMotion() const = 0;
    /// Called after either changes.
    [[nodiscard]] virtual Token observe(std::function<void()> changed) = 0;
};

}  // namespace brimquill::platform

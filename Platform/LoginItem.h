#pragma once

#include <optional>
#include <string>

namespace brimquill::platform {

/// Whether the program starts with the user's session. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual bool isEnabled() const = 0;
    /// Nothing when it is so now; otherwise what stood in the way.
    virtual std::optional<std::string> setEnabled(bool enabled) = 0;
};

}  // namespace brimquill::platform

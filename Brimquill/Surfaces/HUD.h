#pragma once

#include <string>

namespace brimquill {

/// One line of feedback, flashed over the desktop. Main thread.
class HUD {
public:
    virtual ~HUD() = default;
    /// Shows `text` beside the symbol of that system name, in place of what shows already; goes by itself.
    virtual void show(const std::string& text, const std::string& symbol) = 0;
};

}  // namespace brimquill

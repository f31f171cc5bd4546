#pragma once

#include "Platform/HotKeys.h"

#include <functional>
#include <string>
#include <vector>

namespace brimquill {

/// The program's global shortcuts; a registration lasts as long as this. Main thread.
class HotKeyCenter final {
public:
    explicit HotKeyCenter(platform::HotKeys& hotKeys) : hotKeys_(hotKeys) {}

    /// Has `handler` called at each press; `keyCode` is a value of `platform::key`. The log tells under `label` whether
    /// the combination could be had; without it everything else goes on working.
    void registerHotKey(int keyCode, platform::Modifiers modifiers, const std::string& label,
                        std::function<void()> handler);

private:
    platform::HotKeys& hotKeys_;
    /// One a registration; a failed one leaves its empty slot.
    std::vector<platform::Token> registrations_;
};

}  // namespace brimquill

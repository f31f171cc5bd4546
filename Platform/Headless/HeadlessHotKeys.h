#pragma once

#include "Platform/HandlerList.h"
#include "Platform/HotKeys.h"

#include <utility>
#include <vector>

namespace brimquill::platform {

/// Hot keys that are fired by hand, and that others can hold.
class HeadlessHotKeys final : public HotKeys {
public:
    using Combination = std::pair<int, Modifiers>;

    /// Another program holds this combination from now on.
    void takeElsewhere(int keyCode, Modifiers modifiers) { takenElsewhere_.emplace_back(keyCode, modifiers); }
    /// Off: there is no way to have global keys here.
    void setAvailable(bool available) { isAvailable_ = available; }
    /// Presses the combination; whether somebody here had registered it.
    bool fire(int keyCode, Modifiers modifiers);

    Registration registerHotKey(int keyCode, Modifiers modifiers, std::function<void()> handler) override;

private:
    struct Entry {
        Combination combination;
        std::function<void()> handler;
    };
    bool isTaken(const Combination& combination);

    HandlerList<Entry> entries_;
    std::vector<Combination> takenElsewhere_;
    bool isAvailable_ = true;
};

}  // namespace brimquill::platform

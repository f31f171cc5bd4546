#include "Platform/Headless/HeadlessHotKeys.h"

#include <algorithm>

namespace brimquill::platform {

bool HeadlessHotKeys::isTaken(const Combination& combination) {
    return std::find(takenElsewhere_.begin(), takenElsewhere_.end(), combination) != takenElsewhere_.end() ||
           entries_.anyOf([&](const Entry& entry) { return entry.combination == combination; });
}

HotKeys::Registration HeadlessHotKeys::registerHotKey(int keyCode, Modifiers modifiers, std::function<void()> handler) {
    if (!isAvailable_ || keyCode == key::other) return {unavailable, nullptr};
    if (isTaken({keyCode, modifiers})) return {alreadyTaken, nullptr};
    return {noError, entries_.add({{keyCode, modifiers}, std::move(handler)})};
}

bool HeadlessHotKeys::fire(int keyCode, Modifiers modifiers) {
    return entries_.anyOf([&](const Entry& entry) {
        if (entry.combination != Combination(keyCode, modifiers)) return false;
        entry.handler();
        return true;
    });
}

}  // namespace brimquill::platform

#pragma once

#include "Platform/Types.h"

#include <functional>

namespace brimquill::platform {

/// Keys that reach this program whatever has the focus. Main thread.
class HotKeys {
public:
    static constexpr int noError = 0;
    /// Somebody else holds the combination.
    static constexpr int alreadyTaken = -9878;
    /// There is no way to have global keys here, or the keyboard lacks the key.
    static constexpr int unavailable = -9868;

    struct Registration {
        int status = unavailable;
        /// Present when `status` is `noError`.
        Token token;
    };

    virtual ~HotKeys() = default;
    /// `keyCode` is a value of `key`. The handler runs on the main thread, once a press, without repeats.
    [[nodiscard]] virtual Registration registerHotKey(int keyCode, Modifiers modifiers,
                                                      std::function<void()> handler) = 0;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/Accessibility.h"

namespace brimquill::platform {

/// On X11 every program may press and watch keys, where the server has the extensions for it.
class X11Accessibility final : public Accessibility {
public:
    X11Accessibility(bool canPress, bool canWatch) : isTrusted_(canPress && canWatch) {}
    bool isProcessTrusted() override { return isTrusted_; }
    /// There is nobody to ask.
    bool isProcessTrustedWithPrompt() override { return isTrusted_; }

private:
    bool isTrusted_;
};

}  // namespace brimquill::platform

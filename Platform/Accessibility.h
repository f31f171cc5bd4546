#pragma once

namespace brimquill::platform {

/// Whether this program may press keys for the user and watch them. Main thread.
class Accessibility {
public:
    virtual ~Accessibility() = default;
    virtual bool isProcessTrusted() = 0;
    /// The same, and asks the user for the right where the system has a way to ask.
    virtual bool isProcessTrustedWithPrompt() = 0;
};

}  // namespace brimquill::platform

#pragma once

#include <functional>
#include <string>

namespace brimquill::platform {

/// Lets the user cut a rectangle out of the screen. Main thread.
class ScreenCapture {
public:
    enum class Launch { started, failed };
    virtual ~ScreenCapture() = default;
    /// Starts the desktop's capture tool, which writes a PNG file to `target`, or none when the user cancels. `done` is
    /// called once, on the main thread, when the tool has ended, or was ended because nobody used it for long; never
    /// when the launch failed.
    virtual Launch captureInteractively(const std::string& target, std::function<void()> done) = 0;
};

}  // namespace brimquill::platform

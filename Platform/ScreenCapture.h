#pragma once

#include <functional>
#include <optional>
#include <string>

namespace brimquill::platform {

/// The desktop's screenshots: lets the user cut a rectangle out of the screen. Main thread.
class ScreenCapture {
public:
    enum class Launch { started, failed };
    virtual ~ScreenCapture() = default;
    /// Starts the desktop's capture tool, which writes a PNG file to `target`, or none when the user cancels. `done` is
    /// called once, on the main thread, when the tool has ended, or was ended because nobody used it for long; never
    /// when the launch failed.
    virtual Launch captureInteractively(const std::string& target, std::function<void()> done) = 0;
    /// The folder into which the desktop's own screenshot tool saves; nothing when that cannot be known or the folder
    /// is not there.
    virtual std::optional<std::string> savingDirectory() const = 0;
};

}  // namespace brimquill::platform

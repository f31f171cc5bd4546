#pragma once

#include "Platform/RunLoop.h"
#include "Platform/ScreenCapture.h"

#include <QProcess>

#include <memory>

namespace brimquill::platform {

/// A rectangle of the screen by `maim`, which lets the user drag it out. One capture at a time: a new one ends the one
/// before.
class DesktopScreenCapture final : public ScreenCapture {
public:
    struct Options {
        std::string tool = "maim";
        /// Seconds after which a capture that nobody finished is ended.
        double longest = 120;
    };

    DesktopScreenCapture(RunLoop& runLoop, Options options);
    ~DesktopScreenCapture() override;

    Launch captureInteractively(const std::string& target, std::function<void()> done) override;
    std::optional<std::string> savingDirectory() const override;
    /// Whether the tool runs, which holds the keyboard meanwhile.
    bool isUnderWay() const { return tool_ != nullptr; }

private:
    void end();

    RunLoop& runLoop_;
    Options options_;
    std::unique_ptr<QProcess> tool_;
    std::function<void()> done_;
    Token timeout_;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/Desktop/DesktopFiles.h"
#include "Platform/Desktop/DesktopIcons.h"
#include "Platform/Workspace.h"
#include "Platform/X11/X11Connection.h"

namespace brimquill::platform {

class X11Workspace final : public Workspace {
public:
    explicit X11Workspace(X11Connection& connection) : connection_(connection) {}

    std::optional<RunningApplication> frontmostApplication() override;
    RunningApplication currentApplication() const override;
    std::optional<Image> icon(const std::string& bundleIdentifier, int size) override;
    std::optional<Image> iconForFile(const std::string& path, int size) override {
        return icons_.iconForFile(path, size);
    }
    bool open(const std::string& url) override;

private:
    X11Connection& connection_;
    DesktopFiles files_;
    DesktopIcons icons_;
    std::mutex mutex_;
    /// The desktop files of programs whose bundle id is not their file's; from what was in front so far.
    std::map<std::string, std::string> fileOfBundle_;
};

}  // namespace brimquill::platform

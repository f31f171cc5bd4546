#pragma once

#include "Platform/Workspace.h"

#include <map>
#include <string>
#include <vector>

namespace brimquill::platform {

/// A desktop whose front program and icons are set, and that remembers what was opened.
class HeadlessWorkspace final : public Workspace {
public:
    void setFrontmostApplication(std::optional<RunningApplication> application);
    /// A program with this bundle id comes to the front.
    void bringToFront(const std::string& bundleIdentifier, const std::string& name = {});
    void setIcon(const std::string& bundleIdentifier, Image icon);
    void setFileIcon(const std::string& path, Image icon);
    /// Off: no opener can be started.
    void setOpens(bool opens) { opens_ = opens; }
    const std::vector<std::string>& openedUrls() const { return openedUrls_; }

    std::optional<RunningApplication> frontmostApplication() override { return frontmost_; }
    RunningApplication currentApplication() const override { return {1, "com.brimquill.app", "Brimquill"}; }
    std::optional<Image> icon(const std::string& bundleIdentifier, int size) override;
    std::optional<Image> iconForFile(const std::string& path, int size) override;
    bool open(const std::string& url) override;

private:
    std::optional<RunningApplication> frontmost_;
    std::map<std::string, Image> icons_, fileIcons_;
    std::vector<std::string> openedUrls_;
    bool opens_ = true;
};

}  // namespace brimquill::platform

#include "Platform/Headless/HeadlessWorkspace.h"

#include "Platform/OpenableUrl.h"

#include <utility>

namespace brimquill::platform {

void HeadlessWorkspace::setFrontmostApplication(std::optional<RunningApplication> application) {
    frontmost_ = std::move(application);
}

void HeadlessWorkspace::bringToFront(const std::string& bundleIdentifier, const std::string& name) {
    RunningApplication application;
    application.processIdentifier = 1000;
    application.bundleIdentifier = bundleIdentifier;
    application.localizedName = name.empty() ? bundleIdentifier : name;
    frontmost_ = std::move(application);
}

void HeadlessWorkspace::setIcon(const std::string& bundleIdentifier, Image icon) {
    icons_[bundleIdentifier] = std::move(icon);
}

void HeadlessWorkspace::setFileIcon(const std::string& path, Image icon) {
    fileIcons_[path] = std::move(icon);
}

std::optional<Image> HeadlessWorkspace::icon(const std::string& bundleIdentifier, int) {
    const auto found = icons_.find(bundleIdentifier);
    if (found == icons_.end()) return std::nullopt;
    return found->second;
}

std::optional<Image> HeadlessWorkspace::iconForFile(const std::string& path, int) {
    const auto found = fileIcons_.find(path);
    if (found == fileIcons_.end()) return std::nullopt;
    return found->second;
}

bool HeadlessWorkspace::open(const std::string& url) {
    if (!opens_ || !isOpenableUrl(url)) return false;
    openedUrls_.push_back(url);
    return true;
}

}  // namespace brimquill::platform

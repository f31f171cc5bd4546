#include "Platform/X11/X11Workspace.h"

#include "BrimquillCore/Foundation/Text.h"
#include "Platform/Desktop/DesktopOpener.h"
#include "Platform/X11/X11Applications.h"
#include "Platform/X11/X11Frontmost.h"

#include <filesystem>

#include <unistd.h>

namespace brimquill::platform {
namespace {

std::string executableOf(int processIdentifier) {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/" + std::to_string(processIdentifier) + "/exe", error);
    return error ? std::string() : path.filename().string();
}

}  // namespace

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    const auto front = x11Frontmost(connection_);
    if (!front) return std::nullopt;
    if (front->processIdentifier == getpid()) return currentApplication();
    auto file = front->desktopFile.empty() ? std::nullopt : files_.byId(front->desktopFile);
    if (!file) {
        file = files_.find(front->windowClass, front->instance, executableOf(front->processIdentifier));
    }
    RunningApplication application;
    application.processIdentifier = front->processIdentifier;
    const X11Application* known = knownApplication(front->windowClass);
    if (known == nullptr) known = knownApplication(front->instance);
    if (known != nullptr) {
        application.bundleIdentifier = std::string(known->bundleIdentifier);
    } else if (file) {
        application.bundleIdentifier = file->id;
    } else if (!front->windowClass.empty()) {
        application.bundleIdentifier = text::lowercased(front->windowClass);
    }
    if (file && !file->name.empty()) {
        application.localizedName = file->name;
    } else if (!front->windowClass.empty()) {
        application.localizedName = text::validUtf8(front->windowClass);
    }
    if (file && application.bundleIdentifier) {
        const std::lock_guard lock(mutex_);
        fileOfBundle_[*application.bundleIdentifier] = file->id;
    }
    return application;
}

RunningApplication X11Workspace::currentApplication() const {
    return thisApplication();
}

std::optional<Image> X11Workspace::icon(const std::string& bundleIdentifier, int size) {
    std::string id = bundleIdentifier;
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = fileOfBundle_.find(id); found != fileOfBundle_.end()) id = found->second;
    }
    auto file = files_.byId(id);
    if (!file) file = files_.find(id, {}, {});
    if (!file || file->icon.empty()) return std::nullopt;
    return icons_.icon(file->icon, size);
}

bool X11Workspace::open(const std::string& url) {
    return openWithDesktop(url);
}

}  // namespace brimquill::platform

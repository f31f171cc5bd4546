#pragma once

#include "Platform/FolderWatcher.h"

namespace brimquill::platform {

/// Folder changes by inotify: one queue for each folder watched.
class DesktopFolderWatcher final : public FolderWatcher {
public:
    Token watch(const std::string& directory, std::function<void()> changed) override;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/Types.h"

#include <functional>
#include <string>

namespace brimquill::platform {

/// Tells of changes in a folder. Main thread.
class FolderWatcher {
public:
    virtual ~FolderWatcher() = default;
    /// Calls `changed` after files were made, finished, moved in or removed in `directory`, soon and at least once for
    /// a burst. Null when the folder cannot be watched.
    [[nodiscard]] virtual Token watch(const std::string& directory, std::function<void()> changed) = 0;
};

}  // namespace brimquill::platform

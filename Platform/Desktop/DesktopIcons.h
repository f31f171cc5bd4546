#pragma once

#include "Platform/Desktop/IconThemes.h"
#include "Platform/Types.h"

#include <optional>
#include <string>

namespace brimquill::platform {

/// The desktop's icons as pictures. They are read from files: any thread.
class DesktopIcons final {
public:
    /// Takes the theme that the toolkit has been told of: main thread.
    DesktopIcons();
    /// An icon by its theme name or its file, about `size` pixels square; nothing when there is none.
    std::optional<Image> icon(const std::string& nameOrPath, int size);
    /// The icon for files of the kind of this one, told by its name, or for folders.
    std::optional<Image> iconForFile(const std::string& path, int size);

private:
    IconThemes themes_;
};

}  // namespace brimquill::platform

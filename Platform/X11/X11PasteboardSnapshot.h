#pragma once

#include "Platform/Pasteboard.h"

#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// What stood on the clipboard at one change, complete or empty, never half of it. A plain value.
struct PasteboardSnapshot {
    /// Nothing when the owner told none.
    std::optional<std::vector<std::string>> types;
    std::optional<std::string> string;
    std::vector<std::string> filePaths;
    SharedBytes gif, png, tiff;
    /// The target that gave `tiff`: its real format.
    const char* tiffTarget = "image/tiff";

    /// Bytes of content, without the names of the types.
    std::size_t size() const;
};

}  // namespace brimquill::platform

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace brimquill {

/// A pinboard: one node of the tree into which clips are filed. `name` is one path component. A plain value.
struct ClipFolder {
    std::int64_t id = 0;
    std::string name;
    std::optional<std::int64_t> parentId;
    std::string uuid;
    /// Colour as stored text, a name or a hex code; never validated here.
    std::optional<std::string> color;

    friend bool operator==(const ClipFolder&, const ClipFolder&) = default;
};

}  // namespace brimquill

template <>
struct std::hash<brimquill::ClipFolder> {
    std::size_t operator()(const brimquill::ClipFolder& folder) const noexcept;
};

#pragma once

#include "BrimquillCore/ClipFolder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimquill {

/// Pinboards as the tree that they are, from one read of them all. A plain value. What other machines send may hold a
/// cycle, or a parent that is not there: every question is answered all the same.
class FolderTree final {
public:
    FolderTree() = default;
    /// Siblings keep the order in which they are given.
    explicit FolderTree(std::vector<ClipFolder> folders);

    const std::vector<ClipFolder>& folders() const { return folders_; }
    /// Nothing when no folder has this id.
    const ClipFolder* find(std::int64_t id) const;
    /// The slash path, from the top-level folder on.
    std::string path(const ClipFolder& folder) const;
    /// Positions in `folders()` of those directly below `parent`; without one, of the top-level folders.
    const std::vector<std::size_t>& children(std::optional<std::int64_t> parent) const;
    /// The folder itself and all below it, each once.
    std::vector<std::int64_t> subtreeIds(std::int64_t id) const;

private:
    std::vector<ClipFolder> folders_;
    std::unordered_map<std::int64_t, std::size_t> positions_;
    std::map<std::optional<std::int64_t>, std::vector<std::size_t>> children_;
};

}  // namespace brimquill

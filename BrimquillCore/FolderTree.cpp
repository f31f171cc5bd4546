#include "BrimquillCore/FolderTree.h"

#include <unordered_set>
#include <utility>

namespace brimquill {

FolderTree::FolderTree(std::vector<ClipFolder> folders) : folders_(std::move(folders)) {
    for (std::size_t at = 0; at < folders_.size(); ++at) {
        positions_.emplace(folders_[at].id, at);
        children_[folders_[at].parentId].push_back(at);
    }
}

const ClipFolder* FolderTree::find(std::int64_t id) const {
    const auto found = positions_.find(id);
    return found == positions_.end() ? nullptr : &folders_[found->second];
}

std::string FolderTree::path(const ClipFolder& folder) const {
    auto path = folder.name;
    const auto* at = &folder;
    // No path is longer than there are folders, whatever a cycle says.
    for (std::size_t steps = 0; at->parentId && steps < folders_.size(); ++steps) {
        at = find(*at->parentId);
        if (at == nullptr) break;
        path.insert(0, at->name + "/");
    }
    return path;
}

const std::vector<std::size_t>& FolderTree::children(std::optional<std::int64_t> parent) const {
    static const std::vector<std::size_t> none;
    const auto found = children_.find(parent);
    return found == children_.end() ? none : found->second;
}

std::vector<std::int64_t> FolderTree::subtreeIds(std::int64_t id) const {
    std::vector<std::int64_t> ids{id};
    std::unordered_set<std::int64_t> seen{id};
    for (std::size_t next = 0; next < ids.size(); ++next) {
        for (const auto at : children(ids[next])) {
            if (seen.insert(folders_[at].id).second) ids.push_back(folders_[at].id);
        }
    }
    return ids;
}

}  // namespace brimquill

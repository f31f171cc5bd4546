#include "Brimquill/Palette/ScopeCatalog.h"

#include "BrimquillCore/FolderTree.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>

namespace brimquill {
namespace {

constexpr std::size_t storedRecents = 6;
constexpr std::size_t consideredRecents = 4;

std::vector<scope::Folder> foldersByPath(ClipStore& store) {
    const FolderTree tree(store.folders());
    std::vector<scope::Folder> result;
    for (const auto& folder : tree.folders())
        result.push_back({folder, tree.path(folder)});
    std::stable_sort(result.begin(), result.end(), [](const auto& a, const auto& b) {
        return text::localizedCaseInsensitiveCompare(a.path, b.path) < 0;
    });
    return result;
}

bool contains(const std::vector<PickerFilter>& filters, const PickerFilter& wanted) {
    return std::find(filters.begin(), filters.end(), wanted) != filters.end();
}

}  // namespace

void ScopeCatalog::rebuild() {
    entries_ = {scope::Clipboard{}, scope::Snippets{}};
    for (auto& folder : foldersByPath(store_))
        entries_.emplace_back(std::move(folder));
    topTag_.reset();
    for (const auto& [tag, count] : store_.tagCounts()) {
        if (!topTag_) topTag_ = tag;
        entries_.emplace_back(scope::Tag{tag});
    }
}

std::set<std::int64_t> ScopeCatalog::folderIds() const {
    std::set<std::int64_t> ids;
    for (const auto& entry : entries_) {
        if (const auto* folder = std::get_if<scope::Folder>(&entry)) ids.insert(folder->folder.id);
    }
    return ids;
}

std::optional<PickerFilter> ScopeCatalog::find(const std::string& key) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const PickerFilter& entry) { return brimquill::key(entry) == key; });
    return found == entries_.end() ? std::nullopt : std::optional(*found);
}

std::vector<PickerFilter> ScopeCatalog::chips(const PickerFilter& current, bool stackHasItems) const {
    std::vector<PickerFilter> chips{scope::Clipboard{}, scope::Snippets{}, scope::Emoji{}};
    if (stackHasItems) chips.emplace_back(scope::Stack{});
    if (topTag_) chips.emplace_back(scope::Tag{*topTag_});
    const auto recents = defaults_.stringArray(recentsKey).value_or(std::vector<std::string>{});
    for (std::size_t i = 0; i < std::min(recents.size(), consideredRecents); ++i) {
        if (const auto entry = find(recents[i]); entry && !contains(chips, *entry)) chips.push_back(*entry);
    }
    if (!contains(chips, current)) chips.push_back(current);
    return chips;
}

void ScopeCatalog::recordRecent(const PickerFilter& filter) {
    if (!is<scope::Folder>(filter) && !is<scope::Tag>(filter)) return;
    const auto chosen = key(filter);
    auto recents = defaults_.stringArray(recentsKey).value_or(std::vector<std::string>{});
    std::erase(recents, chosen);
    recents.insert(recents.begin(), chosen);
    if (recents.size() > storedRecents) recents.resize(storedRecents);
    defaults_.set(recentsKey, recents);
}

}  // namespace brimquill

#include "Brimquill/Palette/ScopeCatalog.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <unordered_map>

namespace brimquill {
namespace {

constexpr std::size_t storedRecents = 6;
constexpr std::size_t consideredRecents = 4;

/// The slash path of every folder, from one read of them all.
std::vector<scope::Folder> foldersByPath(ClipStore& store) {
    const auto folders = store.folders();
    std::unordered_map<std::int64_t, const ClipFolder*> byId;
    for (const auto& folder : folders)
        byId.emplace(folder.id, &folder);
    std::vector<scope::Folder> result;
    for (const auto& folder : folders) {
        auto path = folder.name;
        const auto* at = &folder;
        // No path is longer than there are folders, whatever a damaged tree says.
        for (std::size_t steps = 0; at->parentId && steps < folders.size(); ++steps) {
            const auto parent = byId.find(*at->parentId);
            if (parent == byId.end()) break;
            at = parent->second;
            path = at->name + "/" + path;
        }
        result.push_back({folder, path});
    }
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

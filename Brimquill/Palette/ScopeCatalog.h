#pragma once

#include "Brimquill/Palette/PickerFilter.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/UserDefaults.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brimquill {

/// Everything that a scope chip can stand for: the fixed scopes, all pinboards, all tags; and which of them were chosen
/// lately. Main thread.
class ScopeCatalog final {
public:
    static constexpr const char* recentsKey = "recentFilterScopes";

    ScopeCatalog(ClipStore& store, platform::UserDefaults& defaults) : store_(store), defaults_(defaults) {}

    /// Reads pinboards and tags afresh.
    void rebuild();

    const std::vector<PickerFilter>& entries() const { return entries_; }
    /// The most used tag; nothing when there are no tags.
    const std::optional<std::string>& topTag() const { return topTag_; }
    /// The ids of all pinboards.
    std::set<std::int64_t> folderIds() const;
    /// The entry of this key; nothing when there is none.
    std::optional<PickerFilter> find(const std::string& key) const;

    /// The chips in display order; `current` is always among them.
    std::vector<PickerFilter> chips(const PickerFilter& current, bool stackHasItems) const;
    /// Remembers a chosen pinboard or tag as the most recent; anything else is not recorded.
    void recordRecent(const PickerFilter& filter);

private:
    ClipStore& store_;
    platform::UserDefaults& defaults_;
    std::vector<PickerFilter> entries_{scope::Clipboard{}};
    std::optional<std::string> topTag_;
};

}  // namespace brimquill

#include "Brimquill/Palette/PickerQuery.h"

#include "BrimquillCore/EmojiCatalog.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <set>

namespace brimquill {
namespace {

/// Enough for a first look; and all there is to filter, when a filter runs behind the store.
constexpr int plainLimit = 50;
constexpr int filteredLimit = 10000;
constexpr int emojiLimit = 400;

constexpr const char* organizeHint = "Right-click a clip → “Tags & Pinboard…” to organize.";

/// Emoji are cards that never reach the store; a negative id is how everything else tells them.
std::vector<ClipItem> emojiItems(const std::string& query, Date now) {
    std::vector<ClipItem> items;
    for (const auto& emoji : EmojiCatalog::search(query, emojiLimit)) {
        ClipItem item;
        item.id = ~static_cast<std::int64_t>(items.size());
        item.text = emoji.character;
        item.createdAt = now;
        item.sourceApp = emoji.name;
        item.name = emoji.name;
        items.push_back(std::move(item));
    }
    return items;
}

std::vector<ClipItem> stackItems(ClipStore& store, const std::vector<std::int64_t>& ids,
                                 std::optional<ContentType> type) {
    std::vector<ClipItem> items;
    for (const auto id : ids) {
        auto item = store.clip(id);
        if (item && !item->deleted && matches(*item, type)) items.push_back(std::move(*item));
    }
    return items;
}

/// A test for the scope, made once a query.
std::function<bool(const ClipItem&)> inScope(ClipStore& store, const PickerFilter& filter) {
    if (const auto* folder = std::get_if<scope::Folder>(&filter)) {
        return [ids = store.descendantIds(folder->folder.id)](const ClipItem& item) {
            return item.folderId && ids.contains(*item.folderId);
        };
    }
    if (const auto* tag = std::get_if<scope::Tag>(&filter)) {
        return [tag](const ClipItem& item) {
            return std::find(item.tags.begin(), item.tags.end(), tag->tag) != item.tags.end();
        };
    }
    if (const auto* kind = std::get_if<scope::Kind>(&filter)) {
        return [kind](const ClipItem& item) { return item.kind == kind->kind; };
    }
    if (const auto* app = std::get_if<scope::App>(&filter)) {
        return [app](const ClipItem& item) { return item.sourceApp == app->name; };
    }
    if (is<scope::Snippets>(filter)) return [](const ClipItem& item) { return item.isSnippet(); };
    return [](const ClipItem&) { return true; };
}

std::vector<ClipItem> storedItems(ClipStore& store, const PickerQuery& query) {
    const bool isPlain = is<scope::Clipboard>(query.filter);
    if (isPlain && query.text.empty()) return store.fetchHistory(query.type ? filteredLimit : plainLimit);
    // The type plays no part in this limit: a query over the plain history answers from its first fifty matches.
    return store.search(query.text, isPlain ? plainLimit : filteredLimit);
}

std::pair<std::string, std::string> scopeWords(const PickerFilter& filter) {
    if (is<scope::Folder>(filter)) return {"Nothing filed in " + label(filter), organizeHint};
    if (const auto* tag = std::get_if<scope::Tag>(&filter)) return {"Nothing tagged #" + tag->tag, organizeHint};
    if (is<scope::Kind>(filter)) return {"No items of this type", organizeHint};
    if (const auto* app = std::get_if<scope::App>(&filter)) return {"Nothing copied from " + app->name, organizeHint};
    if (is<scope::Snippets>(filter)) return {"No snippets yet", "Right-click a clip → “Save as Snippet…”."};
    if (is<scope::Stack>(filter)) return {"Paste stack is empty", "Right-click a clip → “Add to Paste Stack”."};
    if (is<scope::Emoji>(filter)) return {"No emoji match", organizeHint};
    return {"Your hoard is empty", "Copy something, or press ⇧⌘2 to snip text on screen."};
}

}  // namespace

std::vector<ClipItem> pickerItems(ClipStore& store, const PickerQuery& query, const std::vector<std::int64_t>& stackIds,
                                  Date now) {
    if (is<scope::Emoji>(query.filter)) return emojiItems(query.text, now);
    if (is<scope::Stack>(query.filter)) return stackItems(store, stackIds, query.type);
    auto found = storedItems(store, query);
    const auto fits = inScope(store, query.filter);
    std::vector<ClipItem> items;
    for (auto& item : found) {
        if (items.size() == cardLimit) break;
        if (fits(item) && matches(item, query.type)) items.push_back(std::move(item));
    }
    return items;
}

EmptyState emptyState(const PickerQuery& query) {
    const auto* symbol = query.text.empty() ? "doc.on.clipboard" : "magnifyingglass";
    if (!query.text.empty()) {
        return {"No matches for “" + query.text + "”", "Search covers clip text, #tags, and source apps.", symbol};
    }
    auto [title, subtitle] = scopeWords(query.filter);
    if (query.type) title = "No " + text::lowercased(label(*query.type)) + " here";
    return {title, subtitle, symbol};
}

}  // namespace brimquill

#include "Brimquill/Palette/ExplorerRow.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace brimquill {
namespace {

/// At most this many applications are listed, before the search applies.
constexpr int appLimit = 12;

explorer_row::Folder folderRow(const ExplorerFacts& facts, const ClipFolder& folder, int depth) {
    const auto count = facts.clipCounts.find(folder.id);
    return {folder, facts.tree.path(folder), depth, count == facts.clipCounts.end() ? 0 : count->second};
}

std::vector<ExplorerRow> folderTree(const ExplorerFacts& facts, const std::set<std::int64_t>& expandedFolderIds) {
    struct Pending {
        std::size_t at;
        int depth;
    };
    std::vector<ExplorerRow> rows;
    std::vector<Pending> pending;
    const auto pushChildren = [&](std::optional<std::int64_t> parent, int depth) {
        const auto& children = facts.tree.children(parent);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.push_back({*child, depth});
    };
    pushChildren(std::nullopt, 0);
    while (!pending.empty()) {
        const auto [at, depth] = pending.back();
        pending.pop_back();
        auto row = folderRow(facts, facts.tree.folders()[at], depth);
        row.hasChildren = !facts.tree.children(row.folder.id).empty();
        row.expanded = expandedFolderIds.contains(row.folder.id);
        if (row.hasChildren && row.expanded) pushChildren(row.folder.id, depth + 1);
        rows.emplace_back(std::move(row));
    }
    return rows;
}

std::vector<ExplorerRow> matchingFolders(const ExplorerFacts& facts, const std::string& wanted) {
    std::vector<explorer_row::Folder> found;
    for (const auto& folder : facts.tree.folders()) {
        auto row = folderRow(facts, folder, 0);
        if (text::contains(text::lowercased(row.path), wanted)) found.push_back(std::move(row));
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return {std::make_move_iterator(found.begin()), std::make_move_iterator(found.end())};
}

std::vector<ExplorerRow> tagRows(const ExplorerFacts& facts, const std::string& wanted) {
    std::vector<ExplorerRow> rows;
    for (const auto& [tag, count] : facts.tags) {
        if (text::contains(tag, wanted)) rows.emplace_back(explorer_row::Tag{tag, count});
    }
    return rows;
}

std::vector<ExplorerRow> kindRows(const ExplorerFacts& facts, const std::string& wanted) {
    std::vector<ExplorerRow> rows;
    for (const auto& [kind, count] : facts.kinds) {
        if (text::contains(text::lowercased(label(scope::Kind{kind})), wanted))
            rows.emplace_back(explorer_row::Kind{kind, count});
    }
    return rows;
}

std::vector<ExplorerRow> appRows(const ExplorerFacts& facts, const std::string& wanted) {
    std::vector<ExplorerRow> rows;
    for (const auto& app : facts.apps) {
        if (text::contains(text::lowercased(app.app), wanted)) rows.emplace_back(explorer_row::App{app.app, app.count});
    }
    return rows;
}

void append(std::vector<ExplorerRow>& rows, const char* title, std::vector<ExplorerRow> section) {
    if (section.empty()) return;
    rows.emplace_back(explorer_row::Header{title});
    std::move(section.begin(), section.end(), std::back_inserter(rows));
}

std::unordered_map<std::int64_t, int> subtreeCounts(const FolderTree& tree, const std::map<std::int64_t, int>& own) {
    std::unordered_map<std::int64_t, int> counts;
    for (const auto& folder : tree.folders()) {
        auto& count = counts[folder.id];
        for (const auto id : tree.subtreeIds(folder.id)) {
            if (const auto found = own.find(id); found != own.end()) count += found->second;
        }
    }
    return counts;
}

}  // namespace

void readExplorerFacts(ClipStore& store, ExplorerFacts& facts, int part) {
    switch (part) {
        case 0:
            facts.tree = FolderTree(store.folders());
            facts.clipCounts = subtreeCounts(facts.tree, store.clipCounts());
            return;
        case 1:
            facts.tags = store.tagCounts();
            return;
        case 2:
            facts.kinds = store.kindCounts();
            return;
        default:
            facts.apps = store.sourceAppCounts(appLimit);
    }
}

std::vector<ExplorerRow> explorerRows(const ExplorerFacts& facts, const std::string& search,
                                      const std::set<std::int64_t>& expandedFolderIds) {
    const auto wanted = text::lowercased(text::trimmed(search));
    const bool foldersOnly = wanted.starts_with('/'), tagsOnly = wanted.starts_with('#');
    std::vector<ExplorerRow> rows;
    // 1. Pinboards. A "#" stays in: no pinboard is meant, but one whose path holds it is found.
    append(rows, "Pinboards",
           wanted.empty() ? folderTree(facts, expandedFolderIds)
                          : matchingFolders(facts, foldersOnly ? wanted.substr(1) : wanted));
    // 2. Tags.
    if (!foldersOnly) append(rows, "Tags", tagRows(facts, tagsOnly ? wanted.substr(1) : wanted));
    // 3. A prefix asks for one section alone.
    if (foldersOnly || tagsOnly) return rows;
    // 4. Kinds of clips, and the applications that they came from.
    append(rows, "Types", kindRows(facts, wanted));
    append(rows, "Apps", appRows(facts, wanted));
    return rows;
}

std::optional<PickerFilter> scopeOf(const ExplorerRow& row) {
    if (const auto* folder = std::get_if<explorer_row::Folder>(&row))
        return scope::Folder{folder->folder, folder->path};
    if (const auto* tag = std::get_if<explorer_row::Tag>(&row)) return scope::Tag{tag->tag};
    if (const auto* kind = std::get_if<explorer_row::Kind>(&row)) return scope::Kind{kind->kind};
    if (const auto* app = std::get_if<explorer_row::App>(&row)) return scope::App{app->name};
    return std::nullopt;
}

}  // namespace brimquill

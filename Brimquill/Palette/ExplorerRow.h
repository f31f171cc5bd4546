#pragma once

#include "Brimquill/Palette/PickerFilter.h"
#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/FolderTree.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace brimquill {

/// One line of the explorer.
namespace explorer_row {

/// The caption of a section; never chosen.
struct Header {
    std::string title;
    friend bool operator==(const Header&, const Header&) = default;
};
/// `count` is of the clips in it and in all pinboards below it.
struct Folder {
    ClipFolder folder;
    std::string path;
    int depth = 0;
    int count = 0;
    bool hasChildren = false;
    bool expanded = false;
    friend bool operator==(const Folder&, const Folder&) = default;
};
struct Tag {
    std::string tag;
    int count = 0;
    friend bool operator==(const Tag&, const Tag&) = default;
};
struct Kind {
    ClipKind kind = ClipKind::text;
    int count = 0;
    friend bool operator==(const Kind&, const Kind&) = default;
};
struct App {
    std::string name;
    int count = 0;
    friend bool operator==(const App&, const App&) = default;
};

}  // namespace explorer_row

using ExplorerRow =
    std::variant<explorer_row::Header, explorer_row::Folder, explorer_row::Tag, explorer_row::Kind, explorer_row::App>;

/// What the store holds that a scope can be. All of it at once would make a key wait, so it is read in parts.
struct ExplorerFacts {
    FolderTree tree;
    /// The clips of each folder and all below it, by the folder's id.
    std::unordered_map<std::int64_t, int> clipCounts;
    std::vector<ClipStore::TagCount> tags;
    std::vector<ClipStore::KindCount> kinds;
    std::vector<ClipStore::SourceAppCount> apps;
};
inline constexpr int explorerFactParts = 4;
/// Reads one part, from 0 on, into `facts`.
void readExplorerFacts(ClipStore& store, ExplorerFacts& facts, int part);

/// The lines for what was typed. Without it, pinboards are the tree as far as it is expanded; with it, a flat list of
/// those that match. A leading "/" asks for pinboards alone, "#" for tags.
std::vector<ExplorerRow> explorerRows(const ExplorerFacts& facts, const std::string& search,
                                      const std::set<std::int64_t>& expandedFolderIds);

/// The scope that a row stands for; nothing for a header.
std::optional<PickerFilter> scopeOf(const ExplorerRow& row);

}  // namespace brimquill

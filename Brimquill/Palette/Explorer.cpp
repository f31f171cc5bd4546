#include "Brimquill/Palette/Explorer.h"

#include "Brimquill/Surfaces/TourEvents.h"

#include <utility>

namespace brimquill {
namespace {

bool isHeader(const ExplorerRow& row) {
    return std::holds_alternative<explorer_row::Header>(row);
}

}  // namespace

Explorer::Explorer(Environment environment) : environment_(std::move(environment)), list_(environment_.style) {
    observation_ = environment_.center.observe(ClipStore::didChangeNotification, &environment_.store,
                                               [this](const Notification&) { ++storeChanges_; });
}

/// Reads so many of the parts that are missing or older than the store.
void Explorer::readFacts(int parts) {
    // Taken before the store is read: a change in between makes the next call begin again.
    const auto changes = storeChanges_.load();
    if (factsAsOf_ != changes) factsRead_ = 0;
    factsAsOf_ = changes;
    for (; parts > 0 && factsRead_ < explorerFactParts; --parts) {
        rows_.reset();
        readExplorerFacts(environment_.store, facts_, factsRead_++);
    }
}

const std::vector<ExplorerRow>& Explorer::explorerRows() {
    readFacts(explorerFactParts);
    if (!rows_) rows_ = brimquill::explorerRows(facts_, search_, expandedFolderIds_);
    return *rows_;
}

std::optional<ExplorerRow> Explorer::selectedRowSignature() {
    const auto& rows = explorerRows();
    const bool isThere = selection_ >= 0 && selection_ < static_cast<int>(rows.size());
    return isThere ? std::optional(rows[static_cast<std::size_t>(selection_)]) : std::nullopt;
}

void Explorer::setExplorerOpen(bool open) {
    const bool changed = std::exchange(isOpen_, open) != open;
    if (open) {
        setExplorerSearch({});
        environment_.center.post({TourEvents::explorerDidOpen, environment_.owner, {}});
    }
    if (changed) Q_EMIT openChanged();
}

void Explorer::setExplorerSearch(std::string search) {
    if (std::exchange(search_, std::move(search)) != search_) {
        rows_.reset();
        Q_EMIT searchChanged();
    }
    updateView();
    setExplorerSelection(0);
}

void Explorer::setExplorerSelection(int index) {
    if (std::exchange(selection_, index) != index) Q_EMIT selectionChanged();
}

void Explorer::setExpandedFolderIds(std::set<std::int64_t> ids) {
    expandedFolderIds_ = std::move(ids);
    rows_.reset();
    updateView();
}

void Explorer::setExpanded(std::int64_t id, bool expanded) {
    auto ids = expandedFolderIds_;
    if (expanded) {
        ids.insert(id);
    } else {
        ids.erase(id);
    }
    setExpandedFolderIds(std::move(ids));
}

void Explorer::explorerMove(int delta) {
    const auto& rows = explorerRows();
    const auto count = static_cast<int>(rows.size());
    if (count == 0 || delta == 0) return;
    // A selection left behind by rows that went finds its way back from beyond the end.
    for (int at = selection_ + delta; delta > 0 ? at < count : at >= 0; at += delta) {
        if (at < 0 || at >= count || isHeader(rows[static_cast<std::size_t>(at)])) continue;
        return setExplorerSelection(at);
    }
}

/// Valid until the rows change.
const explorer_row::Folder* Explorer::selectedFolder() {
    const auto& rows = explorerRows();
    if (selection_ < 0 || selection_ >= static_cast<int>(rows.size())) return nullptr;
    return std::get_if<explorer_row::Folder>(&rows[static_cast<std::size_t>(selection_)]);
}

void Explorer::explorerExpand() {
    const auto* folder = selectedFolder();
    if (folder != nullptr && folder->hasChildren && !folder->expanded) setExpanded(folder->folder.id, true);
}

void Explorer::explorerCollapse() {
    const auto* selected = selectedFolder();
    if (selected == nullptr) return;
    const auto folder = selected->folder;
    if (expandedFolderIds_.contains(folder.id)) return setExpanded(folder.id, false);
    if (!folder.parentId) return;
    setExpanded(*folder.parentId, false);
    const auto& rows = explorerRows();
    for (std::size_t at = 0; at < rows.size(); ++at) {
        const auto* row = std::get_if<explorer_row::Folder>(&rows[at]);
        if (row != nullptr && row->folder.id == *folder.parentId) return setExplorerSelection(static_cast<int>(at));
    }
}

void Explorer::explorerActivate() {
    const auto row = selectedRowSignature();
    const auto chosen = row ? scopeOf(*row) : std::nullopt;
    if (!chosen) return;
    environment_.choose(*chosen);
    setExplorerOpen(false);
}

void Explorer::reset(std::set<std::int64_t> folderIds) {
    setExplorerOpen(false);
    setExpandedFolderIds(std::move(folderIds));
}

void Explorer::updateView() {
    if (isOpen_) list_.setRows(explorerRows());
}

bool Explorer::prepare() {
    readFacts(1);
    if (factsRead_ < explorerFactParts) return true;
    // It opens with nothing typed.
    if (!isOpen_) list_.setRows(brimquill::explorerRows(facts_, {}, expandedFolderIds_));
    return false;
}

void Explorer::rowClicked(int index) {
    setExplorerSelection(index);
    explorerActivate();
}

void Explorer::disclosureClicked(int index) {
    const auto& rows = explorerRows();
    if (index < 0 || index >= static_cast<int>(rows.size())) return;
    const auto* row = std::get_if<explorer_row::Folder>(&rows[static_cast<std::size_t>(index)]);
    if (row != nullptr) setExpanded(row->folder.id, !expandedFolderIds_.contains(row->folder.id));
}

}  // namespace brimquill

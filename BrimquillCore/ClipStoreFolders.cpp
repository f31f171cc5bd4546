#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/FolderTree.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"

namespace brimquill {
std::vector<ClipFolder> ClipStore::folders() {
    std::vector<ClipFolder> folders;
    sqlite::Statement statement(
        *db_, "SELECT id, name, parent_id, uuid, color FROM folders WHERE deleted = 0 ORDER BY name COLLATE NOCASE");
    while (statement.step()) {
        folders.push_back({statement.integer(0), statement.text(1), statement.optionalInteger(2), statement.text(3),
                           statement.optionalText(4)});
    }
    return folders;
}

ClipFolder ClipStore::folder(const std::string& path) {
    ClipFolder result{0, path, std::nullopt, "", std::nullopt};
    std::optional<std::int64_t> parent;
    for (const auto& piece : text::split(path, '/')) {
        const auto name = text::trimmedBlanks(piece);
        if (name.empty()) continue;
        result = childFolder(parent, name);
        parent = result.id;
    }
    return result;
}

ClipFolder ClipStore::childFolder(std::optional<std::int64_t> parent, const std::string& name) {
    for (auto& folder : folders()) {
        if (folder.parentId == parent && text::equalIgnoringCase(folder.name, name)) return std::move(folder);
    }
    const auto uuid = makeUuid();
    const auto id = insertFolder(name, parent, uuid, clock_());
    return {id, name, parent, uuid, std::nullopt};
}

std::int64_t ClipStore::insertFolder(const std::string& name, std::optional<std::int64_t> parent,
                                     const std::string& uuid, Date modifiedAt) {
    const auto id =
        sqlite::Statement(*db_, "INSERT INTO folders (name, parent_id, uuid, modified_at) VALUES (?, ?, ?, ?)")
            .bind(name)
            .bind(parent)
            .bind(uuid)
            .bind(modifiedAt)
            .runInsert();
    postDidChange();
    return id;
}

std::string ClipStore::path(const ClipFolder& folder) {
    return FolderTree(folders()).path(folder);
}

std::set<std::int64_t> ClipStore::descendantIds(std::int64_t id) {
    const auto ids = FolderTree(folders()).subtreeIds(id);
    return {ids.begin(), ids.end()};
}

int ClipStore::clipCount(std::int64_t folderId) {
    sqlite::Statement statement(
        *db_, "SELECT COUNT(*) FROM clips WHERE folder_id = " + sqlite::sqlText(folderId) + " AND deleted = 0");
    return statement.step() ? static_cast<int>(statement.integer(0)) : 0;
}

int ClipStore::subtreeClipCount(std::int64_t folderId) {
    int count = 0;
    for (const auto id : descendantIds(folderId))
        count += clipCount(id);
    return count;
}

std::map<std::int64_t, int> ClipStore::clipCounts() {
    std::map<std::int64_t, int> counts;
    sqlite::Statement statement(*db_,
                                "SELECT folder_id, COUNT(*) FROM clips WHERE folder_id IS NOT NULL AND deleted = 0\n"
                                "GROUP BY folder_id");
    while (statement.step())
        counts.emplace(statement.integer(0), static_cast<int>(statement.integer(1)));
    return counts;
}

void ClipStore::renameFolder(std::int64_t id, const std::string& name) {
    sqlite::Statement(*db_, "UPDATE folders SET name = ? WHERE id = ?").bind(name).bind(id).run();
    touchFolder(id);
}

void ClipStore::setFolderColor(std::int64_t id, const std::optional<std::string>& color) {
    sqlite::Statement(*db_, "UPDATE folders SET color = ? WHERE id = ?").bind(color).bind(id).run();
    touchFolder(id);
}

bool ClipStore::moveFolder(std::int64_t id, std::optional<std::int64_t> newParent) {
    if (newParent && descendantIds(id).contains(*newParent)) return false;
    db_->exec("UPDATE folders SET parent_id = " + sqlite::sqlText(newParent) + " WHERE id = " + sqlite::sqlText(id));
    touchFolder(id);
    return true;
}

void ClipStore::deleteFolder(std::int64_t id) {
    const std::string now = sqlite::sqlText(clock_());
    const FolderTree tree(folders());
    const auto* const folder = tree.find(id);
    const std::string parent = sqlite::sqlText(folder ? folder->parentId : std::nullopt);
    db_->exec("UPDATE folders SET parent_id = " + parent + ", modified_at = " + now +
              " WHERE parent_id = " + sqlite::sqlText(id));
    db_->exec("UPDATE clips SET folder_id = " + parent + ", modified_at = " + now +
              " WHERE folder_id = " + sqlite::sqlText(id));
    db_->exec("UPDATE folders SET deleted = 1, modified_at = " + now + " WHERE id = " + sqlite::sqlText(id));
    postDidChange();
}

void ClipStore::touchFolder(std::int64_t id) {
    db_->exec("UPDATE folders SET modified_at = " + sqlite::sqlText(clock_()) + " WHERE id = " + sqlite::sqlText(id));
    postDidChange();
}

}  // namespace brimquill

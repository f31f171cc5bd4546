#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"

namespace brimquill {
namespace {

constexpr const char* syncFolderColumns = "SELECT id, name, parent_id, uuid, modified_at, deleted FROM folders";

ClipStore::SyncFolder syncFolder(const sqlite::Statement& row) {
    return {
        {row.integer(0), row.text(1), row.optionalInteger(2), row.text(3), std::nullopt}, row.date(4), row.isOne(5)};
}

void updateFromRemote(const sqlite::Connection& connection, const ClipStore::RemoteClip& remote,
                      std::optional<std::int64_t> folderId, const std::optional<std::string>& imagePath) {
    sqlite::Statement(connection,
                      "UPDATE clips SET text = ?, kind = ?, source_app = ?, pinned = ?, name = ?,\n"
                      "    keyword = ?, folder_id = ?, tags = ?, image_path = COALESCE(?, image_path),\n"
                      "    modified_at = ?, deleted = 0\n"
                      "WHERE uuid = ?")
        .bind(remote.text)
        .bind(rawValue(remote.kind))
        .bind(remote.sourceApp)
        .bind(std::int64_t{remote.pinned})
        .bind(remote.name)
        .bind(remote.keyword)
        .bind(folderId)
        .bind(remote.tags)
        .bind(imagePath)
        .bind(remote.modifiedAt)
        .bind(remote.uuid)
        .run();
    sqlite::rebuildFullTextIndex(connection);
}

void insertFromRemote(const sqlite::Connection& connection, const ClipStore::RemoteClip& remote,
                      std::optional<std::int64_t> folderId, const std::optional<std::string>& imagePath) {
    sqlite::Statement(connection,
                      "INSERT INTO clips (text, kind, created_at, source_app, pinned, name, keyword,\n"
                      "    folder_id, tags, image_path, uuid, modified_at)\n"
                      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(remote.text)
        .bind(rawValue(remote.kind))
        .bind(remote.createdAt)
        .bind(remote.sourceApp)
        .bind(std::int64_t{remote.pinned})
        .bind(remote.name)
        .bind(remote.keyword)
        .bind(folderId)
        .bind(remote.tags)
        .bind(imagePath)
        .bind(remote.uuid)
        .bind(remote.modifiedAt)
        .run();
}

}  // namespace

/// Marks its thread as applying a remote change. By thread, so that what another one writes meanwhile is no echo.
class ClipStore::RemoteChange final {
public:
    explicit RemoteChange(const ClipStore& store) : store_(store), outer_(innermost) { innermost = this; }
    ~RemoteChange() { innermost = outer_; }
    RemoteChange(const RemoteChange&) = delete;
    RemoteChange& operator=(const RemoteChange&) = delete;

    static bool isUnderWay(const ClipStore& store) {
        for (const auto* change = innermost; change; change = change->outer_) {
            if (&change->store_ == &store) return true;
        }
        return false;
    }

private:
    static thread_local const RemoteChange* innermost;
    const ClipStore& store_;
    const RemoteChange* const outer_;
};

thread_local const ClipStore::RemoteChange* ClipStore::RemoteChange::innermost = nullptr;

bool ClipStore::isApplyingRemoteChanges() const {
    return RemoteChange::isUnderWay(*this);
}

std::vector<ClipItem> ClipStore::clipsChangedSince(Date date) {
    sqlite::Statement statement(*db_, sqlite::selectClips(" FROM clips\nWHERE modified_at > " + sqlite::sqlText(date) +
                                                          " AND expires_at IS NULL AND uuid IS NOT NULL"));
    return sqlite::clips(statement);
}

std::vector<ClipStore::SyncFolder> ClipStore::foldersChangedSince(Date date) {
    sqlite::Statement statement(
        *db_, syncFolderColumns + ("\nWHERE modified_at > " + sqlite::sqlText(date) + " AND uuid IS NOT NULL"));
    std::vector<SyncFolder> folders;
    while (statement.step())
        folders.push_back(syncFolder(statement));
    return folders;
}

std::vector<ClipItem> ClipStore::allClips() {
    sqlite::Statement statement(*db_, sqlite::selectClips(" FROM clips WHERE deleted = 0 ORDER BY created_at DESC"));
    return sqlite::clips(statement);
}

std::optional<ClipItem> ClipStore::clip(const std::string& uuid) {
    sqlite::Statement statement(*db_, sqlite::selectClips(" FROM clips WHERE uuid = ?"));
    statement.bind(uuid);
    return sqlite::firstClip(statement);
}

std::optional<ClipStore::SyncFolder> ClipStore::anyFolder(const std::string& uuid) {
    sqlite::Statement statement(*db_, syncFolderColumns + std::string(" WHERE uuid = ?"));
    statement.bind(uuid);
    return statement.step() ? std::optional(syncFolder(statement)) : std::nullopt;
}

/// The local id; deleted folders count, unknown ones give none.
std::optional<std::int64_t> ClipStore::localFolderId(const std::optional<std::string>& uuid) {
    const auto known = uuid ? anyFolder(*uuid) : std::nullopt;
    return known ? std::optional(known->folder.id) : std::nullopt;
}

/// Nothing when there is no picture or it cannot be written. The uuid comes from elsewhere and must not lead out of
/// the directory.
std::optional<std::string> ClipStore::writeRemoteImage(const RemoteClip& remote) {
    const auto file = imagesDirectory / ("sync-" + remote.uuid + ".png");
    if (!remote.imageData || file.parent_path() != imagesDirectory) return std::nullopt;
    if (!files::writePrivateFile(file, *remote.imageData)) return std::nullopt;
    return file.string();
}

void ClipStore::applyRemoteClip(const RemoteClip& remote) {
    const RemoteChange change(*this);
    const auto folder = localFolderId(remote.folderUuid);
    const auto imagePath = writeRemoteImage(remote);  // a copy that loses leaves its picture all the same
    const auto local = clip(remote.uuid);
    if (local && remote.modifiedAt <= local->modifiedAt) return;
    if (local) {
        updateFromRemote(*db_, remote, folder, imagePath);
    } else {
        insertFromRemote(*db_, remote, folder, imagePath);
    }
    postDidChange();
}

/// A remote deletion wins whatever the times.
void ClipStore::applyRemoteClipDeletion(const std::string& uuid) {
    const RemoteChange change(*this);
    const auto local = clip(uuid);
    if (local && !local->deleted) deleteClip(local->id);
}

void ClipStore::applyRemoteFolder(const std::string& uuid, const std::string& name,
                                  const std::optional<std::string>& parentUuid, Date modifiedAt) {
    const RemoteChange change(*this);
    const auto parent = localFolderId(parentUuid);
    const auto local = anyFolder(uuid);
    if (!local) {
        insertFolder(name, parent, uuid, modifiedAt);
        return;
    }
    if (modifiedAt <= local->modifiedAt) return;
    sqlite::Statement(*db_, "UPDATE folders SET name = ?, parent_id = ?, modified_at = ?, deleted = 0 WHERE uuid = ?")
        .bind(name)
        .bind(parent)
        .bind(modifiedAt)
        .bind(uuid)
        .run();
    postDidChange();
}

void ClipStore::applyRemoteFolderDeletion(const std::string& uuid) {
    const RemoteChange change(*this);
    const auto local = anyFolder(uuid);
    if (local && !local->deleted) deleteFolder(local->folder.id);
}

bool ClipStore::KnownClips::contains(const std::string& uuid) {
    // Row ids only grow, and no row changes its uuid.
    sqlite::Statement statement(*store_.db_, "SELECT id, uuid FROM clips WHERE id > ? ORDER BY id");
    statement.bind(lastId_);
    while (statement.step()) {
        lastId_ = statement.integer(0);
        if (!statement.isNull(1)) uuids_.insert(statement.text(1));
    }
    return uuids_.count(uuid) > 0;
}

std::optional<std::int64_t> ClipStore::insertImported(const ImportedClip& imported) {
    return clip(imported.uuid) ? std::nullopt : std::optional(insertArchived(imported));
}

std::optional<std::int64_t> ClipStore::insertImported(const ImportedClip& imported, KnownClips& known) {
    return known.contains(imported.uuid) ? std::nullopt : std::optional(insertArchived(imported));
}

std::int64_t ClipStore::insertArchived(const ImportedClip& imported) {
    const bool hasKeyword = imported.keyword && !imported.keyword->empty();
    const auto id = sqlite::Statement(*db_,
                                      "INSERT INTO clips (text, kind, created_at, source_app, pinned, name, keyword,\n"
                                      "    folder_id, tags, image_path, uuid, modified_at, source_bundle_id)\n"
                                      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                        .bind(imported.text)
                        .bind(rawValue(imported.kind))
                        .bind(imported.createdAt)
                        .bind(imported.source.app)
                        .bind(std::int64_t{imported.pinned})
                        .bind(imported.name)
                        .bind(hasKeyword ? imported.keyword : std::nullopt)
                        .bind(imported.folderId)
                        .bind(imported.tags.empty() ? std::nullopt : std::optional(text::join(imported.tags, ",")))
                        .bind(imported.imagePath)
                        .bind(imported.uuid)
                        .bind(clock_())
                        .bind(imported.source.bundleId)
                        .runInsert();
    postDidChange();
    return id;
}

std::optional<std::string> ClipStore::syncRecordData(const std::string& uuid) {
    sqlite::Statement statement(*db_, "SELECT record FROM sync_meta WHERE uuid = ?");
    statement.bind(uuid);
    return statement.step() ? statement.blob(0) : std::nullopt;
}

void ClipStore::setSyncRecordData(const std::optional<std::string>& data, const std::string& uuid) {
    if (data) {
        sqlite::Statement(*db_, "INSERT OR REPLACE INTO sync_meta (uuid, record) VALUES (?, ?)")
            .bind(uuid)
            .bindBlob(*data)
            .run();
    } else {
        sqlite::Statement(*db_, "DELETE FROM sync_meta WHERE uuid = ?").bind(uuid).run();
    }
}

}  // namespace brimquill

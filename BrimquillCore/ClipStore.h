#pragma once

#include "BrimquillCore/ClipFolder.h"
#include "BrimquillCore/ClipItem.h"
#include "BrimquillCore/Foundation/NotificationCenter.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace brimquill {

namespace sqlite {
class Connection;
}

/// The hoard: one SQLite database with a full-text index, and a directory of image files beside it.
///
/// Operations report no failure: a failed statement leaves the data as it was, a failed read gives an empty list or 0.
/// Each runs on its caller's thread on the one connection, which SQLite serialises. Every write that the table in
/// docs/architecture.md names posts `didChangeNotification` with the store as its object, synchronously.
class ClipStore final {
public:
    static constexpr const char* didChangeNotification = "ClipStoreDidChange";

    /// What can stand beside a clip's text when it is stored.
    struct Source {
        std::optional<std::string> app;
        std::optional<std::string> bundleId;
    };
    struct TagCount {
        std::string tag;
        int count = 0;
        friend bool operator==(const TagCount&, const TagCount&) = default;
    };
    struct KindCount {
        ClipKind kind = ClipKind::text;
        int count = 0;
        friend bool operator==(const KindCount&, const KindCount&) = default;
    };
    struct SourceAppCount {
        std::string app;
        std::optional<std::string> bundleId;
        int count = 0;
    };
    /// A folder as the sync service sees it; `folder.color` is always absent here.
    struct SyncFolder {
        ClipFolder folder;
        Date modifiedAt;
        bool deleted = false;
    };
    /// A clip as another machine tells of it. `tags` is the stored, comma-joined form.
    struct RemoteClip {
        std::string uuid;
        ClipKind kind = ClipKind::text;
        std::string text;
        Date createdAt;
        Date modifiedAt;
        std::optional<std::string> sourceApp{};
        bool pinned = false;
        std::optional<std::string> name{}, keyword{}, folderUuid{}, tags{};
        std::optional<std::string> imageData{};
    };
    /// A clip out of an archive.
    struct ImportedClip {
        std::string uuid;
        ClipKind kind = ClipKind::text;
        std::string text;
        Date createdAt;
        Source source{};
        bool pinned = false;
        std::optional<std::string> name{}, keyword{};
        std::optional<std::int64_t> folderId{};
        std::vector<std::string> tags{};
        std::optional<std::string> imagePath{};
    };
    /// Answers which uuids the store has, deleted clips included, for one who asks thousands of times: reads the table
    /// once and, at each question, only what was added since. For one thread; its store has to outlive it.
    class KnownClips final {
    public:
        explicit KnownClips(ClipStore& store) : store_(store) {}
        bool contains(const std::string& uuid);

    private:
        ClipStore& store_;
        std::unordered_set<std::string> uuids_;
        std::int64_t lastId_ = std::numeric_limits<std::int64_t>::min();
    };

    /// Opens or creates the store in `directory`, makes it private to the user, and brings an earlier database up to
    /// date. Ends the process with a message when the database cannot be opened.
    explicit ClipStore(const std::filesystem::path& directory,
                       NotificationCenter& center = NotificationCenter::defaultCenter(), Clock clock = Date::now);
    ~ClipStore();
    ClipStore(const ClipStore&) = delete;
    ClipStore& operator=(const ClipStore&) = delete;

    /// The running program's store, made at first use in `defaultDirectory()`; never released.
    static ClipStore& shared();
    /// `BRIMQUILL_DATA_DIR` when set and not empty; else "Brimquill" in the user's data directory.
    static std::filesystem::path defaultDirectory();

    const std::filesystem::path imagesDirectory;
    const std::filesystem::path databaseURL;
    /// How many ordinary clips `insert` keeps; below 1 there is no limit.
    std::atomic<int> retentionLimit = 10000;
    /// True while the calling thread applies a remote change, so that an observer can tell an echo.
    bool isApplyingRemoteChanges() const;

    // Captures and edits.
    /// Stores a capture. Nothing when the text repeats the first clip of the history, which then only moves up.
    std::optional<ClipItem> insert(const std::string& text, ClipKind kind, const Source& source = {},
                                   const std::optional<std::string>& imagePath = {},
                                   std::optional<Date> expiresAt = {});
    std::int64_t createSnippet(const std::string& name, const std::string& text,
                               const std::optional<std::string>& keyword = {},
                               std::optional<std::int64_t> folderId = {});
    /// Makes a clip a snippet, which also rescues it from expiry.
    void promoteToSnippet(std::int64_t id, const std::string& name, const std::optional<std::string>& keyword = {},
                          std::optional<std::int64_t> folderId = {});
    /// The first snippet, in the order of `fetchSnippets`, with exactly this keyword.
    std::optional<ClipItem> snippetForKeyword(const std::string& keyword);
    void setPinned(std::int64_t id, bool pinned);
    void setFolder(std::int64_t id, std::optional<std::int64_t> folderId);
    /// Trims and lower-cases each tag and drops the empty ones.
    void setTags(std::int64_t id, const std::vector<std::string>& tags);
    /// Replaces the text and rebuilds the full-text index.
    void updateText(std::int64_t id, const std::string& text);

    // Reads.
    /// Clips that are no snippets, pinned first, then newest first.
    std::vector<ClipItem> fetchHistory(int limit);
    /// Unfiled first, then by folder, then by name.
    std::vector<ClipItem> fetchSnippets();
    /// Full-text prefix search, then matches by snippet name or keyword and by tag put in front. May give more than
    /// `limit`. The empty query gives all snippets and then the history.
    std::vector<ClipItem> search(const std::string& query, int limit);
    /// By row id or uuid, deleted ones included.
    std::optional<ClipItem> clip(std::int64_t id);
    std::optional<ClipItem> clip(const std::string& uuid);
    /// Most used first; tags of deleted clips count.
    std::vector<TagCount> tagCounts();
    /// The names of the first `limit` of `tagCounts`. A negative limit is a programming error and ends the process.
    std::vector<std::string> allTags(int limit);
    std::vector<KindCount> kindCounts();
    std::vector<SourceAppCount> sourceAppCounts(int limit);
    int capturedTodayCount();

    // Leaving the store. All deletions are soft.
    void deleteClip(std::int64_t id);
    void restore(std::int64_t id);
    /// Deletes everything that is neither pinned nor a snippet.
    void clearUnpinned();
    /// Deletes clips past their expiry; true if there were any.
    bool sweepExpired();
    /// Deletes ordinary, unfiled clips older than `maxAgeDays`; below 1 does nothing.
    void enforceAgeRetention(int maxAgeDays);

    // Pinboards.
    std::vector<ClipFolder> folders();
    /// Finds or creates the folder at a slash path; a path without components gives an unsaved value of id 0.
    ClipFolder folder(const std::string& path);
    std::string path(const ClipFolder& folder);
    /// The folder itself and all below it.
    std::set<std::int64_t> descendantIds(std::int64_t id);
    int clipCount(std::int64_t folderId);
    int subtreeClipCount(std::int64_t folderId);
    /// `clipCount` of every folder that has clips, by its id, from one read.
    std::map<std::int64_t, int> clipCounts();
    void renameFolder(std::int64_t id, const std::string& name);
    void setFolderColor(std::int64_t id, const std::optional<std::string>& color);
    /// False, and nothing changed, when the new parent is the folder itself or lies below it.
    bool moveFolder(std::int64_t id, std::optional<std::int64_t> newParent);
    /// Its children and clips move up one level.
    void deleteFolder(std::int64_t id);

    // Sync and archives.
    std::vector<ClipItem> clipsChangedSince(Date date);
    std::vector<SyncFolder> foldersChangedSince(Date date);
    std::vector<ClipItem> allClips();
    std::optional<SyncFolder> anyFolder(const std::string& uuid);
    /// Applies a remote clip when it is strictly later than the local one.
    void applyRemoteClip(const RemoteClip& clip);
    void applyRemoteClipDeletion(const std::string& uuid);
    void applyRemoteFolder(const std::string& uuid, const std::string& name,
                           const std::optional<std::string>& parentUuid, Date modifiedAt);
    void applyRemoteFolderDeletion(const std::string& uuid);
    /// The new row id; nothing if a row of that uuid exists, deleted or not. One that brings in many clips passes the
    /// same `known`, made of this store, to each call; else the whole table is searched for each.
    std::optional<std::int64_t> insertImported(const ImportedClip& clip);
    std::optional<std::int64_t> insertImported(const ImportedClip& clip, KnownClips& known);
    std::optional<std::string> syncRecordData(const std::string& uuid);
    void setSyncRecordData(const std::optional<std::string>& data, const std::string& uuid);

private:
    class RemoteChange;

    bool moveUpRepeated(const std::string& text);
    void touch(std::int64_t id);
    void enforceRetention();
    ClipFolder childFolder(std::optional<std::int64_t> parent, const std::string& name);
    std::int64_t insertFolder(const std::string& name, std::optional<std::int64_t> parent, const std::string& uuid,
                              Date modifiedAt);
    void touchFolder(std::int64_t id);
    std::optional<std::int64_t> localFolderId(const std::optional<std::string>& uuid);
    std::int64_t insertArchived(const ImportedClip& clip);
    std::optional<std::string> writeRemoteImage(const RemoteClip& remote);
    void postDidChange();

    std::unique_ptr<sqlite::Connection> db_;
    NotificationCenter& center_;
    Clock clock_;
};

}  // namespace brimquill

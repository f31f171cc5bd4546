#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Files.h"

namespace brimquill {
namespace {

/// More clips than this lose no picture file when the history is cleared.
constexpr int clearedHistoryLimit = 100000;
constexpr double secondsPerDay = 86400.0;

}  // namespace

/// The newest ordinary clips stay; pinned clips and snippets neither count nor fall. The picture files of those that
/// fall stay. Posts nothing: the caller does.
void ClipStore::enforceRetention() {
    const int limit = retentionLimit;
    if (limit < 1) return;
    db_->exec("UPDATE clips SET deleted = 1, modified_at = " + sqlite::sqlText(clock_()) +
              " WHERE id IN (\n"
              "    SELECT id FROM clips WHERE name IS NULL AND pinned = 0 AND deleted = 0\n"
              "    ORDER BY created_at DESC LIMIT -1 OFFSET " +
              std::to_string(limit) + "\n)");
}

void ClipStore::enforceAgeRetention(int maxAgeDays) {
    if (maxAgeDays < 1) return;
    const std::string condition = "\nWHERE created_at < " + sqlite::sqlText(clock_() + maxAgeDays * -secondsPerDay) +
                                  " AND pinned = 0 AND name IS NULL AND folder_id IS NULL AND deleted = 0";
    std::size_t count = 0;
    std::vector<std::string> imagePaths;
    {
        sqlite::Statement statement(*db_, sqlite::selectClips(" FROM clips" + condition));
        for (; statement.step(); ++count) {
            if (auto path = statement.optionalText(sqlite::imagePathColumn)) imagePaths.push_back(*std::move(path));
        }
    }
    if (count == 0) return;
    for (const auto& path : imagePaths)
        files::removeFile(path);
    db_->exec("UPDATE clips SET deleted = 1, modified_at = " + sqlite::sqlText(clock_()) + condition);
    postDidChange();
}

/// Expiry outranks everything: a pinned or filed secret goes as well.
bool ClipStore::sweepExpired() {
    std::vector<std::int64_t> expired;
    {
        sqlite::Statement statement(*db_,
                                    sqlite::selectClips(" FROM clips WHERE expires_at IS NOT NULL AND expires_at < " +
                                                        sqlite::sqlText(clock_()) + " AND deleted = 0"));
        while (statement.step())
            expired.push_back(statement.integer(sqlite::idColumn));
    }
    for (const auto id : expired)
        deleteClip(id);
    return !expired.empty();
}

void ClipStore::deleteClip(std::int64_t id) {
    const auto doomed = clip(id);
    if (doomed && doomed->imagePath) files::removeFile(*doomed->imagePath);
    db_->exec("UPDATE clips SET deleted = 1, modified_at = " + sqlite::sqlText(clock_()) +
              " WHERE id = " + sqlite::sqlText(id));
    postDidChange();
}

void ClipStore::restore(std::int64_t id) {
    db_->exec("UPDATE clips SET deleted = 0, modified_at = " + sqlite::sqlText(clock_()) +
              " WHERE id = " + sqlite::sqlText(id));
    postDidChange();
}

void ClipStore::clearUnpinned() {
    std::vector<std::string> imagePaths;
    {
        sqlite::Statement history(*db_, sqlite::historySql(clearedHistoryLimit));
        while (history.step()) {
            if (history.isOne(sqlite::pinnedColumn)) continue;
            if (auto path = history.optionalText(sqlite::imagePathColumn)) imagePaths.push_back(*std::move(path));
        }
    }
    for (const auto& path : imagePaths)
        files::removeFile(path);
    db_->exec("UPDATE clips SET deleted = 1, modified_at = " + sqlite::sqlText(clock_()) +
              " WHERE pinned = 0 AND name IS NULL AND deleted = 0");
    postDidChange();
}

}  // namespace brimquill

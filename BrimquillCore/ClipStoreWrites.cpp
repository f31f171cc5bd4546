#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"

namespace brimquill {
namespace {

std::optional<std::string> nonEmpty(const std::optional<std::string>& text) {
    return text && text->empty() ? std::nullopt : text;
}

}  // namespace

std::optional<ClipItem> ClipStore::insert(const std::string& text, ClipKind kind, const Source& source,
                                          const std::optional<std::string>& imagePath, std::optional<Date> expiresAt) {
    if (kind == ClipKind::text && moveUpRepeated(text)) return std::nullopt;
    const Date now = clock_();
    ClipItem clip;
    clip.uuid = makeUuid();
    clip.id = sqlite::Statement(*db_,
                                "INSERT INTO clips (text, kind, created_at, source_app, image_path, expires_at, uuid, "
                                "modified_at, source_bundle_id)\nVALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
                  .bind(text)
                  .bind(rawValue(kind))
                  .bind(now)
                  .bind(source.app)
                  .bind(imagePath)
                  .bind(expiresAt)
                  .bind(clip.uuid)
                  .bind(now)
                  .bind(source.bundleId)
                  .runInsert();
    enforceRetention();
    postDidChange();
    clip.kind = kind;
    clip.text = text;
    clip.createdAt = clock_();
    clip.sourceApp = source.app;
    clip.imagePath = imagePath;
    clip.expiresAt = expiresAt;
    clip.modifiedAt = now;
    clip.sourceBundleId = source.bundleId;
    return clip;
}

/// A repeat of the first clip of the history is not stored again. It moves up in silence: nothing has changed that
/// other machines or the views need to know. With a pinned clip first, that one alone is compared, on purpose.
bool ClipStore::moveUpRepeated(const std::string& text) {
    const auto newest = fetchHistory(1);
    if (newest.empty() || !text::equal(newest[0].text, text)) return false;
    sqlite::Statement(*db_, "UPDATE clips SET created_at = ? WHERE id = ?").bind(clock_()).bind(newest[0].id).run();
    return true;
}

std::int64_t ClipStore::createSnippet(const std::string& name, const std::string& text,
                                      const std::optional<std::string>& keyword, std::optional<std::int64_t> folderId) {
    const Date now = clock_();
    const auto id = sqlite::Statement(*db_,
                                      "INSERT INTO clips (text, kind, created_at, name, keyword, folder_id, uuid, "
                                      "modified_at)\nVALUES (?, 'text', ?, ?, ?, ?, ?, ?)")
                        .bind(text)
                        .bind(now)
                        .bind(name)
                        .bind(nonEmpty(keyword))
                        .bind(folderId)
                        .bind(makeUuid())
                        .bind(now)
                        .runInsert();
    postDidChange();
    return id;
}

void ClipStore::promoteToSnippet(std::int64_t id, const std::string& name, const std::optional<std::string>& keyword,
                                 std::optional<std::int64_t> folderId) {
    sqlite::Statement(*db_, "UPDATE clips SET name = ?, keyword = ?, folder_id = ?, expires_at = NULL WHERE id = ?")
        .bind(name)
        .bind(nonEmpty(keyword))
        .bind(folderId)
        .bind(id)
        .run();
    touch(id);
}

void ClipStore::setPinned(std::int64_t id, bool pinned) {
    db_->exec(std::string("UPDATE clips SET pinned = ") + (pinned ? "1" : "0") + " WHERE id = " + sqlite::sqlText(id));
    touch(id);
}

void ClipStore::setFolder(std::int64_t id, std::optional<std::int64_t> folderId) {
    db_->exec("UPDATE clips SET folder_id = " + sqlite::sqlText(folderId) + " WHERE id = " + sqlite::sqlText(id));
    touch(id);
}

void ClipStore::setTags(std::int64_t id, const std::vector<std::string>& tags) {
    std::vector<std::string> kept;
    for (const auto& tag : tags) {
        auto normalized = text::lowercased(text::trimmedBlanks(tag));
        if (!normalized.empty()) kept.push_back(std::move(normalized));
    }
    const auto joined = kept.empty() ? std::nullopt : std::optional(text::join(kept, ","));
    sqlite::Statement(*db_, "UPDATE clips SET tags = ? WHERE id = ?").bind(joined).bind(id).run();
    touch(id);
}

void ClipStore::updateText(std::int64_t id, const std::string& text) {
    sqlite::Statement(*db_, "UPDATE clips SET text = ? WHERE id = ?").bind(text).bind(id).run();
    sqlite::rebuildFullTextIndex(*db_);
    touch(id);
}

void ClipStore::touch(std::int64_t id) {
    db_->exec("UPDATE clips SET modified_at = " + sqlite::sqlText(clock_()) + " WHERE id = " + sqlite::sqlText(id));
    postDidChange();
}

}  // namespace brimquill

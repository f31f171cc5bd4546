#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Calendar.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace brimquill {

std::vector<ClipItem> ClipStore::fetchHistory(int limit) {
    sqlite::Statement statement(*db_, sqlite::historySql(limit));
    return sqlite::clips(statement);
}

std::vector<ClipItem> ClipStore::fetchSnippets() {
    sqlite::Statement statement(*db_, sqlite::snippetsSql());
    return sqlite::clips(statement);
}

std::optional<ClipItem> ClipStore::snippetForKeyword(const std::string& keyword) {
    sqlite::Statement snippets(*db_, sqlite::snippetsSql());
    while (snippets.step()) {
        if (!snippets.isNull(sqlite::keywordColumn) && text::equal(snippets.textView(sqlite::keywordColumn), keyword)) {
            return snippets.clip();
        }
    }
    return std::nullopt;
}

std::optional<ClipItem> ClipStore::clip(std::int64_t id) {
    sqlite::Statement statement(*db_, sqlite::selectClips(" FROM clips WHERE id = " + sqlite::sqlText(id)));
    return sqlite::firstClip(statement);
}

std::vector<ClipStore::TagCount> ClipStore::tagCounts() {
    std::map<std::string, int> counts;
    sqlite::Statement statement(*db_, "SELECT tags FROM clips WHERE tags IS NOT NULL");
    while (statement.step()) {
        for (auto& tag : text::split(statement.textView(0), ','))
            ++counts[std::move(tag)];
    }
    std::vector<TagCount> result;
    result.reserve(counts.size());
    for (const auto& [tag, count] : counts)
        result.push_back({tag, count});
    std::stable_sort(result.begin(), result.end(),
                     [](const TagCount& a, const TagCount& b) { return a.count > b.count; });
    return result;
}

std::vector<std::string> ClipStore::allTags(int limit) {
    if (limit < 0) {
        std::fprintf(stderr, "allTags: negative limit %d\n", limit);
        std::abort();
    }
    std::vector<std::string> tags;
    for (auto& [tag, count] : tagCounts()) {
        if (tags.size() >= static_cast<std::size_t>(limit)) break;
        tags.push_back(tag);
    }
    return tags;
}

std::vector<ClipStore::KindCount> ClipStore::kindCounts() {
    std::vector<KindCount> counts;
    sqlite::Statement statement(*db_,
                                "SELECT kind, COUNT(*) FROM clips WHERE deleted = 0\n"
                                "GROUP BY kind ORDER BY COUNT(*) DESC");
    while (statement.step()) {
        if (const auto kind = clipKind(statement.textView(0))) {
            counts.push_back({*kind, static_cast<int>(statement.integer(1))});
        }
    }
    return counts;
}

std::vector<ClipStore::SourceAppCount> ClipStore::sourceAppCounts(int limit) {
    std::vector<SourceAppCount> counts;
    sqlite::Statement statement(*db_,
                                "SELECT source_app, source_bundle_id, COUNT(*) FROM clips\n"
                                "WHERE deleted = 0 AND source_app IS NOT NULL\n"
                                "GROUP BY source_app ORDER BY COUNT(*) DESC LIMIT " +
                                    std::to_string(limit));
    while (statement.step()) {
        counts.push_back({statement.text(0), statement.optionalText(1), static_cast<int>(statement.integer(2))});
    }
    return counts;
}

int ClipStore::capturedTodayCount() {
    sqlite::Statement statement(*db_, "SELECT COUNT(*) FROM clips WHERE created_at >= " +
                                          sqlite::sqlText(startOfDay(clock_())) + " AND deleted = 0");
    return statement.step() ? static_cast<int>(statement.integer(0)) : 0;
}

}  // namespace brimquill

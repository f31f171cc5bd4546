#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace brimquill {
namespace {

/// Every piece between blanks as a quoted prefix term. Quotes within a piece stay as they are: such a query is
/// malformed and finds nothing in the index, which is accepted.
std::string fullTextQuery(const std::string& query) {
    auto terms = text::split(query, ' ');
    for (auto& term : terms)
        term.insert(0, 1, '"').append("\"*");
    return text::join(terms, " ");
}

std::string fullTextSql(int limit) {
    auto columns = text::split(sqlite::clipColumns, ',');
    for (auto& column : columns)
        column = std::string("c.").append(text::trimmedBlanks(column));
    return "SELECT " + text::join(columns, ", ") +
           "\nFROM clips_fts f JOIN clips c ON c.id = f.rowid\n"
           "WHERE clips_fts MATCH ? AND c.deleted = 0\n"
           "ORDER BY (c.name IS NOT NULL) DESC, c.pinned DESC, c.created_at DESC LIMIT " +
           std::to_string(limit);
}

std::string tagSql(int limit) {
    return sqlite::selectClips(" FROM clips WHERE tags LIKE ? AND deleted = 0\nORDER BY created_at DESC LIMIT " +
                               std::to_string(limit));
}

}  // namespace

// Runs on every keystroke: one query of the index, one pass over the snippets, one scan of the tags, and no row is
// copied that is not returned.
std::vector<ClipItem> ClipStore::search(const std::string& query, int limit) {
    if (query.empty()) {
        auto clips = fetchSnippets();
        auto history = fetchHistory(limit);
        std::move(history.begin(), history.end(), std::back_inserter(clips));
        return clips;
    }

    // 1. The full text: snippets, then pinned clips, then the newest.
    std::vector<ClipItem> found;
    {
        sqlite::Statement statement(*db_, fullTextSql(limit));
        statement.bind(fullTextQuery(query));
        found = sqlite::clips(statement);
    }
    std::unordered_set<std::int64_t> foundIds;
    for (const auto& clip : found)
        foundIds.insert(clip.id);

    // Each match of the two passes below goes to the very front, so they are collected and turned round at the end.
    std::vector<ClipItem> matches;
    const auto collect = [&](const sqlite::Statement& row) {
        if (foundIds.insert(row.integer(sqlite::idColumn)).second) matches.push_back(row.clip());
    };

    // 2. Names and keywords of snippets.
    const std::string lowered = text::lowercased(query);
    {
        sqlite::Statement snippets(*db_, sqlite::snippetsSql());
        const auto holdsQuery = [&](int column) {
            return text::contains(text::lowercased(snippets.textView(column)), lowered);
        };
        while (snippets.step()) {
            if (holdsQuery(sqlite::nameColumn) ||
                (!snippets.isNull(sqlite::keywordColumn) && holdsQuery(sqlite::keywordColumn))) {
                collect(snippets);
            }
        }
    }

    // 3. Tags, with or without the leading "#".
    const std::string tag = lowered.starts_with('#') ? lowered.substr(1) : lowered;
    if (!tag.empty()) {
        sqlite::Statement tagged(*db_, tagSql(limit));
        tagged.bind("%" + tag + "%");
        while (tagged.step())
            collect(tagged);
    }

    std::reverse(matches.begin(), matches.end());
    std::move(found.begin(), found.end(), std::back_inserter(matches));
    return matches;
}

}  // namespace brimquill

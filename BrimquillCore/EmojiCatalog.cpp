#include "BrimquillCore/EmojiCatalog.h"

#include "BrimquillCore/EmojiTable.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <array>

namespace brimquill {

Emoji::Emoji(std::string_view itsCharacter, std::string_view itsName, std::string_view itsKeywords)
    : character(itsCharacter), name(itsName), keywords(text::split(itsKeywords, ' ')) {}

namespace EmojiCatalog {
namespace {

enum class Rank : std::size_t { nameEquals, nameBegins, nameContains, keywordEquals, keywordBegins, none };
constexpr auto rankCount = static_cast<std::size_t>(Rank::none);

Rank rank(const Emoji& emoji, std::string_view query) {
    if (emoji.name == query) return Rank::nameEquals;
    const auto at = emoji.name.find(query);
    if (at == 0) return Rank::nameBegins;
    if (at != std::string::npos) return Rank::nameContains;
    auto best = Rank::none;
    for (const auto& keyword : emoji.keywords) {
        if (keyword == query) return Rank::keywordEquals;
        if (keyword.starts_with(query)) best = Rank::keywordBegins;
    }
    return best;
}

template <typename Matches>
std::vector<Emoji> rowsWhere(Matches matches) {
    std::vector<Emoji> result;
    std::copy_if(all().begin(), all().end(), std::back_inserter(result), matches);
    return result;
}

/// The rows that pass a test, best rank first, in the table's order within a rank.
std::vector<const Emoji*> ranked(std::string_view query) {
    std::array<std::vector<const Emoji*>, rankCount + 1> rows;
    for (const auto& emoji : all())
        rows[static_cast<std::size_t>(rank(emoji, query))].push_back(&emoji);
    std::vector<const Emoji*> result;
    for (std::size_t i = 0; i < rankCount; ++i)
        result.insert(result.end(), rows[i].begin(), rows[i].end());
    return result;
}

}  // namespace

const std::vector<Emoji>& all() {
    static const std::vector<Emoji> rows = [] {
        std::vector<Emoji> made;
        made.reserve(emojiCount);
        for (const auto& row : emojiTable)
            made.emplace_back(row.character, row.name, row.keywords);
        return made;
    }();
    return rows;
}

std::vector<Emoji> search(std::string_view query, int limit) {
    const auto most = static_cast<std::size_t>(std::max(limit, 0));
    const auto wanted = text::lowercased(text::trimmedBlanks(query));
    // 1. Nothing asked for: the table from its beginning.
    if (wanted.empty()) return {all().begin(), all().begin() + static_cast<std::ptrdiff_t>(std::min(most, emojiCount))};
    // 2. An emoji, exactly as it was given, finds itself, whatever the limit.
    auto itself = rowsWhere([query](const Emoji& emoji) { return emoji.character == query; });
    if (!itself.empty()) return itself;
    // 3. Names, then keywords.
    std::vector<Emoji> result;
    for (const auto* emoji : ranked(wanted)) {
        if (result.size() == most) break;
        result.push_back(*emoji);
    }
    return result;
}

}  // namespace EmojiCatalog
}  // namespace brimquill

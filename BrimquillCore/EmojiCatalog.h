#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brimquill {

/// An emoji with its English name and search words, all in lower case.
struct Emoji {
    /// As it is inserted: one grapheme cluster, with its joiners and variation selector. Also its identity.
    std::string character;
    std::string name;
    std::vector<std::string> keywords;

    /// Takes the keywords in one string, divided by blanks.
    Emoji(std::string_view itsCharacter, std::string_view itsName, std::string_view itsKeywords);
    const std::string& id() const { return character; }
    friend bool operator==(const Emoji&, const Emoji&) = default;
};

/// The fixed library of emoji behind the palette, and a ranked search over it. Any thread.
namespace EmojiCatalog {

/// All 481, in the order in which they are shown; every character and every name occurs once. Made at first use.
const std::vector<Emoji>& all();

/// The best `limit` emoji for a query, those with it in their name before those with a keyword that begins with it;
/// the first of the table for a blank query. An emoji as the query finds itself. A limit below 1 gives none.
std::vector<Emoji> search(std::string_view query, int limit);

}  // namespace EmojiCatalog
}  // namespace brimquill

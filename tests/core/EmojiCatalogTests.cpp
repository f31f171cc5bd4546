#include "BrimquillCore/EmojiCatalog.h"

#include "BrimquillCore/Foundation/Text.h"

#include <gmock/gmock.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <algorithm>
#include <set>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> names(const std::vector<Emoji>& rows) {
    std::vector<std::string> result(rows.size());
    std::transform(rows.begin(), rows.end(), result.begin(), [](const auto& row) { return row.name; });
    return result;
}

TEST(EmojiCatalog, HoldsWholeEmojiEachOnce) {
    std::set<std::string> characters, seenNames;
    std::ptrdiff_t withoutKeywords = 0;
    for (const auto& row : EmojiCatalog::all()) {
        const auto wide = icu::UnicodeString::fromUTF8(row.character);
        EXPECT_EQ(text::characterCount(row.character), 1u) << row.name;
        EXPECT_TRUE(u_stringHasBinaryProperty(wide.getBuffer(), wide.length(), UCHAR_RGI_EMOJI))
            << row.name << " lacks a variation selector or is no emoji";
        EXPECT_EQ(text::lowercased(row.name), row.name);
        EXPECT_LE(row.keywords.size(), 4u) << row.name;
        withoutKeywords += row.keywords.empty();
        characters.insert(row.character);
        seenNames.insert(row.name);
    }
    EXPECT_EQ(EmojiCatalog::all().size(), 481u);
    EXPECT_EQ(characters.size(), 481u);
    EXPECT_EQ(seenNames.size(), 481u);
    EXPECT_EQ(withoutKeywords, 51);
}

TEST(EmojiCatalog, KeepsTheWordsThatPeopleKnow) {
    const Emoji expected[] = {
        {"😀", "grinning face", "smile happy grin"},
        {"😃", "grinning face with big eyes", "smile happy joy"},
        {"✍️", "writing hand", "write sign"},
        {"🐐", "goat", ""},
        {"📋", "clipboard", "copy paste list"},
        {"🚫", "prohibited", "no ban forbidden"},
        {"🏳️‍🌈", "rainbow flag", " pride  lgbt "},
    };
    for (const auto& row : expected)
        EXPECT_EQ(EmojiCatalog::search(row.name, 1), std::vector{row});
    EXPECT_EQ(EmojiCatalog::all().front(), expected[0]);
    EXPECT_EQ(EmojiCatalog::all().back(), expected[6]);
}

TEST(EmojiCatalog, RanksNamesBeforeKeywords) {
    EXPECT_THAT(names(EmojiCatalog::search("grinning face", 3)),
                ElementsAre("grinning face", "grinning face with big eyes", "grinning face with smiling eyes"));
    EXPECT_THAT(names(EmojiCatalog::search("hand", 3)),
                ElementsAre("hand with fingers splayed", "handshake", "face with hand over mouth"));
    EXPECT_THAT(names(EmojiCatalog::search("forbid", 9)), ElementsAre("prohibited"));
    EXPECT_THAT(EmojiCatalog::search("orbidden", 9), IsEmpty()) << "no keyword is searched in its middle";
    const auto forStar = names(EmojiCatalog::search("star", 400));
    EXPECT_THAT(std::vector(forStar.begin(), forStar.begin() + 3), ElementsAre("star", "star struck", "glowing star"));
    EXPECT_EQ(forStar.back(), "dizzy") << "a name with the word in it comes before an exact keyword";
}

TEST(EmojiCatalog, FindsAnEmojiByItself) {
    EXPECT_THAT(names(EmojiCatalog::search("🐐", 0)), ElementsAre("goat"));
    EXPECT_THAT(EmojiCatalog::search("🐐 ", 400), IsEmpty());
    EXPECT_THAT(EmojiCatalog::search("🏳️", 400).front().name, "white flag");
}

TEST(EmojiCatalog, MindsLimitsAndCase) {
    for (const char* blank : {"", " \t "}) {
        EXPECT_EQ(EmojiCatalog::search(blank, 1000), EmojiCatalog::all());
        EXPECT_THAT(names(EmojiCatalog::search(blank, 2)), ElementsAre("grinning face", "grinning face with big eyes"));
        EXPECT_THAT(EmojiCatalog::search(blank, 0), IsEmpty());
    }
    EXPECT_THAT(EmojiCatalog::search("heart", 0), IsEmpty());
    EXPECT_THAT(EmojiCatalog::search("heart", -1), IsEmpty());
    EXPECT_EQ(EmojiCatalog::search("heart", 5).size(), 5u);
    EXPECT_EQ(EmojiCatalog::search(" HEART\t", 400), EmojiCatalog::search("heart", 400));
    EXPECT_THAT(EmojiCatalog::search("xyzzy", 400), IsEmpty());
    EXPECT_THAT(EmojiCatalog::search("\xff", 400), IsEmpty());
}

}  // namespace
}  // namespace brimquill

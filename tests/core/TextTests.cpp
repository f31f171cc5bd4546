#include "BrimquillCore/Foundation/Text.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Text, MapsTheCaseOfEveryScript) {
    EXPECT_EQ(text::lowercased("ABC xyz"), "abc xyz");
    EXPECT_EQ(text::lowercased("ÄÖÜ ΣΊΓΜΑ ИЙ"), "äöü σίγμα ий");
    EXPECT_EQ(text::uppercased("straße é"), "STRASSE É");
    EXPECT_EQ(text::lowercased("I"), "i") << "the root locale, not a Turkish one";
}

TEST(Text, TrimsWhiteSpaceOfEveryKind) {
    EXPECT_EQ(text::trimmed(" \t\r\n a b \u00a0\u2003\u2028"), "a b");
    EXPECT_EQ(text::trimmed(" \n "), "");
    EXPECT_EQ(text::trimmed(""), "");
    EXPECT_EQ(text::trimmed(" é "), "é");
    EXPECT_EQ(text::trimmedBlanks("\t a\n "), "a\n");
}

TEST(Text, ComparesByCanonicalEquivalence) {
    const std::string composed = "caf\u00e9", decomposed = "cafe\u0301";
    EXPECT_TRUE(text::equal(composed, decomposed));
    EXPECT_TRUE(text::equal("\u212A", "K")) << "the sign for kelvin is a K";
    EXPECT_FALSE(text::equal(composed, "cafe"));
    EXPECT_FALSE(text::equal("Abc", "abc"));
    EXPECT_TRUE(text::equalIgnoringCase("CAFÉ", decomposed));
    EXPECT_FALSE(text::equalIgnoringCase("a", "b"));
    EXPECT_TRUE(text::contains("un café noir", decomposed));
    EXPECT_FALSE(text::contains("cafe noir", composed));
    EXPECT_TRUE(text::contains("", ""));
}

TEST(Text, CollatesAsPeopleRead) {
    EXPECT_EQ(text::localizedCaseInsensitiveCompare("Abc", "aBC"), 0);
    EXPECT_LT(text::localizedCaseInsensitiveCompare("apple", "Banana"), 0);
    EXPECT_GT(text::localizedCaseInsensitiveCompare("Zebra", "apple"), 0);
    EXPECT_LT(text::localizedCaseInsensitiveCompare("résumé", "rock"), 0);
}

TEST(Text, CountsAndCutsByCharacters) {
    struct Case {
        std::string text;
        std::size_t count;
        std::string firstTwo;
    };
    for (const auto& [text, count, firstTwo] :
         {Case{"", 0, ""}, Case{"abc", 3, "ab"}, Case{"a\r\nb", 3, "a\r\n"}, Case{"🇩🇪🇫🇷x", 3, "🇩🇪🇫🇷"},
          Case{"👩‍👩‍👧‍👦!?", 3, "👩‍👩‍👧‍👦!"},
          Case{"e\u0301e\u0301e\u0301", 3, "e\u0301e\u0301"}, Case{"ae\u0301", 2, "ae\u0301"},
          Case{"ab\u0301", 2, "ab\u0301"}}) {
        EXPECT_EQ(text::characterCount(text), count) << text;
        EXPECT_EQ(text::prefix(text, 2), firstTwo) << text;
        EXPECT_EQ(text::prefix(text, 100), text);
        EXPECT_EQ(text::prefix(text, 0), "");
    }
}

TEST(Text, APrefixIsBoundInBytesToo) {
    EXPECT_EQ(text::prefix("ééé", 3, 100), "ééé");
    EXPECT_EQ(text::prefix("ééé", 2, 100), "éé");
    EXPECT_EQ(text::prefix("ééé", 3, 5), "éé") << "cut within the third";
    EXPECT_EQ(text::prefix("ééé", 3, 4), "éé");
    EXPECT_EQ(text::prefix("é", 3, 1), "");
    std::string marked = "a";
    while (marked.size() < 1001)
        marked += "\u0301";
    EXPECT_EQ(text::prefix(marked, 1, 101).size(), 101U) << "one character of any length";
}

TEST(Text, SplitsAndJoins) {
    EXPECT_THAT(text::split(",a,,b,", ','), ElementsAre("a", "b"));
    EXPECT_THAT(text::split(",a,", ',', true), ElementsAre("", "a", ""));
    EXPECT_THAT(text::split("", ','), IsEmpty());
    EXPECT_EQ(text::join({"a", "b"}, ", "), "a, b");
    EXPECT_EQ(text::replacingNewlines("a\r\nb\nc\u2028d\re", " "), "a b c d e");
}

TEST(Text, TakesPathsApart) {
    EXPECT_EQ(text::lastPathComponent("/a/b.txt"), "b.txt");
    EXPECT_EQ(text::lastPathComponent("/a/b/"), "b");
    EXPECT_EQ(text::lastPathComponent("/"), "/");
    EXPECT_EQ(text::lastPathComponent(""), "");
    EXPECT_EQ(text::pathExtension("/x.y/a.GIF"), "GIF");
    EXPECT_EQ(text::pathExtension("/x.y/a"), "");
    EXPECT_EQ(text::pathExtension("/.hidden"), "");
}

TEST(Text, ReadsMalformedBytesAsReplacementCharacters) {
    EXPECT_EQ(text::validUtf8("a\xff"
                              "b"),
              "a\uFFFDb");
    EXPECT_EQ(text::trimmed(" \xff "), "\xff");
    EXPECT_EQ(text::characterCount("\xc3"), 1u);
    EXPECT_EQ(text::lowercased("\xf0\x9fX"), "\uFFFDx");
    EXPECT_TRUE(text::equal("\xff", "\uFFFD"));
}

}  // namespace
}  // namespace brimquill

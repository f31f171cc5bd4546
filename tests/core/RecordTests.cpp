#include "BrimquillCore/ClipFolder.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

namespace brimquill::test {
namespace {

using ::testing::ElementsAre;

TEST(ClipKind, RawValuesReadBackAndNothingElseDoes) {
    for (const auto kind : {ClipKind::text, ClipKind::image, ClipKind::ocr, ClipKind::file}) {
        EXPECT_EQ(clipKind(rawValue(kind)), kind);
    }
    EXPECT_EQ(rawValue(ClipKind::ocr), "ocr");
    for (const auto* other : {"", "Text", "text ", "video"})
        EXPECT_EQ(clipKind(other), std::nullopt) << other;
}

TEST(ClipItem, PreviewByKind) {
    struct Case {
        ClipKind kind;
        std::string text, expected;
    };
    for (const auto& [kind, text, expected] : {
             Case{ClipKind::text, " \n two\nlines\t\r\n", "two\nlines"},
             Case{ClipKind::text, "\u00a0\u2003wide\u2028", "wide"},
             Case{ClipKind::text, "", ""},
             Case{ClipKind::image, "", "🖼 Image"},
             Case{ClipKind::image, " recognised ", "recognised"},
             Case{ClipKind::file, "/a/b.txt\n/c/ d .pdf\n", "b.txt\n d .pdf"},
             Case{ClipKind::file, "\n\n/a/folder/\n", "folder"},
             Case{ClipKind::ocr, "  seen  ", "seen"},
         }) {
        ClipItem clip;
        clip.kind = kind;
        clip.text = text;
        EXPECT_EQ(clip.preview(), expected) << text;
    }
}

TEST(ClipItem, HexColorTakesThreeOrSixDigitsOnly) {
    struct Case {
        std::string text;
        std::optional<std::string> expected;
    };
    for (const auto& [text, expected] : {
             Case{"#FFF", "#FFF"},
             Case{" #a1b2c3\n", "#a1b2c3"},
             Case{"\u2003#AbC\u00a0", "#AbC"},
             Case{"#FFFF", {}},
             Case{"fff", {}},
             Case{"#ggg", {}},
             Case{"#12 456", {}},
             Case{"", {}},
             Case{"#", {}},
             Case{"x#fff", {}},
             Case{"#１２３", {}},
         }) {
        ClipItem clip;
        clip.text = text;
        EXPECT_EQ(clip.hexColor(), expected) << text;
    }
}

TEST(ClipFolder, HashTellsWhatEqualityTells) {
    const ClipFolder folder{1, "Work", 2, "u", "red"};
    const std::hash<ClipFolder> hash;
    EXPECT_EQ(hash(folder), hash(ClipFolder(folder)));
    for (const auto& other : {ClipFolder{2, "Work", 2, "u", "red"}, ClipFolder{1, "Wo", 2, "u", "red"},
                              ClipFolder{1, "Work", {}, "u", "red"}, ClipFolder{1, "Work", 2, "v", "red"},
                              ClipFolder{1, "Work", 2, "u", {}}, ClipFolder{1, "Work", 2, "u", ""}}) {
        EXPECT_FALSE(folder == other);
        EXPECT_NE(hash(folder), hash(other));
    }
}

using RowMapping = StoreTest;

TEST_F(RowMapping, ReadsEveryColumn) {
    database.run(
        "INSERT INTO clips VALUES (9, 'body', 1.5, 'Editor', 1, 'file', '/p.png', 'n', 'k', 4, 2.5, ',a,,b,c d,', "
        "'u-1', 3.5, 1, 'com.editor')");
    ClipItem expected;
    expected.id = 9;
    expected.kind = ClipKind::file;
    expected.text = "body";
    expected.createdAt = {1.5};
    expected.sourceApp = "Editor";
    expected.pinned = true;
    expected.imagePath = "/p.png";
    expected.name = "n";
    expected.keyword = "k";
    expected.folderId = 4;
    expected.expiresAt = Date{2.5};
    expected.tags = {"a", "b", "c d"};
    expected.uuid = "u-1";
    expected.modifiedAt = {3.5};
    expected.deleted = true;
    expected.sourceBundleId = "com.editor";
    EXPECT_EQ(store.clip(9), expected);
}

TEST_F(RowMapping, AbsentAndOddValuesReadAsDefaults) {
    database.run("INSERT INTO clips (id, text, created_at, kind, pinned, deleted) VALUES (1, '', 0, 'video', 2, 2)");
    ClipItem expected;
    expected.id = 1;
    expected.modifiedAt = {0};
    EXPECT_EQ(store.clip(1), expected);
}

TEST_F(RowMapping, KeepsBytesThatAreOddInText) {
    const std::string text("a\0b\xff 🖼", 9);
    const auto id = insertText(text);
    EXPECT_EQ(store.clip(id)->text, text);
    EXPECT_THAT(textsOf(store.fetchHistory(5)), ElementsAre(text));
}

}  // namespace
}  // namespace brimquill::test

#include "Brimquill/Palette/Card.h"
#include "Brimquill/Palette/CheatSheet.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;

class CardStyleTest : public AppFixture {
protected:
    CardStyle style{store, center};
    bool filesExist = true;
    Card card(const ClipItem& item) { return makeCard(item, style, Date{2000}, {filesExist, "640 × 480"}); }
    static ClipItem clip(ClipKind kind, const std::string& text) {
        ClipItem item;
        item.id = 1;
        item.kind = kind;
        item.text = text;
        item.createdAt = Date{1000};
        return item;
    }
};

TEST_F(CardStyleTest, ReadsHexCodes) {
    EXPECT_EQ(CardStyle::hex(" #a1b2c3\n"), "#A1B2C3");
    EXPECT_EQ(CardStyle::hex("fA0"), "#FFAA00");
    for (const char* wrong : {"", "#", "#12", "#1234", "#12345g", "##123456", "#1234567"})
        EXPECT_EQ(CardStyle::hex(wrong), std::nullopt) << wrong;
    EXPECT_EQ(CardStyle::custom("#FFFFFF").onFill, "#1C1D21");
    EXPECT_EQ(CardStyle::custom("#102030").onFill, "#FFFFFF");
}

TEST_F(CardStyleTest, DrawsAColourFromTheTextsScalars) {
    EXPECT_EQ(CardStyle::palette(""), *CardStyle::named("orange"));
    EXPECT_EQ(CardStyle::palette("a"), *CardStyle::named("red")) << "97 leaves 1";
    EXPECT_EQ(CardStyle::palette("é"), *CardStyle::named("red")) << "233 leaves 1";
    EXPECT_EQ(CardStyle::palette("👍"), *CardStyle::named("pink")) << "128077 leaves 5, the sixth";
}

TEST_F(CardStyleTest, PinboardsInheritTheColourOfTheirRoot) {
    const auto colour = [&](const std::string& path) {
        const auto folder = store.folder(path);
        return style.folderColor(folder, path);
    };
    EXPECT_EQ(colour("Work/Clients"), CardStyle::palette("Work"));
    store.setFolderColor(store.folder("Work").id, "green");
    EXPECT_EQ(colour("Work/Clients"), *CardStyle::named("green"));
    store.setFolderColor(store.folder("Work/Clients").id, "#abc");
    EXPECT_EQ(colour("Work/Clients"), CardStyle::custom("#AABBCC"));
    store.setFolderColor(store.folder("Work/Clients").id, "nonsense");
    EXPECT_EQ(colour("Work/Clients"), *CardStyle::named("green"));
    auto filed = clip(ClipKind::text, "text");
    filed.folderId = store.folder("Work").id;
    EXPECT_EQ(style.header(filed), (CardStyle::Header{"Text", *CardStyle::named("green")}));
}

TEST_F(CardStyleTest, HeadersNameTheKind) {
    auto snippet = clip(ClipKind::text, "x"), emoji = clip(ClipKind::text, "👍");
    snippet.name = "Greeting";
    emoji.id = -1;
    const std::vector<std::pair<ClipItem, std::string>> cases = {
        {clip(ClipKind::text, "words"), "Text"},
        {clip(ClipKind::text, "#FFF"), "Color"},
        {clip(ClipKind::text, "https://x"), "Link"},
        {clip(ClipKind::image, ""), "Image"},
        {clip(ClipKind::ocr, "x"), "Screen OCR"},
        {clip(ClipKind::file, "/a"), "File"},
        {clip(ClipKind::file, "/a\n/b\n"), "2 Files"},
        {snippet, "Greeting"},
        {emoji, "Emoji"},
    };
    for (const auto& [item, title] : cases)
        EXPECT_EQ(style.header(item).title, title);
}

TEST_F(CardStyleTest, CardsDecideWhatTheyShow) {
    const auto files = card(clip(ClipKind::file, "/home/u/a.txt\n/home/u/b.txt"));
    EXPECT_EQ(files.body, CardBody::files);
    EXPECT_EQ(files.text, "a.txt\nb.txt");
    EXPECT_EQ(files.footer, "2 file(s)");
    filesExist = false;
    EXPECT_EQ(card(clip(ClipKind::file, "/a")).text, "Original file no longer exists");
    auto picture = clip(ClipKind::image, "");
    picture.imagePath = "/p.png";
    EXPECT_EQ(card(picture).body, CardBody::image);
    EXPECT_EQ(card(picture).footer, "640 × 480");
    const auto colour = card(clip(ClipKind::text, " #ffffff "));
    EXPECT_EQ(colour.body, CardBody::color);
    EXPECT_EQ(colour.swatch.onFill, "#1C1D21");
    EXPECT_EQ(card(clip(ClipKind::text, "👩‍👩‍👧‍👦é")).footer, "2 characters");
    auto emoji = clip(ClipKind::text, "👍");
    emoji.id = -1;
    EXPECT_EQ(card(emoji).footer, "1 characters");
    EXPECT_EQ(card(emoji).age, "16m");
    std::string family;
    for (int n = 0; n < 5000; ++n)
        family += "👩‍👩‍👧‍👦";
    const auto big = card(clip(ClipKind::text, family));
    EXPECT_EQ(big.footer, "5000 characters");
    EXPECT_EQ(big.text.size() % std::string("👩‍👩‍👧‍👦").size(), 0U) << "cut through a character";
    EXPECT_LT(big.text.size(), family.size() / 2);
}

TEST_F(CardStyleTest, AgesAreShort) {
    const std::vector<std::pair<double, std::string>> cases = {{-5, "now"},        {59, "now"},        {60, "1m"},
                                                               {3599, "59m"},      {3600, "1h"},       {86400, "1d"},
                                                               {14 * 86400, "2w"}, {366 * 86400, "1y"}};
    for (const auto& [seconds, words] : cases)
        EXPECT_EQ(CardStyle::age(Date{1000}, Date{1000} + seconds), words);
}

TEST(CheatSheet, ListsEveryKeyAndFindsThem) {
    EXPECT_EQ(CheatSheet::keys().size(), 27U);
    EXPECT_EQ(CheatSheet::filtered(""), CheatSheet::keys());
    std::vector<std::string> chords;
    for (const auto& row : CheatSheet::filtered("MOST"))
        chords.push_back(row.chord);
    EXPECT_THAT(chords, ElementsAre("⌘M", "⌘⇧T"));
    EXPECT_EQ(CheatSheet::filtered("⌘l").at(0).text, "Links only");
    EXPECT_TRUE(CheatSheet::filtered("no such key").empty());
}

}  // namespace
}  // namespace brimquill

#include "Brimquill/Palette/ContentType.h"
#include "Brimquill/Palette/PickerQuery.h"
#include "Brimquill/Palette/ScopeCatalog.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

ClipItem item(ClipKind kind, const std::string& text, std::optional<std::string> sourceApp = {},
              std::optional<std::string> imagePath = {}, std::optional<std::string> name = {}) {
    ClipItem made;
    made.kind = kind;
    made.text = text;
    made.sourceApp = std::move(sourceApp);
    made.imagePath = std::move(imagePath);
    made.name = std::move(name);
    return made;
}

TEST(ContentType, TellsWhatAPersonWouldCallAClip) {
    struct Case {
        const char* what;
        ClipItem item;
        std::string types;
    };
    const std::vector<Case> cases = {
        {"plain text", item(ClipKind::text, "words"), "Text"},
        {"a link", item(ClipKind::text, "https://x"), "Links"},
        {"a link of other case", item(ClipKind::text, "HTTP://X"), "Text"},
        {"a link behind a blank", item(ClipKind::text, " http://x"), "Text"},
        {"a snippet that is a link", item(ClipKind::text, "http://x", {}, {}, "n"), "Links"},
        {"a picture with a name", item(ClipKind::image, "", {}, "/a.png", "n"), "Text Images"},
        {"a picture of a screen", item(ClipKind::image, "", "Screenshot", "/a.png"), "Screenshots"},
        {"a gif in capitals", item(ClipKind::image, "", {}, "/A.GIF"), "GIFs"},
        {"a picture without a file", item(ClipKind::image, ""), "Images"},
        {"text off the screen", item(ClipKind::ocr, "words"), "Screenshots"},
        {"a link off the screen", item(ClipKind::ocr, "http://x"), "Links Screenshots"},
        {"files", item(ClipKind::file, "/a\n/b"), "Files"},
    };
    for (const auto& test : cases) {
        std::vector<std::string> types;
        for (const auto type : allContentTypes)
            if (matches(test.item, type)) types.push_back(label(type));
        std::string joined;
        for (const auto& type : types)
            joined += (joined.empty() ? "" : " ") + type;
        EXPECT_EQ(joined, test.types) << test.what;
        EXPECT_TRUE(matches(test.item, std::nullopt));
    }
}

TEST(PickerFilter, HasALabelAndAStableKey) {
    const std::vector<std::tuple<PickerFilter, std::string, std::string>> cases = {
        {scope::Folder{{7, "Clients", 3, "u", {}}, "Work/Clients"}, "Work/Clients", "folder:7"},
        {scope::Tag{"work"}, "#work", "tag:work"},
        {scope::Kind{ClipKind::ocr}, "Screen OCR", "kind:ocr"},
        {scope::Kind{ClipKind::image}, "Images", "kind:image"},
        {scope::App{"xterm"}, "xterm", "app:xterm"},
        {scope::Clipboard{}, "Clipboard", "clipboard"},
        {scope::Snippets{}, "Snippets", "snippets"},
        {scope::Stack{}, "Stack", "stack"},
        {scope::Emoji{}, "Emoji", "emoji"},
    };
    for (const auto& [filter, text, stable] : cases) {
        EXPECT_EQ(label(filter), text);
        EXPECT_EQ(key(filter), stable);
    }
}

class PickerQueryTest : public AppFixture {
protected:
    std::int64_t add(const std::string& text, ClipKind kind = ClipKind::text, const std::string& app = "xterm") {
        world.advance(1);
        return store.insert(text, kind, {.app = app, .bundleId = {}})->id;
    }
    std::vector<ClipItem> answers(const PickerQuery& query, const std::vector<std::int64_t>& stack = {}) {
        return pickerItems(store, query, stack, world.runLoop().now());
    }
    std::vector<std::string> texts(const PickerQuery& query, const std::vector<std::int64_t>& stack = {}) {
        std::vector<std::string> result;
        for (const auto& found : answers(query, stack))
            result.push_back(found.text);
        return result;
    }
};

TEST_F(PickerQueryTest, ListsFiftyPlainAndSixtyFiltered) {
    for (int n = 0; n < 70; ++n)
        add("clip " + std::to_string(n));
    EXPECT_THAT(answers({}), SizeIs(50));
    EXPECT_THAT(answers({.text = {}, .filter = scope::Clipboard{}, .type = ContentType::text}), SizeIs(60));
    EXPECT_THAT(answers({.text = "clip", .filter = scope::Clipboard{}, .type = {}}), SizeIs(50));
    EXPECT_THAT(answers({.text = "clip", .filter = scope::Kind{ClipKind::text}, .type = {}}), SizeIs(60));
    EXPECT_THAT(answers({.text = {}, .filter = scope::App{"xterm"}, .type = {}}), SizeIs(60));
}

TEST_F(PickerQueryTest, ATypeOverAPlainQueryThinsItsFirstFifty) {
    for (int n = 0; n < 10; ++n)
        add("https://host/" + std::to_string(n));
    for (int n = 0; n < 50; ++n)
        add("the host " + std::to_string(n));
    EXPECT_THAT(answers({.text = "host", .filter = scope::Clipboard{}, .type = ContentType::link}), IsEmpty());
    EXPECT_THAT(answers({.text = "host", .filter = scope::App{"xterm"}, .type = ContentType::link}), SizeIs(10));
}

TEST_F(PickerQueryTest, ScopesNarrowWhatTheQueryFinds) {
    const auto work = store.folder("Work"), clients = store.folder("Work/Clients");
    const auto inWork = add("in work"), inClients = add("in clients"),
               tagged = add("in tags", ClipKind::ocr, "mousepad");
    add("in nothing");
    store.setFolder(inWork, work.id);
    store.setFolder(inClients, clients.id);
    store.setTags(tagged, {"work"});
    store.createSnippet("Greeting", "in snippet");
    EXPECT_THAT(texts({.text = {}, .filter = scope::Folder{work, "Work"}, .type = {}}),
                ElementsAre("in clients", "in work"));
    EXPECT_THAT(texts({.text = {}, .filter = scope::Folder{clients, "Work/Clients"}, .type = {}}),
                ElementsAre("in clients"));
    EXPECT_THAT(texts({.text = {}, .filter = scope::Tag{"work"}, .type = {}}), ElementsAre("in tags"));
    EXPECT_THAT(texts({.text = {}, .filter = scope::Tag{"Work"}, .type = {}}), IsEmpty());
    EXPECT_THAT(texts({.text = {}, .filter = scope::Kind{ClipKind::ocr}, .type = {}}), ElementsAre("in tags"));
    EXPECT_THAT(texts({.text = {}, .filter = scope::App{"mousepad"}, .type = {}}), ElementsAre("in tags"));
    EXPECT_THAT(texts({.text = {}, .filter = scope::Snippets{}, .type = {}}), ElementsAre("in snippet"));
    EXPECT_THAT(texts({.text = "clients", .filter = scope::Folder{work, "Work"}, .type = {}}),
                ElementsAre("in clients"));
}

TEST_F(PickerQueryTest, TheStackKeepsItsOrderAndIgnoresTheQuery) {
    const auto first = add("first"), second = add("second"), gone = add("gone");
    store.deleteClip(gone);
    EXPECT_THAT(texts({.text = "no such", .filter = scope::Stack{}, .type = {}}, {second, 999, gone, first}),
                ElementsAre("second", "first"));
}

TEST_F(PickerQueryTest, EmojiAreCardsThatNobodyStored) {
    const auto cards = answers({.text = {}, .filter = scope::Emoji{}, .type = ContentType::image});
    ASSERT_GT(cards.size(), cardLimit) << "neither the type nor the limit of sixty applies";
    EXPECT_EQ(cards[0].id, -1);
    EXPECT_EQ(cards[1].id, -2);
    EXPECT_EQ(cards[0].name, cards[0].sourceApp);
    EXPECT_EQ(cards[0].modifiedAt, Date::distantPast());
}

TEST_F(PickerQueryTest, AnEmptyListSaysWhy) {
    const std::string organize = "Right-click a clip → “Tags & Pinboard…” to organize.";
    const std::string search = "Search covers clip text, #tags, and source apps.";
    const PickerFilter folder = scope::Folder{{1, "B", {}, "", {}}, "A/B"};
    const std::vector<std::pair<PickerQuery, EmptyState>> cases = {
        {{"foo", folder, ContentType::link}, {"No matches for “foo”", search, "magnifyingglass"}},
        {{"", folder, ContentType::gif}, {"No gifs here", organize, "doc.on.clipboard"}},
        {{"", folder, {}}, {"Nothing filed in A/B", organize, "doc.on.clipboard"}},
        {{"", scope::Tag{"t"}, {}}, {"Nothing tagged #t", organize, "doc.on.clipboard"}},
        {{"", scope::Kind{ClipKind::text}, {}}, {"No items of this type", organize, "doc.on.clipboard"}},
        {{"", scope::App{"xterm"}, {}}, {"Nothing copied from xterm", organize, "doc.on.clipboard"}},
        {{"", scope::Clipboard{}, {}},
         {"Your hoard is empty", "Copy something, or press ⇧⌘2 to snip text on screen.", "doc.on.clipboard"}},
        {{"", scope::Snippets{}, {}},
         {"No snippets yet", "Right-click a clip → “Save as Snippet…”.", "doc.on.clipboard"}},
        {{"", scope::Stack{}, {}},
         {"Paste stack is empty", "Right-click a clip → “Add to Paste Stack”.", "doc.on.clipboard"}},
        {{"", scope::Emoji{}, {}}, {"No emoji match", organize, "doc.on.clipboard"}},
    };
    for (const auto& [query, words] : cases)
        EXPECT_EQ(emptyState(query), words) << label(query.filter);
}

class ScopeCatalogTest : public AppFixture {
protected:
    ScopeCatalog catalog{store, world.defaults()};
    std::vector<std::string> keys(const std::vector<PickerFilter>& filters) {
        std::vector<std::string> result(filters.size());
        std::transform(filters.begin(), filters.end(), result.begin(), [](const auto& filter) { return key(filter); });
        return result;
    }
    void tag(const std::vector<std::string>& tags) {
        world.advance(1);
        store.setTags(store.insert("tagged", ClipKind::image)->id, tags);
    }
};

TEST_F(ScopeCatalogTest, ListsPinboardsByPathAndTagsByUse) {
    const auto b = store.folder("b"), child = store.folder("A/z"), a = store.folder("A");
    tag({"rare", "common"});
    tag({"common"});
    catalog.rebuild();
    EXPECT_THAT(keys(catalog.entries()), ElementsAre("clipboard", "snippets", "folder:" + std::to_string(a.id),
                                                     "folder:" + std::to_string(child.id),
                                                     "folder:" + std::to_string(b.id), "tag:common", "tag:rare"));
    EXPECT_EQ(catalog.topTag(), "common");
}

TEST_F(ScopeCatalogTest, ChipsShowTheFixedOnesThenTheTopTagThenRecents) {
    tag({"top"});
    tag({"top", "other"});
    catalog.rebuild();
    EXPECT_THAT(keys(catalog.chips(scope::Clipboard{}, false)),
                ElementsAre("clipboard", "snippets", "emoji", "tag:top"));
    catalog.recordRecent(scope::Tag{"other"});
    catalog.recordRecent(scope::Tag{"top"});
    EXPECT_THAT(keys(catalog.chips(scope::App{"xterm"}, true)),
                ElementsAre("clipboard", "snippets", "emoji", "stack", "tag:top", "tag:other", "app:xterm"))
        << "a tag that is both top and recent stands once; the current scope is always there";
}

TEST_F(ScopeCatalogTest, KeepsSixRecentsAndLooksAtFour) {
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h"})
        tag({name});
    catalog.rebuild();
    for (const char* name : {"b", "c", "d", "e", "f", "gone", "h", "b"})
        catalog.recordRecent(scope::Tag{name});
    catalog.recordRecent(scope::App{"xterm"});
    EXPECT_THAT(*world.defaults().stringArray("recentFilterScopes"),
                ElementsAre("tag:b", "tag:h", "tag:gone", "tag:f", "tag:e", "tag:d"));
    auto chips = keys(catalog.chips(scope::Clipboard{}, false));
    std::erase(chips, "tag:" + *catalog.topTag());
    std::vector<std::string> expected{"clipboard", "snippets", "emoji", "tag:b", "tag:h", "tag:f"};
    std::erase(expected, "tag:" + *catalog.topTag());
    EXPECT_EQ(chips, expected) << "one that is gone is passed over and still uses up its place";
}

}  // namespace
}  // namespace brimquill

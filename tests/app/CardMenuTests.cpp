#include "Brimquill/Palette/CardDrag.h"
#include "Brimquill/Palette/CardMenu.h"
#include "tests/app/AppFixture.h"

#include <QUrl>

#include <gmock/gmock.h>

#include <fstream>

namespace brimquill {
namespace {

using testing::ElementsAre;
namespace key = platform::key;
using Texts = std::vector<std::string>;

ClipItem clip(ClipKind kind, const std::string& text, const std::optional<std::string>& picture = {}) {
    ClipItem item;
    item.id = 1;
    item.kind = kind;
    item.text = text;
    item.imagePath = picture;
    return item;
}

TEST(CardMenuRows, DependOnTheClip) {
    auto emoji = clip(ClipKind::text, "http"), pinned = clip(ClipKind::image, "");
    emoji.id = -1;
    pinned.pinned = true;
    const std::string line = "-", add = "Add to Paste Stack", tags = "Tags & Pinboard…";
    const struct {
        ClipItem item;
        OnStack onStack;
        Texts rows;
    } cases[] = {
        {emoji, OnStack::no, {"Insert", "Copy"}},
        {clip(ClipKind::text, "words"),
         OnStack::no,
         {"Paste", "Copy", "Edit…", line, add, "Pin", tags, line, "Delete"}},
        {clip(ClipKind::text, "httpd.conf"),
         OnStack::no,
         {"Paste", "Copy", "Edit…", "Open", line, add, "Pin", tags, line, "Delete"}},
        {clip(ClipKind::ocr, "words", "/p.png"),
         OnStack::yes,
         {"Paste", "Copy", "Edit…", "Open", line, "Remove from Paste Stack", "Pin", tags, line, "Delete"}},
        {clip(ClipKind::file, ""), OnStack::no, {"Paste", "Copy", "Open", line, add, "Pin", tags, line, "Delete"}},
        {pinned, OnStack::no, {"Paste", "Copy", line, add, "Unpin", tags, line, "Delete"}},
    };
    for (const auto& test : cases) {
        Texts rows;
        for (const auto& row : cardMenuRows(test.item, test.onStack)) {
            if (row.startsGroup) rows.push_back(line);
            rows.push_back(row.title);
        }
        EXPECT_EQ(rows, test.rows) << test.item.text;
    }
}

class CardMenuTest : public AppFixture {
protected:
    CardMenuTest() {
        for (const char* text : {"three", "https://example.org/two", "one"}) {
            world.advance(1);
            store.insert(text, ClipKind::text);
        }
        model.reset();
    }

    PickerModel model{{store, center, world.runLoop(), world.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    PickerActions actions{
        {model, store, pasteService, settings, world.workspace(), hud, [](const std::string& text) { return text; }}};
    StackManager stack{store, pasteService, hud, world.defaults()};
    int closings = 0;
    Texts panels;
    CardMenu menu{{model, actions, stack, [this] { ++closings; },
                   [this](const ClipItem& item) { panels.push_back("edit " + item.text); },
                   [this](const ClipItem& item) { panels.push_back("organize " + item.text); }}};

    /// Chooses a row of the menu of a card by its title.
    void choose(int index, const std::string& title) {
        menu.openAt(index, 10, 10);
        const auto& rows = menu.rows();
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.title == title; });
        ASSERT_NE(row, rows.end()) << title;
        menu.activate(static_cast<int>(row - rows.begin()));
        EXPECT_FALSE(menu.isOpen());
    }
    Texts shown() const {
        Texts texts;
        for (const auto& item : model.items())
            texts.push_back(item.text);
        return texts;
    }
    void press(int code) {
        platform::Event event;
        event.keyCode = code;
        menu.handle(event);
    }
};

TEST_F(CardMenuTest, ActsOnItsCardWhateverIsChosen) {
    model.selectAll();
    choose(2, "Delete");
    EXPECT_EQ(shown(), (Texts{"one", "https://example.org/two"}));
    EXPECT_EQ(hud.lines.back().first, "Deleted — ⌘Z to undo");
    actions.undoDelete();
    EXPECT_EQ(shown().size(), 3U);
    choose(1, "Copy");
    EXPECT_EQ(world.pasteboard().string(), "https://example.org/two");
    EXPECT_EQ(hud.lines.back().first, "Copied");
    EXPECT_EQ(closings, 0);
    choose(2, "Paste");
    EXPECT_EQ(closings, 1);
    EXPECT_EQ(world.pasteboard().string(), "three");
    const auto id = model.items()[0].id;
    choose(0, "Add to Paste Stack");
    EXPECT_THAT(stack.itemIds(), ElementsAre(id));
    choose(0, "Remove from Paste Stack");
    EXPECT_THAT(stack.itemIds(), ElementsAre());
    choose(0, "Pin");
    EXPECT_TRUE(store.clip(id)->pinned);
    choose(0, "Unpin");
    EXPECT_FALSE(store.clip(id)->pinned);
    choose(0, "Edit…");
    choose(0, "Tags & Pinboard…");
    EXPECT_EQ(panels, (Texts{"edit one", "organize one"}));
}

TEST_F(CardMenuTest, OpensTheClipEvenWhenTheCardsHaveMoved) {
    menu.openAt(1, 0, 0);
    world.advance(1);
    store.insert("newer", ClipKind::text);
    model.reloadItems();
    menu.activate(3);
    EXPECT_EQ(world.workspace().openedUrls(), Texts{"https://example.org/two"});
    EXPECT_EQ(model.selectedIndex(), 2);
    EXPECT_EQ(closings, 1);
}

TEST_F(CardMenuTest, KeysMoveWithinTheEndsAndChoose) {
    menu.openAt(7, 0, 0);
    EXPECT_FALSE(menu.isOpen()) << "no such card";
    menu.openAt(0, 0, 0);
    press(key::returnKey);
    EXPECT_TRUE(menu.isOpen()) << "no row is chosen yet";
    press(key::up);
    EXPECT_EQ(menu.current(), 6);
    press(key::down);
    EXPECT_EQ(menu.current(), 6);
    press(key::escape);
    EXPECT_FALSE(menu.isOpen());
    menu.openAt(0, 0, 0);
    press(key::down);
    press(key::up);
    press(key::down);
    press(key::returnKey);
    EXPECT_EQ(world.pasteboard().string(), "one");
    EXPECT_FALSE(menu.isOpen());
}

TEST_F(CardMenuTest, ADragOffersTheFirstFileThePictureOrTheText) {
    const auto png = (directory.path() / "a b.png").string(), gif = (directory.path() / "c.GIF").string();
    for (const auto& path : {png, gif})
        std::ofstream(path) << "bytes of " << path;
    const auto url = [](const std::string& path) { return QUrl::fromLocalFile(QString::fromStdString(path)); };
    const struct {
        ClipItem item;
        ClipFile file;
        QList<QUrl> urls;
        const char* pictureType;
        const char* text;
    } cases[] = {
        {clip(ClipKind::text, "wörds\n"), ClipFile::exists, {}, nullptr, "wörds\n"},
        {clip(ClipKind::file, "/a%20b\n/c"), ClipFile::exists, {url("/a%20b")}, nullptr, nullptr},
        {clip(ClipKind::file, ""), ClipFile::exists, {}, nullptr, ""},
        {clip(ClipKind::file, "/gone"), ClipFile::missing, {}, nullptr, "/gone"},
        {clip(ClipKind::image, "read off", png), ClipFile::exists, {url(png)}, "image/png", nullptr},
        {clip(ClipKind::image, "", gif), ClipFile::exists, {url(gif)}, "image/gif", nullptr},
        {clip(ClipKind::image, "read off", png), ClipFile::missing, {}, nullptr, "read off"},
        {clip(ClipKind::ocr, "read off", png), ClipFile::exists, {}, nullptr, "read off"},
    };
    for (const auto& test : cases) {
        const auto data = cardDragData(test.item, test.file);
        EXPECT_EQ(data->urls(), test.urls) << test.item.text;
        EXPECT_EQ(data->hasFormat(QStringLiteral("text/plain")), test.text != nullptr);
        EXPECT_EQ(data->hasText() && data->urls().isEmpty() ? data->text() : QString(), QString::fromUtf8(test.text));
        if (test.pictureType == nullptr) continue;
        EXPECT_TRUE(data->hasFormat(QString::fromUtf8(test.pictureType)));
        EXPECT_EQ(data->data(QString::fromUtf8(test.pictureType)).toStdString(), "bytes of " + *test.item.imagePath);
    }
}

TEST_F(CardMenuTest, CardsLearnOfTheirFilesLater) {
    const auto path = (directory.path() / "there").string();
    std::ofstream(path) << "x";
    const auto bodies = [&] {
        std::vector<CardBody> all;
        for (const auto& card : model.cards()->cards())
            all.push_back(card.body);
        all.resize(2);
        return all;
    };
    world.advance(1);
    store.insert(path, ClipKind::file);
    world.advance(1);
    store.insert("/nowhere/at/all", ClipKind::file);
    model.reset();
    EXPECT_THAT(bodies(), ElementsAre(CardBody::files, CardBody::files)) << "nobody has looked yet";
    world.run();
    EXPECT_THAT(bodies(), ElementsAre(CardBody::missingFile, CardBody::files));
    std::filesystem::remove(path);
    world.advance(3);
    model.reset();
    EXPECT_THAT(bodies(), ElementsAre(CardBody::missingFile, CardBody::files)) << "as they were last seen";
    world.run();
    EXPECT_THAT(bodies(), ElementsAre(CardBody::missingFile, CardBody::missingFile));
}

}  // namespace
}  // namespace brimquill

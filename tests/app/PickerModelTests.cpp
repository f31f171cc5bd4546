#include "Brimquill/Palette/PickerModel.h"
#include "tests/app/AppFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PickerModelTest : public AppFixture {
protected:
    std::vector<std::int64_t> stack;
    PickerModel model{{store, center, world.runLoop(), world.defaults(), [this] { return stack; }}};
    QAbstractItemModelTester tester{model.cards(), QAbstractItemModelTester::FailureReportingMode::Fatal};

    std::int64_t add(const std::string& text) {
        world.advance(1);
        return store.insert(text, ClipKind::text)->id;
    }
    void fill(int count) {
        for (int n = 0; n < count; ++n)
            add("clip " + std::to_string(n));
        model.reset();
    }
    std::vector<std::string> chosen() {
        std::vector<std::string> texts;
        for (const auto& item : model.selectedItems())
            texts.push_back(item.text);
        return texts;
    }
    std::string scopeKey() { return key(model.filter()); }
};

TEST_F(PickerModelTest, MovesWithinTheEndsAndMarksWhatItExtendsOver) {
    model.moveSelection(+1);
    EXPECT_EQ(model.selectedIndex(), 0) << "nothing to move among";
    fill(4);
    model.moveSelection(-1);
    EXPECT_EQ(model.selectedIndex(), 0);
    model.moveSelection(+1, PickerModel::Extending::yes);
    model.moveSelection(+1, PickerModel::Extending::yes);
    EXPECT_THAT(model.selection(), ElementsAre(0, 1, 2));
    model.moveSelection(+9);
    EXPECT_EQ(model.selectedIndex(), 3);
    EXPECT_THAT(model.selection(), IsEmpty());
    model.select(7);
    model.select(-1);
    EXPECT_EQ(model.selectedIndex(), 3);
}

TEST_F(PickerModelTest, ChoosesInStripOrderTheFocusedCardIncluded) {
    fill(5);
    model.toggleSelection(2);
    model.toggleSelection(0);
    model.select(4);
    EXPECT_THAT(chosen(), ElementsAre("clip 4", "clip 2", "clip 0"));
    model.toggleSelection(2);
    EXPECT_EQ(model.selectedIndex(), 2);
    EXPECT_THAT(chosen(), ElementsAre("clip 4", "clip 2")) << "a card marked off stays focused, so it takes part";
    model.clearSelection();
    model.select(3);
    model.extendSelection(1);
    EXPECT_THAT(chosen(), ElementsAre("clip 3", "clip 2", "clip 1"));
    model.selectAll();
    EXPECT_EQ(chosen().size(), 5U);
    EXPECT_TRUE(model.cards()->data(model.cards()->index(0), ClipListModel::markedRole).toBool());
    model.refresh();
    EXPECT_EQ(model.selectedIndex(), 0);
    EXPECT_THAT(model.selection(), IsEmpty());
    EXPECT_FALSE(model.cards()->data(model.cards()->index(0), ClipListModel::markedRole).toBool());
}

TEST_F(PickerModelTest, CyclesWrapAround) {
    fill(1);
    model.cycleFilter(-1);
    EXPECT_EQ(scopeKey(), "emoji");
    model.cycleFilter(+1);
    EXPECT_EQ(scopeKey(), "clipboard");
    model.cycleType(-1);
    EXPECT_EQ(model.typeFilter(), ContentType::file);
    model.cycleType(+1);
    EXPECT_EQ(model.typeFilter(), std::nullopt);
    model.cycleType(+1);
    EXPECT_EQ(model.typeFilter(), ContentType::text);
    model.toggleType(ContentType::text);
    EXPECT_EQ(model.typeFilter(), std::nullopt);
}

TEST_F(PickerModelTest, EmojiAndMostRecentClearWhatTheyShould) {
    store.setTags(add("a"), {"t"});
    model.reset();
    model.setSearchText("a");
    model.toggleType(ContentType::link);
    model.showEmoji();
    EXPECT_EQ(scopeKey(), "emoji");
    EXPECT_EQ(model.searchText(), "");
    EXPECT_EQ(model.typeFilter(), std::nullopt);
    model.setSearchText("cat");
    model.jumpToTopTag();
    EXPECT_EQ(scopeKey(), "tag:t");
    EXPECT_EQ(model.searchText(), "cat");
    EXPECT_TRUE(model.isFiltered());
    model.showMostRecent();
    EXPECT_FALSE(model.isFiltered());
    EXPECT_EQ(*world.defaults().stringArray("recentFilterScopes"), std::vector<std::string>{"tag:t"});
}

TEST_F(PickerModelTest, ANewAppearanceKeepsTheTypeAlone) {
    fill(1);
    model.setSearchText("x");
    model.setFilter(scope::Snippets{});
    model.toggleType(ContentType::image);
    model.reset();
    EXPECT_EQ(scopeKey(), "clipboard");
    EXPECT_EQ(model.searchText(), "");
    EXPECT_EQ(model.typeFilter(), ContentType::image);
}

TEST_F(PickerModelTest, ASearchIsBroadcastUnlessItIsEmpty) {
    int count = 0;
    const auto observation = center.observe("BrimquillPaletteDidSearch", &model, [&](const Notification&) { ++count; });
    model.setSearchText("a");
    model.setSearchText("");
    model.setSearchText("b");
    EXPECT_EQ(count, 2);
}

TEST_F(PickerModelTest, FollowsTheStoreAfterAPauseAndOnlyWhileItShows) {
    fill(1);
    add("unseen");
    world.advance(1);
    EXPECT_EQ(model.items().size(), 1U);
    model.setActive(true);
    add("one more");
    world.advance(0.2);
    store.setPinned(1, false);
    world.advance(0.2);
    EXPECT_EQ(model.items().size(), 1U) << "a burst is waited for";
    world.advance(0.1);
    EXPECT_EQ(model.items().size(), 3U);
}

TEST_F(PickerModelTest, AScopeThatIsNoMoreGivesWay) {
    const auto folder = store.folder("Old");
    const auto id = add("tagged");
    store.setTags(id, {"t"});
    model.reset();
    model.setFilter(scope::Folder{folder, "Old"});
    store.renameFolder(folder.id, "New");
    model.reloadItems();
    EXPECT_EQ(label(model.filter()), "New");
    store.deleteFolder(folder.id);
    model.reloadItems();
    EXPECT_EQ(scopeKey(), "clipboard");
    model.setFilter(scope::Tag{"t"});
    store.setTags(id, {});
    model.reloadItems();
    EXPECT_EQ(scopeKey(), "clipboard");
    model.setFilter(scope::App{"gone"});
    model.reloadItems();
    EXPECT_EQ(scopeKey(), "app:gone") << "never in the catalog, so never missed there";
}

TEST_F(PickerModelTest, ThePreviewSaysThatThereIsMoreWhereThereIs) {
    const auto previewOf = [&](int letters) {
        std::string text;
        while (letters-- > 0)
            text += "é";
        world.advance(1);
        store.insert(text, ClipKind::text);
        model.reset();
        model.setPreviewOpen(true);
        return model.property("preview").toMap().value(QStringLiteral("text")).toString();
    };
    constexpr int limit = 20000;
    EXPECT_EQ(previewOf(limit), QString(limit, u'é'));
    EXPECT_EQ(previewOf(limit + 1), QString(limit, u'é') + u'…');
}

TEST_F(PickerModelTest, WhatIsInFrontBecauseOthersHaveGoneHasNotArrived) {
    const auto arrived = [&] {
        return model.cards()->data(model.cards()->index(0), ClipListModel::arrivedRole).toBool();
    };
    fill(60);
    model.setActive(true);
    for (const auto& item : model.items())
        store.deleteClip(item.id);
    world.advance(0.3);
    ASSERT_EQ(model.items().size(), 10U);
    EXPECT_FALSE(arrived());

    const auto board = store.folder("Board");
    store.setFolder(model.items().back().id, board.id);
    world.advance(0.3);
    model.setFilter(scope::Folder{board, "Board"});
    ASSERT_EQ(model.items().size(), 1U);
    store.deleteFolder(board.id);
    world.advance(0.3);
    ASSERT_EQ(scopeKey(), key(scope::Clipboard{}));
    EXPECT_FALSE(arrived()) << "another scope";
}

TEST_F(PickerModelTest, WithoutACardThereIsNoPreview) {
    fill(1);
    model.setPreviewOpen(true);
    EXPECT_TRUE(model.isPreviewShown());
    model.setSearchText("nothing like it");
    EXPECT_TRUE(model.previewOpen());
    EXPECT_FALSE(model.isPreviewShown());
    model.setSearchText("");
    EXPECT_TRUE(model.isPreviewShown());
}

TEST_F(PickerModelTest, CopiedAndArrivedCardsStandOutForAMoment) {
    fill(2);
    const auto role = [&](int row, int which) {
        return model.cards()->data(model.cards()->index(row), which).toBool();
    };
    model.showCopied(model.items()[1].id);
    EXPECT_TRUE(role(1, ClipListModel::copiedRole));
    world.advance(0.95);
    EXPECT_FALSE(role(1, ClipListModel::copiedRole));
    model.setActive(true);
    add("new");
    world.advance(0.3);
    EXPECT_TRUE(role(0, ClipListModel::arrivedRole));
    world.advance(1.2);
    EXPECT_FALSE(role(0, ClipListModel::arrivedRole));
}

}  // namespace
}  // namespace brimquill

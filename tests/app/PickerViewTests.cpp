#include "tests/app/PickerViewFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

namespace key = platform::key;
constexpr platform::Modifiers command{.command = true};

class PickerViewTest : public PickerViewFixture {};

TEST_F(PickerViewTest, ThePreviewBeginsAtTheTopAndKeepsToItsPlace) {
    const std::string longText = [] {
        std::string text;
        for (int line = 0; line < 100; ++line)
            text += "a line\n";
        return text;
    }();
    store.createSnippet(std::string(200, 'n') + "\nsecond line", "named");
    showPalette({longText + "one", longText + "two"});
    model.setPreviewOpen(true);
    settle();
    QQuickItem* words = nullptr;
    for (auto* item : window().rootObject()->findChildren<QQuickItem*>()) {
        if (item->property("clipId").isValid() && item->property("contentY").isValid()) words = item;
    }
    ASSERT_NE(words, nullptr);
    words->setProperty("contentY", 300);
    model.reloadItems();
    EXPECT_EQ(words->property("contentY").toInt(), 300) << "the same clip";
    world.press(key::right);
    EXPECT_EQ(words->property("contentY").toInt(), 0);

    model.setFilter(scope::Snippets{});
    settle();
    auto* title = withText(*words->parentItem(), QString::fromStdString(model.items().at(0).name.value()));
    ASSERT_NE(title, nullptr);
    EXPECT_LT(title->mapToItem(words->parentItem(), QPointF(title->width(), 0)).x(), words->parentItem()->width() - 24);
    EXPECT_LE(title->height(), 22);
}

TEST_F(PickerViewTest, AClickIntoAFieldPutsTheCaretThere) {
    const auto clip = store.insert("a", ClipKind::text);
    store.setFolder(clip->id, store.folder("A pinboard with a name of some length").id);
    showPalette({});
    world.press(key::t, command, "t");
    auto& form = *qobject_cast<QQuickView*>(world.panels().keyPanel()->window);
    form.show();
    settle();
    const auto* field = withText(*form.rootObject(), QStringLiteral("A pinboard with a name of some length"));
    ASSERT_NE(field, nullptr);
    const auto* input = field->property("input").value<QQuickItem*>();
    const auto left = input->mapToScene(QPointF(20, input->height() / 2)).toPoint();
    QTest::mouseClick(&form, Qt::LeftButton, {}, left);
    EXPECT_TRUE(input->hasFocus());
    EXPECT_LT(input->property("cursorPosition").toInt(), 5);
}

TEST_F(PickerViewTest, TheExplorerShowsEachRowOnce) {
    store.folder("Fruit");
    showPalette({"a"});
    world.press(key::f, command, "f");
    settle();
    const auto* list = listOf(model.explorer().rowsForView());
    ASSERT_NE(list, nullptr);
    const auto rows = model.explorer().explorerRows().size();
    EXPECT_GT(rows, 1U);
    EXPECT_EQ(list->property("count").toUInt(), rows);
}

TEST_F(PickerViewTest, TheExplorerShowsItsFirstRowAfterEachLetter) {
    for (int index = 0; index < 40; ++index)
        store.folder("Fruit " + std::to_string(index));
    showPalette({"a"});
    world.press(key::f, command, "f");
    settle();
    auto* list = listOf(model.explorer().rowsForView());
    ASSERT_NE(list, nullptr);
    const auto top = list->property("contentY").toDouble();
    list->setProperty("contentY", top + 300);
    model.explorer().setExplorerSearch("fruit");
    settle();
    EXPECT_EQ(list->property("contentY").toDouble(), list->property("originY").toDouble());
}

TEST_F(PickerViewTest, AClickOnWhatLiesOverTheCardsDoesNotReachThem) {
    showPalette({"c", "b", "a"});
    const auto card = middleOfCard(0);
    const auto untouched = [&] { return onPasteboard() == "nothing"; };

    model.setPreviewOpen(true);
    settle();
    click(QPoint(window().width() / 2, window().height() / 2));
    EXPECT_TRUE(model.previewOpen()) << "a click into what is shown large";
    click(card);
    EXPECT_FALSE(model.previewOpen()) << "a click beside it";
    EXPECT_TRUE(untouched());

    model.setCheatSheetOpen(true);
    settle();
    click(card);
    EXPECT_FALSE(model.cheatSheetOpen());
    EXPECT_TRUE(untouched());

    click(card, Qt::RightButton);
    ASSERT_TRUE(palette.menu()->isOpen());
    click(middleOfCard(2));
    EXPECT_FALSE(palette.menu()->isOpen());
    EXPECT_TRUE(untouched());

    click(card);
    EXPECT_EQ(onPasteboard(), "a") << "with nothing over it";
}

TEST_F(PickerViewTest, TheBackgroundCarriesThePaletteAlong) {
    showPalette({"c", "b", "a"});
    const auto panel = world.panels().keyPanel();
    const auto before = panel->frame;
    // Between the bar's field and the cards, where nothing else is.
    const QPoint free(window().width() - 40, 70);
    QTest::mousePress(&window(), Qt::LeftButton, {}, free);
    world.screens().setMouseLocation({before.x + free.x() - 60, before.y + free.y() - 300});
    QTest::mouseMove(&window(), free + QPoint(1, 1));
    settle();
    EXPECT_EQ(panel->frame, (platform::Rect{before.x - 60, before.y - 300, before.width, before.height}));
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, free);

    world.click({before.x + before.width / 2, before.y + before.height - 60});
    EXPECT_FALSE(palette.isVisible()) << "a click where it was is one outside now";
    palette.show();
    EXPECT_EQ(panel->frame, before);
}

TEST_F(PickerViewTest, WhatAButtonIsForIsToldOverTheCards) {
    showPalette({"c", "b", "a"});
    const auto* label = withText(*window().rootObject(), QStringLiteral("Links"));
    ASSERT_NE(label, nullptr);
    const auto button = middleOf(*label->parentItem());
    QTest::mouseMove(&window(), button);
    settle();
    ASSERT_TRUE(label->isVisible());
    const auto edge = label->mapToScene(QPointF(4, label->height() / 2)).toPoint();
    // It shines through until the palette has come up.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return window().grabWindow().pixelColor(edge) == label->property("color").value<QColor>(); }));
}

}  // namespace
}  // namespace brimquill

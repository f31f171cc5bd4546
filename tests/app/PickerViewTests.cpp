#include "tests/app/PaletteFixture.h"

#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <gmock/gmock.h>

namespace brimquill {
namespace {

namespace key = platform::key;
constexpr platform::Modifiers command{.command = true};

/// The palette as it is drawn and clicked.
class PickerViewTest : public PaletteFixture {
protected:
    void showPalette(const std::vector<std::string>& texts) {
        for (const auto& text : texts) {
            world.advance(1);
            store.insert(text, ClipKind::text);
        }
        world.advance(1);
        palette.show();
        const auto frame = world.panels().keyPanel()->frame;
        window().resize(static_cast<int>(frame.width), static_cast<int>(frame.height));
        window().show();
        settle();
    }
    /// Lets the views lay themselves out.
    static void settle() { QTest::qWait(30); }

    QQuickView& window() { return *qobject_cast<QQuickView*>(world.panels().keyPanel()->window); }
    /// The view that shows this list; null if there is none.
    QQuickItem* listOf(const QObject* rows) {
        for (auto* item : window().rootObject()->findChildren<QQuickItem*>()) {
            if (item->property("model").value<QObject*>() == rows) return item;
        }
        return nullptr;
    }
    /// The first thing that has this text; null if there is none.
    static QQuickItem* withText(QQuickItem& item, const QString& text) {
        if (item.property("text").toString() == text) return &item;
        for (auto* child : item.childItems()) {
            if (auto* found = withText(*child, text)) return found;
        }
        return nullptr;
    }
    static QPoint middleOf(const QQuickItem& item) {
        return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
    }
    QPoint middleOfCard(int index) {
        QQuickItem* card = nullptr;
        QMetaObject::invokeMethod(listOf(model.cards()), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, card),
                                  Q_ARG(int, index));
        return middleOf(*card);
    }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window(), button, {}, at);
        settle();
    }
};

TEST_F(PickerViewTest, TheFirstCardIsFocusedAgainAfterAQueryFoundNothing) {
    showPalette({"c", "b", "a"});
    const auto* strip = listOf(model.cards());
    ASSERT_NE(strip, nullptr);
    const auto focusedInView = [&] { return strip->property("currentIndex").toInt(); };
    EXPECT_EQ(focusedInView(), 0);
    model.setSearchText("no such clip");
    model.setSearchText("");
    EXPECT_EQ(focusedInView(), 0);
    world.press(key::right);
    world.press(key::right);
    EXPECT_EQ(focusedInView(), 2);
    model.setSearchText("a");
    model.setSearchText("");
    EXPECT_EQ(focusedInView(), 0);
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

#include "tests/app/PaletteFixture.h"

#include <QAnimationDriver>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include <gmock/gmock.h>

#include <fstream>

namespace brimquill {
namespace {

namespace key = platform::key;
constexpr platform::Modifiers command{.command = true};

/// Animations whose time passes when told.
class AnimationTime final : public QAnimationDriver {
public:
    AnimationTime() { install(); }
    ~AnimationTime() override { uninstall(); }
    void pass(qint64 milliseconds) {
        // Animations that were started begin on the next turn of the event loop.
        QCoreApplication::processEvents();
        elapsed_ += milliseconds;
        advanceAnimation();
    }
    qint64 elapsed() const override { return elapsed_; }

private:
    qint64 elapsed_ = 0;
};

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
    QQuickItem& card(int index) {
        QQuickItem* card = nullptr;
        QMetaObject::invokeMethod(listOf(model.cards()), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, card),
                                  Q_ARG(int, index));
        return *card;
    }
    QPoint middleOfCard(int index) { return middleOf(card(index)); }
    /// How far from its place a card stands, in cards.
    double slideOf(int index) {
        auto& item = card(index);
        return item.property("slide").toDouble() / (card(1).x() - card(0).x());
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

TEST_F(PickerViewTest, WhatReturnWouldPasteIsSeenAfterEachChangeOfTheQuery) {
    constexpr int count = 40;
    std::vector<std::string> texts;
    texts.reserve(count);
    for (int index = 0; index < count; ++index)
        texts.push_back((index % 2 == 0 ? "even " : "odd ") + std::to_string(index));
    showPalette(texts);
    auto* strip = listOf(model.cards());
    const auto wheel = [&](int steps) {
        const QPointF middle(window().width() / 2.0, window().height() - 100.0);
        for (int step = 0; step < std::abs(steps); ++step) {
            QWheelEvent event(middle, middle, {}, QPoint(0, steps < 0 ? -120 : 120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&window(), &event);
        }
        settle();
    };
    const auto leftOf = [&](int index) { return card(index).mapToScene(QPointF(0, 0)).x(); };
    const auto start = leftOf(0);
    wheel(-25);
    ASSERT_GT(strip->property("contentX").toDouble(), 2000);
    model.setSearchText("odd");
    settle();
    EXPECT_EQ(leftOf(0), start);
    // Rows went from under what was seen: the strip goes on scrolling between its ends.
    wheel(-50);
    EXPECT_NEAR(leftOf(19) + card(19).width() + start, window().width(), 4);
    wheel(50);
    EXPECT_EQ(leftOf(0), start);
}

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

TEST_F(PickerViewTest, CardsThatStaySpringToTheirNewPlaces) {
    showPalette({"d", "c", "b", "a"});
    AnimationTime time;
    // 1.5 % is how far the spring swings beyond its goal.
    constexpr double near = 0.02;
    model.setSearchText("c");
    time.pass(400);
    model.setSearchText("");
    EXPECT_EQ(slideOf(0), 0) << "new, so it comes from nowhere";
    EXPECT_NEAR(slideOf(2), -2, near);
    time.pass(100);
    EXPECT_NEAR(slideOf(2), -2 * 0.4, 0.1);
    time.pass(300);
    EXPECT_EQ(slideOf(2), 0);

    actions.deleteSelected();
    EXPECT_NEAR(slideOf(0), 1, near);
    EXPECT_NEAR(slideOf(2), 1, near);
    time.pass(50);
    EXPECT_NEAR(slideOf(0), 0.75, 0.1);
    actions.undoDelete();
    EXPECT_NEAR(slideOf(1), -1 + 0.75, 0.1) << "from where it was seen on its way";
    EXPECT_EQ(slideOf(0), 0);
    time.pass(400);
    EXPECT_NEAR(slideOf(1), 0, near);

    world.appearance().set(false, true);
    actions.deleteSelected();
    EXPECT_EQ(slideOf(0), 0) << "nothing moves under reduced motion";
}

TEST_F(PickerViewTest, AnArrivalComesQuicklyAndSettlesSlowly) {
    showPalette({"a"});
    AnimationTime time;
    const auto scale = [&] { return card(0).scale(); };
    store.insert("new", ClipKind::text);
    world.advance(0.3);
    time.pass(100);
    EXPECT_GT(scale(), 1.05);
    EXPECT_LT(scale(), 1.1);
    time.pass(110);
    EXPECT_EQ(scale(), 1.1);
    world.advance(1.2);
    time.pass(210);
    EXPECT_GT(scale(), 1.01) << "it is not over yet";
    time.pass(300);
    EXPECT_EQ(scale(), 1);
}

TEST_F(PickerViewTest, FilesHaveTheIconOfTheirKindOrElseASymbol) {
    const auto file = [&](const char* name) {
        auto path = (directory.path() / name).string();
        std::ofstream(path) << "content";
        return path;
    };
    const auto green = file("green.pdf"), plain = file("plain.xyz");
    constexpr std::size_t pixels = 1600;
    platform::Image icon{40, 40, {}};
    while (icon.rgba.size() < 4 * pixels)
        icon.rgba.insert(icon.rgba.end(), {0, 255, 0, 255});
    world.workspace().setFileIcon(green, icon);
    store.insert(plain, ClipKind::file);
    world.advance(1);
    store.insert(green, ClipKind::file);
    showPalette({});
    const auto shows = [&](int index, const QColor& color) {
        const auto picture = window().grabWindow();
        const auto middle = card(index).mapToScene(QPointF(card(index).width() / 2, 66)).toPoint();
        for (int x = middle.x() - 20; x < middle.x() + 20; ++x) {
            if (picture.pixelColor(x, middle.y()) == color) return true;
        }
        return false;
    };
    const auto symbol = card(0).property("headerFill").value<QColor>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shows(0, QColor(0, 255, 0)) && shows(1, symbol); }));
    EXPECT_FALSE(shows(0, symbol));
    EXPECT_FALSE(shows(1, QColor(0, 255, 0)));
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

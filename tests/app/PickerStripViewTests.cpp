#include "tests/app/PickerViewFixture.h"

#include <QAnimationDriver>

#include <gmock/gmock.h>

#include <fstream>

namespace brimquill {
namespace {

namespace key = platform::key;

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

/// The cards of the palette as they are drawn and moved.
class PickerStripViewTest : public PickerViewFixture {
protected:
    /// How far from its place a card stands, in cards.
    double slideOf(int index) {
        auto& item = card(index);
        return item.property("slide").toDouble() / (card(1).x() - card(0).x());
    }
};

TEST_F(PickerStripViewTest, TheFirstCardIsFocusedAgainAfterAQueryFoundNothing) {
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

TEST_F(PickerStripViewTest, WhatReturnWouldPasteIsSeenAfterEachChangeOfTheQuery) {
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

TEST_F(PickerStripViewTest, CardsThatStaySpringToTheirNewPlaces) {
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

TEST_F(PickerStripViewTest, AnArrivalComesQuicklyAndSettlesSlowly) {
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

TEST_F(PickerStripViewTest, FilesHaveTheIconOfTheirKindOrElseASymbol) {
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

}  // namespace
}  // namespace brimquill

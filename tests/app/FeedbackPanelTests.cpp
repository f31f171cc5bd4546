#include "Brimquill/Surfaces/CaptureToastPanel.h"
#include "Brimquill/Surfaces/HUDPanel.h"
#include "tests/app/AppFixture.h"

#include <QSignalSpy>

#include <memory>

namespace brimquill {
namespace {

class FeedbackPanelTest : public AppFixture {
protected:
    FeedbackPanelTest() { world.appearance().set(false, true); }

    /// The one panel that was made so far; the panels of this program are made at their first use.
    const platform::PanelRecord& panel() { return *world.panels().records().front(); }
    bool isUp() { return !world.panels().visible().empty(); }

    bool isPaletteVisible = false;
    ViewHost views{settings, world.appearance(), world.panels()};
    CaptureToastPanel captureToast{
        {views, settings, world.screens(), world.runLoop(), [this] { return isPaletteVisible; }}};
    HUDPanel hudPanel{views, world.screens(), world.runLoop(), [this] { return isPaletteVisible; }};
};

TEST_F(FeedbackPanelTest, AToastStaysItsTimeAfterTheLastCapture) {
    for (int expected = 1; expected <= 3; ++expected) {
        captureToast.show({{}, "Copied", {}});
        world.advance(1.5);
        EXPECT_EQ(captureToast.model().count(), expected);
        EXPECT_TRUE(isUp());
    }
    EXPECT_EQ(world.panels().records().size(), 1U);
    EXPECT_EQ(panel().showCount, 1);
    world.advance(0.49);
    EXPECT_TRUE(isUp());
    world.advance(0.02);
    EXPECT_FALSE(isUp());

    captureToast.show({{}, "Copied", {}});
    world.run();
    EXPECT_EQ(captureToast.model().count(), 1);
}

TEST_F(FeedbackPanelTest, AToastWithAPictureStaysLonger) {
    captureToast.show({directory.path() / "picture.png", "Image", {}});
    world.advance(3.19);
    EXPECT_TRUE(isUp());
    world.advance(0.02);
    EXPECT_FALSE(isUp());
}

TEST_F(FeedbackPanelTest, AToastStaysUnderThePointer) {
    captureToast.show({{}, "Copied", {}});
    world.advance(1.9);
    captureToast.model().setHovered(true);
    world.advance(60);
    EXPECT_TRUE(isUp());
    captureToast.model().setHovered(false);
    world.advance(1.9);
    EXPECT_TRUE(isUp());
    world.advance(0.2);
    EXPECT_FALSE(isUp());
}

TEST_F(FeedbackPanelTest, AToastSlidesOutWhereMotionIsWanted) {
    world.appearance().set(false, false);
    captureToast.show({{}, "Copied", {}});
    world.advance(2.01);
    EXPECT_FALSE(captureToast.model().shown());
    EXPECT_TRUE(isUp());
    // One that comes meanwhile is not taken away with the one before.
    captureToast.show({{}, "Copied again", {}});
    world.advance(1);
    EXPECT_TRUE(isUp());
    EXPECT_EQ(captureToast.model().title(), QStringLiteral("Copied again"));
    world.advance(5);
    EXPECT_FALSE(isUp());
}

TEST_F(FeedbackPanelTest, WithoutToastsOnlyAnswersShow) {
    settings.setShowCaptureToasts(false);
    captureToast.show({{}, "Copied", {}});
    world.run();
    EXPECT_FALSE(isUp());
    EXPECT_EQ(captureToast.model().count(), 0);
    captureToast.show({{}, "Captured 3 characters", {}}, CaptureToast::Occasion::answer);
    world.run();
    EXPECT_TRUE(isUp());
}

TEST_F(FeedbackPanelTest, AToastStandsInTheCornerClearOfThePalette) {
    world.screens().setMain(platform::Screen{{0, 0, 1000, 800}, {10, 30, 980, 740}, 1});
    // Without a shadow around it, the window is the toast's body.
    world.panels().setTranslucencyAvailable(false);
    const auto expectBodyAt = [this](double x, double y) {
        EXPECT_EQ(panel().role, platform::PanelRole::passive);
        EXPECT_DOUBLE_EQ(panel().frame.x, x);
        EXPECT_DOUBLE_EQ(panel().frame.y, y);
        EXPECT_DOUBLE_EQ(panel().frame.width, 340);
        EXPECT_DOUBLE_EQ(panel().frame.height, 74);
    };
    captureToast.show({{}, "Copied", {}});
    world.run();
    expectBodyAt(990 - 24 - 340, 770 - 84 - 74);
    isPaletteVisible = true;
    captureToast.show({{}, "Copied", {}});
    world.run();
    expectBodyAt(990 - 24 - 340, 770 - 300 - 74);
}

TEST_F(FeedbackPanelTest, WithoutAScreenNothingShowsAndNothingBreaks) {
    world.screens().setMain(std::nullopt);
    captureToast.show({{}, "Copied", {}});
    hudPanel.show("text", "eye.slash");
    world.advance(10);
    EXPECT_FALSE(isUp());
}

TEST_F(FeedbackPanelTest, AToastsSymbolTellsWhatItIs) {
    struct Case {
        CaptureToast::Content content;
        const char* symbol;
    };
    const Case cases[] = {
        {{"/a/picture.png", "A secret picture", {}}, "photo.fill"},
        {{{}, "Secret copied — expires in 60s", {}}, "lock.fill"},
        {{{}, "Hello", "Copied"}, "doc.on.clipboard.fill"},
    };
    for (const Case& c : cases) {
        captureToast.show(c.content);
        world.run();
        EXPECT_EQ(captureToast.model().symbol(), QString::fromUtf8(c.symbol)) << c.content.title;
    }
}

TEST_F(FeedbackPanelTest, AClickOnTheToastIsTold) {
    QSignalSpy opened(&captureToast, &CaptureToastPanel::opened);
    captureToast.show({{}, "Copied", {}});
    world.run();
    captureToast.model().open();
    EXPECT_EQ(opened.count(), 1);
}

TEST_F(FeedbackPanelTest, TheHudFlashesTheLastLineAndGoesByItself) {
    hudPanel.show("first", "eye.slash");
    world.advance(1.3);
    hudPanel.show("second", "trash");
    world.advance(1.3);
    EXPECT_TRUE(isUp());
    EXPECT_EQ(hudPanel.model().text(), QStringLiteral("second"));
    EXPECT_EQ(hudPanel.model().symbol(), QStringLiteral("trash"));
    EXPECT_EQ(panel().role, platform::PanelRole::display);
    EXPECT_EQ(world.panels().records().size(), 1U);
    world.advance(60);
    EXPECT_FALSE(isUp());
    EXPECT_FALSE(hudPanel.model().shown());
}

}  // namespace
}  // namespace brimquill

#include "Brimquill/Surfaces/TourEvents.h"
#include "tests/app/PaletteFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using platform::Delivery;
namespace key = platform::key;

class PickerPanelTest : public PaletteFixture {
protected:
    PickerPanelTest() {
        for (const char* text : {"three", "two", "one"}) {
            world.advance(1);
            store.insert(text, ClipKind::text);
        }
    }

    platform::Rect shownFrame() {
        auto frame = world.panels().visible().at(0)->frame;
        const double shadow = (frame.height - PickerPanelController::panelHeight) / 2;
        return {frame.x + shadow, frame.y + shadow, frame.width - 2 * shadow, frame.height - 2 * shadow};
    }
    Delivery escape() { return world.press(key::escape); }
};

TEST_F(PickerPanelTest, StandsAlongTheBottomOfTheScreen) {
    world.screens().setMain(platform::Screen{{0, 0, 1920, 1080}, {0, 32, 1920, 1000}, 1});
    int shows = 0;
    const auto observation = center.observe(TourEvents::paletteDidShow, nullptr, [&](const Notification&) { ++shows; });
    palette.show();
    EXPECT_TRUE(palette.isVisible());
    EXPECT_TRUE(model.isActive());
    EXPECT_EQ(shows, 1);
    EXPECT_EQ(shownFrame(), (platform::Rect{24, 736, 1872, 280}));
    palette.toggle();
    EXPECT_FALSE(palette.isVisible());
    EXPECT_FALSE(model.isActive());
    EXPECT_FALSE(world.eventMonitors().hasLocalMonitors());
    palette.close();
    world.screens().setMain(std::nullopt);
    palette.toggle();
    EXPECT_EQ(shownFrame(), (platform::Rect{24, 504, 1152, 280})) << "a screen of 1200 by 800 is assumed";
}

TEST_F(PickerPanelTest, KeepsItsPlaceOnAScreenThatChanges) {
    palette.show();
    world.press(key::t, {.command = true}, "t");
    ASSERT_TRUE(tagPanel.isVisible());
    world.screens().change({{0, 0, 1280, 720}, {0, 0, 1280, 700}, 1});
    EXPECT_EQ(shownFrame(), (platform::Rect{24, 404, 1232, 280}));
    const auto form = world.panels().keyPanel()->frame;
    EXPECT_EQ(form.x + form.width / 2, 640);
    EXPECT_LT(form.y + form.height, 720 - 280);
    EXPECT_TRUE(tagPanel.panel().isKey());
    EXPECT_EQ(world.panels().visible().at(0)->showCount, 1) << "shown anew, it would take the keyboard";
}

TEST_F(PickerPanelTest, EscapeGoesBackOneLevelAtATime) {
    palette.show();
    model.setSearchText("o");
    model.setFilter(scope::Snippets{});
    model.toggleType(ContentType::text);
    model.setPreviewOpen(true);
    model.setCheatSheetOpen(true);
    EXPECT_EQ(escape(), Delivery::swallowed);
    EXPECT_FALSE(model.cheatSheetOpen());
    EXPECT_TRUE(model.previewOpen());
    escape();
    EXPECT_FALSE(model.previewOpen());
    EXPECT_TRUE(model.typeFilter());
    escape();
    EXPECT_FALSE(model.typeFilter());
    EXPECT_EQ(brimquill::key(model.filter()), "snippets");
    escape();
    EXPECT_EQ(brimquill::key(model.filter()), "clipboard");
    EXPECT_EQ(model.searchText(), "o");
    escape();
    EXPECT_EQ(model.searchText(), "");
    EXPECT_TRUE(palette.isVisible());
    escape();
    EXPECT_FALSE(palette.isVisible());
}

TEST_F(PickerPanelTest, ReturnClosesFirstAndPastesAfter) {
    palette.show();
    EXPECT_EQ(world.press(key::right), Delivery::swallowed);
    EXPECT_EQ(world.press(key::returnKey), Delivery::swallowed);
    EXPECT_FALSE(palette.isVisible());
    EXPECT_EQ(onPasteboard(), "two");
    EXPECT_TRUE(hud.lines.empty());
    palette.show();
    world.press(key::returnKey, {.option = true});
    EXPECT_EQ(onPasteboard(), "one");
    EXPECT_EQ(hud.lines.size(), 1U);
}

TEST_F(PickerPanelTest, QuickPasteTakesTheFocusedCardWhereThereIsNoSuchNumber) {
    palette.show();
    world.press(key::two, {.command = true}, "2");
    EXPECT_EQ(onPasteboard(), "two");
    palette.show();
    world.press(key::right);
    world.press(key::right);
    world.press(key::nine, {.command = true}, "9");
    EXPECT_EQ(onPasteboard(), "three");
}

TEST_F(PickerPanelTest, LettersReachTheFieldAndReturnOnNothingStays) {
    palette.show();
    EXPECT_EQ(world.press(key::a, {}, "a"), Delivery::passed);
    EXPECT_EQ(world.press(key::deleteKey), Delivery::passed);
    model.setSearchText("no such clip");
    EXPECT_EQ(world.press(key::returnKey), Delivery::swallowed);
    EXPECT_TRUE(palette.isVisible());
}

TEST_F(PickerPanelTest, TheOpenExplorerHasTheKeys) {
    for (const auto* path : {"Board/Inner", "Other"})
        store.folder(path);
    auto& explorer = model.explorer();
    palette.show();
    EXPECT_EQ(world.press(key::f, {.command = true}, "f"), Delivery::swallowed);
    EXPECT_TRUE(explorer.explorerOpen());
    EXPECT_EQ(world.press(key::one, {.command = true}, "1"), Delivery::passed);
    EXPECT_EQ(world.press(key::o, {}, "o"), Delivery::passed);
    world.press(key::down);
    world.press(key::left);
    EXPECT_EQ(explorer.explorerRows().size(), 5U) << "Board is closed: two headers, two pinboards, one kind";
    world.press(key::right);
    world.press(key::down);
    EXPECT_EQ(explorer.explorerSelection(), 2);
    world.press(key::up);
    EXPECT_EQ(explorer.explorerSelection(), 1);
    explorer.setExplorerSearch("o");
    EXPECT_EQ(world.press(key::left), Delivery::passed) << "the caret's";
    EXPECT_EQ(escape(), Delivery::swallowed);
    EXPECT_FALSE(explorer.explorerOpen());
    EXPECT_TRUE(palette.isVisible());
    world.press(key::f, {.command = true}, "f");
    world.press(key::down);
    EXPECT_EQ(world.press(key::returnKey), Delivery::swallowed);
    EXPECT_EQ(brimquill::label(model.filter()), "Board");
    EXPECT_TRUE(palette.isVisible());
    world.press(key::f, {.command = true}, "f");
    world.press(key::f, {.command = true}, "f");
    EXPECT_FALSE(explorer.explorerOpen());
}

TEST_F(PickerPanelTest, AClickOutsideClosesIt) {
    palette.show();
    world.click({shownFrame().x + 10, shownFrame().y + 10});
    EXPECT_TRUE(palette.isVisible());
    world.click({5, 5});
    EXPECT_FALSE(palette.isVisible());
    palette.show();
    palette.menu()->openAt(0, 10, 10);
    ASSERT_TRUE(palette.menu()->isOpen());
    world.click({5, 5});
    EXPECT_FALSE(palette.isVisible()) << "or else the keys would not be those of what was clicked";
    EXPECT_FALSE(palette.menu()->isOpen());
}

TEST_F(PickerPanelTest, ThePressThatCarriesItAwayIsNoneOutside) {
    palette.show();
    const auto before = shownFrame();
    const platform::Point press{before.x + 900, before.y + 70};
    palette.backgroundPressed(900, 70);
    world.screens().setMouseLocation({press.x, press.y - 400});
    palette.backgroundDragged();
    world.click(press);
    EXPECT_TRUE(palette.isVisible()) << "heard of late";
    palette.backgroundReleased();
    world.click(press);
    EXPECT_FALSE(palette.isVisible());
}

TEST_F(PickerPanelTest, AClickCopiesMarksOrExtends) {
    palette.show();
    palette.cardClicked(1, Qt::NoModifier);
    EXPECT_EQ(onPasteboard(), "two");
    EXPECT_TRUE(palette.isVisible());
    EXPECT_TRUE(world.syntheticKeys().strokes().empty());
    palette.cardClicked(2, Qt::ControlModifier);
    EXPECT_THAT(model.selection(), testing::ElementsAre(2));
    palette.cardClicked(0, Qt::ShiftModifier);
    EXPECT_THAT(model.selection(), testing::ElementsAre(0, 1, 2));
    palette.cardClicked(7, Qt::NoModifier);
    EXPECT_EQ(onPasteboard(), "two");
    palette.cardDoubleClicked(2);
    EXPECT_FALSE(palette.isVisible());
    EXPECT_EQ(onPasteboard(), "three");
}

TEST_F(PickerPanelTest, KeysAreNotItsOwnWhileAnotherHoldsTheKeyboard) {
    palette.show();
    world.panels().setKeyboardHeldElsewhere(true);
    EXPECT_EQ(escape(), Delivery::passed);
    EXPECT_TRUE(palette.isVisible());
}

TEST_F(PickerPanelTest, WhereNoPanelCanBeShownNothingIsLeftBehind) {
    world.panels().setShows(false);
    palette.show();
    EXPECT_FALSE(palette.isVisible());
    EXPECT_FALSE(model.isActive());
    EXPECT_FALSE(world.eventMonitors().hasLocalMonitors());
}

TEST_F(PickerPanelTest, PauseIsSwitchedAndTold) {
    palette.show();
    world.press(key::j, {.command = true}, "j");
    EXPECT_TRUE(settings.capturePaused());
    world.press(key::j, {.command = true}, "j");
    EXPECT_FALSE(settings.capturePaused());
    EXPECT_THAT(hud.lines, testing::ElementsAre(testing::Pair("Capture paused", "pause.circle.fill"),
                                                testing::Pair("Capture resumed", "record.circle")));
}

}  // namespace
}  // namespace brimquill

#include "tests/app/PaletteFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using platform::Delivery;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;
namespace key = platform::key;
constexpr platform::Modifiers command{.command = true}, shift{.shift = true};

/// The palette as it is worked with: by keys and clicks, from one appearance to the next.
class PickerSessionTest : public PaletteFixture {
protected:
    std::int64_t copy(const std::string& text, ClipKind kind = ClipKind::text) {
        world.advance(1);
        return store.insert(text, kind)->id;
    }
    void copyAll(const std::vector<std::string>& texts) {
        for (const auto& text : texts)
            copy(text);
        world.advance(1);
    }
    std::vector<std::string> shown() const {
        std::vector<std::string> texts;
        for (const auto& item : model.items())
            texts.push_back(item.text);
        return texts;
    }
    /// The number of ⌘V sent to the program below.
    std::size_t pastes() {
        world.advance(0.2);
        return world.syntheticKeys().strokes().size();
    }
};

TEST_F(PickerSessionTest, DeletionsAreUndoneInReverseByKeysAcrossAppearances) {
    copyAll({"a", "b", "c", "d", "e"});
    palette.show();
    world.press(key::deleteKey, command);
    world.press(key::escape);
    palette.show();
    world.press(key::right, shift);
    world.press(key::deleteKey);
    EXPECT_THAT(shown(), ElementsAre("b", "a"));
    palette.toggle();
    palette.toggle();
    world.press(key::right);
    world.press(key::deleteKey, command);
    EXPECT_THAT(shown(), ElementsAre("b"));
    const std::vector<std::vector<std::string>> after = {{"b", "a"}, {"d", "c", "b", "a"}, {"e", "d", "c", "b", "a"}};
    for (const auto& texts : after) {
        world.press(key::z, {.command = true, .shift = texts.size() == 4}, "z");
        EXPECT_EQ(shown(), texts);
        EXPECT_EQ(model.selectedIndex(), 0);
        palette.close();
        palette.show();
    }
    world.press(key::z, command, "z");
    EXPECT_EQ(hud.lines.back().first, "Nothing to undo");
}

TEST_F(PickerSessionTest, AMarkedChoiceIsPastedInStripOrderWhateverTheOrderOfTheClicks) {
    copyAll({"five", "four", "three", "two", "one"});
    palette.show();
    palette.cardClicked(4, Qt::ControlModifier);
    palette.cardClicked(0, Qt::MetaModifier);
    palette.cardClicked(2, Qt::ControlModifier);
    world.press(key::two, command, "2");
    EXPECT_EQ(onPasteboard(), "one\ntwo\nthree\nfive") << "a numbered card joins what is marked";
    EXPECT_EQ(pastes(), 1U);
    EXPECT_FALSE(palette.isVisible());
}

TEST_F(PickerSessionTest, SeveralWithoutTextAreOneEmptyPaste) {
    const std::string picture = (directory.path() / "p.png").string();
    for (int n = 0; n < 2; ++n) {
        world.advance(1);
        store.insert("", ClipKind::image, {}, picture + std::to_string(n));
    }
    palette.show();
    ASSERT_THAT(model.items(), SizeIs(2));
    world.pasteboard().write({.string = "before"});
    world.press(key::a, command, "a");
    world.press(key::returnKey);
    EXPECT_EQ(onPasteboard(), "");
    EXPECT_EQ(pastes(), 1U);
}

TEST_F(PickerSessionTest, SnippetsAmongSeveralAreFilledIn) {
    copy("plain");
    store.createSnippet("Greeting", "dear {name}");
    palette.show();
    model.setFilter(scope::App{"nobody"});
    model.setFilter(scope::Clipboard{});
    model.toggleType(ContentType::text);
    model.setSearchText("");
    world.press(key::tab);
    EXPECT_THAT(shown(), ElementsAre("dear {name}"));
    model.setFilter(scope::Kind{ClipKind::text});
    world.press(key::a, command, "a");
    world.press(key::returnKey, {.option = true});
    EXPECT_EQ(onPasteboard(), "<dear {name}>\nplain");
    EXPECT_EQ(pastes(), 0U);
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Copied", "checkmark.circle.fill")));
}

TEST_F(PickerSessionTest, AChangeAmidAChoiceEndsItOnceAndTheNextAppearanceIsItsOwn) {
    copyAll({"c", "b", "a"});
    palette.show();
    world.press(key::right, shift);
    copy("new");
    world.advance(1);
    EXPECT_TRUE(model.selection().empty()) << "the choice was of other cards";
    EXPECT_EQ(model.selectedIndex(), 0);
    store.insert("newer", ClipKind::text);
    world.advance(0.1);
    palette.close();
    palette.show();
    EXPECT_EQ(shown().front(), "newer");
    world.press(key::right, shift);
    world.advance(1);
    EXPECT_THAT(model.selection(), ElementsAre(0, 1)) << "what changed before it came up is no news to it";
}

TEST_F(PickerSessionTest, WhatAnotherDeletedAmidAChoiceGoesThroughHarmlessly) {
    copyAll({"c", "b", "a"});
    palette.show();
    world.press(key::a, command, "a");
    store.deleteClip(model.items()[1].id);
    world.press(key::deleteKey);
    EXPECT_TRUE(shown().empty());
    EXPECT_EQ(hud.lines.back().first, "Deleted 3 clips — ⌘Z to undo");
    world.press(key::z, command, "z");
    EXPECT_THAT(shown(), ElementsAre("a", "b", "c"));
}

TEST_F(PickerSessionTest, EveryResultShownBelongsToTheTextShown) {
    for (const char* word : {"gr", "gra", "grap", "grape", "grapefruit", "other"})
        copy(std::string(word) + " juice");
    palette.show();
    int results = 0;
    QObject::connect(&model, &PickerModel::itemsChanged, [&] {
        ++results;
        for (const auto& text : shown())
            EXPECT_TRUE(text.starts_with(model.searchText())) << text << " for " << model.searchText();
        EXPECT_EQ(static_cast<int>(shown().size()), model.cards()->rowCount());
    });
    const std::vector<std::pair<std::string, std::size_t>> typed = {
        {"g", 5}, {"gr", 5}, {"gra", 4}, {"grap", 3}, {"grape", 2}, {"grapef", 1}, {"grapefx", 0}, {"grape", 2}};
    for (const auto& [text, count] : typed) {
        model.setSearchTextFromView(QString::fromStdString(text));
        EXPECT_EQ(model.searchTextForView().toStdString(), text);
        EXPECT_THAT(shown(), SizeIs(count)) << text;
    }
    EXPECT_EQ(results, static_cast<int>(typed.size())) << "no letter is passed over and none is answered twice";
}

TEST_F(PickerSessionTest, AClickOnAnotherScreenClosesItThoughThePointerTookTheMainScreenAlong) {
    const platform::Screen left{{0, 0, 800, 1000}, {0, 0, 800, 1000}, 1};
    const platform::Screen right{{800, 0, 800, 1000}, {800, 0, 800, 1000}, 1};
    world.screens().setMain(left);
    palette.show();
    world.screens().setMain(right);
    world.click({1200, 900});
    EXPECT_FALSE(palette.isVisible());
}

TEST_F(PickerSessionTest, OverlaysAndTheTypeOutliveAnAppearanceTheSheetsQueryDoesNot) {
    copy("a");
    palette.show();
    world.press(key::y, command, "y");
    world.press(key::slash, command, "/");
    world.press(key::g, command, "g");
    palette.close();
    palette.show();
    EXPECT_TRUE(model.previewOpen());
    EXPECT_TRUE(model.cheatSheetOpen());
    EXPECT_EQ(model.typeFilter(), ContentType::gif);
    for (int level = 0; level < 3; ++level)
        EXPECT_EQ(world.press(key::escape), Delivery::swallowed);
    EXPECT_TRUE(palette.isVisible());
    EXPECT_FALSE(model.isFiltered());
}

}  // namespace
}  // namespace brimquill

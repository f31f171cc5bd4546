#include "Brimquill/Palette/PickerKeyMap.h"
#include "BrimquillCore/Foundation/Text.h"

#include <gtest/gtest.h>

namespace brimquill {
namespace {

using namespace picker_action;
namespace key = platform::key;
constexpr platform::Modifiers none{}, command{.command = true}, shift{.shift = true}, option{.option = true};
constexpr platform::Modifiers commandShift{.command = true, .shift = true};

struct Case {
    int code;
    const char* text;
    platform::Modifiers modifiers;
    PickerKeyState state;
    PickerAction action;
};
constexpr PickerKeyState marked{.selectionEmpty = false}, explorer{.explorerOpen = true},
    searching{.explorerOpen = true, .explorerSearchEmpty = false};

TEST(PickerKeyMap, DecidesByKeyAndState) {
    const std::vector<Case> cases = {
        {key::z, "Z", commandShift, {}, Simple::undoDelete},
        {key::t, "T", commandShift, {}, Simple::jumpToTopTag},
        {key::t, "t", command, {}, Simple::organizeTags},
        {key::f, "f", command, explorer, Simple::toggleExplorer},
        {key::l, "l", command, searching, ToggleType{ContentType::link}},
        {key::l, "l", none, {}, Simple::pass},
        {key::left, "", command, {}, CycleFilter{-1}},
        {key::right, "", option, {}, CycleType{+1}},
        {key::right, "", shift, {}, MoveSelection{+1, true}},
        {key::up, "", command, {}, MoveSelection{-1, false}},
        {key::down, "", none, {}, MoveSelection{+1, false}},
        {key::returnKey, "\r", option, {}, Paste{true}},
        {key::returnKey, "\r", none, {}, Paste{false}},
        {key::tab, "\t", shift, {}, CycleFilter{-1}},
        {key::deleteKey, "", none, {}, Simple::pass},
        {key::deleteKey, "", none, marked, Simple::deleteSelected},
        {key::deleteKey, "", command, {}, Simple::deleteSelected},
        {key::escape, "", none, {}, Simple::backOut},
        {key::one, "1", command, {}, QuickPaste{1}},
        {key::zero, "0", command, {}, Simple::pass},
        {key::one, "1", none, {}, Simple::pass},
        {key::one, "1", command, explorer, Simple::pass},
        {key::escape, "", none, explorer, Simple::explorerClose},
        {key::left, "", none, searching, Simple::pass},
        {key::left, "", command, searching, Simple::explorerCollapse},
        {key::right, "", none, explorer, Simple::explorerExpand},
        {key::right, "", {.command = true, .option = true}, {}, CycleFilter{+1}},
        {key::left, "", {.shift = true, .option = true}, {}, CycleType{-1}},
        {key::left, "", shift, marked, MoveSelection{-1, true}},
        {key::up, "", option, {}, MoveSelection{-1, false}},
        {key::down, "", commandShift, {}, MoveSelection{+1, true}},
        {key::returnKey, "\r", commandShift, {}, Paste{false}},
        {key::tab, "\t", command, {}, CycleFilter{+1}},
        {key::deleteKey, "", shift, marked, Simple::deleteSelected},
        {key::escape, "", commandShift, marked, Simple::backOut},
        {key::nine, "9", command, marked, QuickPaste{9}},
        {key::three, "³", command, {}, Simple::pass},
        {key::other, "12", command, {}, Simple::pass},
        {key::v, "v", command, {}, Simple::pass},
        {key::down, "", none, explorer, ExplorerMove{+1}},
        {key::up, "", none, searching, ExplorerMove{-1}},
        {key::right, "", command, searching, Simple::explorerExpand},
        {key::right, "", none, searching, Simple::pass},
        {key::left, "", none, explorer, Simple::explorerCollapse},
        {key::returnKey, "\r", option, explorer, Simple::explorerActivate},
        {key::tab, "\t", none, explorer, Simple::pass},
        {key::deleteKey, "", command, explorer, Simple::pass},
    };
    for (const auto& test : cases) {
        platform::Event event;
        event.keyCode = test.code;
        event.charactersIgnoringModifiers = test.text;
        event.modifiers = test.modifiers;
        EXPECT_TRUE(pickerAction(event, test.state) == test.action)
            << "key " << test.code << " text " << test.text << " row " << &test - cases.data();
    }
}

TEST(PickerKeyMap, CommandKeysMeanTheSameInEveryState) {
    const std::vector<std::pair<const char*, PickerAction>> keys = {
        {"f", Simple::toggleExplorer},        {"p", Simple::organizePinboard},
        {"j", Simple::togglePause},           {"z", Simple::undoDelete},
        {"o", Simple::openSelected},          {"a", Simple::selectAll},
        {"y", Simple::togglePreview},         {"e", Simple::showEmoji},
        {"/", Simple::toggleCheatSheet},      {"m", Simple::showMostRecent},
        {"l", ToggleType{ContentType::link}}, {"i", ToggleType{ContentType::image}},
        {"g", ToggleType{ContentType::gif}},  {"s", ToggleType{ContentType::screenshot}},
        {"t", Simple::organizeTags},
    };
    for (const auto& [text, action] : keys) {
        for (const auto& state : {PickerKeyState{}, marked, explorer, searching}) {
            platform::Event event;
            event.charactersIgnoringModifiers = text;
            EXPECT_TRUE(pickerAction(event, state) == PickerAction(Simple::pass)) << text;
            event.modifiers.command = true;
            EXPECT_TRUE(pickerAction(event, state) == action) << text;
            event.charactersIgnoringModifiers = text::uppercased(text);
            EXPECT_TRUE(pickerAction(event, state) == action) << "with the capitals lock, " << text;
        }
    }
}

}  // namespace
}  // namespace brimquill

#include "Brimquill/Palette/PickerKeyMap.h"

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
        {key::down, "", none, explorer, ExplorerMove{+1}},
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

}  // namespace
}  // namespace brimquill

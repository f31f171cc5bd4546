#include "Brimquill/Palette/PickerKeyMap.h"

#include "BrimquillCore/Foundation/Text.h"

#include <array>
#include <optional>
#include <string_view>

namespace brimquill {
namespace {

using picker_action::Simple;
namespace key = platform::key;

enum class Shift { any, without, held };

struct CommandKey {
    std::string_view text;
    Shift shift;
    PickerAction action;
};

/// The keys that work in every state while ⌘ is held, in the order in which they are tried.
const std::array commandKeys = {
    CommandKey{"f", Shift::any, Simple::toggleExplorer},
    CommandKey{"t", Shift::held, Simple::jumpToTopTag},
    CommandKey{"t", Shift::without, Simple::organizeTags},
    CommandKey{"p", Shift::any, Simple::organizePinboard},
    CommandKey{"j", Shift::any, Simple::togglePause},
    CommandKey{"z", Shift::any, Simple::undoDelete},
    CommandKey{"o", Shift::any, Simple::openSelected},
    CommandKey{"a", Shift::any, Simple::selectAll},
    CommandKey{"y", Shift::any, Simple::togglePreview},
    CommandKey{"e", Shift::any, Simple::showEmoji},
    CommandKey{"/", Shift::any, Simple::toggleCheatSheet},
    CommandKey{"m", Shift::any, Simple::showMostRecent},
    CommandKey{"l", Shift::any, picker_action::ToggleType{ContentType::link}},
    CommandKey{"i", Shift::any, picker_action::ToggleType{ContentType::image}},
    CommandKey{"g", Shift::any, picker_action::ToggleType{ContentType::gif}},
    CommandKey{"s", Shift::any, picker_action::ToggleType{ContentType::screenshot}},
};

std::optional<PickerAction> commandAction(const std::string& text, bool shift) {
    for (const auto& entry : commandKeys) {
        const bool shiftFits = entry.shift == Shift::any || (entry.shift == Shift::held) == shift;
        if (entry.text == text && shiftFits) return entry.action;
    }
    return std::nullopt;
}

PickerAction explorerAction(const platform::Event& event, const PickerKeyState& state) {
    const bool movesCaret = !event.modifiers.command && !state.explorerSearchEmpty;
    switch (event.keyCode) {
        case key::returnKey:
            return Simple::explorerActivate;
        case key::escape:
            return Simple::explorerClose;
        case key::left:
            return movesCaret ? Simple::pass : Simple::explorerCollapse;
        case key::right:
            return movesCaret ? Simple::pass : Simple::explorerExpand;
        case key::down:
            return picker_action::ExplorerMove{+1};
        case key::up:
            return picker_action::ExplorerMove{-1};
        default:
            return Simple::pass;
    }
}

PickerAction horizontalArrow(int delta, platform::Modifiers modifiers) {
    if (modifiers.command) return picker_action::CycleFilter{delta};
    if (modifiers.option) return picker_action::CycleType{delta};
    return picker_action::MoveSelection{delta, modifiers.shift};
}

PickerAction quickPaste(const std::string& text) {
    if (text.size() == 1 && text[0] >= '1' && text[0] <= '9') return picker_action::QuickPaste{text[0] - '0'};
    return Simple::pass;
}

PickerAction stripAction(const platform::Event& event, const std::string& text, const PickerKeyState& state) {
    const auto& modifiers = event.modifiers;
    switch (event.keyCode) {
        case key::left:
            return horizontalArrow(-1, modifiers);
        case key::right:
            return horizontalArrow(+1, modifiers);
        case key::up:
            return picker_action::MoveSelection{-1, modifiers.shift};
        case key::down:
            return picker_action::MoveSelection{+1, modifiers.shift};
        case key::returnKey:
            return picker_action::Paste{modifiers.option};
        case key::tab:
            return picker_action::CycleFilter{modifiers.shift ? -1 : +1};
        case key::deleteKey:
            return modifiers.command || !state.selectionEmpty ? Simple::deleteSelected : Simple::pass;
        case key::escape:
            return Simple::backOut;
        default:
            return modifiers.command ? quickPaste(text) : PickerAction(Simple::pass);
    }
}

}  // namespace

PickerAction pickerAction(const platform::Event& event, const PickerKeyState& state) {
    const auto text = text::lowercased(event.charactersIgnoringModifiers);
    if (event.modifiers.command) {
        if (const auto action = commandAction(text, event.modifiers.shift)) return *action;
    }
    return state.explorerOpen ? explorerAction(event, state) : stripAction(event, text, state);
}

}  // namespace brimquill

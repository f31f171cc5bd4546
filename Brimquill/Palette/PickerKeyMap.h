#pragma once

#include "Brimquill/Palette/ContentType.h"
#include "Platform/EventMonitors.h"

#include <variant>

namespace brimquill {

/// What a key press in the palette does. `pass` lets the press reach the focused text field; everything else swallows
/// it.
namespace picker_action {

enum class Simple {
    pass,
    toggleExplorer,
    jumpToTopTag,
    organizeTags,
    organizePinboard,
    togglePause,
    undoDelete,
    openSelected,
    selectAll,
    togglePreview,
    showEmoji,
    toggleCheatSheet,
    showMostRecent,
    deleteSelected,
    backOut,
    explorerActivate,
    explorerClose,
    explorerCollapse,
    explorerExpand,
};
struct ToggleType {
    ContentType type = ContentType::text;
    friend bool operator==(const ToggleType&, const ToggleType&) = default;
};
struct CycleFilter {
    int delta = 0;
    friend bool operator==(const CycleFilter&, const CycleFilter&) = default;
};
struct CycleType {
    int delta = 0;
    friend bool operator==(const CycleType&, const CycleType&) = default;
};
struct MoveSelection {
    int delta = 0;
    bool extending = false;
    friend bool operator==(const MoveSelection&, const MoveSelection&) = default;
};
struct Paste {
    bool copyOnly = false;
    friend bool operator==(const Paste&, const Paste&) = default;
};
/// The card of this number, from 1.
struct QuickPaste {
    int number = 1;
    friend bool operator==(const QuickPaste&, const QuickPaste&) = default;
};
struct ExplorerMove {
    int delta = 0;
    friend bool operator==(const ExplorerMove&, const ExplorerMove&) = default;
};

}  // namespace picker_action

using PickerAction = std::variant<picker_action::Simple, picker_action::ToggleType, picker_action::CycleFilter,
                                  picker_action::CycleType, picker_action::MoveSelection, picker_action::Paste,
                                  picker_action::QuickPaste, picker_action::ExplorerMove>;

/// What of the palette's state a key's meaning depends on.
struct PickerKeyState {
    bool explorerOpen = false;
    bool explorerSearchEmpty = true;
    bool selectionEmpty = true;
};

/// The palette's key map. Pure.
PickerAction pickerAction(const platform::Event& event, const PickerKeyState& state);

}  // namespace brimquill

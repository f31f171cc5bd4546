#pragma once

#include "Brimquill/Palette/PickerPanelController.h"
#include "tests/app/AppFixture.h"

namespace brimquill {

/// The palette with all that it works on.
class PaletteFixture : public AppFixture {
protected:
    PickerModel model{{store, center, world.runLoop(), world.defaults(), [] { return std::vector<std::int64_t>{}; }}};
    PickerActions actions{{model, store, pasteService, settings, world.workspace(), hud,
                           [](const std::string& text) { return "<" + text + ">"; }}};
    ViewHost views{settings, world.appearance(), world.panels()};
    StackManager stack{store, pasteService, hud, world.defaults()};
    FormPanel::Environment forms{views, world.screens(), world.pasteboard(), world.runLoop(), world.eventMonitors()};
    TagPanelController tagPanel{store, forms};
    EditPanelController editPanel{store, forms};
    PickerPanelController palette{{model, actions, world, settings, views, center, tagPanel, editPanel, stack}};

    std::string onPasteboard() { return world.pasteboard().string().value_or("nothing"); }
};

}  // namespace brimquill

#pragma once

#include "Brimquill/Surfaces/FormPanel.h"
#include "BrimquillCore/ClipStore.h"

#include <functional>

namespace brimquill {

/// The panel in which a clip's text is edited. Main thread.
class EditPanelController final {
public:
    /// All must outlive it.
    EditPanelController(ClipStore& store, const FormPanel::Environment& environment)
        : store_(store), runLoop_(environment.runLoop), panel_(environment) {}

    /// Shows the panel for a stored clip. `onDone` is called once the panel has closed, saved or not; never when
    /// another `show` took its place.
    void show(const ClipItem& item, std::function<void()> onDone);
    /// Closes it without saving.
    void close() { panel_.close(); }
    /// Hides it with what was typed so far, and shows it again.
    void setAside() { panel_.setAside(); }
    void bringBack() { panel_.bringBack(); }
    bool isVisible() const { return panel_.isVisible(); }
    FormPanel& panel() { return panel_; }

private:
    ClipStore& store_;
    platform::RunLoop& runLoop_;
    FormPanel panel_;
};

}  // namespace brimquill

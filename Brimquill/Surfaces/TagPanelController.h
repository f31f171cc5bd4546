#pragma once

#include "Brimquill/Surfaces/FormPanel.h"
#include "Brimquill/Surfaces/OrganizeView.h"

#include <functional>

namespace brimquill {

/// The panel in which a clip gets its tags and its pinboard. Main thread.
class TagPanelController final {
public:
    /// All must outlive it.
    TagPanelController(ClipStore& store, const FormPanel::Environment& environment)
        : store_(store), panel_(environment) {}

    /// Shows the panel for a stored clip, the caret in the given field. `onDone` is called once the panel has closed,
    /// saved or not; never when another `show` took its place.
    void show(const ClipItem& item, OrganizeView::Field focus, std::function<void()> onDone,
              OrganizeView::Wording wording = {});
    /// Closes it without saving.
    void close() { panel_.close(); }
    bool isVisible() const { return panel_.isVisible(); }
    FormPanel& panel() { return panel_; }

private:
    ClipStore& store_;
    FormPanel panel_;
};

}  // namespace brimquill

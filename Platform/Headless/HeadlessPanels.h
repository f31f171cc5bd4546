#pragma once

#include "Platform/Panels.h"

#include <memory>
#include <vector>

namespace brimquill::platform {

/// What is known of one panel; it stays readable after the panel has gone.
struct PanelRecord {
    QWindow* window = nullptr;
    PanelRole role = PanelRole::keyable;
    Rect frame;
    double clickMargin = 0;
    bool isVisible = false;
    bool isKey = false;
    int showCount = 0, closeCount = 0;
};

/// Panels that are written down instead of shown; the windows stay hidden.
class HeadlessPanels final : public Panels {
public:
    /// In the order in which they were made.
    const std::vector<std::shared_ptr<PanelRecord>>& records() const { return state_->records; }
    std::vector<std::shared_ptr<PanelRecord>> visible() const;
    /// The panel that has the keyboard, or null.
    std::shared_ptr<PanelRecord> keyPanel() const;
    /// False when no visible panel that takes clicks lies at `point`.
    bool click(Point point);
    /// Another program holds the keyboard; when it lets go, the panel that asked last gets it.
    void setKeyboardHeldElsewhere(bool held);
    /// Off: no panel can be shown.
    void setShows(bool shows) { state_->shows = shows; }
    void setTranslucencyAvailable(bool available) { isTranslucencyAvailable_ = available; }

    std::unique_ptr<Panel> makePanel(QWindow& window, PanelRole role) override;
    bool isTranslucencyAvailable() override { return isTranslucencyAvailable_; }

private:
    class RecordedPanel;
    struct State {
        std::vector<std::shared_ptr<PanelRecord>> records;
        /// Visible keyable panels, the one shown last at the end.
        std::vector<std::shared_ptr<PanelRecord>> keyOrder;
        bool keyboardHeldElsewhere = false;
        bool shows = true;
        void updateKey();
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
    bool isTranslucencyAvailable_ = true;
};

}  // namespace brimquill::platform

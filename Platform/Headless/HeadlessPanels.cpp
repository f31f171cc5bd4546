#include "Platform/Headless/HeadlessPanels.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brimquill::platform {

void HeadlessPanels::State::updateKey() {
    for (const auto& record : records)
        record->isKey = false;
    if (!keyOrder.empty() && !keyboardHeldElsewhere) keyOrder.back()->isKey = true;
}

class HeadlessPanels::RecordedPanel final : public Panel {
public:
    RecordedPanel(std::shared_ptr<State> state, std::shared_ptr<PanelRecord> record)
        : state_(std::move(state)), record_(std::move(record)) {}
    ~RecordedPanel() override { close(); }

    bool show(Rect frame) override {
        if (!state_->shows) return false;
        record_->frame = frame;
        record_->isVisible = true;
        ++record_->showCount;
        std::erase(state_->keyOrder, record_);
        if (record_->role == PanelRole::keyable) state_->keyOrder.push_back(record_);
        state_->updateKey();
        return true;
    }
    void close() override {
        if (!std::exchange(record_->isVisible, false)) return;
        ++record_->closeCount;
        resignKey();
    }
    bool isVisible() const override { return record_->isVisible; }
    bool isKey() const override { return record_->isKey; }
    void resignKey() override {
        std::erase(state_->keyOrder, record_);
        state_->updateKey();
    }
    void setFrame(Rect frame) override { record_->frame = frame; }
    void setClickMargin(double points) override { record_->clickMargin = points; }

private:
    std::shared_ptr<State> state_;
    std::shared_ptr<PanelRecord> record_;
};

std::unique_ptr<Panel> HeadlessPanels::makePanel(QWindow& window, PanelRole role) {
    auto record = std::make_shared<PanelRecord>();
    record->window = &window;
    record->role = role;
    state_->records.push_back(record);
    return std::make_unique<RecordedPanel>(state_, std::move(record));
}

std::vector<std::shared_ptr<PanelRecord>> HeadlessPanels::visible() const {
    std::vector<std::shared_ptr<PanelRecord>> shown;
    std::copy_if(state_->records.begin(), state_->records.end(), std::back_inserter(shown),
                 [](const auto& record) { return record->isVisible; });
    return shown;
}

std::shared_ptr<PanelRecord> HeadlessPanels::keyPanel() const {
    const auto found =
        std::find_if(state_->records.begin(), state_->records.end(), [](const auto& record) { return record->isKey; });
    return found == state_->records.end() ? nullptr : *found;
}

bool HeadlessPanels::click(Point point) {
    // What was made later lies above.
    const auto hit = std::find_if(state_->records.rbegin(), state_->records.rend(), [&](const auto& record) {
        return record->isVisible && record->role != PanelRole::display && record->frame.contains(point);
    });
    if (hit == state_->records.rend()) return false;
    if ((*hit)->role == PanelRole::keyable && !(*hit)->isKey) {
        state_->keyOrder = {*hit};
        state_->updateKey();
    }
    return true;
}

void HeadlessPanels::setKeyboardHeldElsewhere(bool held) {
    state_->keyboardHeldElsewhere = held;
    state_->updateKey();
}

}  // namespace brimquill::platform

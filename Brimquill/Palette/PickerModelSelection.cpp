#include "Brimquill/Palette/PickerModel.h"

#include <algorithm>

namespace brimquill {

void PickerModel::setFocus(int index) {
    if (selectedIndex_ == index) return;
    selectedIndex_ = index;
    Q_EMIT selectedIndexChanged();
    Q_EMIT previewChanged();
}

const ClipItem* PickerModel::selectedItem() const {
    const bool isThere = selectedIndex_ >= 0 && selectedIndex_ < static_cast<int>(items_.size());
    return isThere ? &items_[static_cast<std::size_t>(selectedIndex_)] : nullptr;
}

std::vector<ClipItem> PickerModel::selectedItems() const {
    auto indices = selection_;
    indices.insert(selectedIndex_);
    std::vector<ClipItem> chosen;
    for (const int index : indices) {
        if (index >= 0 && index < static_cast<int>(items_.size()))
            chosen.push_back(items_[static_cast<std::size_t>(index)]);
    }
    return chosen;
}

void PickerModel::select(int index) {
    if (index >= 0 && index < static_cast<int>(items_.size())) setFocus(index);
}

void PickerModel::moveSelection(int delta, Extending extending) {
    if (items_.empty()) return;
    const int target = std::clamp(selectedIndex_ + delta, 0, static_cast<int>(items_.size()) - 1);
    if (extending == Extending::yes) {
        selection_.insert({selectedIndex_, target});
    } else {
        selection_.clear();
    }
    cards_.setMarked(selection_);
    setFocus(target);
    Q_EMIT selectionChanged();
}

void PickerModel::toggleSelection(int index) {
    if (selection_.erase(index) == 0) selection_.insert(index);
    cards_.setMarked(selection_);
    setFocus(index);
    Q_EMIT selectionChanged();
}

void PickerModel::extendSelection(int index) {
    const int first = std::min(selectedIndex_, index), last = std::max(selectedIndex_, index);
    for (int at = first; at <= last; ++at)
        selection_.insert(at);
    cards_.setMarked(selection_);
    setFocus(index);
    Q_EMIT selectionChanged();
}

void PickerModel::selectAll() {
    for (int at = 0; at < static_cast<int>(items_.size()); ++at)
        selection_.insert(at);
    cards_.setMarked(selection_);
    Q_EMIT selectionChanged();
}

void PickerModel::clearSelection() {
    selection_.clear();
    cards_.setMarked(selection_);
    Q_EMIT selectionChanged();
}

}  // namespace brimquill

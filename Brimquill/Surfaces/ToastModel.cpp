#include "Brimquill/Surfaces/ToastModel.h"

#include <utility>

namespace brimquill {

void ToastModel::show(Content content) {
    const bool isUp = content_.has_value();
    count_ = isUp ? count_ + 1 : 1;
    content_ = std::move(content);
    Q_EMIT contentChanged();
    if (!isUp) return;
    ++pulse_;
    Q_EMIT pulseChanged();
}

void ToastModel::dismiss() {
    content_.reset();
    setHovered(false);
    Q_EMIT contentChanged();
}

void ToastModel::setHovered(bool hovered) {
    if (std::exchange(hovered_, hovered) != hovered) Q_EMIT hoveredChanged();
}

}  // namespace brimquill

#include "Platform/Headless/HeadlessSyntheticKeys.h"

#include <utility>

namespace brimquill::platform {

std::vector<HeadlessSyntheticKeys::Stroke> HeadlessSyntheticKeys::strokes() const {
    const std::lock_guard lock(mutex_);
    return strokes_;
}

std::vector<HeadlessSyntheticKeys::Posted> HeadlessSyntheticKeys::posted() const {
    std::vector<Posted> posted;
    for (const Stroke& stroke : strokes()) {
        if (const auto* key = std::get_if<Posted>(&stroke)) posted.push_back(*key);
    }
    return posted;
}

std::string HeadlessSyntheticKeys::typed() const {
    std::string typed;
    for (const Stroke& stroke : strokes()) {
        if (const auto* text = std::get_if<std::string>(&stroke)) typed += *text;
    }
    return typed;
}

void HeadlessSyntheticKeys::clear() {
    const std::lock_guard lock(mutex_);
    strokes_.clear();
}

void HeadlessSyntheticKeys::setWorks(bool works) {
    const std::lock_guard lock(mutex_);
    works_ = works;
}

void HeadlessSyntheticKeys::setStrokeHandler(std::function<void(const Stroke&)> handler) {
    const std::lock_guard lock(mutex_);
    handler_ = std::move(handler);
}

bool HeadlessSyntheticKeys::record(const Stroke& stroke) {
    std::function<void(const Stroke&)> handler;
    {
        const std::lock_guard lock(mutex_);
        if (!works_) return false;
        strokes_.push_back(stroke);
        handler = handler_;
    }
    if (handler) handler(stroke);
    return true;
}

bool HeadlessSyntheticKeys::post(int keyCode, Modifiers modifiers) {
    return keyCode != key::other && record(Posted{keyCode, modifiers});
}

bool HeadlessSyntheticKeys::type(const std::string& text) {
    return record(text);
}

}  // namespace brimquill::platform

#pragma once

#include <cstdint>
#include <deque>
#include <mutex>

namespace brimquill::platform {

/// Which of the key presses that come from the synthetic keyboard are this program's own: each one is written down
/// before it is made and struck out when it is seen, in order. Other programs use that keyboard too. Any thread.
class X11InjectedKeys final {
public:
    void expect(std::uint8_t keycode) {
        const std::lock_guard lock(mutex_);
        if (isObserved_) expected_.push_back(keycode);
    }
    /// Whether a press that was seen is the next one expected; those before it were never made.
    bool takeOwn(std::uint8_t keycode) {
        const std::lock_guard lock(mutex_);
        for (std::size_t index = 0; index < expected_.size(); ++index) {
            if (expected_[index] != keycode) continue;
            expected_.erase(expected_.begin(), expected_.begin() + static_cast<std::ptrdiff_t>(index) + 1);
            return true;
        }
        return false;
    }
    void setObserved(bool isObserved) {
        const std::lock_guard lock(mutex_);
        isObserved_ = isObserved;
        expected_.clear();
    }

private:
    std::mutex mutex_;
    std::deque<std::uint8_t> expected_;
    bool isObserved_ = false;
};

}  // namespace brimquill::platform

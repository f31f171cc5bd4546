#pragma once

#include "Platform/SyntheticKeys.h"

#include <functional>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

namespace brimquill::platform {

/// Keeps what was pressed and typed, in order. Any thread.
class HeadlessSyntheticKeys final : public SyntheticKeys {
public:
    struct Posted {
        int keyCode = key::other;
        Modifiers modifiers;
        friend bool operator==(const Posted&, const Posted&) = default;
    };
    using Stroke = std::variant<Posted, std::string>;

    /// Everything, in order: a pressed key, or a typed text.
    std::vector<Stroke> strokes() const;
    /// The pressed keys alone, and all typed text joined.
    std::vector<Posted> posted() const;
    std::string typed() const;
    void clear();
    /// Off: keys cannot be made.
    void setWorks(bool works);
    /// Called at each stroke, where it was made.
    void setStrokeHandler(std::function<void(const Stroke&)> handler);

    bool post(int keyCode, Modifiers modifiers) override;
    bool type(const std::string& text) override;

private:
    bool record(const Stroke& stroke);

    mutable std::mutex mutex_;
    std::vector<Stroke> strokes_;
    std::function<void(const Stroke&)> handler_;
    bool works_ = true;
};

}  // namespace brimquill::platform

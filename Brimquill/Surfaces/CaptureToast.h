#pragma once

#include <optional>
#include <string>

namespace brimquill {

/// Confirms a capture in a corner of the screen. Main thread.
class CaptureToast {
public:
    struct Content {
        std::optional<std::string> imagePath;
        std::string title;
        std::optional<std::string> subtitle;
    };
    enum class Occasion {
        /// Something was captured by itself; shows nothing while the user wants no toasts.
        capture,
        /// The answer to something the user asked for; shows in any case.
        answer,
    };

    virtual ~CaptureToast() = default;
    /// Shows it soon, in place of a toast that is up.
    virtual void show(const Content& content, Occasion occasion = Occasion::capture) = 0;
};

}  // namespace brimquill

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The desktop's dialog for choosing a file to open. Main thread.
class OpenPanel {
public:
    struct Request {
        std::string message;
        /// Without the dot, lower case; empty allows every file.
        std::vector<std::string> allowedExtensions;
        bool allowsDirectories = false;
    };
    virtual ~OpenPanel() = default;
    /// Shows it and returns. `done` gets the path, or nothing when the user cancelled or no dialog can be shown.
    virtual void run(const Request& request, std::function<void(std::optional<std::string>)> done) = 0;
};

}  // namespace brimquill::platform

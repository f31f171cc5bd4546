#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The desktop's dialogs for choosing a file to open and a place to save. Main thread. Each shows its dialog and
/// returns; `done` is called exactly once, later, with nothing when the user cancelled or no dialog can be shown. A
/// dialog that is still open when the services go is never answered.
class OpenPanel {
public:
    struct Request {
        std::string message;
        /// Without the dot, lower case; empty allows every file.
        std::vector<std::string> allowedExtensions;
        /// A directory is chosen instead of a file.
        bool allowsDirectories = false;
    };
    struct SaveRequest {
        std::string message;
        /// The file name to begin with, extension included.
        std::string suggestedName;
        /// Without the dot, lower case; appended to a name that lacks it. Empty: names are taken as they are.
        std::string extension;
        /// A choice shown within the dialog, the first being selected; no choices, nothing shown.
        std::string choiceLabel;
        std::vector<std::string> choices;
    };
    struct SaveAnswer {
        std::string path;
        /// The index of the selected choice.
        std::size_t choice = 0;
    };

    virtual ~OpenPanel() = default;
    /// `done` gets the absolute path of the chosen file.
    virtual void run(const Request& request, std::function<void(std::optional<std::string>)> done) = 0;
    /// The user has agreed to replace a file that exists at the path.
    virtual void runSave(const SaveRequest& request, std::function<void(std::optional<SaveAnswer>)> done) = 0;
};

}  // namespace brimquill::platform

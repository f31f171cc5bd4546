#pragma once

#include "Platform/LoginItem.h"

#include <filesystem>

namespace brimquill::platform {

/// Where the user's desktop looks for what to start, and what to start: this program.
std::filesystem::path autostartDirectory();
std::string programPath();

/// An entry in the user's autostart directory, which every desktop reads.
class DesktopLoginItem final : public LoginItem {
public:
    /// `program` is the absolute path of what to start.
    DesktopLoginItem(const std::filesystem::path& autostartDirectory, std::string program);

    bool isEnabled() const override;
    std::optional<std::string> setEnabled(bool enabled) override;

private:
    std::filesystem::path entry_;
    std::string program_;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/UserDefaults.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace brimquill::platform {

/// One suite as a JSON file of its own, readable by its user alone. What the file holds beside the types known here
/// stays in it. A file that is no JSON object is renamed to `<suite>.damaged-<n>.json`, with a log line. Where the file
/// cannot be written, values last as long as the program, with a log line.
class JsonUserDefaults final : public UserDefaults {
public:
    /// Reads the file, if there is one; creates nothing before the first change.
    JsonUserDefaults(std::filesystem::path directory, const std::string& suite);

    std::optional<Value> object(const std::string& key) const override;
    void set(const std::string& key, const Value& value) override;
    void removeObject(const std::string& key) override;

private:
    /// Tells one version of the file from the next.
    struct Version {
        std::uint64_t inode = 0;
        std::int64_t seconds = 0, nanoseconds = 0, size = -1;
        friend bool operator==(const Version&, const Version&) = default;
    };
    Version versionOnDisk() const;
    void read();
    void readIfReplaced();
    void setAside();
    void write();

    std::filesystem::path directory_, file_;
    std::string suite_;
    nlohmann::json values_ = nlohmann::json::object();
    Version version_;
    bool hasComplained_ = false;
};

/// Where the suites of this user stand: `$XDG_CONFIG_HOME/brimquill`, or `~/.config/brimquill`.
std::filesystem::path userDefaultsDirectory();

}  // namespace brimquill::platform

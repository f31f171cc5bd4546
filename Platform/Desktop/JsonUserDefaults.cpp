#include "Platform/Desktop/JsonUserDefaults.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/PrivateFile.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <limits>
#include <utility>

namespace brimquill::platform {
namespace {

using Json = nlohmann::json;

/// More than this is not a file of preferences.
constexpr std::size_t maximumFileSize = std::size_t{16} << 20;

std::optional<UserDefaults::Value> valueOf(const Json& json) {
    if (json.is_boolean()) return json.get<bool>();
    if (json.is_number_unsigned()) {
        const auto number = json.get<std::uint64_t>();
        if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return std::nullopt;
        return static_cast<std::int64_t>(number);
    }
    if (json.is_number_integer()) return json.get<std::int64_t>();
    if (json.is_number_float()) return json.get<double>();
    if (json.is_string()) return json.get<std::string>();
    if (!json.is_array()) return std::nullopt;
    std::vector<std::string> strings;
    for (const Json& element : json) {
        if (!element.is_string()) return std::nullopt;
        strings.push_back(element.get<std::string>());
    }
    return strings;
}

}  // namespace

JsonUserDefaults::JsonUserDefaults(std::filesystem::path directory, const std::string& suite)
    : directory_(std::move(directory)), file_(directory_ / (suite + ".json")), suite_(suite) {
    read();
}

JsonUserDefaults::Version JsonUserDefaults::versionOnDisk() const {
    struct stat status {};
    if (stat(file_.c_str(), &status) != 0) return {};
    return {status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_size};
}

void JsonUserDefaults::read() {
    version_ = versionOnDisk();
    if (version_ == Version{}) return;
    const auto text = readFile(file_, maximumFileSize);
    Json parsed = text ? Json::parse(*text, nullptr, false) : Json();
    if (parsed.is_object()) {
        values_ = std::move(parsed);
    } else {
        setAside();
    }
}

/// Another process may have changed the file: its changes are kept, ours added to them. One that cannot be read takes
/// nothing from what is in memory.
void JsonUserDefaults::readIfReplaced() {
    const Version current = versionOnDisk();
    if (current != version_ && current != Version{}) read();
}

void JsonUserDefaults::setAside() {
    for (int number = 1; number < 1000; ++number) {
        const auto aside = directory_ / (suite_ + ".damaged-" + std::to_string(number) + ".json");
        // Linking, unlike renaming, never replaces what an earlier accident left there.
        if (link(file_.c_str(), aside.c_str()) != 0) {
            if (errno == EEXIST) continue;
            break;
        }
        unlink(file_.c_str());
        version_ = {};
        log::write("preferences cannot be read; set aside as " + aside.string());
        return;
    }
    log::write("preferences cannot be read nor set aside: " + file_.string());
}

std::optional<UserDefaults::Value> JsonUserDefaults::object(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : valueOf(*found);
}

void JsonUserDefaults::set(const std::string& key, const Value& value) {
    readIfReplaced();
    values_[key] = std::visit([](const auto& content) { return Json(content); }, value);
    write();
}

void JsonUserDefaults::removeObject(const std::string& key) {
    readIfReplaced();
    if (values_.erase(key) > 0) write();
}

void JsonUserDefaults::write() {
    const std::string text = values_.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    if (makePrivateDirectory(directory_) && replaceFile(file_, text)) {
        version_ = versionOnDisk();
        hasComplained_ = false;
    } else if (!std::exchange(hasComplained_, true)) {
        log::write("preferences cannot be written: " + file_.string());
    }
}

std::filesystem::path userDefaultsDirectory() {
    // A relative path in the variable is to be ignored.
    if (const char* configured = std::getenv("XDG_CONFIG_HOME"); configured != nullptr && configured[0] == '/') {
        return std::filesystem::path(configured) / "brimquill";
    }
    const char* home = std::getenv("HOME");
    if (home == nullptr || home[0] == '\0') {
        const passwd* user = getpwuid(getuid());
        home = user == nullptr ? "/" : user->pw_dir;
    }
    return std::filesystem::path(home) / ".config" / "brimquill";
}

}  // namespace brimquill::platform

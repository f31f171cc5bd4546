#include "Platform/Desktop/DesktopFiles.h"

#include "BrimquillCore/Foundation/Text.h"
#include "Platform/Desktop/PrivateFile.h"
#include "Platform/Desktop/Uptime.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <utility>

namespace brimquill::platform {
namespace {

constexpr std::size_t maximumFileSize = std::size_t{1} << 20;
constexpr double keptForSeconds = 300;

/// In the order in which they take precedence.
std::vector<std::filesystem::path> applicationDirectories() {
    const auto environment = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value == nullptr ? "" : value);
    };
    std::string home = environment("XDG_DATA_HOME");
    if (home.empty()) home = environment("HOME") + "/.local/share";
    std::string shared = environment("XDG_DATA_DIRS");
    if (shared.empty()) shared = "/usr/local/share:/usr/share";
    std::vector<std::filesystem::path> directories;
    for (const std::string& directory : text::split(home.append(":").append(shared), ':')) {
        directories.emplace_back(std::filesystem::path(directory) / "applications");
    }
    return directories;
}

/// The first word of a command line, without its directory.
std::string executableOf(const std::string& command) {
    return text::lastPathComponent(command.substr(0, command.find(' ')));
}

DesktopFiles::Entry parse(std::string id, const std::string& content) {
    DesktopFiles::Entry entry;
    entry.id = std::move(id);
    bool isMainGroup = false;
    for (const std::string& line : text::split(content, '\n')) {
        if (line.starts_with('[')) isMainGroup = line.starts_with("[Desktop Entry]");
        const std::size_t equals = line.find('=');
        if (!isMainGroup || equals == std::string::npos) continue;
        const std::string key = text::trimmedBlanks(line.substr(0, equals));
        const std::string value = text::validUtf8(text::trimmed(line.substr(equals + 1)));
        if (key == "Name") entry.name = value;
        if (key == "Icon") entry.icon = value;
        if (key == "StartupWMClass") entry.windowClass = text::lowercased(value);
        if (key == "Exec") entry.executable = executableOf(value);
    }
    return entry;
}

/// A file's id is its path below the directory, with dashes for slashes.
std::string idOf(const std::filesystem::path& file, const std::filesystem::path& directory) {
    std::string id = file.lexically_relative(directory).replace_extension().string();
    std::replace(id.begin(), id.end(), '/', '-');
    return id;
}

}  // namespace

const DesktopFiles::Index& DesktopFiles::index() {
    if (readAt_ >= 0 && uptime() - readAt_ < keptForSeconds) return index_;
    readAt_ = uptime();
    index_.clear();
    for (const auto& directory : applicationDirectories()) {
        std::error_code error;
        auto files = std::filesystem::recursive_directory_iterator(
            directory, std::filesystem::directory_options::skip_permission_denied, error);
        for (; !error && files != std::filesystem::end(files); files.increment(error)) {
            if (files->path().extension() != ".desktop") continue;
            std::string id = idOf(files->path(), directory);
            if (index_.contains(id)) continue;
            const auto content = readFile(files->path(), maximumFileSize);
            if (content) index_.emplace(id, parse(id, *content));
        }
    }
    return index_;
}

std::optional<DesktopFiles::Entry> DesktopFiles::byId(const std::string& id) {
    const std::lock_guard lock(mutex_);
    const auto found = index().find(id);
    if (found == index_.end()) return std::nullopt;
    return found->second;
}

std::optional<DesktopFiles::Entry> DesktopFiles::find(const std::string& windowClass, const std::string& instance,
                                                      const std::string& executable) {
    const std::lock_guard lock(mutex_);
    const std::string wantedClass = text::lowercased(windowClass), wantedInstance = text::lowercased(instance);
    const auto isWanted = [&](const std::string& name) {
        return !name.empty() && (name == wantedClass || name == wantedInstance);
    };
    const std::function<bool(const Entry&)> tests[] = {
        [&](const Entry& entry) { return isWanted(entry.windowClass); },
        [&](const Entry& entry) { return isWanted(text::lowercased(entry.id)); },
        [&](const Entry& entry) { return isWanted(text::lowercased(entry.id.substr(entry.id.rfind('.') + 1))); },
        [&](const Entry& entry) { return !executable.empty() && entry.executable == executable; },
    };
    for (const auto& test : tests) {
        for (const auto& [id, entry] : index()) {
            if (test(entry)) return entry;
        }
    }
    return std::nullopt;
}

}  // namespace brimquill::platform

#include "Platform/Desktop/DesktopLoginItem.h"

#include "Platform/Desktop/PrivateFile.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <system_error>
#include <utility>

namespace brimquill::platform {
namespace {

/// The argument of an Exec line: in quotes, with what is special within them escaped.
std::string execArgument(const std::string& argument) {
    std::string result = "\"";
    for (const char c : argument) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') result += '\\';
        if (c == '%') result += '%';
        result += c;
    }
    return result + "\"";
}

}  // namespace

std::filesystem::path autostartDirectory() {
    return std::filesystem::path(
               QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString()) /
           "autostart";
}

std::string programPath() {
    return QCoreApplication::applicationFilePath().toStdString();
}

DesktopLoginItem::DesktopLoginItem(const std::filesystem::path& autostartDirectory, std::string program)
    : entry_(autostartDirectory / "brimquill.desktop"), program_(std::move(program)) {}

bool DesktopLoginItem::isEnabled() const {
    constexpr std::size_t longest = 1 << 16;
    const auto entry = readFile(entry_, longest);
    // A desktop switches an entry off by a line of its own in it.
    return entry && entry->find("\nHidden=true") == std::string::npos &&
           entry->find("\nX-GNOME-Autostart-enabled=false") == std::string::npos;
}

std::optional<std::string> DesktopLoginItem::setEnabled(bool enabled) {
    std::error_code error;
    if (!enabled) {
        std::filesystem::remove(entry_, error);
        return error ? std::optional(error.message()) : std::nullopt;
    }
    const auto entry =
        "[Desktop Entry]\nType=Application\nName=Brimquill\nComment=Clipboard manager\nExec=" + execArgument(program_) +
        "\nIcon=edit-paste\nTerminal=false\n";
    std::filesystem::create_directories(entry_.parent_path(), error);
    if (!replaceFile(entry_, entry)) return "the entry " + entry_.string() + " cannot be written";
    return std::nullopt;
}

}  // namespace brimquill::platform

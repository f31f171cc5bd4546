#include "Platform/X11/X11Applications.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>

namespace brimquill::platform {
namespace {

/// The id of terminals that have none of their own.
constexpr std::string_view terminal = "com.apple.Terminal";

constexpr X11Application applications[] = {
    {"xterm", terminal, PasteKeys::shiftInsert},
    {"uxterm", terminal, PasteKeys::shiftInsert},
    {"rxvt", terminal, PasteKeys::shiftInsert},
    {"urxvt", terminal, PasteKeys::shiftInsert},
    {"gnome-terminal", terminal, PasteKeys::controlShiftV},
    {"gnome-terminal-server", terminal, PasteKeys::controlShiftV},
    {"org.gnome.terminal", terminal, PasteKeys::controlShiftV},
    {"kgx", terminal, PasteKeys::controlShiftV},
    {"org.gnome.console", terminal, PasteKeys::controlShiftV},
    {"ptyxis", terminal, PasteKeys::controlShiftV},
    {"org.gnome.ptyxis", terminal, PasteKeys::controlShiftV},
    {"konsole", terminal, PasteKeys::controlShiftV},
    {"org.kde.konsole", terminal, PasteKeys::controlShiftV},
    {"yakuake", terminal, PasteKeys::controlShiftV},
    {"xfce4-terminal", terminal, PasteKeys::controlShiftV},
    {"mate-terminal", terminal, PasteKeys::controlShiftV},
    {"lxterminal", terminal, PasteKeys::controlShiftV},
    {"qterminal", terminal, PasteKeys::controlShiftV},
    {"terminator", terminal, PasteKeys::controlShiftV},
    {"tilix", terminal, PasteKeys::controlShiftV},
    {"terminology", terminal, PasteKeys::controlShiftV},
    {"guake", terminal, PasteKeys::controlShiftV},
    {"tilda", terminal, PasteKeys::controlShiftV},
    {"sakura", terminal, PasteKeys::controlShiftV},
    {"deepin-terminal", terminal, PasteKeys::controlShiftV},
    {"cool-retro-term", terminal, PasteKeys::controlShiftV},
    {"st-256color", terminal, PasteKeys::controlShiftV},
    {"st", terminal, PasteKeys::controlShiftV},
    {"dev.warp.warp", "dev.warp.Warp", PasteKeys::controlShiftV},
    {"alacritty", "io.alacritty", PasteKeys::controlShiftV},
    {"kitty", "net.kovidgoyal.kitty", PasteKeys::controlShiftV},
    {"org.wezfurlong.wezterm", "com.github.wez.wezterm", PasteKeys::controlShiftV},
    {"wezterm", "com.github.wez.wezterm", PasteKeys::controlShiftV},
    {"com.mitchellh.ghostty", "com.mitchellh.ghostty", PasteKeys::controlShiftV},
    {"ghostty", "com.mitchellh.ghostty", PasteKeys::controlShiftV},
    {"1password", "com.1password.1password"},
    {"bitwarden", "com.bitwarden.desktop"},
    {"seahorse", "com.apple.keychainaccess"},
    {"org.gnome.seahorse.application", "com.apple.keychainaccess"},
    {"keepassxc", "com.apple.Passwords"},
    {"org.keepassxc.keepassxc", "com.apple.Passwords"},
    {"org.gnome.world.secrets", "com.apple.Passwords"},
};

}  // namespace

const X11Application* knownApplication(const std::string& windowClass) {
    const std::string lower = text::lowercased(windowClass);
    const auto* found = std::find_if(std::begin(applications), std::end(applications),
                                     [&](const X11Application& entry) { return entry.windowClass == lower; });
    return found == std::end(applications) ? nullptr : found;
}

}  // namespace brimquill::platform

#include "Brimquill/Paste/HotKeyCenter.h"

#include "BrimquillCore/Foundation/Log.h"

#include <utility>

namespace brimquill {

void HotKeyCenter::registerHotKey(int keyCode, platform::Modifiers modifiers, const std::string& label,
                                  std::function<void()> handler) {
    platform::HotKeys::Registration registration = hotKeys_.registerHotKey(keyCode, modifiers, std::move(handler));
    registrations_.push_back(std::move(registration.token));
    if (registration.status == platform::HotKeys::noError) return log::write("hotkey " + label + " registered");
    const char* reason =
        registration.status == platform::HotKeys::alreadyTaken ? " (already taken by another app)" : "";
    log::write("hotkey " + label + " FAILED to register, OSStatus " + std::to_string(registration.status) + reason);
}

}  // namespace brimquill

#include "Brimquill/Capture/SecureInputMonitor.h"

#include "BrimquillCore/Foundation/Log.h"

#include <utility>

namespace brimquill {

void SecureInputMonitor::start() {
    constexpr double seconds = 2.0;
    check();
    observation_ = secureInput_.observe([this] { check(); });
    timer_ = runLoop_.every(seconds, [this] { check(); });
}

void SecureInputMonitor::check() {
    const bool isActive = secureInput_.isEnabled();
    auto name = isActive ? secureInput_.holderName() : std::nullopt;
    if (isActive == secureInputActive_ && name == culpritName_) return;
    secureInputActive_ = isActive;
    culpritName_ = std::move(name);
    log::write(isActive ? "secure input held by " + culpritName_.value_or("an unknown program")
                        : "secure input released");
    Q_EMIT changed();
}

}  // namespace brimquill

#pragma once

#include "Platform/RunLoop.h"
#include "Platform/SyntheticKeys.h"
#include "Platform/X11/X11KeyTypist.h"

#include <functional>
#include <memory>
#include <thread>

namespace brimquill::platform {

/// Keys by XTEST, on a connection of its own. A modifier that the user still holds (from a hot key, say) would change
/// what arrives: it is waited for up to 0.3 seconds, then let go in the user's place. On the main thread the wait is a
/// timer and the key is pressed later; elsewhere the call blocks.
class X11SyntheticKeys final : public SyntheticKeys {
public:
    /// `offerPrimary` makes the pasteboard's text the primary selection too, for what knows no other paste.
    X11SyntheticKeys(X11InjectedKeys& injected, RunLoop& runLoop, std::function<void()> offerPrimary);
    ~X11SyntheticKeys() override;

    /// Whether the server has XTEST.
    bool isAvailable() const;
    bool post(int keyCode, Modifiers modifiers) override;
    bool type(const std::string& text) override;

private:
    struct Shared;
    static void pump(const std::shared_ptr<Shared>& shared, double waitedSeconds);
    static void clearSparesLater(const std::shared_ptr<Shared>& shared);

    std::shared_ptr<Shared> shared_;
    std::thread::id mainThread_ = std::this_thread::get_id();
};

}  // namespace brimquill::platform

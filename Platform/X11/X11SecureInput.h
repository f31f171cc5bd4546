#pragma once

#include "Platform/HandlerList.h"
#include "Platform/RunLoop.h"
#include "Platform/SecureInput.h"
#include "Platform/Workspace.h"
#include "Platform/X11/X11Connection.h"

#include <functional>
#include <utility>

namespace brimquill::platform {

/// Finds out whether another client holds the keyboard by trying to take it for an instant, with the server stopped
/// meanwhile, so that no key is lost. A hold counts when it is still there a moment after it was first seen: drags and
/// the keys of a window manager come and go, and a menu that is open is known by its window and by holding the pointer
/// too. The protocol does not name
/// the holder; it is taken to be the program in front. Main thread.
class X11SecureInput final : public SecureInput {
public:
    /// `ownsKeyboard` tells whether this program holds the keyboard, or a tool that it started.
    X11SecureInput(X11Connection& connection, Workspace& workspace, RunLoop& runLoop,
                   std::function<bool()> ownsKeyboard);
    ~X11SecureInput() override;

    bool isEnabled() override;
    Token observe(std::function<void()> changed) override { return observers_.add(std::move(changed)); }
    std::optional<std::string> holderName() override;

private:
    /// Whether another client holds it now, for whatever reason but a menu.
    bool isHeld();
    void confirm();
    bool isKeyboardHeld();
    bool isPointerHeld();
    bool isMenuOpen();
    bool isMenu(xcb_window_t window);

    X11Connection& connection_;
    Workspace& workspace_;
    RunLoop& runLoop_;
    std::function<bool()> ownsKeyboard_;
    /// Nobody sees it; a grab needs a window that is mapped.
    xcb_window_t probe_ = XCB_NONE;
    bool isEnabled_ = false;
    /// Held while a hold that was seen has yet to last.
    Token confirmation_;
    HandlerList<std::function<void()>> observers_;
};

}  // namespace brimquill::platform

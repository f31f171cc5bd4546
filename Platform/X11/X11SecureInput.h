#pragma once

#include "Platform/SecureInput.h"
#include "Platform/Workspace.h"
#include "Platform/X11/X11Connection.h"

#include <functional>

namespace brimquill::platform {

/// Finds out whether another client holds the keyboard by trying to take it for an instant, with the server stopped
/// meanwhile, so that no key is lost. A hold counts when it is there twice in a row: menus and drags come and go, and
/// one that is open is known by its window. The protocol does not name the holder; it is taken to be the program in
/// front. Main thread.
class X11SecureInput final : public SecureInput {
public:
    /// `ownsKeyboard` tells whether it is a panel of this program that holds the keyboard.
    X11SecureInput(X11Connection& connection, Workspace& workspace, std::function<bool()> ownsKeyboard);
    ~X11SecureInput() override;

    bool isEnabled() override;
    std::optional<std::string> holderName() override;

private:
    bool isKeyboardHeld();
    bool isMenuOpen();
    bool isMenu(xcb_window_t window);

    X11Connection& connection_;
    Workspace& workspace_;
    std::function<bool()> ownsKeyboard_;
    /// Nobody sees it; a grab needs a window that is mapped.
    xcb_window_t probe_ = XCB_NONE;
    bool wasHeld_ = false, isEnabled_ = false;
};

}  // namespace brimquill::platform

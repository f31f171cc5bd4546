#pragma once

#include "Platform/Panels.h"
#include "Platform/RunLoop.h"
#include "Platform/X11/X11Connection.h"

#include <memory>
#include <vector>

namespace brimquill::platform {

/// Panels past the window manager. The keyboard is grabbed rather than the focus taken: the server tells our window
/// that it has the focus, while the active window stays what it was and has its keys back the moment the grab ends.
class X11Panels final : public Panels {
public:
    /// `interface` is the user interface's connection.
    X11Panels(X11Connection& connection, xcb_connection_t* interface, RunLoop& runLoop);
    ~X11Panels() override;

    /// Whether a panel holds the keyboard.
    bool holdsKeyboard() const;
    bool isPanel(const QWindow* window) const;
    /// Whether a visible panel that takes clicks lies there.
    bool takesClick(Point point) const;

    std::unique_ptr<Panel> makePanel(QWindow& window, PanelRole role) override;
    bool isTranslucencyAvailable() override;

private:
    class X11Panel;
    struct State;
    X11Connection& connection_;
    std::shared_ptr<State> state_;
};

}  // namespace brimquill::platform

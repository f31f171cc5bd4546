#pragma once

#include "Platform/Types.h"

#include <memory>

class QWindow;  // a handle on this floor, nothing more

namespace brimquill::platform {

enum class PanelRole {
    /// Takes the keyboard while it shows.
    keyable,
    /// Takes clicks, never keys.
    passive,
    /// Takes neither: clicks go to what lies below.
    display,
};

/// A floating window that never activates this program: the application below stays the active one. A click on a
/// keyable panel gives it the keyboard, for itself: the other panels wait for a click of their own. Main thread.
class Panel {
public:
    virtual ~Panel() = default;
    /// Shows it at `frame`, above everything. A keyable panel takes the keyboard; while another program holds it, it
    /// goes on asking for a short while. `false`: this system cannot show it.
    virtual bool show(Rect frame) = 0;
    /// Hides it; the keyboard is back with the application below when this returns.
    virtual void close() = 0;
    virtual bool isVisible() const = 0;
    /// Whether keys come to it now.
    virtual bool isKey() const = 0;
    /// Leaves the keyboard to the panel shown before it or else to the application below, until it is clicked or shown
    /// anew.
    virtual void resignKey() = 0;
    /// Moves or resizes it while it shows.
    virtual void setFrame(Rect frame) = 0;
    /// So many points from the edges of its frame inwards clicks go to what lies below, as on a shadow. 0 at first; in
    /// force from the next `show` or `setFrame`.
    virtual void setClickMargin(double points) = 0;
};

class Panels {
public:
    virtual ~Panels() = default;
    /// Makes `window` a panel, which must not have been shown yet and must outlive it. What it looks like, its shape
    /// included, remains its owner's business: where it cannot be translucent, it has to be cut out by a mask.
    virtual std::unique_ptr<Panel> makePanel(QWindow& window, PanelRole role) = 0;
    /// Whether windows may be translucent: somebody composes the screen.
    virtual bool isTranslucencyAvailable() = 0;
};

}  // namespace brimquill::platform

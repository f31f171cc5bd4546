#pragma once

#include "Platform/Desktop/LocalMonitors.h"
#include "Platform/X11/X11Keymap.h"
#include "Platform/X11/X11RawInput.h"

#include <xkbcommon/xkbcommon-compose.h>

#include <set>

namespace brimquill::platform {

/// Key and mouse events of the whole display. Whether keys go to this program is told by `ownsKeyboard`, whether a
/// point lies in one of its windows by `ownsPoint`; such events are no global ones.
class X11EventMonitors final : public EventMonitors {
public:
    struct Ownership {
        std::function<bool()> ownsKeyboard;
        std::function<bool(Point)> ownsPoint;
        std::function<Point()> mouseLocation;
    };
    X11EventMonitors(X11Connection& connection, X11RawInput& input, Ownership ownership);

    Token addGlobalMonitor(EventMask mask, std::function<void(const Event&)> handler) override;
    Token addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) override;

private:
    void handle(const X11RawInput::Input& input);
    void keyPressed(const X11RawInput::Input& input);
    void modifiersChanged(const X11RawInput::Input& input, bool isDown);
    void clicked(const X11RawInput::Input& input);
    void compose(Event& event, xkb_keysym_t keysym);
    Event translate(const QKeyEvent& event);
    const X11Keymap& keymap();
    std::uint16_t heldMask();

    struct UnrefCompose {
        void operator()(xkb_compose_state* state) const { xkb_compose_state_unref(state); }
    };
    X11Connection& connection_;
    X11RawInput& input_;
    Ownership ownership_;
    std::unique_ptr<X11Keymap> keymap_;
    std::unique_ptr<xkb_compose_state, UnrefCompose> compose_;
    std::set<std::uint8_t> heldModifiers_;
    HandlerList<std::function<void(const Event&)>> global_;
    LocalMonitors local_;
    Token inputToken_, mappingToken_;
};

}  // namespace brimquill::platform

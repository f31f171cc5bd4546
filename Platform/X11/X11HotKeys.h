#pragma once

#include "Platform/HotKeys.h"
#include "Platform/RunLoop.h"
#include "Platform/X11/X11RawInput.h"

#include <QAbstractNativeEventFilter>

#include <xkbcommon/xkbcommon.h>

#include <deque>
#include <map>
#include <set>

namespace brimquill::platform {

/// Passive key grabs on the user interface's own connection, so that they work also while one of our panels holds the
/// keyboard. They are taken anew when the keyboard's mapping changes.
class X11HotKeys final : public HotKeys, private QAbstractNativeEventFilter {
public:
    /// `interface` is the user interface's.
    X11HotKeys(xcb_connection_t* interface, X11Connection& connection, X11RawInput& input, RunLoop& runLoop);
    ~X11HotKeys() override;

    Registration registerHotKey(int keyCode, Modifiers modifiers, std::function<void()> handler) override;

private:
    class GrabToken;
    struct Grab {
        int keyCode = key::other;
        std::uint16_t mask = 0;
        std::set<xkb_keycode_t> keycodes;
        std::function<void()> handler;
    };
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    bool keyPressed(const xcb_key_press_event_t& press);
    bool grabKeys(const Grab& grab);
    void ungrabKeys(const Grab& grab);
    void regrab();
    bool isRepeat(std::uint8_t keycode, std::uint32_t before, std::uint32_t now) const;

    xcb_connection_t* interface_;
    X11Connection& connection_;
    X11RawInput& input_;
    RunLoop& runLoop_;
    std::map<int, Grab> grabs_;
    int nextId_ = 1;
    /// When each key last went down for a hot key, repeats included, and when it was really pressed the last few times,
    /// in the server's time.
    std::map<std::uint8_t, std::uint32_t> heard_;
    std::map<std::uint8_t, std::deque<std::uint32_t>> pressed_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Token inputToken_, mappingToken_, regrabTimer_;
};

}  // namespace brimquill::platform

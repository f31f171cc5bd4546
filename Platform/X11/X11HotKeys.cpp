#include "Platform/X11/X11HotKeys.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/X11/X11Keymap.h"
#include "Platform/X11/X11Modifiers.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <utility>

namespace brimquill::platform {
namespace {

/// A grab holds for one exact state, and the locks are part of it.
constexpr std::array<std::uint16_t, 4> lockMasks = {
    0, x11_modifiers::lock, x11_modifiers::numLock,
    static_cast<std::uint16_t>(x11_modifiers::lock | x11_modifiers::numLock)};

std::set<xkb_keycode_t> keycodesOf(X11Connection& connection, int keyCode) {
    const auto found = X11Keymap(connection.xcb()).keycodes(keyCode);
    return {found.begin(), found.end()};
}

}  // namespace

class X11HotKeys::GrabToken final : public Held {
public:
    GrabToken(X11HotKeys& keys, int id) : keys_(keys), alive_(keys.alive_), id_(id) {}
    ~GrabToken() override {
        if (alive_.expired()) return;
        const auto found = keys_.grabs_.find(id_);
        keys_.ungrabKeys(found->second);
        keys_.grabs_.erase(found);
    }

private:
    X11HotKeys& keys_;
    std::weak_ptr<bool> alive_;
    int id_;
};

X11HotKeys::X11HotKeys(xcb_connection_t* interface, X11Connection& connection, X11RawInput& input, RunLoop& runLoop)
    : interface_(interface), connection_(connection), input_(input), runLoop_(runLoop) {
    QCoreApplication::instance()->installNativeEventFilter(this);
    inputToken_ = input_.observe([this](const X11RawInput::Input& seen) {
        if (seen.kind != X11RawInput::Input::Kind::keyPress) return;
        constexpr std::size_t kept = 16;
        auto& times = pressed_[seen.detail];
        times.push_back(seen.serverTime);
        if (times.size() > kept) times.pop_front();
    });
    mappingToken_ = input_.observeMapping([this] {
        constexpr double untilBurstIsOver = 0.1;
        regrabTimer_ = runLoop_.after(untilBurstIsOver, [this] { regrab(); });
    });
}

X11HotKeys::~X11HotKeys() {
    for (const auto& [id, grab] : grabs_)
        ungrabKeys(grab);
    if (QCoreApplication::instance() != nullptr) QCoreApplication::instance()->removeNativeEventFilter(this);
}

HotKeys::Registration X11HotKeys::registerHotKey(int keyCode, Modifiers modifiers, std::function<void()> handler) {
    Grab grab{keyCode, x11_modifiers::hotKeyMask(modifiers), keycodesOf(connection_, keyCode), std::move(handler)};
    if (grab.keycodes.empty()) return {unavailable, nullptr};
    // The server lets one client grab the same keys twice; the second would never hear of them.
    const bool isOurs = std::any_of(grabs_.begin(), grabs_.end(), [&](const auto& entry) {
        return entry.second.keyCode == keyCode && entry.second.mask == grab.mask;
    });
    if (isOurs || !grabKeys(grab)) return {alreadyTaken, nullptr};
    const int id = nextId_++;
    grabs_.emplace(id, std::move(grab));
    return {noError, std::make_unique<GrabToken>(*this, id)};
}

bool X11HotKeys::grabKeys(const Grab& grab) {
    std::vector<xcb_void_cookie_t> cookies;
    for (const xkb_keycode_t keycode : grab.keycodes) {
        for (const std::uint16_t locks : lockMasks) {
            cookies.push_back(xcb_grab_key_checked(interface_, 1, connection_.root(), grab.mask | locks,
                                                   static_cast<xcb_keycode_t>(keycode), XCB_GRAB_MODE_ASYNC,
                                                   XCB_GRAB_MODE_ASYNC));
        }
    }
    bool isFree = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(interface_, cookie));
        isFree = isFree && !error;
    }
    if (!isFree) ungrabKeys(grab);
    return isFree;
}

void X11HotKeys::ungrabKeys(const Grab& grab) {
    for (const xkb_keycode_t keycode : grab.keycodes) {
        for (const std::uint16_t locks : lockMasks) {
            xcb_ungrab_key(interface_, static_cast<xcb_keycode_t>(keycode), connection_.root(), grab.mask | locks);
        }
    }
    xcb_flush(interface_);
}

/// A burst of changes that leaves our keys where they were, such as typing a text beyond the layout makes, costs
/// nothing.
void X11HotKeys::regrab() {
    std::vector<Grab*> moved;
    for (auto& [id, grab] : grabs_) {
        auto keycodes = keycodesOf(connection_, grab.keyCode);
        if (keycodes == grab.keycodes || keycodes.empty()) continue;
        ungrabKeys(grab);
        grab.keycodes = std::move(keycodes);
        moved.push_back(&grab);
    }
    // All are let go before the first is taken anew: keys may have changed places.
    for (Grab* grab : moved) {
        if (grabKeys(*grab)) continue;
        log::write("a hot key is held by another program since the keyboard's mapping changed");
        grab->keycodes.clear();  // so that the next change tries again
    }
}

bool X11HotKeys::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS) return false;
    return keyPressed(*reinterpret_cast<const xcb_key_press_event_t*>(event));
}

/// The server makes the repeats of a key that is held, so the raw input has none of them: a press that it has, of the
/// same moment, is a real one, however late it is heard of here. Without raw input a repeat is told by its haste.
bool X11HotKeys::isRepeat(std::uint8_t keycode, std::uint32_t before, std::uint32_t now) const {
    constexpr std::uint32_t longestRepeat = 700;
    if (before == 0) return false;
    if (!input_.isAvailable()) return now - before < longestRepeat;
    const auto pressed = pressed_.find(keycode);
    return pressed == pressed_.end() ||
           std::find(pressed->second.begin(), pressed->second.end(), now) == pressed->second.end();
}

/// The window is not compared: while one of our panels holds the keyboard, the same press goes to the panel.
bool X11HotKeys::keyPressed(const xcb_key_press_event_t& press) {
    const std::uint16_t mask = press.state & x11_modifiers::compared;
    const auto found = std::find_if(grabs_.begin(), grabs_.end(), [&](const auto& entry) {
        return entry.second.mask == mask && entry.second.keycodes.count(press.detail) > 0;
    });
    if (found == grabs_.end()) return false;
    input_.catchUp();
    const auto before = std::exchange(heard_[press.detail], press.time);
    if (!isRepeat(press.detail, before, press.time)) {
        runLoop_.async([handler = found->second.handler] { handler(); });
    }
    return true;
}

}  // namespace brimquill::platform

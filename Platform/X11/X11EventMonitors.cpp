#include "Platform/X11/X11EventMonitors.h"

#include "Platform/X11/X11Modifiers.h"

#include <QKeyEvent>

#include <array>
#include <clocale>
#include <cstdlib>
#include <utility>

namespace brimquill::platform {
namespace {

std::string composeLocale() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const char* value = std::getenv(name); value != nullptr && value[0] != '\0') return value;
    }
    return "C";
}

}  // namespace

X11EventMonitors::X11EventMonitors(X11Connection& connection, X11RawInput& input, Ownership ownership)
    : connection_(connection),
      input_(input),
      ownership_(std::move(ownership)),
      local_([this](const QKeyEvent& e) { return translate(e); }) {
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             &xkb_context_unref);
    if (context) {
        xkb_compose_table* table =
            xkb_compose_table_new_from_locale(context.get(), composeLocale().c_str(), XKB_COMPOSE_COMPILE_NO_FLAGS);
        if (table != nullptr) compose_.reset(xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS));
        xkb_compose_table_unref(table);
    }
    mappingToken_ = input_.observeMapping([this] { keymap_.reset(); });
    inputToken_ = input_.observe([this](const X11RawInput::Input& seen) { handle(seen); });
}

Token X11EventMonitors::addGlobalMonitor(EventMask mask, std::function<void(const Event&)> handler) {
    if (!input_.isAvailable()) return nullptr;
    return global_.add([mask, handler = std::move(handler)](const Event& event) {
        if (contains(mask, maskOf(event.type))) handler(event);
    });
}

Token X11EventMonitors::addLocalMonitor(EventMask mask, std::function<bool(const Event&)> handler) {
    return local_.add(mask, std::move(handler));
}

/// Taken anew when it is next needed: a burst of changes costs one reading.
const X11Keymap& X11EventMonitors::keymap() {
    if (!keymap_) keymap_ = std::make_unique<X11Keymap>(connection_.xcb());
    return *keymap_;
}

std::uint16_t X11EventMonitors::heldMask() {
    std::uint16_t mask = 0;
    for (const std::uint8_t keycode : heldModifiers_) {
        mask |= x11_modifiers::maskOfModifierKey(keymap().plainKeysym(keycode, 0));
    }
    return mask;
}

void X11EventMonitors::handle(const X11RawInput::Input& input) {
    using Kind = X11RawInput::Input::Kind;
    if (input.kind == Kind::buttonPress) {
        clicked(input);
        return;
    }
    const bool isDown = input.kind == Kind::keyPress;
    if (x11_modifiers::maskOfModifierKey(keymap().plainKeysym(input.detail, 0)) != 0) {
        modifiersChanged(input, isDown);
    } else if (isDown) {
        keyPressed(input);
    }
}

void X11EventMonitors::modifiersChanged(const X11RawInput::Input& input, bool isDown) {
    const std::uint16_t before = heldMask();
    if (isDown) {
        heldModifiers_.insert(input.detail);
    } else {
        heldModifiers_.erase(input.detail);
    }
    if (heldMask() == before || ownership_.ownsKeyboard()) return;
    Event event;
    event.type = EventType::flagsChanged;
    event.modifiers = x11_modifiers::seen(heldMask());
    event.uptime = input.uptime;
    global_.callAll(event);
}

void X11EventMonitors::keyPressed(const X11RawInput::Input& input) {
    if (global_.isEmpty() || ownership_.ownsKeyboard()) return;
    Event event;
    event.uptime = input.uptime;
    const std::uint16_t mask = heldMask() | input_.lockedMask();
    keymap().describe(event, input.detail, mask, input_.group());
    const xkb_keysym_t keysym = keymap().keysym(input.detail, mask, input_.group());
    // Control+Insert is the older spelling of a copy.
    if (keysym == XKB_KEY_Insert && (heldMask() & x11_modifiers::control) != 0 && !event.modifiers.shift) {
        event.keyCode = key::c;
        event.charactersIgnoringModifiers = "c";
    }
    compose(event, keysym);
    global_.callAll(event);
}

void X11EventMonitors::compose(Event& event, xkb_keysym_t keysym) {
    if (!compose_ || xkb_compose_state_feed(compose_.get(), keysym) == XKB_COMPOSE_FEED_IGNORED) return;
    switch (xkb_compose_state_get_status(compose_.get())) {
        case XKB_COMPOSE_COMPOSING:
            event.characters.clear();
            break;
        case XKB_COMPOSE_COMPOSED: {
            std::array<char, 64> text{};
            xkb_compose_state_get_utf8(compose_.get(), text.data(), text.size());
            event.characters = text.data();
            xkb_compose_state_reset(compose_.get());
            break;
        }
        case XKB_COMPOSE_CANCELLED:
            event.characters.clear();
            xkb_compose_state_reset(compose_.get());
            break;
        case XKB_COMPOSE_NOTHING:
            break;
    }
}

void X11EventMonitors::clicked(const X11RawInput::Input& input) {
    constexpr std::uint8_t left = 1, middle = 2, right = 3;
    if (input.detail != left && input.detail != middle && input.detail != right) return;  // the wheel
    Event event;
    event.type = EventType::mouseDown;
    event.modifiers = x11_modifiers::seen(heldMask());
    event.location = ownership_.mouseLocation();
    event.uptime = input.uptime;
    if (!ownership_.ownsPoint(event.location)) global_.callAll(event);
}

Event X11EventMonitors::translate(const QKeyEvent& pressed) {
    Event event = eventFromQt(pressed);
    // Keys that come from no keyboard have no number.
    if (pressed.nativeScanCode() == 0 || !keymap().isUsable()) return event;
    const auto state = pressed.nativeModifiers();
    constexpr unsigned groupShift = 13, groupMask = 3;
    const std::string composed = event.characters;  // by the input method
    keymap().describe(event, pressed.nativeScanCode(), static_cast<std::uint16_t>(state & 0xff),
                      (state >> groupShift) & groupMask);
    event.characters = composed;
    return event;
}

}  // namespace brimquill::platform

#include "Platform/X11/X11SyntheticKeys.h"

#include "Platform/X11/X11Applications.h"
#include "Platform/X11/X11Frontmost.h"
#include "Platform/X11/X11Modifiers.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <utility>

namespace brimquill::platform {
namespace {

constexpr double longestWait = 0.3, pollInterval = 0.01;
/// How long a paste waits for the user to let go of every key: while the key of a hot key is down, the server gives all
/// keys to us, and the paste would go nowhere.
constexpr double longestPasteWait = 5;

struct Stroke {
    int keyCode = key::other;
    Modifiers modifiers;
    bool isPaste() const { return keyCode == key::v && modifiers == Modifiers{true, false, false, false}; }
};

/// What is pressed for a stroke, by symbols.
struct Chord {
    xcb_keysym_t keysym = XKB_KEY_NoSymbol;
    std::vector<xcb_keysym_t> modifiers;
    bool pastesPrimary = false;
};

PasteKeys pasteKeysOf(const std::optional<X11Frontmost>& front) {
    if (!front) return PasteKeys::controlV;
    const X11Application* known = knownApplication(front->windowClass);
    if (known == nullptr) known = knownApplication(front->instance);
    return known == nullptr ? PasteKeys::controlV : known->paste;
}

/// What the symbols are when sent to others.
std::vector<xcb_keysym_t> sentKeys(Modifiers modifiers) {
    std::vector<xcb_keysym_t> keys;
    if (modifiers.command) keys.push_back(XKB_KEY_Control_L);
    if (modifiers.option) keys.push_back(XKB_KEY_Alt_L);
    if (modifiers.shift) keys.push_back(XKB_KEY_Shift_L);
    return keys;
}

std::vector<std::uint32_t> decoded(const std::string& utf8) {
    std::vector<std::uint32_t> characters;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[at]);
        const std::size_t length = first < 0x80 ? 1 : first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : first >= 0xc0 ? 2 : 1;
        constexpr std::uint32_t firstBits[] = {0, 0x7f, 0x1f, 0x0f, 0x07};
        std::uint32_t character = first & firstBits[length];
        bool isWhole = at + length <= utf8.size() && (first < 0x80 || length > 1);
        for (std::size_t index = 1; isWhole && index < length; ++index) {
            const auto byte = static_cast<unsigned char>(utf8[at + index]);
            isWhole = (byte & 0xc0) == 0x80;
            character = (character << 6) | (byte & 0x3fU);
        }
        if (isWhole) characters.push_back(character);
        at += isWhole ? length : 1;
    }
    return characters;
}

}  // namespace

struct X11SyntheticKeys::Shared {
    Shared(X11InjectedKeys& injected, RunLoop& loop, std::function<void()> primary)
        : runLoop(loop), offerPrimary(std::move(primary)), typist(injected) {}

    Chord chordOf(const Stroke& stroke) {
        if (!stroke.isPaste()) return {x11_modifiers::keysym(stroke.keyCode), sentKeys(stroke.modifiers)};
        switch (pasteKeysOf(x11Frontmost(typist.connection()))) {
            case PasteKeys::controlV:
                break;
            case PasteKeys::controlShiftV:
                return {XKB_KEY_v, {XKB_KEY_Control_L, XKB_KEY_Shift_L}};
            case PasteKeys::shiftInsert:
                return {XKB_KEY_Insert, {XKB_KEY_Shift_L}, true};
        }
        return {XKB_KEY_v, {XKB_KEY_Control_L}};
    }
    /// Off the main thread: when the key is ready.
    bool pressInTime(const Stroke& stroke) {
        const Chord chord = chordOf(stroke);
        for (double wait = typist.makeReady(chord.keysym); wait > 0; wait = typist.makeReady(chord.keysym))
            std::this_thread::sleep_for(std::chrono::duration<double>(wait));
        return typist.press(chord.keysym, chord.modifiers);
    }
    /// On the main thread: presses what waits as far as it is ready; in how many seconds the next one is, 0 for none.
    double pressWaiting() {
        while (!waiting.empty()) {
            const Chord chord = chordOf(waiting.front());
            if (const double wait = typist.makeReady(chord.keysym); wait > 0) return wait;
            waiting.pop_front();
            if (chord.pastesPrimary && offerPrimary) offerPrimary();
            typist.press(chord.keysym, chord.modifiers);
        }
        return 0;
    }
    /// Off the main thread: until the user holds no modifier.
    void awaitRelease() {
        const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(longestWait);
        auto held = typist.heldModifiers();
        while (!held.empty() && std::chrono::steady_clock::now() < until) {
            std::this_thread::sleep_for(std::chrono::duration<double>(pollInterval));
            held = typist.heldModifiers();
        }
        if (!held.empty()) typist.release(held);
    }

    RunLoop& runLoop;
    std::function<void()> offerPrimary;
    /// Held while keys are made.
    std::mutex mutex;
    X11KeyTypist typist;
    /// Main thread.
    std::deque<Stroke> waiting;
    Token timer;
};

X11SyntheticKeys::X11SyntheticKeys(X11InjectedKeys& injected, RunLoop& runLoop, std::function<void()> offerPrimary)
    : shared_(std::make_shared<Shared>(injected, runLoop, std::move(offerPrimary))) {}

X11SyntheticKeys::~X11SyntheticKeys() {
    shared_->timer.reset();
}

bool X11SyntheticKeys::isAvailable() const {
    return shared_->typist.isAvailable();
}

bool X11SyntheticKeys::post(int keyCode, Modifiers modifiers) {
    if (!shared_->typist.isAvailable() || x11_modifiers::keysym(keyCode) == XKB_KEY_NoSymbol) return false;
    const Stroke stroke{keyCode, modifiers};
    if (std::this_thread::get_id() != mainThread_) {
        const std::lock_guard lock(shared_->mutex);
        shared_->awaitRelease();
        const bool pressed = shared_->pressInTime(stroke);
        if (shared_->typist.hasBorrowed()) clearSparesLater(shared_);
        return pressed;
    }
    shared_->waiting.push_back(stroke);
    if (shared_->timer == nullptr) pump(shared_, 0);
    return true;
}

/// Presses what waits, or comes back in a moment: somebody types, the user still holds a modifier, or a key was
/// borrowed.
void X11SyntheticKeys::pump(const std::shared_ptr<Shared>& shared, double waitedSeconds) {
    shared->timer.reset();
    double pause = pollInterval;
    const std::unique_lock lock(shared->mutex, std::try_to_lock);
    if (lock.owns_lock()) {
        const auto held = shared->typist.heldModifiers();
        const bool isPasteInTime =
            waitedSeconds < longestPasteWait && std::any_of(shared->waiting.begin(), shared->waiting.end(),
                                                            [](const Stroke& stroke) { return stroke.isPaste(); });
        const bool waitsForKeys = isPasteInTime && shared->typist.isAnyKeyHeld();
        if (!waitsForKeys && (held.empty() || waitedSeconds >= longestWait)) {
            if (!held.empty()) shared->typist.release(held);
            pause = shared->pressWaiting();
            if (pause == 0) {
                if (shared->typist.hasBorrowed()) clearSparesLater(shared);
                return;
            }
        }
        waitedSeconds += pause;
    }
    shared->timer = shared->runLoop.after(pause, [weak = std::weak_ptr(shared), waitedSeconds] {
        if (const auto later = weak.lock()) pump(later, waitedSeconds);
    });
}

bool X11SyntheticKeys::type(const std::string& text) {
    if (!shared_->typist.isAvailable()) return false;
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->awaitRelease();
        shared_->typist.type(decoded(text));
    }
    clearSparesLater(shared_);
    return true;
}

void X11SyntheticKeys::clearSparesLater(const std::shared_ptr<Shared>& shared) {
    shared->runLoop.asyncAfter(1, [weak = std::weak_ptr(shared)] {
        const auto later = weak.lock();
        if (!later) return;
        const std::unique_lock lock(later->mutex, std::try_to_lock);
        if (!lock.owns_lock() || !later->typist.clearSpares()) clearSparesLater(later);
    });
}

}  // namespace brimquill::platform

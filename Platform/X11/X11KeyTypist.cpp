#include "Platform/X11/X11KeyTypist.h"

#include "Platform/X11/X11Modifiers.h"

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <set>
#include <thread>

namespace brimquill::platform {
namespace {

/// Measured: with less, programs that are slow to read the new mapping type something else.
constexpr auto settleTime = std::chrono::milliseconds(50);
constexpr auto keptTime = std::chrono::milliseconds(800);
constexpr std::size_t batchSize = 20;

xcb_keysym_t keysymOf(std::uint32_t character) {
    if (character == '\n' || character == '\r') return XKB_KEY_Return;
    if (character == '\t') return XKB_KEY_Tab;
    return character < ' ' || character == 0x7f ? xcb_keysym_t{XKB_KEY_NoSymbol} : xkb_utf32_to_keysym(character);
}

double secondsUntil(std::chrono::steady_clock::time_point time) {
    return std::max(0.0, std::chrono::duration<double>(time - std::chrono::steady_clock::now()).count());
}

}  // namespace

X11KeyTypist::X11KeyTypist(X11InjectedKeys& injected) : injected_(injected) {
    if (!connection_.isAlive()) return;
    xcb_connection_t* xcb = connection_.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_test_id);
    if (extension == nullptr || extension->present == 0) return;
    const X11Reply<xcb_test_get_version_reply_t> version(
        xcb_test_get_version_reply(xcb, xcb_test_get_version(xcb, 2, 2), nullptr));
    isAvailable_ = version != nullptr;
}

X11KeyTypist::~X11KeyTypist() {
    if (!borrowed_.empty()) std::this_thread::sleep_until(lastTyped_ + keptTime);
    clearSpares();
}

void X11KeyTypist::readMapping() {
    keys_.clear();
    otherKeys_.clear();
    std::vector<xcb_keycode_t> spares;
    xcb_connection_t* xcb = connection_.xcb();
    const auto* setup = xcb_get_setup(xcb);
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const X11Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        xcb, xcb_get_keyboard_mapping(xcb, setup->min_keycode, static_cast<std::uint8_t>(count)), nullptr));
    if (!mapping) return;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int width = mapping->keysyms_per_keycode;
    // Another layout takes back what was borrowed.
    std::erase_if(borrowed_, [&](const auto& entry) {
        return keysyms[(entry.second.keycode - setup->min_keycode) * width] != entry.first;
    });
    for (int index = 0; index < count; ++index) {
        const xcb_keysym_t* own = keysyms + static_cast<std::ptrdiff_t>(index) * width;
        const auto keycode = static_cast<xcb_keycode_t>(setup->min_keycode + index);
        const bool isBorrowed = std::any_of(borrowed_.begin(), borrowed_.end(),
                                            [&](const auto& entry) { return entry.second.keycode == keycode; });
        const bool isFree = std::all_of(own, own + width, [](xcb_keysym_t keysym) { return keysym == 0; });
        if (isFree || isBorrowed) {
            spares.push_back(keycode);
            continue;
        }
        for (int level = 0; level < std::min(width, 2); ++level) {
            if (own[level] != 0) keys_.try_emplace(own[level], Key{keycode, level == 1});
        }
        constexpr int secondGroup = 2;
        if (width > secondGroup && own[secondGroup] != 0) otherKeys_.try_emplace(own[secondGroup], Key{keycode, false});
    }
    if (spares != spares_) {
        spares_ = std::move(spares);
        nextSpare_ = 0;
    }
}

std::uint16_t X11KeyTypist::state() {
    xcb_connection_t* xcb = connection_.xcb();
    const X11Reply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, connection_.root()), nullptr));
    return pointer ? pointer->mask : std::uint16_t{0};
}

std::vector<xcb_keycode_t> X11KeyTypist::heldModifiers() {
    xcb_connection_t* xcb = connection_.xcb();
    const auto mappingCookie = xcb_get_modifier_mapping(xcb);
    const auto keysCookie = xcb_query_keymap(xcb);
    const X11Reply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(xcb, mappingCookie, nullptr));
    const X11Reply<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(xcb, keysCookie, nullptr));
    std::vector<xcb_keycode_t> held;
    if (!mapping || !keys) return held;
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(mapping.get());
    constexpr std::array<int, 5> rows = {0, 2, 3, 6, 7};  // Shift, Control, Alt, Super, the third level
    for (const int row : rows) {
        for (int column = 0; column < mapping->keycodes_per_modifier; ++column) {
            const xcb_keycode_t keycode = keycodes[row * mapping->keycodes_per_modifier + column];
            if (keycode != 0 && (keys->keys[keycode / 8] & (1 << (keycode % 8))) != 0) held.push_back(keycode);
        }
    }
    return held;
}

bool X11KeyTypist::isAnyKeyHeld() {
    const X11Reply<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(connection_.xcb(), xcb_query_keymap(connection_.xcb()), nullptr));
    return keys &&
           std::any_of(std::begin(keys->keys), std::end(keys->keys), [](std::uint8_t byte) { return byte != 0; });
}

void X11KeyTypist::fake(std::uint8_t type, xcb_keycode_t keycode) {
    if (type == XCB_KEY_PRESS) injected_.expect(keycode);
    xcb_test_fake_input(connection_.xcb(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

/// They are not pressed again afterwards: the user may have let go meanwhile, and then they would stay down.
void X11KeyTypist::release(const std::vector<xcb_keycode_t>& keycodes) {
    for (const xcb_keycode_t keycode : keycodes)
        fake(XCB_KEY_RELEASE, keycode);
    connection_.sync();
}

/// Programs look for the key of a shortcut in all groups of the layout.
std::optional<xcb_keycode_t> X11KeyTypist::keycodeFor(xcb_keysym_t keysym) const {
    for (const auto* source : {&keys_, &otherKeys_, &borrowed_}) {
        if (const auto found = source->find(keysym); found != source->end()) return found->second.keycode;
    }
    return std::nullopt;
}

double X11KeyTypist::makeReady(xcb_keysym_t keysym) {
    readMapping();
    const auto now = std::chrono::steady_clock::now();
    if (!keycodeFor(keysym)) {
        const bool isFull = nextSpare_ >= spares_.size();
        // Keys that were borrowed for what came before may not have been looked up yet.
        if (isFull && now < lastTyped_ + settleTime * 2) return secondsUntil(lastTyped_ + settleTime * 2);
        if (isFull) borrowAnew();
        borrow(keysym);
        connection_.sync();
    }
    return borrowed_.contains(keysym) ? secondsUntil(lastBorrowed_ + settleTime) : 0;
}

bool X11KeyTypist::press(xcb_keysym_t keysym, const std::vector<xcb_keysym_t>& modifiers) {
    std::vector<xcb_keycode_t> around;
    for (const xcb_keysym_t modifier : modifiers) {
        const auto found = keys_.find(modifier);
        if (found == keys_.end()) return false;
        around.push_back(found->second.keycode);
    }
    const auto pressed = keycodeFor(keysym);
    if (!pressed) return false;
    for (const xcb_keycode_t keycode : around)
        fake(XCB_KEY_PRESS, keycode);
    fake(XCB_KEY_PRESS, *pressed);
    fake(XCB_KEY_RELEASE, *pressed);
    for (auto keycode = around.rbegin(); keycode != around.rend(); ++keycode)
        fake(XCB_KEY_RELEASE, *keycode);
    connection_.sync();
    if (borrowed_.contains(keysym)) lastTyped_ = std::chrono::steady_clock::now();
    return true;
}

void X11KeyTypist::type(const std::vector<std::uint32_t>& characters) {
    readMapping();
    std::vector<xcb_keysym_t> keysyms;
    for (const std::uint32_t character : characters) {
        if (const xcb_keysym_t keysym = keysymOf(character); keysym != XKB_KEY_NoSymbol) keysyms.push_back(keysym);
    }
    constexpr int groupShift = 13, groupMask = 3;
    for (std::size_t next = 0; next < keysyms.size();) {
        const std::uint16_t now = state();
        // What is read above is the first group; in another one every character is borrowed for.
        if (((now >> groupShift) & groupMask) != 0) {
            std::erase_if(keys_,
                          [](const auto& entry) { return entry.first != XKB_KEY_Shift_L && entry.first < 0xff00; });
        }
        const std::size_t end = prepare(keysyms, next);
        for (; next < end; ++next) {
            const bool isBorrowed = borrowed_.contains(keysyms[next]) && !keys_.contains(keysyms[next]);
            const auto& source = isBorrowed ? borrowed_ : keys_;
            const auto found = source.find(keysyms[next]);
            if (found == source.end()) continue;  // no key is free at all
            tap(keysyms[next], found->second, !isBorrowed && (now & x11_modifiers::lock) != 0);
        }
        connection_.sync();
        lastTyped_ = std::chrono::steady_clock::now();
    }
}

/// Gives each character of the next batch a key; where the batch ends.
std::size_t X11KeyTypist::prepare(const std::vector<xcb_keysym_t>& keysyms, std::size_t from) {
    std::set<xcb_keysym_t> missing;
    std::size_t end = from;
    for (; end < keysyms.size() && end - from < batchSize; ++end) {
        if (keys_.contains(keysyms[end])) continue;
        if (!missing.contains(keysyms[end]) && missing.size() == spares_.size() && !spares_.empty()) break;
        missing.insert(keysyms[end]);
    }
    std::erase_if(missing, [&](xcb_keysym_t keysym) { return borrowed_.contains(keysym); });
    if (missing.empty()) return end;
    // Keys that were borrowed for what came before may not have been looked up yet.
    if (nextSpare_ + missing.size() > spares_.size()) {
        std::this_thread::sleep_until(lastTyped_ + settleTime * 2);
        borrowAnew();
        return prepare(keysyms, from);
    }
    for (const xcb_keysym_t keysym : missing)
        borrow(keysym);
    connection_.sync();
    std::this_thread::sleep_for(settleTime);
    return end;
}

void X11KeyTypist::borrow(xcb_keysym_t keysym) {
    if (nextSpare_ >= spares_.size()) return;
    const xcb_keycode_t keycode = spares_[nextSpare_++];
    map(keycode, keysym);
    borrowed_[keysym] = {keycode, false};
    lastBorrowed_ = std::chrono::steady_clock::now();
}

void X11KeyTypist::borrowAnew() {
    borrowed_.clear();
    nextSpare_ = 0;
}

void X11KeyTypist::map(xcb_keycode_t keycode, xcb_keysym_t keysym) {
    const std::array<xcb_keysym_t, 2> levels = {keysym, keysym};
    xcb_change_keyboard_mapping(connection_.xcb(), 1, keycode, levels.size(), levels.data());
}

void X11KeyTypist::tap(xcb_keysym_t keysym, Key key, bool capsLock) {
    const bool isLetter = xkb_keysym_to_lower(keysym) != xkb_keysym_to_upper(keysym);
    const bool shifts = key.needsShift != (capsLock && isLetter);
    const auto shift = keys_.find(XKB_KEY_Shift_L);
    const bool canShift = shifts && shift != keys_.end();
    if (canShift) fake(XCB_KEY_PRESS, shift->second.keycode);
    fake(XCB_KEY_PRESS, key.keycode);
    fake(XCB_KEY_RELEASE, key.keycode);
    if (canShift) fake(XCB_KEY_RELEASE, shift->second.keycode);
}

bool X11KeyTypist::clearSpares() {
    if (borrowed_.empty()) return true;
    if (std::chrono::steady_clock::now() < lastTyped_ + keptTime) return false;
    for (const xcb_keycode_t keycode : spares_)
        map(keycode, XKB_KEY_NoSymbol);
    borrowAnew();
    connection_.sync();
    return true;
}

}  // namespace brimquill::platform

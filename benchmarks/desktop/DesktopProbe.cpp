// Measures from outside what a person waits for: presses a key chord as a keyboard would and reports, in milliseconds,
// when the screen first changed after it and when it stopped changing.
//
//   desktop_probe CHORD [SECONDS [WINDOW]]
//
// CHORD: keysym names joined by "+", such as super+shift+v. SECONDS without a change end the measurement (default 0.3),
// ten times as many without any. WINDOW: a window id to watch instead of the whole screen. Prints "FIRST LAST COUNT",
// "- - 0" when nothing changed.

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

std::vector<xcb_keycode_t> keycodes(xcb_key_symbols_t* symbols, const std::string& chord) {
    static const std::map<std::string, std::string> names = {
        {"super", "Super_L"}, {"shift", "Shift_L"}, {"ctrl", "Control_L"}, {"alt", "Alt_L"}};
    std::vector<xcb_keycode_t> codes;
    for (std::size_t start = 0; start <= chord.size();) {
        const auto end = std::min(chord.find('+', start), chord.size());
        auto name = chord.substr(start, end - start);
        if (const auto known = names.find(name); known != names.end()) name = known->second;
        const auto keysym = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_NO_FLAGS);
        const std::unique_ptr<xcb_keycode_t, Free> found(xcb_key_symbols_get_keycode(symbols, keysym));
        if (!found || found.get()[0] == XCB_NO_SYMBOL) {
            std::fprintf(stderr, "no key types %s\n", name.c_str());
            std::exit(2);
        }
        codes.push_back(found.get()[0]);
        start = end + 1;
    }
    return codes;
}

void press(xcb_connection_t* connection, const std::vector<xcb_keycode_t>& codes) {
    for (const auto code : codes)
        xcb_test_fake_input(connection, XCB_KEY_PRESS, code, 0, XCB_NONE, 0, 0, 0);
    for (auto code = codes.rbegin(); code != codes.rend(); ++code) {
        xcb_test_fake_input(connection, XCB_KEY_RELEASE, *code, 0, XCB_NONE, 0, 0, 0);
    }
    xcb_flush(connection);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const double quiet = argc > 2 ? std::atof(argv[2]) : 0.3;
    auto* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) return 1;
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const auto* damageExtension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (damageExtension == nullptr || damageExtension->present == 0) return 1;
    std::free(xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
    const xcb_drawable_t watched =
        argc > 3 ? static_cast<xcb_drawable_t>(std::strtoul(argv[3], nullptr, 0)) : screen->root;
    xcb_damage_create(connection, xcb_generate_id(connection), watched, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(xcb_key_symbols_alloc(connection),
                                                                                      xcb_key_symbols_free);
    const auto codes = keycodes(symbols.get(), argv[1]);
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    while (auto* stale = xcb_poll_for_event(connection))
        std::free(stale);

    const auto start = Clock::now();
    press(connection, codes);
    auto first = start, last = start;
    long count = 0;
    const int damageNotify = damageExtension->first_event + XCB_DAMAGE_NOTIFY;
    for (;;) {
        while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection)}) {
            if ((event->response_type & 0x7f) != damageNotify) continue;
            last = Clock::now();
            if (count++ == 0) first = last;
        }
        const auto waited = Clock::now() - last;
        // A busy machine may take its time to begin.
        const int left = static_cast<int>((count == 0 ? 10 : 1) * quiet * 1000 - milliseconds(waited));
        if (left <= 0) break;
        pollfd descriptor{xcb_get_file_descriptor(connection), POLLIN, 0};
        poll(&descriptor, 1, left);
    }
    if (count == 0) {
        std::puts("- - 0");
    } else {
        std::printf("%.2f %.2f %ld\n", milliseconds(first - start), milliseconds(last - start), count);
    }
    xcb_disconnect(connection);
    return 0;
}

#include "Platform/X11/X11Connection.h"

#include <algorithm>
#include <cstring>

namespace brimquill::platform {

X11Connection::X11Connection() : xcb_(xcb_connect(nullptr, &screenNumber_)) {
    if (xcb_connection_has_error(xcb_) != 0) return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb_));
    for (int number = 0; screens.rem > 0; ++number, xcb_screen_next(&screens)) {
        if (number == screenNumber_) screen_ = screens.data;
    }
}

X11Connection::~X11Connection() {
    xcb_disconnect(xcb_);
}

xcb_atom_t X11Connection::atom(const std::string& name) {
    const auto known = atoms_.find(name);
    if (known != atoms_.end()) return known->second;
    const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookie, nullptr));
    return reply ? atoms_[name] = reply->atom : xcb_atom_t{XCB_NONE};
}

std::string X11Connection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, std::size_t limit) {
    const auto cookie = xcb_get_property(xcb_, 0, window, name, type, 0, static_cast<std::uint32_t>((limit + 3) / 4));
    const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb_, cookie, nullptr));
    if (!reply || reply->type == XCB_NONE) return {};
    const int length = xcb_get_property_value_length(reply.get());
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), static_cast<std::size_t>(length)};
}

std::vector<std::uint32_t> X11Connection::numbers(xcb_window_t window, const std::string& name, xcb_atom_t type,
                                                  std::size_t limit) {
    const std::string bytes = property(window, atom(name), type, limit * 4);
    std::vector<std::uint32_t> numbers(bytes.size() / 4);
    if (!numbers.empty()) std::memcpy(numbers.data(), bytes.data(), numbers.size() * 4);
    return numbers;
}

void X11Connection::sync() {
    const X11Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
}

}  // namespace brimquill::platform

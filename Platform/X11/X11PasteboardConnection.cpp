#include "Platform/X11/X11PasteboardConnection.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/X11/X11PasteboardFormats.h"

#include <sys/socket.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <vector>

namespace brimquill::platform {
namespace {

xcb_screen_t* screenOf(xcb_connection_t* xcb, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

}  // namespace

X11PasteboardConnection::X11PasteboardConnection(X11PasteboardOptions options) : options_(std::move(options)) {
    if (!options_.log) options_.log = [](std::string_view line) { log::write(line); };
    int screenNumber = 0;
    xcb_ = xcb_connect(options_.display.empty() ? nullptr : options_.display.c_str(), &screenNumber);
    if (!alive()) return;
    descriptor_ = xcb_get_file_descriptor(xcb_);
    // A chunk travels with a header, and in whole units of four bytes.
    const std::size_t largest = std::size_t{xcb_get_maximum_request_length(xcb_)} * 4 - 64;
    chunk_ = std::max<std::size_t>(std::min(options_.chunk, largest) & ~std::size_t{3}, 4);
    createWindow(screenNumber);
    watchClipboard();
    xcb_flush(xcb_);
}

X11PasteboardConnection::~X11PasteboardConnection() {
    // An answer that is kept back would leave whoever asked waiting for ever.
    xcb_flush(xcb_);
    xcb_disconnect(xcb_);
}

void X11PasteboardConnection::createWindow(int screenNumber) {
    const xcb_screen_t* screen = screenOf(xcb_, screenNumber);
    root_ = screen->root;
    window_ = xcb_generate_id(xcb_);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window_, root_, -10, -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

void X11PasteboardConnection::watchClipboard() {
    const xcb_query_extension_reply_t* xfixes = xcb_get_extension_data(xcb_, &xcb_xfixes_id);
    if (!xfixes || !xfixes->present) {
        log("The display has no XFixes: copies of other programs are not noticed");
        return;
    }
    const XcbOwned<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(xcb_, xcb_xfixes_query_version(xcb_, 5, 0), nullptr));
    if (!version) return;
    xcb_xfixes_select_selection_input(xcb_, window_, atom("CLIPBOARD"),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    ownerChangeEvent_ = xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
}

void X11PasteboardConnection::interrupt() {
    if (descriptor_ >= 0) shutdown(descriptor_, SHUT_RDWR);
}

void X11PasteboardConnection::log(const std::string& line) const {
    options_.log(line);
}

xcb_atom_t X11PasteboardConnection::atom(const std::string& name) const {
    if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
    const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookie, nullptr));
    if (!reply) return XCB_ATOM_NONE;
    return atoms_[name] = reply->atom;
}

void X11PasteboardConnection::announceManager(xcb_atom_t selection, xcb_timestamp_t time) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = root_;
    event.type = atom("MANAGER");
    event.data.data32[0] = time;
    event.data.data32[1] = selection;
    event.data.data32[2] = window_;
    xcb_send_event(xcb_, 0, root_, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char*>(&event));
}

xcb_window_t X11PasteboardConnection::owner(xcb_atom_t selection) const {
    const XcbOwned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(xcb_, xcb_get_selection_owner(xcb_, selection), nullptr));
    return reply ? reply->owner : XCB_NONE;
}

}  // namespace brimquill::platform

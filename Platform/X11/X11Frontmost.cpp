#include "Platform/X11/X11Frontmost.h"

#include <xcb/res.h>

namespace brimquill::platform {
namespace {

/// What the server knows of the client; true also for programs in a container, which see other process numbers.
int processOfClient(X11Connection& connection, xcb_window_t window) {
    xcb_connection_t* xcb = connection.xcb();
    const auto* extension = xcb_get_extension_data(xcb, &xcb_res_id);
    if (extension == nullptr || extension->present == 0) return 0;
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const X11Reply<xcb_res_query_client_ids_reply_t> reply(
        xcb_res_query_client_ids_reply(xcb, xcb_res_query_client_ids(xcb, 1, &wanted), nullptr));
    if (!reply) return 0;
    auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
        if (ids.data->spec.mask != XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID || ids.data->length < 4) continue;
        return static_cast<int>(*xcb_res_client_id_value_value(ids.data));
    }
    return 0;
}

std::string ownDesktopFile(X11Connection& connection, xcb_window_t window) {
    for (const char* name : {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE"}) {
        std::string id = connection.property(window, connection.atom(name), connection.atom("UTF8_STRING"));
        if (id.ends_with(".desktop")) id.resize(id.size() - 8);
        if (!id.empty()) return id;
    }
    return {};
}

/// The window manager may still name a window that has gone, and its number may have come to another client since.
bool exists(X11Connection& connection, xcb_window_t window) {
    const X11Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection.xcb(), xcb_get_window_attributes(connection.xcb(), window), nullptr));
    return attributes != nullptr;
}

}  // namespace

std::optional<X11Frontmost> x11Frontmost(X11Connection& connection) {
    // One window manager writes two values; the first is the window.
    const auto active = connection.numbers(connection.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, 1);
    if (active.empty() || active[0] == XCB_NONE) return std::nullopt;
    const xcb_window_t window = active[0];
    if (!exists(connection, window)) return std::nullopt;
    X11Frontmost front;
    const std::string classes = connection.property(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    const std::size_t end = classes.find('\0');
    front.instance = classes.substr(0, end);
    if (end != std::string::npos) front.windowClass = classes.substr(end + 1, classes.find('\0', end + 1) - end - 1);
    front.desktopFile = ownDesktopFile(connection, window);
    front.processIdentifier = processOfClient(connection, window);
    if (front.processIdentifier == 0) {
        const auto pid = connection.numbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, 1);
        if (!pid.empty()) front.processIdentifier = static_cast<int>(pid[0]);
    }
    if (front.processIdentifier == 0 && classes.empty()) return std::nullopt;
    return front;
}

}  // namespace brimquill::platform

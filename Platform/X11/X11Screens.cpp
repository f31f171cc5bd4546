#include "Platform/X11/X11Screens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace brimquill::platform {
namespace {

Rect rectOf(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

/// The screen at a place given in pixels. Each screen keeps its pixel origin and counts points from there.
QScreen* screenAtPixel(Point pixel) {
    for (QScreen* screen : QGuiApplication::screens()) {
        const Rect points = rectOf(screen->geometry());
        const double scale = screen->devicePixelRatio();
        if (Rect{points.x, points.y, points.width * scale, points.height * scale}.contains(pixel)) return screen;
    }
    return nullptr;
}

}  // namespace

std::optional<Point> X11Screens::activeWindowCentre() {
    const auto active = connection_.numbers(connection_.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, 1);
    if (active.empty() || active[0] == XCB_NONE) return std::nullopt;
    xcb_connection_t* xcb = connection_.xcb();
    const X11Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, active[0]), nullptr));
    if (!size) return std::nullopt;
    const auto x = static_cast<std::int16_t>(size->width / 2), y = static_cast<std::int16_t>(size->height / 2);
    const X11Reply<xcb_translate_coordinates_reply_t> centre(xcb_translate_coordinates_reply(
        xcb, xcb_translate_coordinates(xcb, active[0], connection_.root(), x, y), nullptr));
    if (!centre) return std::nullopt;
    return Point{static_cast<double>(centre->dst_x), static_cast<double>(centre->dst_y)};
}

std::optional<Screen> X11Screens::main() {
    const auto centre = activeWindowCentre();
    QScreen* screen = centre ? screenAtPixel(*centre) : nullptr;
    if (screen == nullptr) screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen == nullptr || screen->geometry().isEmpty()) return std::nullopt;
    // With several screens the work area is one for all of them; the toolkit then gives the whole screen.
    return Screen{rectOf(screen->geometry()), rectOf(screen->availableGeometry()), screen->devicePixelRatio()};
}

Point X11Screens::mouseLocation() {
    const QPoint pointer = QCursor::pos();
    return {static_cast<double>(pointer.x()), static_cast<double>(pointer.y())};
}

}  // namespace brimquill::platform

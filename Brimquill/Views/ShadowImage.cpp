#include "Brimquill/Views/ShadowImage.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cmath>

namespace brimquill {
namespace {

constexpr double strength = 0.18;
/// The shadow falls a little below the panel.
constexpr double drop = 4;

/// How far a point lies outside a rounded square that `inset` points separate from the edge of the image.
double distanceOutside(double x, double y, double side) {
    const double inset = ShadowImage::width, radius = ShadowImage::radius;
    const double nearestX = std::clamp(x, inset + radius, side - inset - radius);
    const double nearestY = std::clamp(y, inset + radius, side - inset - radius);
    return std::hypot(x - nearestX, y - nearestY) - radius;
}

int alphaAt(double x, double y, double side) {
    const double distance = distanceOutside(x, y - drop, side);
    const double fade = std::clamp(1 - distance / (ShadowImage::width - drop), 0.0, 1.0);
    return static_cast<int>(std::lround(255 * strength * fade * fade));
}

}  // namespace

QImage ShadowImage::requestImage(const QString&, QSize* size, const QSize&) {
    constexpr int side = 2 * (width + radius) + 1;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixel(x, y, qRgba(0, 0, 0, alphaAt(x + 0.5, y + 0.5, side)));
    }
    if (size) *size = image.size();
    return image;
}

}  // namespace brimquill

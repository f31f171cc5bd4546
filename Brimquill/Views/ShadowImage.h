#pragma once

#include <QQuickImageProvider>

namespace brimquill {

/// The soft shadow that lies around a panel, rendered once, to be stretched as a nine-patch:
/// "image://brimquill/shadow".
class ShadowImage final : public QQuickImageProvider {
public:
    static constexpr const char* provider = "brimquill";
    /// How far the shadow reaches beyond the panel, and how round the panel's corners are, in points.
    static constexpr int width = 24;
    static constexpr int radius = 16;

    ShadowImage() : QQuickImageProvider(Image) {}

    /// `width` + `radius` points of each corner, and one stretchable point between them. Any thread.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace brimquill

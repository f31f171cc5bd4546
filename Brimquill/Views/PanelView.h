#pragma once

#include "Brimquill/Views/ViewHost.h"
#include "Platform/Panels.h"

#include <QUrl>
#include <QVariantMap>

#include <memory>

class QQuickItem;
class QQuickView;

namespace brimquill {

/// A panel and the view in it: a QML file whose root is a `PanelSurface`, which draws the panel's body with its shadow
/// or, where windows cannot be translucent, its edge. Frames are those of the body. Main thread.
class PanelView final {
public:
    /// Loads the view. `properties` are set on its root while it is made; what they point to must outlive this.
    PanelView(ViewHost& host, platform::PanelRole role, const QUrl& source, const QVariantMap& properties);
    ~PanelView();

    /// False when the system cannot show it.
    bool show(platform::Rect frame);
    void close();
    bool isVisible() const { return panel_->isVisible(); }
    /// Whether keys come to it now.
    bool isKey() const { return panel_->isKey(); }
    /// Leaves the keyboard to others until it is clicked.
    void resignKey() { panel_->resignKey(); }
    void setFrame(platform::Rect frame);
    platform::Rect frame() const { return frame_; }
    /// The user takes hold of the panel at a point of its window, and carries it along to where the pointer is now.
    void grabAt(platform::Point inWindow);
    void dragTo(platform::Point pointer);
    /// The size that the content asks for.
    double implicitWidth() const;
    double implicitHeight() const;

    QQuickView& window() { return *view_; }
    /// Null when the file could not be loaded; the log says why.
    QQuickItem* rootObject() const;

private:
    double shadowMargin() const;
    platform::Rect windowFrame(platform::Rect frame) const;
    void shape(platform::Rect frame);

    ViewHost& host_;
    // The panel goes before the window that it belongs to.
    std::unique_ptr<QQuickView> view_;
    std::unique_ptr<platform::Panel> panel_;
    platform::Rect frame_;
    /// From the frame's corner to where it was taken hold of.
    platform::Point hold_;
};

}  // namespace brimquill

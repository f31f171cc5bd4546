#include "Brimquill/Views/PanelView.h"

#include "Brimquill/Views/ShadowImage.h"

#include <QPainterPath>
#include <QPolygon>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRegion>
#include <QSurfaceFormat>

namespace brimquill {
namespace {

/// Pixels are all or nothing here, so the corners are cut as close to the drawn ones as that allows.
QRegion roundedRegion(QSize size) {
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), size), ShadowImage::radius, ShadowImage::radius);
    return QRegion(path.toFillPolygon().toPolygon());
}

}  // namespace

PanelView::PanelView(ViewHost& host, platform::PanelRole role, const QUrl& source, const QVariantMap& properties)
    : host_(host), view_(std::make_unique<QQuickView>(&host.engine(), nullptr)) {
    QSurfaceFormat format = view_->format();
    format.setAlphaBufferSize(8);
    view_->setFormat(format);
    view_->setColor(Qt::transparent);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setInitialProperties(properties);
    view_->setSource(source);
    panel_ = host.panels().makePanel(*view_, role);
}

PanelView::~PanelView() = default;

bool PanelView::show(platform::Rect frame) {
    host_.appearance().refreshTranslucency();
    frame_ = frame;
    shape(frame);
    return panel_->show(windowFrame(frame));
}

void PanelView::close() {
    panel_->close();
}

void PanelView::setFrame(platform::Rect frame) {
    frame_ = frame;
    shape(frame);
    panel_->setFrame(windowFrame(frame));
}

void PanelView::grabAt(platform::Point inWindow) {
    hold_ = {inWindow.x - shadowMargin(), inWindow.y - shadowMargin()};
}

void PanelView::dragTo(platform::Point pointer) {
    setFrame({pointer.x - hold_.x, pointer.y - hold_.y, frame_.width, frame_.height});
}

double PanelView::implicitWidth() const {
    return rootObject() ? rootObject()->implicitWidth() : 0;
}

double PanelView::implicitHeight() const {
    return rootObject() ? rootObject()->implicitHeight() : 0;
}

QQuickItem* PanelView::rootObject() const {
    return view_->rootObject();
}

double PanelView::shadowMargin() const {
    return host_.appearance().translucent() ? ShadowImage::width : 0;
}

platform::Rect PanelView::windowFrame(platform::Rect frame) const {
    const double margin = shadowMargin();
    return {frame.x - margin, frame.y - margin, frame.width + 2 * margin, frame.height + 2 * margin};
}

void PanelView::shape(platform::Rect frame) {
    const bool isTranslucent = host_.appearance().translucent();
    panel_->setClickMargin(shadowMargin());
    view_->setMask(isTranslucent ? QRegion() : roundedRegion(QSizeF(frame.width, frame.height).toSize()));
}

}  // namespace brimquill

#include "Brimquill/Surfaces/FormPanel.h"

#include <QQuickView>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brimquill {
namespace {

/// What the palette takes of the lower part of the screen, and the gap between it and a form, in points.
constexpr double paletteSpace = 296, gap = 12;
constexpr platform::Rect frameWithoutScreen{0, 0, 1200, 800};

}  // namespace

FormPanel::FormPanel(Environment environment) : environment_(environment) {}

FormPanel::~FormPanel() = default;

bool FormPanel::show(Form form) {
    close();
    shown_.model = std::move(form.model);
    shown_.view =
        std::make_unique<PanelView>(environment_.host, platform::PanelRole::keyable,
                                    QUrl(QStringLiteral("qrc:/brimquill/Surfaces/Views/%1.qml").arg(form.view)),
                                    QVariantMap{{QStringLiteral("model"), QVariant::fromValue(shown_.model.get())},
                                                {QStringLiteral("panel"), QVariant::fromValue<QObject*>(this)}});
    shown_.view->window().setTitle(form.title);
    if (!shown_.view->show(frame())) {
        close();
        return false;
    }
    // Who goes on typing in the application that was clicked must not type into the form.
    outsideClickMonitor_ = environment_.eventMonitors.addGlobalMonitor(platform::EventMask::mouseDown,
                                                                       [this](const platform::Event&) { resignKey(); });
    screenChanges_ = environment_.screens.observe([this] {
        if (isVisible()) shown_.view->setFrame(frame());
    });
    return true;
}

void FormPanel::close() {
    if (!shown_.view) return;
    screenChanges_.reset();
    outsideClickMonitor_.reset();
    shown_.view->close();
    closed_.push_back(std::move(shown_));
    clearWork_ = environment_.runLoop.after(0, [this] { closed_.clear(); });
}

void FormPanel::setAside() {
    if (shown_.view) shown_.view->close();
}

void FormPanel::bringBack() {
    if (shown_.view && !isVisible()) shown_.view->show(frame());
}

void FormPanel::resignKey() {
    if (shown_.view) shown_.view->resignKey();
}

bool FormPanel::isVisible() const {
    return shown_.view && shown_.view->isVisible();
}

bool FormPanel::isKey() const {
    return shown_.view && shown_.view->isKey();
}

QString FormPanel::pasteboardText() const {
    return QString::fromStdString(environment_.pasteboard.string().value_or(""));
}

/// Above the palette's place and centred like it; on a low screen as far up as there is room.
platform::Rect FormPanel::frame() const {
    const auto screen = environment_.screens.main();
    const auto visible = screen ? screen->visibleFrame : frameWithoutScreen;
    const double width = std::ceil(shown_.view->implicitWidth());
    const double height = std::ceil(shown_.view->implicitHeight());
    const double y = visible.y + visible.height - paletteSpace - gap - height;
    return {std::round(visible.x + (visible.width - width) / 2), std::max(y, visible.y + gap), width, height};
}

}  // namespace brimquill

#include "Brimquill/Surfaces/CaptureToastPanel.h"

#include "BrimquillCore/Foundation/Text.h"

#include <QPointer>

#include <utility>

namespace brimquill {
namespace {

/// In points: from the right edge of the screen, from its bottom, and from there while the palette shows.
constexpr double rightGap = 24, bottomGap = 84, paletteGap = 300;
/// What the view takes to slide out, in seconds.
constexpr double slideTime = 0.2;

const char* symbolFor(const CaptureToast::Content& content) {
    if (content.imagePath) return "photo.fill";
    if (text::contains(text::lowercased(content.title), "secret")) return "lock.fill";
    return "doc.on.clipboard.fill";
}

ToastModel::Content modelContent(const CaptureToast::Content& content) {
    return {content.imagePath ? QUrl::fromLocalFile(QString::fromStdString(*content.imagePath)) : QUrl(),
            QString::fromStdString(content.title), QString::fromStdString(content.subtitle.value_or("")),
            QString::fromUtf8(symbolFor(content))};
}

}  // namespace

CaptureToastPanel::CaptureToastPanel(Environment environment) : environment_(std::move(environment)) {
    connect(&model_, &ToastModel::opened, this, &CaptureToastPanel::opened);
    // Under the pointer it stays; the time to its end begins anew when the pointer leaves.
    connect(&model_, &ToastModel::hoveredChanged, this, [this] {
        if (model_.shown()) scheduleDismiss();
    });
}

CaptureToastPanel::~CaptureToastPanel() = default;

void CaptureToastPanel::show(const Content& content, Occasion occasion) {
    environment_.runLoop.async([self = QPointer(this), content, occasion] {
        if (self) self->present(content, occasion);
    });
}

void CaptureToastPanel::prepare() {
    if (view_) return;
    view_ = std::make_unique<PanelView>(environment_.host, platform::PanelRole::passive,
                                        QUrl(QStringLiteral("qrc:/brimquill/Surfaces/Views/ToastView.qml")),
                                        QVariantMap{{QStringLiteral("model"), QVariant::fromValue(&model_)}});
}

void CaptureToastPanel::present(const Content& content, Occasion occasion) {
    if (occasion == Occasion::capture && !environment_.settings.showCaptureToasts()) return;
    prepare();
    model_.show(modelContent(content));
    position();
    scheduleDismiss();
}

void CaptureToastPanel::position() {
    const auto screen = environment_.screens.main();
    if (!screen) return;
    const platform::Rect& visible = screen->visibleFrame;
    const double gap = environment_.isPaletteVisible() ? paletteGap : bottomGap;
    const platform::Rect frame{visible.x + visible.width - width - rightGap, visible.y + visible.height - gap - height,
                               width, height};
    if (view_->isVisible()) {
        view_->setFrame(frame);
    } else {
        view_->show(frame);
    }
}

void CaptureToastPanel::scheduleDismiss() {
    dismissWork_.reset();
    if (model_.hovered()) return;
    dismissWork_ = environment_.runLoop.after(model_.image().isEmpty() ? stay : stayWithImage, [this] { dismiss(); });
}

void CaptureToastPanel::dismiss() {
    model_.dismiss();
    const Appearance& appearance = environment_.host.appearance();
    if (appearance.reduceMotion() || !appearance.translucent()) return view_->close();
    dismissWork_ = environment_.runLoop.after(slideTime, [this] { view_->close(); });
}

}  // namespace brimquill

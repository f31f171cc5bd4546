#include "Brimquill/Surfaces/HUDPanel.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brimquill {
namespace {

/// In seconds: a glance, and the time to read what is long.
constexpr double shortestStay = 1.4, longestStay = 4.0, secondsPerCharacter = 0.05;
/// What the view takes to fade, in seconds.
constexpr double fadeTime = 0.2;
/// In points: above the bottom of the screen, and above the palette that stands there.
constexpr double bottomGap = 84, paletteGap = 312;
constexpr double sideGap = 24;

double stay(const std::string& text) {
    const double toRead = static_cast<double>(text::characterCount(text)) * secondsPerCharacter;
    return std::clamp(toRead, shortestStay, longestStay);
}

}  // namespace

void HUDModel::setContent(const std::string& text, const std::string& symbol) {
    text_ = QString::fromStdString(text);
    symbol_ = QString::fromStdString(symbol);
    Q_EMIT contentChanged();
}

void HUDModel::setShown(bool shown) {
    if (std::exchange(shown_, shown) != shown) Q_EMIT shownChanged();
}

HUDPanel::HUDPanel(ViewHost& host, platform::Screens& screens, platform::RunLoop& runLoop,
                   IsPaletteVisible isPaletteVisible)
    : host_(host), screens_(screens), runLoop_(runLoop), isPaletteVisible_(std::move(isPaletteVisible)) {}

HUDPanel::~HUDPanel() = default;

void HUDPanel::show(const std::string& text, const std::string& symbol) {
    presentWork_ = runLoop_.after(0, [this, text, symbol] { present(text, symbol); });
}

void HUDPanel::prepare() {
    if (view_) return;
    view_ = std::make_unique<PanelView>(host_, platform::PanelRole::display,
                                        QUrl(QStringLiteral("qrc:/brimquill/Surfaces/Views/HUDView.qml")),
                                        QVariantMap{{QStringLiteral("model"), QVariant::fromValue(&model_)}});
}

void HUDPanel::present(const std::string& text, const std::string& symbol) {
    const auto screen = screens_.main();
    if (!screen) return;
    prepare();
    model_.setContent(text, symbol);
    if (view_->isVisible()) {
        view_->setFrame(frame(*screen));
    } else if (!view_->show(frame(*screen))) {
        return;
    }
    model_.setShown(true);
    dismissWork_ = runLoop_.after(stay(text), [this] { fadeOut(); });
}

void HUDPanel::fadeOut() {
    model_.setShown(false);
    const auto close = [this] { view_->close(); };
    if (host_.appearance().reduceMotion() || !host_.appearance().translucent()) return close();
    dismissWork_ = runLoop_.after(fadeTime, close);
}

platform::Rect HUDPanel::frame(const platform::Screen& screen) const {
    const platform::Rect& visible = screen.visibleFrame;
    const double width = std::min(std::ceil(view_->implicitWidth()), visible.width - 2 * sideGap);
    const double height = view_->implicitHeight();
    const double gap = isPaletteVisible_() ? paletteGap : bottomGap;
    return {std::round(visible.x + (visible.width - width) / 2), visible.y + visible.height - gap - height, width,
            height};
}

}  // namespace brimquill

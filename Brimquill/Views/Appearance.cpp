#include "Brimquill/Views/Appearance.h"

#include "Brimquill/Views/Symbols.h"

namespace brimquill {

Appearance::Appearance(AppSettings& settings, platform::SystemAppearance& system, platform::Panels& panels)
    : settings_(settings), system_(system), panels_(panels), translucent_(panels.isTranslucencyAvailable()) {
    connect(&settings, &AppSettings::appearanceModeChanged, this, &Appearance::changed);
    connect(&settings, &AppSettings::accentColorNameChanged, this, &Appearance::changed);
    observation_ = system.observe([this] { Q_EMIT changed(); });
}

bool Appearance::dark() const {
    if (const auto chosen = settings_.nsAppearance()) return *chosen == AppSettings::Appearance::darkAqua;
    return system_.prefersDark();
}

QString Appearance::accentFill() const {
    return QString::fromUtf8(settings_.accentColor().fill);
}

QString Appearance::accentInk() const {
    const AppSettings::Accent& accent = settings_.accentColor();
    return QString::fromUtf8(dark() ? accent.inkOnDark : accent.fill);
}

void Appearance::refreshTranslucency() {
    const bool available = panels_.isTranslucencyAvailable();
    if (available == translucent_) return;
    translucent_ = available;
    Q_EMIT translucentChanged();
}

QString Appearance::glyph(const QString& symbol) const {
    return Symbols::glyph(symbol.toStdString());
}

QString Appearance::symbolFamily() const {
    return QString::fromUtf8(Symbols::fontFamily);
}

}  // namespace brimquill

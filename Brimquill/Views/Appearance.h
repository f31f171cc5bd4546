#pragma once

#include "Brimquill/Settings/AppSettings.h"
#include "Platform/Panels.h"
#include "Platform/SystemAppearance.h"

#include <QObject>
#include <QString>

namespace brimquill {

/// How the program's windows look now, by the user's settings and the desktop's. Views know it as `appearance`. Main
/// thread.
class Appearance final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(QString accentFill READ accentFill NOTIFY changed)
    Q_PROPERTY(QString accentInk READ accentInk NOTIFY changed)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    Q_PROPERTY(bool translucent READ translucent NOTIFY translucentChanged)

public:
    /// All must outlive it.
    Appearance(AppSettings& settings, platform::SystemAppearance& system, platform::Panels& panels);

    bool dark() const;
    /// The accent behind white text, and as text or symbol on what the windows look like now. "#RRGGBB".
    QString accentFill() const;
    QString accentInk() const;
    bool reduceMotion() const { return system_.reduceMotion(); }
    /// Whether windows may show what lies below them.
    bool translucent() const { return translucent_; }

    /// Asks the window system anew whether it can do translucency; to be called before a window shows.
    void refreshTranslucency();

    /// The glyph of a named symbol, to be drawn in `symbolFamily`.
    Q_INVOKABLE QString glyph(const QString& symbol) const;
    Q_INVOKABLE QString symbolFamily() const;

Q_SIGNALS:
    void changed();
    void translucentChanged();

private:
    AppSettings& settings_;
    platform::SystemAppearance& system_;
    platform::Panels& panels_;
    bool translucent_;
    platform::Token observation_;
};

}  // namespace brimquill

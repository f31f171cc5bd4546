#pragma once

#include "Platform/HandlerList.h"
#include "Platform/SystemAppearance.h"

#include <QDBusVariant>
#include <QObject>

#include <optional>

namespace brimquill::platform {

/// What the desktop's settings portal says, asked for without waiting; until and unless it answers, what the toolkit's
/// colours suggest.
class DesktopAppearance final : public QObject, public SystemAppearance {
    Q_OBJECT

public:
    DesktopAppearance();
    bool prefersDark() const override;
    bool reduceMotion() const override { return reduceMotion_; }
    Token observe(std::function<void()> changed) override { return observers_.add(std::move(changed)); }

private Q_SLOTS:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void ask(const QString& space, const QString& key);

    HandlerList<std::function<void()>> observers_;
    std::optional<bool> prefersDark_;
    bool reduceMotion_ = false;
};

/// Whether there is a session bus to talk to. Where there is none, the D-Bus library would start one.
bool hasSessionBus();

}  // namespace brimquill::platform

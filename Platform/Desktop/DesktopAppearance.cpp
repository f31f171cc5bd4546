#include "Platform/Desktop/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>

namespace brimquill::platform {
namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto colorScheme = QStringLiteral("color-scheme");
const auto gnome = QStringLiteral("org.gnome.desktop.interface");
const auto animations = QStringLiteral("enable-animations");

}  // namespace

bool hasSessionBus() {
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return true;
    return QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

DesktopAppearance::DesktopAppearance() {
    if (!hasSessionBus()) return;
    QDBusConnection::sessionBus().connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(appearance, colorScheme);
    ask(gnome, animations);
}

void DesktopAppearance::ask(const QString& space, const QString& key) {
    auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    call.setArguments({space, key});
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, space, key] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) settingChanged(space, key, reply.value());
    });
}

void DesktopAppearance::settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
    QVariant content = value.variant();
    // One of the portal's calls wraps its answer twice.
    if (content.canConvert<QDBusVariant>()) content = content.value<QDBusVariant>().variant();
    const bool darkBefore = prefersDark(), motionBefore = reduceMotion_;
    constexpr uint noPreference = 0, dark = 1;
    if (space == appearance && key == colorScheme && content.toUInt() != noPreference) {
        prefersDark_ = content.toUInt() == dark;
    } else if (space == appearance && key == colorScheme) {
        prefersDark_.reset();
    } else if (space == gnome && key == animations) {
        reduceMotion_ = !content.toBool();
    }
    if (prefersDark() != darkBefore || reduceMotion_ != motionBefore) observers_.callAll();
}

bool DesktopAppearance::prefersDark() const {
    if (prefersDark_) return *prefersDark_;
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace brimquill::platform

#include "tests/platform/FakePortal.h"

#include "tests/platform/Desktop.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace brimquill::platform {

struct PortalSelection {
    QString id, option;
};
QDBusArgument& operator<<(QDBusArgument& out, const PortalSelection& value) {
    out.beginStructure();
    out << value.id << value.option;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalSelection& value) {
    in.beginStructure();
    in >> value.id >> value.option;
    in.endStructure();
    return in;
}

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto connectionName = QStringLiteral("portal");

}  // namespace

FakePortal::FakePortal(Dialogs dialogs)
    : connection_(QDBusConnection::connectToBus(QString::fromStdString(privateBus()), connectionName)),
      dialogs_(dialogs) {
    qDBusRegisterMetaType<PortalSelection>();
    qDBusRegisterMetaType<QList<PortalSelection>>();
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(privateBus()));
    connection_.registerVirtualObject(path, this, QDBusConnection::SubPath);
    connection_.registerService(service);
}

FakePortal::~FakePortal() {
    vanish();
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void FakePortal::vanish() {
    connection_.unregisterObject(path, QDBusConnection::UnregisterTree);
    connection_.unregisterService(service);
    QDBusConnection::disconnectFromBus(connectionName);
}

void FakePortal::set(const QString& space, const QString& key, const QVariant& value) {
    settings_[{space, key}] = value;
    auto signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Settings"),
                                             QStringLiteral("SettingChanged"));
    signal.setArguments({space, key, QVariant::fromValue(QDBusVariant(value))});
    connection_.send(signal);
}

QString FakePortal::requestPath(const QDBusMessage& message) const {
    if (dialogs_ == Dialogs::shownElsewhere) return path + QStringLiteral("/request/elsewhere");
    const auto options = message.arguments().at(2);
    const auto map = qdbus_cast<QVariantMap>(options);
    return QStringLiteral("%1/request/%2/%3")
        .arg(path, message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_')),
             map.value(QStringLiteral("handle_token")).toString());
}

bool FakePortal::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.member() == QLatin1String("Read")) {
        ++readCount_;
        const auto found = settings_.find({message.arguments().at(0).toString(), message.arguments().at(1).toString()});
        if (found == settings_.end()) {
            return connection.send(message.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                                            QStringLiteral("no such setting")));
        }
        const QDBusVariant inner(found->second);
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }
    if (message.interface() != QLatin1String("org.freedesktop.portal.FileChooser")) return false;
    if (dialogs_ == Dialogs::refused) return false;
    requests_.push_back(message);
    return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(requestPath(message)))));
}

void FakePortal::answer(uint response, const QStringList& uris, std::optional<int> choice) {
    QVariantMap results{{QStringLiteral("uris"), uris}};
    if (choice) {
        const QList<PortalSelection> choices{{QStringLiteral("choice"), QString::number(*choice)}};
        results[QStringLiteral("choices")] = QVariant::fromValue(choices);
    }
    auto signal = QDBusMessage::createSignal(
        requestPath(requests_.back()), QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal.setArguments({response, results});
    connection_.send(signal);
}

}  // namespace brimquill::platform

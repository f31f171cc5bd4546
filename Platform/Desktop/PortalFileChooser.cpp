#include "Platform/Desktop/PortalFileChooser.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QUrl>
#include <QUuid>

#include <utility>

namespace brimquill::platform {

// The portal's own shapes: a filter is a name and its patterns, a choice an id, a label, its options and the first one.
struct PortalPattern {
    uint kind = 0;
    QString pattern;
};
struct PortalFilter {
    QString name;
    QList<PortalPattern> patterns;
};
struct PortalOption {
    QString id, label;
};
struct PortalChoice {
    QString id, label;
    QList<PortalOption> options;
    QString initial;
};

QDBusArgument& operator<<(QDBusArgument& out, const PortalPattern& value) {
    out.beginStructure();
    out << value.kind << value.pattern;
    out.endStructure();
    return out;
}
QDBusArgument& operator<<(QDBusArgument& out, const PortalFilter& value) {
    out.beginStructure();
    out << value.name << value.patterns;
    out.endStructure();
    return out;
}
QDBusArgument& operator<<(QDBusArgument& out, const PortalOption& value) {
    out.beginStructure();
    out << value.id << value.label;
    out.endStructure();
    return out;
}
QDBusArgument& operator<<(QDBusArgument& out, const PortalChoice& value) {
    out.beginStructure();
    out << value.id << value.label << value.options << value.initial;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalPattern& value) {
    in.beginStructure();
    in >> value.kind >> value.pattern;
    in.endStructure();
    return in;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalFilter& value) {
    in.beginStructure();
    in >> value.name >> value.patterns;
    in.endStructure();
    return in;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalOption& value) {
    in.beginStructure();
    in >> value.id >> value.label;
    in.endStructure();
    return in;
}
const QDBusArgument& operator>>(const QDBusArgument& in, PortalChoice& value) {
    in.beginStructure();
    in >> value.id >> value.label >> value.options >> value.initial;
    in.endStructure();
    return in;
}

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto choiceId = QStringLiteral("choice");

void registerShapes() {
    static const bool registered = [] {
        qDBusRegisterMetaType<PortalPattern>();
        qDBusRegisterMetaType<QList<PortalPattern>>();
        qDBusRegisterMetaType<PortalFilter>();
        qDBusRegisterMetaType<QList<PortalFilter>>();
        qDBusRegisterMetaType<PortalOption>();
        qDBusRegisterMetaType<QList<PortalOption>>();
        qDBusRegisterMetaType<PortalChoice>();
        qDBusRegisterMetaType<QList<PortalChoice>>();
        return true;
    }();
    static_cast<void>(registered);
}

/// Patterns of the portal know no "ignore case": each letter is given both ways.
QString patternOf(const std::string& extension) {
    QString pattern = QStringLiteral("*.");
    for (const QChar c : QString::fromStdString(extension)) {
        if (c.isLetter()) {
            pattern += QLatin1Char('[') + c.toLower() + c.toUpper() + QLatin1Char(']');
        } else {
            pattern += c;
        }
    }
    return pattern;
}

std::size_t selectedChoice(const QVariantMap& results) {
    const QVariant choices = results.value(QStringLiteral("choices"));
    if (!choices.canConvert<QDBusArgument>()) return 0;
    std::size_t selected = 0;
    const auto argument = choices.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType) return 0;
    argument.beginArray();
    while (!argument.atEnd()) {
        PortalOption choice;
        argument >> choice;
        if (choice.id == choiceId) selected = choice.label.toUInt();
    }
    argument.endArray();
    return selected;
}

}  // namespace

QVariantMap PortalFileChooser::options(const OpenPanel::Request& request) {
    registerShapes();
    QVariantMap options{{QStringLiteral("multiple"), false}};
    if (request.allowsDirectories) options[QStringLiteral("directory")] = true;
    if (request.allowedExtensions.empty() || request.allowsDirectories) return options;
    PortalFilter filter;
    QStringList names;
    for (const std::string& extension : request.allowedExtensions) {
        filter.patterns.append({0, patternOf(extension)});
        names += QStringLiteral("*.") + QString::fromStdString(extension);
    }
    filter.name = names.join(QLatin1Char(' '));
    options[QStringLiteral("filters")] = QVariant::fromValue(QList<PortalFilter>{filter});
    return options;
}

QVariantMap PortalFileChooser::options(const OpenPanel::SaveRequest& request) {
    registerShapes();
    QVariantMap options{{QStringLiteral("current_name"), QString::fromStdString(request.suggestedName)}};
    if (request.choices.empty()) return options;
    PortalChoice choice{choiceId, QString::fromStdString(request.choiceLabel), {}, QStringLiteral("0")};
    for (std::size_t index = 0; index < request.choices.size(); ++index) {
        choice.options.append({QString::number(index), QString::fromStdString(request.choices[index])});
    }
    options[QStringLiteral("choices")] = QVariant::fromValue(QList<PortalChoice>{choice});
    return options;
}

PortalFileChooser::PortalFileChooser(const QString& method, const QString& title, QVariantMap options, Done done,
                                     QObject* parent)
    : QObject(parent),
      done_(std::move(done)),
      portal_(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForUnregistration) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = QStringLiteral("brimquill") + QUuid::createUuid().toString(QUuid::Id128);
    options[QStringLiteral("handle_token")] = token;
    // Listened to before the call is made: the answer could come first.
    const QString sender = bus.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    listen(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token));
    connect(&portal_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish(Outcome::Kind::cancelled); });

    auto call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/portal/desktop"),
                                               QStringLiteral("org.freedesktop.portal.FileChooser"), method);
    call.setArguments({QString(), title, options});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (!reply.isValid()) {
            finish(Outcome::Kind::unavailable);
        } else if (reply.value().path() != requestPath_) {
            listen(reply.value().path());  // an older portal chooses the path itself
        }
    });
}

void PortalFileChooser::listen(const QString& requestPath) {
    requestPath_ = requestPath;
    QDBusConnection::sessionBus().connect(service, requestPath, QStringLiteral("org.freedesktop.portal.Request"),
                                          QStringLiteral("Response"), this, SLOT(responded(uint, QVariantMap)));
}

void PortalFileChooser::responded(uint response, const QVariantMap& results) {
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    const QUrl url = uris.isEmpty() ? QUrl() : QUrl(uris.front());
    if (response != 0 || !url.isLocalFile()) {
        finish(Outcome::Kind::cancelled);
    } else {
        finish(Outcome::Kind::chosen, {url.toLocalFile().toStdString(), selectedChoice(results)});
    }
}

void PortalFileChooser::finish(Outcome::Kind kind, OpenPanel::SaveAnswer answer) {
    const Done done = std::exchange(done_, nullptr);
    if (!done) return;
    deleteLater();
    done({kind, std::move(answer)});
}

}  // namespace brimquill::platform

#pragma once

#include "Platform/OpenPanel.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

namespace brimquill::platform {

/// One dialog of the desktop portal. It answers once, then deletes itself.
class PortalFileChooser final : public QObject {
    Q_OBJECT

public:
    struct Outcome {
        enum class Kind { chosen, cancelled, unavailable };
        Kind kind = Kind::unavailable;
        OpenPanel::SaveAnswer answer;
    };
    using Done = std::function<void(const Outcome&)>;

    /// `method` is "OpenFile" or "SaveFile".
    PortalFileChooser(const QString& method, const QString& title, QVariantMap options, Done done, QObject* parent);

    /// The options of the two requests in the portal's words.
    static QVariantMap options(const OpenPanel::Request& request);
    static QVariantMap options(const OpenPanel::SaveRequest& request);

private Q_SLOTS:
    void responded(uint response, const QVariantMap& results);

private:
    void listen(const QString& requestPath);
    void finish(Outcome::Kind kind, OpenPanel::SaveAnswer answer = {});

    QString requestPath_;
    Done done_;
    QDBusServiceWatcher portal_;
};

}  // namespace brimquill::platform

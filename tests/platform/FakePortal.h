#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The desktop's portal on the tests' own bus: settings that can be changed, and file dialogs that wait for an answer.
/// While one lives, the bus is the session's.
class FakePortal final : private QDBusVirtualObject {
public:
    enum class Dialogs { shown, refused, shownElsewhere };

    explicit FakePortal(Dialogs dialogs = Dialogs::shown);
    ~FakePortal() override;

    /// What a setting is from now on; tells those who listen.
    void set(const QString& space, const QString& key, const QVariant& value);
    /// How many settings were asked for.
    int readCount() const { return readCount_; }
    /// The calls that asked for a dialog.
    const std::vector<QDBusMessage>& requests() const { return requests_; }
    /// Answers the dialog asked for last: 0 chosen, 1 cancelled, 2 ended otherwise. No choice, none is told.
    void answer(uint response, const QStringList& uris, std::optional<int> choice = {});
    /// Leaves the bus.
    void vanish();

private:
    QString introspect(const QString& path) const override { return path.left(0); }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString requestPath(const QDBusMessage& message) const;

    QDBusConnection connection_;
    Dialogs dialogs_;
    std::map<std::pair<QString, QString>, QVariant> settings_;
    std::vector<QDBusMessage> requests_;
    int readCount_ = 0;
};

}  // namespace brimquill::platform

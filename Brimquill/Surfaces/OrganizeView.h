#pragma once

#include "BrimquillCore/ClipStore.h"

#include <QObject>
#include <QString>

#include <string>

namespace brimquill {

/// A clip's tags and pinboard while they are edited. Main thread.
class OrganizeView final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString dismissLabel READ dismissLabel CONSTANT)
    Q_PROPERTY(QString preview READ preview CONSTANT)
    Q_PROPERTY(QString tags MEMBER tags NOTIFY tagsChanged)
    Q_PROPERTY(QString folderName MEMBER folderName NOTIFY folderNameChanged)
    Q_PROPERTY(bool startsWithPinboard READ startsWithPinboard CONSTANT)

public:
    enum class Field { tags, pinboard };
    /// What the form says of itself: its title, and the caption of the button that closes it without saving.
    struct Wording {
        std::string title = "Tags & Pinboard";
        std::string dismissLabel = "Cancel";
    };

    /// Starts with what the clip has. `store` must outlive it.
    OrganizeView(ClipItem item, Field initialFocus, Wording wording, ClipStore& store);

    QString title() const { return QString::fromStdString(wording_.title); }
    QString dismissLabel() const { return QString::fromStdString(wording_.dismissLabel); }
    /// One line of what the clip holds.
    QString preview() const;
    bool startsWithPinboard() const { return initialFocus_ == Field::pinboard; }

    /// Gives the clip the tags between the commas and files it at the path, making what is missing of that; without a
    /// path it is in no pinboard. Then it is done.
    Q_INVOKABLE void save();
    /// Done without a change.
    Q_INVOKABLE void cancel() { Q_EMIT done(); }

    /// What stands in the fields.
    QString tags, folderName;

Q_SIGNALS:
    void done();
    void tagsChanged();
    void folderNameChanged();

private:
    std::string folderPath() const;

    ClipItem item_;
    Field initialFocus_;
    Wording wording_;
    ClipStore& store_;
};

}  // namespace brimquill

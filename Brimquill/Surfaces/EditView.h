#pragma once

#include "BrimquillCore/ClipStore.h"
#include "Platform/RunLoop.h"

#include <QObject>
#include <QPointer>
#include <QString>

class QQuickTextDocument;
class QTextDocument;

namespace brimquill {

/// A clip's text while it is edited. Main thread.
class EditView final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString count READ count NOTIFY countChanged)

public:
    /// `store` and `runLoop` must outlive it.
    EditView(ClipItem item, ClipStore& store, platform::RunLoop& runLoop);

    /// The text to start with.
    QString text() const { return QString::fromStdString(item_.text); }
    /// How many characters, as people count them, stand there. Of a long text it is a moment late.
    QString count() const;

    /// The document that the user edits, once it holds `text`.
    Q_INVOKABLE void edit(QQuickTextDocument* document);
    void edit(QTextDocument& document);
    /// Stores the text. Left as it was it stays so to the byte, and so does the clip. Then it is done.
    Q_INVOKABLE void save();
    /// Done without a change.
    Q_INVOKABLE void cancel() { Q_EMIT done(); }

Q_SIGNALS:
    void countChanged();
    void done();

private:
    std::string editedText() const;
    void documentChanged();
    void recount();

    ClipItem item_;
    ClipStore& store_;
    platform::RunLoop& runLoop_;
    QPointer<QTextDocument> document_;
    bool isEdited_ = false;
    std::size_t count_ = 0;
    platform::Token countWork_;
};

}  // namespace brimquill

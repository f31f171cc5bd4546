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
    Q_PROPERTY(bool isEditable READ isEditable CONSTANT)
    Q_PROPERTY(bool hasWords READ hasWords NOTIFY hasWordsChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)

public:
    /// `store` and `runLoop` must outlive it.
    EditView(ClipItem item, ClipStore& store, platform::RunLoop& runLoop);

    /// The text to start with; empty when it is too long to be edited.
    QString text() const { return isEditable() ? QString::fromStdString(item_.text) : QString(); }
    bool isEditable() const { return isEditable_; }
    /// Whether lines may be broken between words; with very long words that would take for ever.
    bool hasWords() const { return hasWords_; }
    /// How many characters, as people count them, stand there, which of a long text is a moment late; or why something
    /// was not taken in.
    QString status() const;
    /// Whether a text may be inserted. One that would make the user wait at each key may not, and `status` tells so.
    Q_INVOKABLE bool admits(const QString& inserted);

    /// The document that the user edits, once it holds `text`.
    Q_INVOKABLE void edit(QQuickTextDocument* document);
    void edit(QTextDocument& document);
    /// Stores the text, with its lines ended as they were. Left as it was it stays so to the byte, and so does the
    /// clip. Then it is done.
    Q_INVOKABLE void save();
    /// Done without a change.
    Q_INVOKABLE void cancel() { Q_EMIT done(); }

Q_SIGNALS:
    void statusChanged();
    void hasWordsChanged();
    void done();

private:
    std::string editedText() const;
    void documentChanged();
    void recount();

    ClipItem item_;
    ClipStore& store_;
    platform::RunLoop& runLoop_;
    QString lineEnd_;
    QPointer<QTextDocument> document_;
    bool isEditable_ = true, hasWords_ = true, isEdited_ = false, hasRefused_ = false;
    std::size_t count_ = 0;
    platform::Token countWork_;
};

}  // namespace brimquill

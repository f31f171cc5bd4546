#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

namespace brimquill {

/// What the capture toast says now.
class ToastModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUrl image READ image NOTIFY contentChanged)
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY contentChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY contentChanged)
    Q_PROPERTY(bool shown READ shown NOTIFY contentChanged)
    Q_PROPERTY(int count READ count NOTIFY contentChanged)
    Q_PROPERTY(unsigned pulse READ pulse NOTIFY pulseChanged)
    Q_PROPERTY(bool hovered READ hovered WRITE setHovered NOTIFY hoveredChanged)

public:
    struct Content {
        /// A file URL; empty when there is no picture.
        QUrl image;
        QString title;
        /// Empty when there is none.
        QString subtitle;
        QString symbol;
    };

    /// Shows `content`: the first of a row of captures when nothing shows, otherwise one more.
    void show(Content content);
    void dismiss();

    const std::optional<Content>& content() const { return content_; }
    QUrl image() const { return content_ ? content_->image : QUrl(); }
    QString title() const { return content_ ? content_->title : QString(); }
    QString subtitle() const { return content_ ? content_->subtitle : QString(); }
    QString symbol() const { return content_ ? content_->symbol : QString(); }
    bool shown() const { return content_.has_value(); }
    /// How many captures the toast that is up has told of; that of the last one when none is up.
    int count() const { return count_; }
    /// Another value each time the view should beat.
    unsigned pulse() const { return pulse_; }
    /// Whether the pointer is over it.
    bool hovered() const { return hovered_; }
    void setHovered(bool hovered);

    /// The view was clicked.
    Q_INVOKABLE void open() { Q_EMIT opened(); }

Q_SIGNALS:
    void contentChanged();
    void pulseChanged();
    void hoveredChanged();
    void opened();

private:
    std::optional<Content> content_;
    int count_ = 0;
    unsigned pulse_ = 0;
    bool hovered_ = false;
};

}  // namespace brimquill

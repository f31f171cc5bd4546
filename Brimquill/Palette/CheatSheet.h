#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>

#include <string>
#include <vector>

namespace brimquill {

/// The palette's keys, as the cheat sheet lists them. Main thread.
class CheatSheet final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY changed)
    Q_PROPERTY(QVariantList rows READ rowsForView NOTIFY changed)

public:
    struct Row {
        std::string chord, text;
        friend bool operator==(const Row&, const Row&) = default;
    };

    using QObject::QObject;

    /// All 27, in their order.
    static const std::vector<Row>& keys();
    /// Those whose chord or text contains the query, in any case; all for the empty one.
    static std::vector<Row> filtered(const std::string& query);

    QString query() const { return query_; }
    void setQuery(const QString& query);
    QVariantList rowsForView() const;

Q_SIGNALS:
    void changed();

private:
    QString query_;
};

}  // namespace brimquill

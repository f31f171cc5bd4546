#pragma once

#include "Brimquill/Palette/CardStyle.h"
#include "Brimquill/Palette/ExplorerRow.h"

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace brimquill {

/// The explorer's rows as a list for views. Main thread.
class ExplorerListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        /// "header", "folder", "tag", "kind" or "app".
        typeRole = Qt::UserRole + 1,
        labelRole,
        /// The path of the pinboard that a found one lies in; empty within the tree, which shows it.
        placeRole,
        depthRole,
        countRole,
        fillRole,
        inkRole,
        expandedRole,
        hasChildrenRole,
    };

    explicit ExplorerListModel(CardStyle& style) : style_(style) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Puts these rows in place of those before; rows that stay the same are left alone.
    void setRows(const std::vector<ExplorerRow>& rows);

private:
    struct Line {
        const char* type = "header";
        std::string label, place{};
        int depth = 0, count = 0;
        CardColor color{};
        bool expanded = false, hasChildren = false;
        friend bool operator==(const Line&, const Line&) = default;
    };
    Line line(const ExplorerRow& row);

    CardStyle& style_;
    std::vector<Line> lines_;
};

}  // namespace brimquill

#pragma once

#include "Brimquill/Palette/Card.h"

#include <QAbstractListModel>
#include <QList>

#include <set>
#include <vector>

namespace brimquill {

/// The cards of the strip as a list for views. Main thread.
class ClipListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        idRole = Qt::UserRole + 1,
        titleRole,
        headerFillRole,
        headerTextRole,
        ageRole,
        bodyRole,
        textRole,
        captionRole,
        imageRole,
        swatchFillRole,
        swatchTextRole,
        iconRole,
        fileIconRole,
        footerRole,
        pinnedRole,
        expiresRole,
        markedRole,
        copiedRole,
        arrivedRole,
        badgeRole,
        accessibleNameRole,
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// How cards take the place of others: unseen, or so that each can be followed to its new place.
    enum class Change { atOnce, followed };
    /// Puts these cards in place of those before; none is marked then.
    void setCards(std::vector<Card> cards, Change change);
    /// Puts another card in place of one; `row` must be there.
    void setCard(int row, Card card);
    /// Which rows are marked beside the focused one.
    void setMarked(const std::set<int>& marked);
    /// The card that says "Copied!", and the one that has just arrived; 0 for none.
    void setCopied(std::int64_t id);
    void setArrived(std::int64_t id);
    const std::vector<Card>& cards() const { return cards_; }

Q_SIGNALS:
    /// Cards have been followed to new places: for each row, where its card stood before; -1 for a new one.
    void rearranged(const QList<int>& from);

private:
    QList<int> originsOf(const std::vector<Card>& cards) const;
    void changed(int row, Role role);
    void changedId(std::int64_t id, Role role);

    std::vector<Card> cards_;
    std::set<int> marked_;
    std::int64_t copiedId_ = 0, arrivedId_ = 0;
};

}  // namespace brimquill

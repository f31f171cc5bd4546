#include "Brimquill/Palette/ClipListModel.h"

#include "Brimquill/Palette/Thumbnails.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace brimquill {
namespace {

/// ⌘1 to ⌘9.
constexpr int numberedCards = 9;

QString bodyName(CardBody body) {
    switch (body) {
        case CardBody::text:
            return QStringLiteral("text");
        case CardBody::image:
            return QStringLiteral("image");
        case CardBody::color:
            return QStringLiteral("color");
        case CardBody::files:
            return QStringLiteral("files");
        case CardBody::missingFile:
            return QStringLiteral("missingFile");
        case CardBody::emoji:
            return QStringLiteral("emoji");
    }
    return {};
}

}  // namespace

int ClipListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cards_.size());
}

QVariant ClipListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& card = cards_[static_cast<std::size_t>(index.row())];
    const auto string = [](const std::string& text) { return QString::fromStdString(text); };
    switch (role) {
        case idRole:
            return QVariant::fromValue<qint64>(card.id);
        case titleRole:
            return string(card.header.title);
        case headerFillRole:
            return string(card.header.color.fill);
        case headerTextRole:
            return string(card.header.color.onFill);
        case ageRole:
            return string(card.age);
        case bodyRole:
            return bodyName(card.body);
        case textRole:
            return string(card.text);
        case captionRole:
            return string(card.caption);
        case imageRole:
            return imageUrl(Thumbnails::coverProvider, card.imagePath);
        case swatchFillRole:
            return string(card.swatch.fill);
        case swatchTextRole:
            return string(card.swatch.onFill);
        case iconRole:
            return imageUrl(DesktopIconImages::programProvider, card.sourceBundleId);
        case fileIconRole:
            return imageUrl(DesktopIconImages::fileProvider, card.body == CardBody::files ? card.caption : "");
        case footerRole:
            return string(card.footer);
        case pinnedRole:
            return card.isPinned;
        case expiresRole:
            return card.expires;
        case markedRole:
            return marked_.contains(index.row());
        case copiedRole:
            return copiedId_ != 0 && card.id == copiedId_;
        case arrivedRole:
            return arrivedId_ != 0 && card.id == arrivedId_;
        case badgeRole:
            return index.row() < numberedCards ? QStringLiteral("⌘%1").arg(index.row() + 1) : QString();
        case accessibleNameRole:
            return string(card.accessibleName);
        default:
            return {};
    }
}

QHash<int, QByteArray> ClipListModel::roleNames() const {
    return {{idRole, "clipId"},
            {titleRole, "title"},
            {headerFillRole, "headerFill"},
            {headerTextRole, "headerText"},
            {ageRole, "age"},
            {bodyRole, "body"},
            {textRole, "bodyText"},
            {captionRole, "caption"},
            {imageRole, "imageSource"},
            {swatchFillRole, "swatchFill"},
            {swatchTextRole, "swatchText"},
            {iconRole, "iconSource"},
            {fileIconRole, "fileIconSource"},
            {footerRole, "footer"},
            {pinnedRole, "pinned"},
            {expiresRole, "expires"},
            {markedRole, "marked"},
            {copiedRole, "copied"},
            {arrivedRole, "arrived"},
            {badgeRole, "badge"},
            {accessibleNameRole, "accessibleName"}};
}

QList<int> ClipListModel::originsOf(const std::vector<Card>& cards) const {
    std::unordered_map<std::int64_t, int> rows;
    for (int row = 0; row < rowCount(); ++row)
        rows.emplace(cards_[static_cast<std::size_t>(row)].id, row);
    QList<int> origins;
    for (const auto& card : cards) {
        const auto found = rows.find(card.id);
        origins.append(found == rows.end() ? -1 : found->second);
    }
    return origins;
}

void ClipListModel::setCards(std::vector<Card> cards, Change change) {
    const auto origins = change == Change::followed ? originsOf(cards) : QList<int>();
    const auto before = cards_.size(), after = cards.size(), common = std::min(before, after);
    marked_.clear();
    // Rows are changed where they stand: a view then keeps the items it has made, which is what a quick search lives
    // on.
    if (after < before) {
        beginRemoveRows({}, static_cast<int>(after), static_cast<int>(before) - 1);
        cards_.resize(after);
        endRemoveRows();
    }
    std::move(cards.begin(), cards.begin() + static_cast<std::ptrdiff_t>(common), cards_.begin());
    if (common > 0) Q_EMIT dataChanged(index(0), index(static_cast<int>(common) - 1));
    if (after > before) {
        beginInsertRows({}, static_cast<int>(before), static_cast<int>(after) - 1);
        std::move(cards.begin() + static_cast<std::ptrdiff_t>(common), cards.end(), std::back_inserter(cards_));
        endInsertRows();
    }
    if (change == Change::followed) Q_EMIT rearranged(origins);
}

void ClipListModel::setCard(int row, Card card) {
    auto& place = cards_[static_cast<std::size_t>(row)];
    if (place == card) return;
    place = std::move(card);
    Q_EMIT dataChanged(index(row), index(row));
}

void ClipListModel::setMarked(const std::set<int>& marked) {
    const auto before = std::exchange(marked_, marked);
    for (int row = 0; row < rowCount(); ++row) {
        if (before.contains(row) != marked_.contains(row)) changed(row, markedRole);
    }
}

void ClipListModel::setCopied(std::int64_t id) {
    const auto before = std::exchange(copiedId_, id);
    changedId(before, copiedRole);
    changedId(id, copiedRole);
}

void ClipListModel::setArrived(std::int64_t id) {
    const auto before = std::exchange(arrivedId_, id);
    changedId(before, arrivedRole);
    changedId(id, arrivedRole);
}

void ClipListModel::changed(int row, Role role) {
    const auto at = index(row);
    Q_EMIT dataChanged(at, at, {role});
}

void ClipListModel::changedId(std::int64_t id, Role role) {
    if (id == 0) return;
    for (int row = 0; row < rowCount(); ++row) {
        if (cards_[static_cast<std::size_t>(row)].id == id) changed(row, role);
    }
}

}  // namespace brimquill

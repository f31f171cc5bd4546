#include "Brimquill/Palette/ExplorerListModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace brimquill {
namespace {

std::string place(const explorer_row::Folder& row) {
    const auto length = row.folder.name.size() + 1;
    return row.depth > 0 || row.path.size() <= length ? std::string() : row.path.substr(0, row.path.size() - length);
}

}  // namespace

ExplorerListModel::Line ExplorerListModel::line(const ExplorerRow& row) {
    if (const auto* header = std::get_if<explorer_row::Header>(&row)) return {"header", header->title};
    const auto color = style_.color(*scopeOf(row));
    if (const auto* folder = std::get_if<explorer_row::Folder>(&row)) {
        return {"folder", folder->folder.name, place(*folder),     folder->depth, folder->count,
                color,    folder->expanded,    folder->hasChildren};
    }
    if (const auto* tag = std::get_if<explorer_row::Tag>(&row)) return {"tag", tag->tag, {}, 0, tag->count, color};
    if (const auto* app = std::get_if<explorer_row::App>(&row)) return {"app", app->name, {}, 0, app->count, color};
    return {"kind", label(*scopeOf(row)), {}, 0, std::get<explorer_row::Kind>(row).count, color};
}

int ExplorerListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant ExplorerListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& line = lines_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case typeRole:
            return QString::fromLatin1(line.type);
        case labelRole:
            return QString::fromStdString(line.label);
        case placeRole:
            return QString::fromStdString(line.place);
        case depthRole:
            return line.depth;
        case countRole:
            return line.count;
        case fillRole:
            return QString::fromStdString(line.color.fill);
        case inkRole:
            return QString::fromStdString(line.color.ink);
        case expandedRole:
            return line.expanded;
        case hasChildrenRole:
            return line.hasChildren;
        default:
            return {};
    }
}

QHash<int, QByteArray> ExplorerListModel::roleNames() const {
    return {{typeRole, "type"},   {labelRole, "label"},       {placeRole, "place"},
            {depthRole, "depth"}, {countRole, "count"},       {fillRole, "fill"},
            {inkRole, "ink"},     {expandedRole, "expanded"}, {hasChildrenRole, "hasChildren"}};
}

void ExplorerListModel::setRows(const std::vector<ExplorerRow>& rows) {
    std::vector<Line> lines;
    lines.reserve(rows.size());
    for (const auto& row : rows)
        lines.push_back(line(row));
    const auto before = lines_.size(), after = lines.size(), common = std::min(before, after);
    // Rows are changed where they stand: a view then keeps the items it has made.
    if (after < before) {
        beginRemoveRows({}, static_cast<int>(after), static_cast<int>(before) - 1);
        lines_.resize(after);
        endRemoveRows();
    }
    const auto end = lines_.begin() + static_cast<std::ptrdiff_t>(common);
    const auto changed = std::mismatch(lines_.begin(), end, lines.begin());
    if (changed.first != end) {
        const auto first = static_cast<int>(std::distance(lines_.begin(), changed.first));
        std::copy(changed.second, lines.begin() + static_cast<std::ptrdiff_t>(common), changed.first);
        Q_EMIT dataChanged(index(first), index(static_cast<int>(common) - 1));
    }
    if (after > before) {
        beginInsertRows({}, static_cast<int>(before), static_cast<int>(after) - 1);
        lines_ = std::move(lines);
        endInsertRows();
    }
}

}  // namespace brimquill

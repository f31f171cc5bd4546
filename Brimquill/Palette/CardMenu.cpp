#include "Brimquill/Palette/CardMenu.h"

#include <algorithm>

namespace brimquill {

std::vector<CardMenuRow> cardMenuRows(const ClipItem& item, OnStack onStack) {
    using enum CardMenuAction;
    const bool isStored = item.id >= 0;
    std::vector<CardMenuRow> rows{{paste, isStored ? "Paste" : "Insert"}, {copy, "Copy"}};
    if (!isStored) return rows;
    if (item.kind == ClipKind::text || item.kind == ClipKind::ocr) rows.push_back({edit, "Edit…"});
    if (item.kind == ClipKind::file || item.imagePath || item.text.starts_with("http")) rows.push_back({open, "Open"});
    rows.push_back(onStack == OnStack::yes ? CardMenuRow{removeFromStack, "Remove from Paste Stack", true}
                                           : CardMenuRow{addToStack, "Add to Paste Stack", true});
    rows.push_back(item.pinned ? CardMenuRow{unpin, "Unpin"} : CardMenuRow{pin, "Pin"});
    rows.push_back({organize, "Tags & Pinboard…"});
    rows.push_back({deleteClip, "Delete", true});
    return rows;
}

void CardMenu::openAt(int index, double x, double y) {
    const auto& items = environment_.model.items();
    if (index < 0 || index >= static_cast<int>(items.size())) return;
    item_ = items[static_cast<std::size_t>(index)];
    rows_ = cardMenuRows(item_, environment_.stack.contains(item_.id) ? OnStack::yes : OnStack::no);
    x_ = x;
    y_ = y;
    Q_EMIT changed();
    setCurrent(-1);
}

void CardMenu::close() {
    if (!isOpen()) return;
    rows_.clear();
    Q_EMIT changed();
    setCurrent(-1);
}

void CardMenu::activate(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size())) return;
    const auto action = rows_[static_cast<std::size_t>(row)].action;
    const auto item = item_;
    // First, so that what the action brings up does not find the menu over it.
    close();
    perform(action, item);
}

void CardMenu::handle(const platform::Event& event) {
    namespace key = platform::key;
    switch (event.keyCode) {
        case key::down:
            return move(+1);
        case key::up:
            return move(-1);
        case key::returnKey:
            return activate(current_);
        case key::escape:
            return close();
        default:
            return;
    }
}

/// Stops at the ends; with no row chosen, down takes the first and up the last.
void CardMenu::move(int delta) {
    const int last = static_cast<int>(rows_.size()) - 1;
    if (current_ < 0) return setCurrent(delta > 0 ? 0 : last);
    setCurrent(std::clamp(current_ + delta, 0, last));
}

void CardMenu::setCurrent(int row) {
    if (row == current_) return;
    current_ = row;
    Q_EMIT currentChanged();
}

void CardMenu::perform(CardMenuAction action, const ClipItem& item) {
    auto& [model, actions, stack, closePalette, edit, organize] = environment_;
    switch (action) {
        case CardMenuAction::paste:
            closePalette();
            return actions.deliver({item}, PickerActions::Delivery::paste);
        case CardMenuAction::copy:
            return actions.deliver({item}, PickerActions::Delivery::copyOnly);
        case CardMenuAction::edit:
            return edit(item);
        case CardMenuAction::open:
            return openClip(item);
        case CardMenuAction::addToStack:
            stack.add(item.id);
            return model.reloadItems();
        case CardMenuAction::removeFromStack:
            stack.remove(item.id);
            return model.reloadItems();
        case CardMenuAction::pin:
        case CardMenuAction::unpin:
            return actions.setPinned(item.id, action == CardMenuAction::pin);
        case CardMenuAction::organize:
            return organize(item);
        case CardMenuAction::deleteClip:
            return actions.deleteOne(item.id);
    }
}

/// The cards may have moved since the menu opened: the clip counts, not the place.
void CardMenu::openClip(const ClipItem& item) {
    const auto& items = environment_.model.items();
    const auto found = std::find_if(items.begin(), items.end(), [&](const ClipItem& i) { return i.id == item.id; });
    if (found == items.end()) return;
    environment_.model.select(static_cast<int>(found - items.begin()));
    if (environment_.actions.openSelected()) environment_.closePalette();
}

QVariantList CardMenu::rowsForView() const {
    QVariantList list;
    for (const auto& row : rows_) {
        list.append(QVariantMap{{QStringLiteral("title"), QString::fromStdString(row.title)},
                                {QStringLiteral("startsGroup"), row.startsGroup},
                                {QStringLiteral("destructive"), row.action == CardMenuAction::deleteClip}});
    }
    return list;
}

}  // namespace brimquill

#include "Brimquill/Palette/CheatSheet.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>

namespace brimquill {

const std::vector<CheatSheet::Row>& CheatSheet::keys() {
    static const std::vector<Row> rows{
        {"↩", "Paste into the app you came from"},
        {"click", "Copy to clipboard"},
        {"⌥↩", "Copy without pasting"},
        {"⌘1–9", "Quick-paste the Nth card"},
        {"← →", "Move selection"},
        {"⌘← →  ·  ⇥", "Cycle scope chips"},
        {"⌥← →", "Cycle type filters"},
        {"⌘M", "Most recent (clear all filters)"},
        {"⌘L", "Links only"},
        {"⌘I", "Images only"},
        {"⌘G", "GIFs only"},
        {"⌘S", "Screenshots only"},
        {"⌘⇧T", "Jump to your most-used tag"},
        {"⌘F", "Open the pinboards & tags explorer"},
        {"⌘E", "Emoji library (type to search, ↩ to insert)"},
        {"⌘T", "Tag the selected card (type, ↩ to save)"},
        {"⌘P", "File the selected card into a pinboard"},
        {"⌘Y", "Quick-preview the focused card"},
        {"⌘O", "Open a link or file in its app"},
        {"⌘/⇧-click", "Multi-select cards"},
        {"⌘A", "Select all"},
        {"⌦", "Delete selected"},
        {"⌘Z", "Undo delete"},
        {"⌘J", "Pause / resume capture"},
        {"⌥⌘V", "Paste next item from the stack"},
        {"esc", "Back out one level / close"},
        {"⌘/", "Toggle this cheat-sheet"},
    };
    return rows;
}

std::vector<CheatSheet::Row> CheatSheet::filtered(const std::string& query) {
    const auto wanted = text::lowercased(query);
    std::vector<Row> rows;
    std::copy_if(keys().begin(), keys().end(), std::back_inserter(rows), [&](const Row& row) {
        return text::contains(text::lowercased(row.text), wanted) ||
               text::contains(text::lowercased(row.chord), wanted);
    });
    return rows;
}

void CheatSheet::setQuery(const QString& query) {
    if (query == query_) return;
    query_ = query;
    Q_EMIT changed();
}

QVariantList CheatSheet::rowsForView() const {
    QVariantList list;
    for (const auto& row : filtered(query_.toStdString())) {
        list.append(QVariantMap{{QStringLiteral("chord"), QString::fromStdString(row.chord)},
                                {QStringLiteral("text"), QString::fromStdString(row.text)}});
    }
    return list;
}

}  // namespace brimquill

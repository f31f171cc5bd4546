#pragma once

#include "Brimquill/Palette/ExplorerListModel.h"
#include "Brimquill/Palette/ExplorerRow.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brimquill {

/// Everything that a scope can be, to be browsed by keys: pinboards as a tree, tags, kinds of clips, applications. Main
/// thread.
class Explorer final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool open READ explorerOpen WRITE setExplorerOpen NOTIFY openChanged)
    Q_PROPERTY(QString search READ searchForView WRITE setSearchFromView NOTIFY searchChanged)
    Q_PROPERTY(int selection READ explorerSelection NOTIFY selectionChanged)
    Q_PROPERTY(brimquill::ExplorerListModel* rows READ rowsForView CONSTANT)

public:
    struct Environment {
        ClipStore& store;
        NotificationCenter& center;
        CardStyle& style;
        /// Whose explorer it is: the sender of its notification.
        const void* owner;
        /// Makes a chosen row the palette's scope.
        std::function<void(const PickerFilter&)> choose;
    };

    explicit Explorer(Environment environment);

    /// Opening, also when it is open already, begins anew: nothing typed, the first row selected; and is broadcast as
    /// `TourEvents::explorerDidOpen`.
    bool explorerOpen() const { return isOpen_; }
    void setExplorerOpen(bool open);
    /// Typing selects the first row.
    const std::string& explorerSearch() const { return search_; }
    void setExplorerSearch(std::string search);
    /// An index into `explorerRows`. It stays when rows go, and may then name another row or none.
    int explorerSelection() const { return selection_; }
    void setExplorerSelection(int index);
    const std::set<std::int64_t>& expandedFolderIds() const { return expandedFolderIds_; }
    void setExpandedFolderIds(std::set<std::int64_t> ids);

    /// True at every call to the store as it is then.
    const std::vector<ExplorerRow>& explorerRows();
    /// The row at the selection; nothing when there is none.
    std::optional<ExplorerRow> selectedRowSignature();

    /// To the next row in that direction that is no header; stays where there is none.
    void explorerMove(int delta);
    void explorerExpand();
    /// Closes the selected folder; from one that is closed, goes to its parent and closes that.
    void explorerCollapse();
    /// Makes the selected row the palette's scope and closes the explorer; a header does nothing.
    void explorerActivate();

    /// Prepares for a new appearance of the palette: closed, the tree of these folders fully open.
    void reset(std::set<std::int64_t> folderIds);
    /// Shows what the store holds by now, if the explorer is open.
    void updateView();
    /// Does a part of what the next opening needs, so that it is quick; true while there is more to do.
    bool prepare();

    // For views.
    Q_INVOKABLE void rowClicked(int index);
    Q_INVOKABLE void disclosureClicked(int index);
    QString searchForView() const { return QString::fromStdString(search_); }
    void setSearchFromView(const QString& search) { setExplorerSearch(search.toStdString()); }
    ExplorerListModel* rowsForView() { return &list_; }

Q_SIGNALS:
    void openChanged();
    void searchChanged();
    void selectionChanged();

private:
    const explorer_row::Folder* selectedFolder();
    void setExpanded(std::int64_t id, bool expanded);
    void readFacts(int parts);

    Environment environment_;
    ExplorerListModel list_;
    bool isOpen_ = false;
    std::string search_;
    int selection_ = 0;
    std::set<std::int64_t> expandedFolderIds_;
    /// Kept for as long as neither the store nor what they are made from changes.
    ExplorerFacts facts_;
    int factsRead_ = 0;
    std::optional<std::vector<ExplorerRow>> rows_;
    /// Counts the changes of the store, which are told on the thread that wrote.
    std::atomic<std::uint64_t> storeChanges_ = 0;
    std::uint64_t factsAsOf_ = 0;
    NotificationCenter::Observation observation_;
};

}  // namespace brimquill

#pragma once

#include "Brimquill/Palette/ClipListModel.h"
#include "Brimquill/Palette/Explorer.h"
#include "Brimquill/Palette/FileLooker.h"
#include "Brimquill/Palette/PickerQuery.h"
#include "Brimquill/Palette/ScopeCatalog.h"
#include "Platform/Services.h"

#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brimquill {

/// The state behind the palette: what is asked for, the clips that answer it, and which of them are chosen. One for the
/// whole run. Main thread.
class PickerModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString searchText READ searchTextForView WRITE setSearchTextFromView NOTIFY searchTextChanged)
    Q_PROPERTY(brimquill::ClipListModel* cards READ cards CONSTANT)
    Q_PROPERTY(brimquill::Explorer* explorer READ explorerForView CONSTANT)
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged)
    Q_PROPERTY(QVariantList chips READ chipsForView NOTIFY chipsChanged)
    Q_PROPERTY(QVariantList types READ typesForView NOTIFY chipsChanged)
    Q_PROPERTY(bool filtered READ isFiltered NOTIFY filtersChanged)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY itemsChanged)
    Q_PROPERTY(QString emptySubtitle READ emptySubtitle NOTIFY itemsChanged)
    Q_PROPERTY(QString emptySymbol READ emptySymbol NOTIFY itemsChanged)
    Q_PROPERTY(bool previewOpen READ previewOpen WRITE setPreviewOpen NOTIFY overlaysChanged)
    Q_PROPERTY(bool cheatSheetOpen READ cheatSheetOpen WRITE setCheatSheetOpen NOTIFY overlaysChanged)
    Q_PROPERTY(bool previewShown READ isPreviewShown NOTIFY previewChanged)
    Q_PROPERTY(QVariantMap preview READ previewForView NOTIFY previewChanged)

public:
    static constexpr const char* didSearch = "BrimquillPaletteDidSearch";

    /// What it stands on. `stackIds` gives the clips on the paste stack.
    struct Environment {
        ClipStore& store;
        NotificationCenter& center;
        platform::RunLoop& runLoop;
        platform::UserDefaults& defaults;
        std::function<std::vector<std::int64_t>()> stackIds;
    };

    explicit PickerModel(Environment environment);

    // What is asked for.
    const std::string& searchText() const { return query_.text; }
    const PickerFilter& filter() const { return query_.filter; }
    std::optional<ContentType> typeFilter() const { return query_.type; }
    void setSearchText(std::string text);
    void setFilter(const PickerFilter& filter);
    void setTypeFilter(std::optional<ContentType> type);
    std::vector<PickerFilter> chips() const;
    void cycleFilter(int delta);
    void cycleType(int delta);
    void toggleType(ContentType type);
    void jumpToTopTag();
    void showEmoji();
    /// Clears query, type and scope.
    void showMostRecent();
    bool isFiltered() const;
    /// Makes the scope the chosen one, and remembers it among the recent ones if it is a pinboard or a tag.
    void chooseScope(const PickerFilter& filter);
    Explorer& explorer() { return explorer_; }

    /// Prepares for a new appearance: no query, the plain history; a chosen type stays.
    void reset();
    /// Answers the query anew; the first card is focused then and none is marked.
    void refresh();
    /// The same after reading pinboards and tags anew; a scope that is no more gives way to the plain history.
    void reloadItems();
    /// Only while the palette is on the screen does it follow changes of the store.
    void setActive(bool active);
    bool isActive() const { return isActive_; }

    // What answers it, and what of that is chosen.
    const std::vector<ClipItem>& items() const { return items_; }
    int selectedIndex() const { return selectedIndex_; }
    const std::set<int>& selection() const { return selection_; }
    const ClipItem* selectedItem() const;
    /// The marked cards and the focused one, in the order of the strip.
    std::vector<ClipItem> selectedItems() const;
    void select(int index);
    enum class Extending { no, yes };
    void moveSelection(int delta, Extending extending = Extending::no);
    void toggleSelection(int index);
    void extendSelection(int index);
    void selectAll();
    void clearSelection();

    bool previewOpen() const { return previewOpen_; }
    /// Without a focused card there is nothing to be seen of it.
    bool isPreviewShown() const { return previewOpen_ && selectedItem() != nullptr; }
    bool cheatSheetOpen() const { return cheatSheetOpen_; }
    void setPreviewOpen(bool open);
    void setCheatSheetOpen(bool open);

    /// Shows "Copied!" on a card for a moment.
    void showCopied(std::int64_t id);

    // For views.
    Q_INVOKABLE void chipClicked(int index);
    Q_INVOKABLE void chipCleared();
    Q_INVOKABLE void typeClicked(int index);
    Q_INVOKABLE void clearClicked() { showMostRecent(); }
    QString searchTextForView() const { return QString::fromStdString(query_.text); }
    void setSearchTextFromView(const QString& text) { setSearchText(text.toStdString()); }
    Explorer* explorerForView() { return &explorer_; }
    ClipListModel* cards() { return &cards_; }
    QVariantList chipsForView() const { return chipsShown_; }
    QVariantList typesForView() const { return typesShown_; }
    QString emptyTitle() const { return QString::fromStdString(emptyState(query_).title); }
    QString emptySubtitle() const { return QString::fromStdString(emptyState(query_).subtitle); }
    QString emptySymbol() const { return QString::fromStdString(emptyState(query_).symbol); }
    QVariantMap previewForView();

Q_SIGNALS:
    /// Something else is asked for than before; the cards that answer it follow.
    void questionChanged();
    void searchTextChanged();
    void filtersChanged();
    /// Chips or types look different; their views are made anew then, which a typed letter must not pay for.
    void chipsChanged();
    void itemsChanged();
    void selectedIndexChanged();
    void selectionChanged();
    void overlaysChanged();
    void previewChanged();

private:
    void storeChanged();
    void prepareExplorer(double delay);
    void updateChips();
    QVariantList describedChips();
    QVariantList describedTypes() const;
    void setItems(std::vector<ClipItem> items);
    void updateFiles(const FileLooker::Found& found);
    void setFocus(int index);
    void markArrival(std::int64_t newestBefore);

    ClipStore& store_;
    NotificationCenter& center_;
    platform::RunLoop& runLoop_;
    std::function<std::vector<std::int64_t>()> stackIds_;
    ScopeCatalog catalog_;
    CardStyle style_;
    Explorer explorer_;
    FileLooker fileLooker_;
    ClipListModel cards_;
    QVariantList chipsShown_, typesShown_;
    PickerQuery query_, answered_;
    std::vector<ClipItem> items_;
    int selectedIndex_ = 0;
    std::set<int> selection_;
    bool previewOpen_ = false, cheatSheetOpen_ = false, isActive_ = false;
    platform::Token refreshDebounce_, explorerPreparation_, copiedEnd_, arrivedEnd_;
    NotificationCenter::Observation observation_;
    /// Gone with this, for what still waits in the main queue.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace brimquill

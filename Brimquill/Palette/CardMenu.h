#pragma once

#include "Brimquill/Palette/PickerActions.h"
#include "Brimquill/Paste/StackManager.h"
#include "Platform/EventMonitors.h"

#include <QObject>
#include <QVariantList>

#include <functional>
#include <string>
#include <vector>

namespace brimquill {

enum class CardMenuAction { paste, copy, edit, open, addToStack, removeFromStack, pin, unpin, organize, deleteClip };

/// A row of the menu of a card.
struct CardMenuRow {
    CardMenuAction action;
    std::string title;
    /// A divider stands above it.
    bool startsGroup = false;
    friend bool operator==(const CardMenuRow&, const CardMenuRow&) = default;
};

enum class OnStack { no, yes };
/// The rows for a clip, from the top.
std::vector<CardMenuRow> cardMenuRows(const ClipItem& item, OnStack onStack);

/// The menu of a card: acts on the card that it was opened on, whatever is chosen. Main thread.
class CardMenu final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool open READ isOpen NOTIFY changed)
    Q_PROPERTY(double x READ x NOTIFY changed)
    Q_PROPERTY(double y READ y NOTIFY changed)
    Q_PROPERTY(QVariantList rows READ rowsForView NOTIFY changed)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)

public:
    struct Environment {
        PickerModel& model;
        PickerActions& actions;
        StackManager& stack;
        /// Takes the palette off the screen.
        std::function<void()> closePalette;
        /// Show the panels that edit a clip's text and its tags.
        std::function<void(const ClipItem&)> edit, organize;
    };

    explicit CardMenu(Environment environment) : environment_(std::move(environment)) {}

    /// Opens it on the card at `index`, at a point of the palette; nothing happens where there is no such card.
    Q_INVOKABLE void openAt(int index, double x, double y);
    Q_INVOKABLE void close();
    /// Closes it and does what a row says; nothing happens where there is no such row.
    Q_INVOKABLE void activate(int row);
    /// A key while the menu is open: all of them are the menu's.
    void handle(const platform::Event& event);

    bool isOpen() const { return !rows_.empty(); }
    double x() const { return x_; }
    double y() const { return y_; }
    const std::vector<CardMenuRow>& rows() const { return rows_; }
    QVariantList rowsForView() const;
    /// The row that Return takes; -1 for none.
    int current() const { return current_; }
    void setCurrent(int row);

Q_SIGNALS:
    void changed();
    void currentChanged();

private:
    void move(int delta);
    void perform(CardMenuAction action, const ClipItem& item);
    void openClip(const ClipItem& item);

    Environment environment_;
    ClipItem item_;
    std::vector<CardMenuRow> rows_;
    double x_ = 0, y_ = 0;
    int current_ = -1;
};

}  // namespace brimquill

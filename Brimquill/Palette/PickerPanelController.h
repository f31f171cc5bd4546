#pragma once

#include "Brimquill/Palette/CardDrag.h"
#include "Brimquill/Palette/CardMenu.h"
#include "Brimquill/Palette/CheatSheet.h"
#include "Brimquill/Palette/PickerActions.h"
#include "Brimquill/Palette/PickerKeyMap.h"
#include "Brimquill/Palette/PickerModel.h"
#include "Brimquill/Surfaces/EditPanelController.h"
#include "Brimquill/Surfaces/TagPanelController.h"
#include "Brimquill/Views/PanelView.h"
#include "Platform/Services.h"

#include <QObject>

#include <functional>
#include <memory>

class QQuickItem;

namespace brimquill {

/// The palette's panel: shows and hides it, and turns keys and clicks into what the palette does. The application that
/// the user is in stays the active one throughout. Main thread.
class PickerPanelController final : public QObject {
    Q_OBJECT
    Q_PROPERTY(brimquill::CardMenu* menu READ menu CONSTANT)

public:
    static constexpr double panelHeight = 280;

    struct Environment {
        PickerModel& model;
        PickerActions& actions;
        platform::Services& services;
        AppSettings& settings;
        ViewHost& views;
        NotificationCenter& center;
        TagPanelController& tagPanel;
        EditPanelController& editPanel;
        StackManager& stack;
    };

    explicit PickerPanelController(Environment environment);
    ~PickerPanelController() override;

    void show();
    void close();
    void toggle();
    bool isVisible() const { return isVisible_; }

    /// Pastes the chosen cards into the application below, or only puts them on the pasteboard; closes the palette
    /// first.
    void pasteSelected(PickerActions::Delivery delivery);

    /// Opens the form for the focused card's tags and pinboard; does nothing for a card that is no clip.
    void organizeSelected(OrganizeView::Field focus);
    /// What a form in front of the palette calls when it is done: the list is read anew, and the keys are the
    /// palette's again. Does nothing when the palette has gone.
    std::function<void()> whenFormIsDone();

    CardMenu* menu() { return &menu_; }

    /// A click on a card: with ⌘ or ⇧ it chooses, plain it copies. A double click pastes.
    Q_INVOKABLE void cardClicked(int index, int modifiers);
    Q_INVOKABLE void cardDoubleClicked(int index);
    /// Tells screen readers that a card is the focused one now.
    Q_INVOKABLE void cardFocused(QQuickItem* card) const;
    /// Drags a card out, drawn as `card` is, until the user lets go. The palette stays.
    Q_INVOKABLE void cardDragged(int index, QQuickItem* card);
    /// Where nothing else takes the pointer, it takes hold of the palette, at a point of the window, and carries it
    /// along.
    Q_INVOKABLE void backgroundPressed(double x, double y);
    Q_INVOKABLE void backgroundDragged();
    Q_INVOKABLE void backgroundReleased();
    /// The text on the pasteboard, for the query field; read beforehand, so that no program is waited for.
    Q_INVOKABLE QString pasteboardText() const;

Q_SIGNALS:
    /// The palette comes up: views start from their beginning and may animate.
    void appearing();
    /// It is on the screen.
    void appeared();

private:
    /// Makes the window when it is first needed: most of what the program takes in memory comes with it.
    void prepare();
    bool handle(const platform::Event& event);
    void perform(const PickerAction& action);
    void performSimple(picker_action::Simple action);
    void backOut();
    void addImageProviders();
    platform::Rect frameOnMainScreen() const;

    Environment environment_;
    CheatSheet cheatSheet_;
    CardMenu menu_;
    CardDragger dragger_{environment_.services.runLoop()};
    std::unique_ptr<PanelView> panel_;
    platform::Token keyMonitor_, outsideClickMonitor_, screenChanges_;
    bool isVisible_ = false;
    /// By its background, with the pointer.
    bool isHeld_ = false;
};

}  // namespace brimquill

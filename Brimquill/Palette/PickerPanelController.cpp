#include "Brimquill/Palette/PickerPanelController.h"

#include "Brimquill/Palette/Thumbnails.h"
#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Foundation/Text.h"

#include <QAccessible>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

namespace brimquill {
namespace {

using picker_action::Simple;

/// From the palette to the sides of the screen, and to its lower edge or what docks there.
constexpr double sideMargin = 24, bottomMargin = 16;
constexpr platform::Rect frameWithoutScreen{0, 0, 1200, 800};

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

PickerPanelController::PickerPanelController(Environment environment)
    : environment_(environment),
      menu_({environment_.model, environment_.actions, environment_.stack, [this] { close(); },
             [this](const ClipItem& item) { environment_.editPanel.show(item, whenFormIsDone()); },
             [this](const ClipItem& item) {
                 environment_.tagPanel.show(item, OrganizeView::Field::tags, whenFormIsDone());
             }}) {}

PickerPanelController::~PickerPanelController() {
    close();
}

void PickerPanelController::toggle() {
    if (isVisible_) {
        close();
    } else {
        show();
    }
}

void PickerPanelController::prepare() {
    if (panel_) return;
    addImageProviders();
    panel_ = std::make_unique<PanelView>(
        environment_.views, platform::PanelRole::keyable,
        QUrl(QStringLiteral("qrc:/brimquill/Palette/Views/PickerView.qml")),
        QVariantMap{{QStringLiteral("picker"), QVariant::fromValue(&environment_.model)},
                    {QStringLiteral("panel"), QVariant::fromValue(this)},
                    {QStringLiteral("cheatSheet"), QVariant::fromValue(&cheatSheet_)},
                    {QStringLiteral("settings"), QVariant::fromValue(&environment_.settings)}});
    panel_->window().setTitle(QStringLiteral("Brimquill Palette"));
}

/// The engine owns its providers from then on.
void PickerPanelController::addImageProviders() {
    auto& engine = environment_.views.engine();
    if (engine.imageProvider(QLatin1String(Thumbnails::coverProvider)) != nullptr) return;
    engine.addImageProvider(QLatin1String(Thumbnails::coverProvider), new Thumbnails(Thumbnails::Fit::cover));
    engine.addImageProvider(QLatin1String(Thumbnails::wholeProvider), new Thumbnails(Thumbnails::Fit::whole));
    auto& workspace = environment_.services.workspace();
    engine.addImageProvider(QLatin1String(DesktopIconImages::programProvider),
                            new DesktopIconImages([&workspace](const std::string& bundleIdentifier, int size) {
                                return workspace.icon(bundleIdentifier, size);
                            }));
    engine.addImageProvider(QLatin1String(DesktopIconImages::fileProvider),
                            new DesktopIconImages([&workspace](const std::string& path, int size) {
                                return workspace.iconForFile(path, size);
                            }));
}

void PickerPanelController::show() {
    if (isVisible_) return;
    prepare();
    environment_.model.reset();
    cheatSheet_.setQuery({});
    log::write(std::string("palette appearance=") +
               (environment_.views.appearance().dark() ? "NSAppearanceNameDarkAqua" : "NSAppearanceNameAqua"));
    Q_EMIT appearing();
    if (!panel_->show(frameOnMainScreen())) {
        log::write("the palette cannot be shown on this system");
        return;
    }
    isVisible_ = true;
    environment_.model.setActive(true);
    Q_EMIT appeared();
    auto& monitors = environment_.services.eventMonitors();
    keyMonitor_ = monitors.addLocalMonitor(platform::EventMask::keyDown,
                                           [this](const platform::Event& event) { return handle(event); });
    environment_.center.post({TourEvents::paletteDidShow, this, {}});
    outsideClickMonitor_ =
        monitors.addGlobalMonitor(platform::EventMask::mouseDown, [this](const platform::Event& event) {
            // Where it stands, not where it would now: the click may have been on another screen.
            // The press that takes hold of it may be heard of when it has been carried away from there.
            if (isVisible_ && !isHeld_ && !panel_->frame().contains(event.location)) close();
        });
    screenChanges_ = environment_.services.screens().observe([this] { panel_->setFrame(frameOnMainScreen()); });
}

void PickerPanelController::close() {
    if (!isVisible_) return;
    isVisible_ = isHeld_ = false;
    keyMonitor_.reset();
    outsideClickMonitor_.reset();
    screenChanges_.reset();
    menu_.close();
    environment_.model.setActive(false);
    panel_->close();
}

platform::Rect PickerPanelController::frameOnMainScreen() const {
    const auto screen = environment_.services.screens().main();
    const auto visible = screen ? screen->visibleFrame : frameWithoutScreen;
    const double width = visible.width - 2 * sideMargin;
    return {visible.x + (visible.width - width) / 2, visible.y + visible.height - bottomMargin - panelHeight, width,
            panelHeight};
}

bool PickerPanelController::handle(const platform::Event& event) {
    // With a panel of ours in front of the palette, the keys are that panel's.
    // During a drag they are the drag's: Escape gives it up.
    if (!isVisible_ || !panel_->isKey() || dragger_.isDragging()) return false;
    if (menu_.isOpen()) {
        menu_.handle(event);
        return true;
    }
    auto& model = environment_.model;
    const auto action = pickerAction(event, {.explorerOpen = model.explorer().explorerOpen(),
                                             .explorerSearchEmpty = model.explorer().explorerSearch().empty(),
                                             .selectionEmpty = model.selection().empty()});
    if (action == PickerAction(Simple::pass)) return false;
    perform(action);
    return true;
}

void PickerPanelController::perform(const PickerAction& action) {
    auto& model = environment_.model;
    std::visit(Overloaded{[&](Simple simple) { performSimple(simple); },
                          [&](picker_action::ToggleType toggle) { model.toggleType(toggle.type); },
                          [&](picker_action::CycleFilter cycle) { model.cycleFilter(cycle.delta); },
                          [&](picker_action::CycleType cycle) { model.cycleType(cycle.delta); },
                          [&](picker_action::MoveSelection move) {
                              model.moveSelection(move.delta, move.extending ? PickerModel::Extending::yes
                                                                             : PickerModel::Extending::no);
                          },
                          [&](picker_action::Paste paste) {
                              pasteSelected(paste.copyOnly ? PickerActions::Delivery::copyOnly
                                                           : PickerActions::Delivery::paste);
                          },
                          [&](picker_action::QuickPaste quick) {
                              model.select(quick.number - 1);
                              pasteSelected(PickerActions::Delivery::paste);
                          },
                          [&](picker_action::ExplorerMove move) { model.explorer().explorerMove(move.delta); }},
               action);
}

void PickerPanelController::performSimple(Simple action) {
    auto& model = environment_.model;
    auto& actions = environment_.actions;
    switch (action) {
        case Simple::jumpToTopTag:
            return model.jumpToTopTag();
        case Simple::togglePause:
            return actions.togglePause();
        case Simple::undoDelete:
            return actions.undoDelete();
        case Simple::deleteSelected:
            return actions.deleteSelected();
        case Simple::selectAll:
            return model.selectAll();
        case Simple::togglePreview:
            return model.setPreviewOpen(!model.previewOpen());
        case Simple::toggleCheatSheet:
            return model.setCheatSheetOpen(!model.cheatSheetOpen());
        case Simple::showEmoji:
            return model.showEmoji();
        case Simple::showMostRecent:
            return model.showMostRecent();
        case Simple::backOut:
            return backOut();
        case Simple::toggleExplorer:
            return model.explorer().setExplorerOpen(!model.explorer().explorerOpen());
        case Simple::explorerActivate:
            return model.explorer().explorerActivate();
        case Simple::explorerClose:
            return model.explorer().setExplorerOpen(false);
        case Simple::explorerCollapse:
            return model.explorer().explorerCollapse();
        case Simple::explorerExpand:
            return model.explorer().explorerExpand();
        case Simple::openSelected:
            if (actions.openSelected()) close();
            return;
        case Simple::organizeTags:
            return organizeSelected(OrganizeView::Field::tags);
        case Simple::organizePinboard:
            return organizeSelected(OrganizeView::Field::pinboard);
        case Simple::pass:
            return;
    }
}

/// One level back: the first of these that applies.
void PickerPanelController::backOut() {
    auto& model = environment_.model;
    if (model.cheatSheetOpen()) return model.setCheatSheetOpen(false);
    if (model.previewOpen()) return model.setPreviewOpen(false);
    if (model.typeFilter()) return model.setTypeFilter(std::nullopt);
    if (!is<scope::Clipboard>(model.filter())) return model.setFilter(scope::Clipboard{});
    if (!model.searchText().empty()) return model.setSearchText({});
    close();
}

void PickerPanelController::pasteSelected(PickerActions::Delivery delivery) {
    const auto items = environment_.model.selectedItems();
    if (items.empty()) return;
    // The palette goes first: the application below has the keyboard back before anything is pasted into it.
    close();
    environment_.actions.deliver(items, delivery);
}

void PickerPanelController::organizeSelected(OrganizeView::Field focus) {
    const auto* item = environment_.model.selectedItem();
    if (item != nullptr && item->id >= 1) environment_.tagPanel.show(*item, focus, whenFormIsDone());
}

std::function<void()> PickerPanelController::whenFormIsDone() {
    return [self = QPointer(this)] {
        if (!self || !self->isVisible_) return;
        self->environment_.model.reloadItems();
        self->panel_->show(self->panel_->frame());
    };
}

void PickerPanelController::cardClicked(int index, int modifiers) {
    auto& model = environment_.model;
    const auto held = Qt::KeyboardModifiers(modifiers);
    if (index < 0 || index >= static_cast<int>(model.items().size())) return;
    if (held & (Qt::ControlModifier | Qt::MetaModifier)) return model.toggleSelection(index);
    if (held & Qt::ShiftModifier) return model.extendSelection(index);
    model.clearSelection();
    model.select(index);
    environment_.actions.copyByClick(model.items()[static_cast<std::size_t>(index)]);
    model.showCopied(model.items()[static_cast<std::size_t>(index)].id);
}

void PickerPanelController::cardDoubleClicked(int index) {
    auto& model = environment_.model;
    if (index < 0 || index >= static_cast<int>(model.items().size())) return;
    model.select(index);
    const auto item = model.items()[static_cast<std::size_t>(index)];
    close();
    environment_.actions.deliver({item}, PickerActions::Delivery::paste);
}

void PickerPanelController::cardFocused(QQuickItem* card) const {
    if (!isVisible_ || card == nullptr || !QAccessible::isActive()) return;
    QAccessibleEvent event(card, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void PickerPanelController::cardDragged(int index, QQuickItem* card) {
    const auto& items = environment_.model.items();
    if (card == nullptr || index < 0 || index >= static_cast<int>(items.size())) return;
    dragger_.begin(items[static_cast<std::size_t>(index)], *card);
}

void PickerPanelController::backgroundPressed(double x, double y) {
    isHeld_ = true;
    panel_->grabAt({x, y});
}

void PickerPanelController::backgroundDragged() {
    panel_->dragTo(environment_.services.screens().mouseLocation());
}

void PickerPanelController::backgroundReleased() {
    isHeld_ = false;
}

QString PickerPanelController::pasteboardText() const {
    const auto text = environment_.services.pasteboard().string();
    return text ? QString::fromStdString(text::replacingNewlines(*text, " ")) : QString();
}

}  // namespace brimquill

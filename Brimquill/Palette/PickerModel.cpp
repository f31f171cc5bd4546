#include "Brimquill/Palette/PickerModel.h"

#include "Brimquill/Palette/Thumbnails.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <iterator>

namespace brimquill {
namespace {

/// A burst of changes in the store gives one reload, this long after the last.
constexpr double debounceSeconds = 0.25;

/// The explorer is made ready once the palette stands, with pauses in which keys are answered.
constexpr double explorerDelay = 0.3, explorerPause = 0.02;

/// The characters of a preview, and the bytes, for a character can have any number: laying out more would make the
/// palette wait.
constexpr std::size_t previewLimit = 20000, previewBytes = std::size_t{64} << 10;

int wrapped(int index, int delta, int count) {
    return (index + delta % count + count) % count;
}

}  // namespace

PickerModel::PickerModel(Environment environment)
    : store_(environment.store),
      center_(environment.center),
      runLoop_(environment.runLoop),
      stackIds_(std::move(environment.stackIds)),
      catalog_(environment.store, environment.defaults),
      style_(environment.store, environment.center),
      explorer_({store_, center_, style_, this, [this](const PickerFilter& filter) { chooseScope(filter); }}),
      fileLooker_(environment.runLoop, [this](const FileLooker::Found& found) { updateFiles(found); }) {
    observation_ = center_.observe(ClipStore::didChangeNotification, &store_, [this](const Notification&) {
        runLoop_.async([alive = std::weak_ptr<bool>(alive_), this] {
            if (!alive.expired()) storeChanged();
        });
    });
}

void PickerModel::setSearchText(std::string text) {
    const bool changed = text != query_.text;
    query_.text = std::move(text);
    refresh();
    if (changed) Q_EMIT searchTextChanged();
    if (!query_.text.empty()) center_.post({didSearch, this, {}});
}

void PickerModel::setFilter(const PickerFilter& filter) {
    query_.filter = filter;
    refresh();
}

void PickerModel::setTypeFilter(std::optional<ContentType> type) {
    query_.type = type;
    refresh();
}

std::vector<PickerFilter> PickerModel::chips() const {
    return catalog_.chips(query_.filter, !stackIds_().empty());
}

void PickerModel::cycleFilter(int delta) {
    const auto all = chips();
    const auto at = std::find(all.begin(), all.end(), query_.filter);
    const auto index = static_cast<int>(std::distance(all.begin(), at));
    setFilter(at == all.end() ? all.front()
                              : all[static_cast<std::size_t>(wrapped(index, delta, static_cast<int>(all.size())))]);
}

void PickerModel::cycleType(int delta) {
    // The ring begins with no type at all.
    constexpr int count = static_cast<int>(allContentTypes.size()) + 1;
    const int at = query_.type ? static_cast<int>(*query_.type) + 1 : 0;
    const int next = wrapped(at, delta, count);
    setTypeFilter(next == 0 ? std::nullopt : std::optional(allContentTypes[static_cast<std::size_t>(next - 1)]));
}

void PickerModel::toggleType(ContentType type) {
    setTypeFilter(query_.type == type ? std::nullopt : std::optional(type));
}

void PickerModel::jumpToTopTag() {
    if (!catalog_.topTag()) return;
    chooseScope(scope::Tag{*catalog_.topTag()});
}

void PickerModel::chooseScope(const PickerFilter& filter) {
    catalog_.recordRecent(filter);
    setFilter(filter);
}

void PickerModel::showEmoji() {
    query_.type.reset();
    query_.filter = scope::Emoji{};
    setSearchText({});
}

void PickerModel::showMostRecent() {
    query_.type.reset();
    query_.filter = scope::Clipboard{};
    setSearchText({});
}

bool PickerModel::isFiltered() const {
    return !query_.text.empty() || query_.type || !is<scope::Clipboard>(query_.filter);
}

void PickerModel::reset() {
    // All is read afresh here; a reload that still waits would only take the focus from what is chosen next.
    refreshDebounce_.reset();
    catalog_.rebuild();
    explorer_.reset(catalog_.folderIds());
    query_.filter = scope::Clipboard{};
    setSearchText({});
}

void PickerModel::refresh() {
    if (query_ != std::exchange(answered_, query_)) Q_EMIT questionChanged();
    setItems(pickerItems(store_, query_, is<scope::Stack>(query_.filter) ? stackIds_() : std::vector<std::int64_t>{},
                         runLoop_.now()));
    updateChips();
    Q_EMIT filtersChanged();
}

void PickerModel::updateChips() {
    auto chips = describedChips();
    auto types = describedTypes();
    if (chips == chipsShown_ && types == typesShown_) return;
    chipsShown_ = std::move(chips);
    typesShown_ = std::move(types);
    Q_EMIT chipsChanged();
}

void PickerModel::reloadItems() {
    std::int64_t newestBefore = 0;
    for (const auto& item : items_)
        newestBefore = std::max(newestBefore, item.id);
    const auto filterBefore = key(query_.filter);
    catalog_.rebuild();
    if (const auto entry = catalog_.find(key(query_.filter))) {
        query_.filter = *entry;  // a renamed pinboard brings its new path
    } else if (is<scope::Folder>(query_.filter) || is<scope::Tag>(query_.filter)) {
        query_.filter = scope::Clipboard{};
    }
    refresh();
    explorer_.updateView();
    if (isActive_) prepareExplorer(explorerDelay);
    if (key(query_.filter) == filterBefore) markArrival(newestBefore);
}

void PickerModel::setActive(bool active) {
    isActive_ = active;
    if (active) {
        prepareExplorer(explorerDelay);
    } else {
        explorerPreparation_.reset();
    }
}

/// Part by part, so that no key has to wait for long.
void PickerModel::prepareExplorer(double delay) {
    explorerPreparation_ = runLoop_.after(delay, [this] {
        if (explorer_.prepare()) prepareExplorer(explorerPause);
    });
}

/// Runs on the main queue after each change of the store.
void PickerModel::storeChanged() {
    if (!isActive_) return;
    refreshDebounce_ = runLoop_.after(debounceSeconds, [this] { reloadItems(); });
}

void PickerModel::setItems(std::vector<ClipItem> items) {
    items_ = std::move(items);
    const auto now = runLoop_.now();
    std::vector<Card> cards;
    cards.reserve(items_.size());
    for (const auto& item : items_)
        cards.push_back(makeCard(item, style_, now, fileLooker_.facts(item)));
    // Emoji and the stack are simply there; so is what nobody saw before.
    const bool isSimplyThere = !isActive_ || is<scope::Emoji>(query_.filter) || is<scope::Stack>(query_.filter);
    cards_.setCards(std::move(cards), isSimplyThere ? ClipListModel::Change::atOnce : ClipListModel::Change::followed);
    selection_.clear();
    setFocus(0);
    Q_EMIT itemsChanged();
    Q_EMIT selectionChanged();
    Q_EMIT previewChanged();
}

void PickerModel::updateFiles(const FileLooker::Found& found) {
    for (std::size_t row = 0; row < items_.size(); ++row) {
        const auto facts = found.find(FileLooker::keyOf(items_[row]));
        if (facts == found.end()) continue;
        cards_.setCard(static_cast<int>(row), makeCard(items_[row], style_, runLoop_.now(), facts->second));
    }
    Q_EMIT previewChanged();
}

void PickerModel::setPreviewOpen(bool open) {
    previewOpen_ = open;
    Q_EMIT overlaysChanged();
    Q_EMIT previewChanged();
}

void PickerModel::setCheatSheetOpen(bool open) {
    cheatSheetOpen_ = open;
    Q_EMIT overlaysChanged();
}

void PickerModel::showCopied(std::int64_t id) {
    constexpr double seconds = 0.9;
    cards_.setCopied(id);
    copiedEnd_ = runLoop_.after(seconds, [this] { cards_.setCopied(0); });
}

/// A clip that came to the front while the palette was open stands out for a moment; not one that is there because
/// others have gone.
void PickerModel::markArrival(std::int64_t newestBefore) {
    constexpr double seconds = 1.1;
    if (items_.empty() || items_.front().id <= newestBefore) return;
    cards_.setArrived(items_.front().id);
    arrivedEnd_ = runLoop_.after(seconds, [this] { cards_.setArrived(0); });
}

void PickerModel::chipClicked(int index) {
    const auto all = chips();
    if (index < 0 || index >= static_cast<int>(all.size())) return;
    chooseScope(all[static_cast<std::size_t>(index)]);
}

void PickerModel::chipCleared() {
    setFilter(scope::Clipboard{});
}

void PickerModel::typeClicked(int index) {
    if (index >= 0 && index < static_cast<int>(allContentTypes.size())) {
        toggleType(allContentTypes[static_cast<std::size_t>(index)]);
    }
}

QVariantList PickerModel::describedChips() {
    QVariantList list;
    for (const auto& chip : chips()) {
        const auto color = style_.color(chip);
        const auto* tag = std::get_if<scope::Tag>(&chip);
        const bool isActive = chip == query_.filter;
        list.append(QVariantMap{{QStringLiteral("label"), QString::fromStdString(label(chip))},
                                {QStringLiteral("fill"), QString::fromStdString(color.fill)},
                                {QStringLiteral("ink"), QString::fromStdString(color.ink)},
                                {QStringLiteral("onFill"), QString::fromStdString(color.onFill)},
                                {QStringLiteral("active"), isActive},
                                {QStringLiteral("clearable"), isActive && !is<scope::Clipboard>(chip)},
                                {QStringLiteral("topTag"), tag != nullptr && tag->tag == catalog_.topTag()}});
    }
    return list;
}

QVariantList PickerModel::describedTypes() const {
    QVariantList list;
    for (const auto type : allContentTypes) {
        list.append(QVariantMap{{QStringLiteral("label"), QString::fromStdString(label(type))},
                                {QStringLiteral("symbol"), QString::fromStdString(symbol(type))},
                                {QStringLiteral("active"), query_.type == type}});
    }
    return list;
}

QVariantMap PickerModel::previewForView() {
    const auto* item = selectedItem();
    if (!isPreviewShown()) return {};
    const auto header = style_.header(*item);
    const auto& card = cards_.cards()[static_cast<std::size_t>(selectedIndex_)];
    auto text = item->kind == ClipKind::image  ? item->text
                : item->kind == ClipKind::file ? item->text
                                               : item->preview();
    if (auto beginning = text::prefix(text, previewLimit, previewBytes); beginning.size() < text.size())
        text = beginning + "…";
    return {{QStringLiteral("clipId"), QVariant::fromValue<qint64>(item->id)},
            {QStringLiteral("title"), QString::fromStdString(header.title)},
            {QStringLiteral("fill"), QString::fromStdString(header.color.fill)},
            {QStringLiteral("onFill"), QString::fromStdString(header.color.onFill)},
            {QStringLiteral("text"), QString::fromStdString(text)},
            {QStringLiteral("footer"), QString::fromStdString(card.footer)},
            {QStringLiteral("image"), imageUrl(Thumbnails::wholeProvider, card.imagePath)}};
}

}  // namespace brimquill

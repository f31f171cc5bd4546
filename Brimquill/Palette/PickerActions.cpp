#include "Brimquill/Palette/PickerActions.h"

#include "BrimquillCore/Foundation/Text.h"

#include <QUrl>

#include <optional>

namespace brimquill {
namespace {

constexpr const char* undoSymbol = "arrow.uturn.backward";

std::string clips(std::size_t count) {
    return count == 1 ? "clip" : std::to_string(count) + " clips";
}

/// A path as a file URL: everything but what every URL may hold is percent-encoded.
std::string fileUrl(const std::string& path) {
    static constexpr std::string_view plain = "/-._~";
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isAlphanumeric = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (isAlphanumeric || plain.find(c) != std::string_view::npos) {
            url += c;
        } else {
            url += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return url;
}

/// What opens for a clip; nothing when there is nothing to open.
std::optional<std::string> openableUrl(const ClipItem& item) {
    const auto text = text::trimmed(item.text);
    const bool isWebLink = text.starts_with("http://") || text.starts_with("https://");
    if (isWebLink && QUrl(QString::fromStdString(text), QUrl::StrictMode).isValid()) return text;
    if (item.kind == ClipKind::file) {
        const auto paths = text::split(item.text, '\n');
        if (!paths.empty()) return fileUrl(paths.front());
    }
    if (item.imagePath) return fileUrl(*item.imagePath);
    return std::nullopt;
}

}  // namespace

void PickerActions::deliver(const std::vector<ClipItem>& items, Delivery delivery) {
    if (items.empty()) return;
    const bool thenPaste = delivery == Delivery::paste;
    const auto done = [thenPaste, &hud = environment_.hud](PasteService::Outcome outcome) {
        if (!thenPaste && outcome == PasteService::Outcome::asAsked) hud.show("Copied", "checkmark.circle.fill");
    };
    if (items.size() == 1) {
        environment_.paste.paste(items.front(), thenPaste, done);
    } else {
        environment_.paste.pasteText(joinedText(items), thenPaste, PasteService::soonestSecret(items), done);
    }
}

/// Pictures and files among several contribute only their text.
std::string PickerActions::joinedText(const std::vector<ClipItem>& items) const {
    std::vector<std::string> texts;
    for (const auto& item : items) {
        auto text = item.isSnippet() ? environment_.expand(item.text) : item.text;
        if (!text.empty()) texts.push_back(std::move(text));
    }
    return text::join(texts, "\n");
}

void PickerActions::deleteSelected() {
    std::vector<std::int64_t> ids;
    for (const auto& item : environment_.model.selectedItems())
        ids.push_back(item.id);
    if (ids.empty()) return;
    for (const auto id : ids)
        environment_.store.deleteClip(id);
    const auto count = ids.size();
    undoStack_.push_back(std::move(ids));
    environment_.model.reloadItems();
    environment_.hud.show("Deleted " + clips(count) + " — ⌘Z to undo", "trash");
}

void PickerActions::deleteOne(std::int64_t id) {
    undoStack_.push_back({id});
    environment_.store.deleteClip(id);
    environment_.model.reloadItems();
    environment_.hud.show("Deleted — ⌘Z to undo", "trash");
}

void PickerActions::setPinned(std::int64_t id, bool pinned) {
    environment_.store.setPinned(id, pinned);
    environment_.model.reloadItems();
}

void PickerActions::undoDelete() {
    if (undoStack_.empty()) {
        environment_.hud.show("Nothing to undo", undoSymbol);
        return;
    }
    const auto ids = std::move(undoStack_.back());
    undoStack_.pop_back();
    for (const auto id : ids)
        environment_.store.restore(id);
    environment_.model.reloadItems();
    environment_.hud.show("Restored " + clips(ids.size()), undoSymbol);
}

bool PickerActions::openSelected() {
    const auto* item = environment_.model.selectedItem();
    if (item == nullptr) return false;
    const auto url = openableUrl(*item);
    if (!url) {
        environment_.hud.show("Nothing to open", "questionmark.circle");
        return false;
    }
    environment_.workspace.open(*url);
    return true;
}

void PickerActions::togglePause() {
    const bool pause = !environment_.settings.capturePaused();
    environment_.settings.setCapturePaused(pause);
    environment_.hud.show(pause ? "Capture paused" : "Capture resumed", pause ? "pause.circle.fill" : "record.circle");
}

}  // namespace brimquill

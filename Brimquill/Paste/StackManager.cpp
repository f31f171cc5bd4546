#include "Brimquill/Paste/StackManager.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

namespace brimquill {
namespace {

std::optional<std::int64_t> parsed(const std::string& text) {
    std::int64_t id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool isWhole = error == std::errc() && end == text.data() + text.size() && !text.empty();
    return isWhole ? std::optional(id) : std::nullopt;
}

}  // namespace

StackManager::StackManager(ClipStore& store, PasteService& pasteService, HUD& hud, platform::UserDefaults& defaults)
    : store_(store), pasteService_(pasteService), hud_(hud), defaults_(defaults) {
    for (const auto& text : defaults_.stringArray(itemsKey).value_or(std::vector<std::string>{})) {
        if (const auto id = parsed(text)) itemIds_.push_back(*id);
    }
}

void StackManager::add(std::int64_t id) {
    if (contains(id)) return;
    itemIds_.push_back(id);
    persist();
    hud_.show("Added to stack (" + std::to_string(itemIds_.size()) + ")", "square.stack.3d.up");
}

void StackManager::remove(std::int64_t id) {
    std::erase(itemIds_, id);
    persist();
}

bool StackManager::contains(std::int64_t id) const {
    return std::find(itemIds_.begin(), itemIds_.end(), id) != itemIds_.end();
}

void StackManager::pasteNext() {
    while (!itemIds_.empty()) {
        const auto count = itemIds_.size();
        const auto clip = store_.clip(itemIds_.front());
        itemIds_.erase(itemIds_.begin());
        persist();
        if (!clip || clip->deleted) continue;
        pasteService_.paste(*clip, true, [count, &hud = hud_](PasteService::Outcome outcome) {
            if (outcome == PasteService::Outcome::troubleTold) return;
            hud.show(count < 2 ? "Stack finished" : "Pasted — " + std::to_string(count - 1) + " left in stack",
                     "square.stack.3d.up");
        });
        return;
    }
    hud_.show("Paste stack is empty", "square.stack.3d.up.slash");
}

void StackManager::persist() {
    std::vector<std::string> texts;
    for (const auto id : itemIds_)
        texts.push_back(std::to_string(id));
    defaults_.set(itemsKey, texts);
    Q_EMIT itemIdsChanged();
}

}  // namespace brimquill

#pragma once

#include "Brimquill/Paste/PasteService.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/UserDefaults.h"

#include <QObject>

#include <cstdint>
#include <vector>

namespace brimquill {

/// The paste stack: clips collected to be pasted one after the other, the first added first. It outlives a restart.
/// Main thread.
class StackManager final : public QObject {
    Q_OBJECT

public:
    static constexpr const char* itemsKey = "pasteStackIds";

    /// All must outlive it.
    StackManager(ClipStore& store, PasteService& pasteService, HUD& hud, platform::UserDefaults& defaults);

    /// In the order of adding, without duplicates; some may be of clips that are gone.
    const std::vector<std::int64_t>& itemIds() const { return itemIds_; }
    /// Does nothing for a clip that is there already.
    void add(std::int64_t id);
    void remove(std::int64_t id);
    bool contains(std::int64_t id) const;
    /// Pastes the first clip that still exists and takes it off the stack.
    void pasteNext();

Q_SIGNALS:
    void itemIdsChanged();

private:
    void persist();

    ClipStore& store_;
    PasteService& pasteService_;
    HUD& hud_;
    platform::UserDefaults& defaults_;
    std::vector<std::int64_t> itemIds_;
};

}  // namespace brimquill

#pragma once

#include "Brimquill/Paste/PasteService.h"
#include "BrimquillCore/ClipStore.h"
#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"

#include <optional>

namespace brimquill {

/// Decides what of the pasteboard outlives the program that it came from, and takes a secret off it once that has
/// expired, if it is us who offers it. It knows one content at a time, that of the last change it was told of. Main
/// thread.
class ClipboardKeeper final {
public:
    /// Everything must outlive it.
    ClipboardKeeper(ClipStore& store, platform::Pasteboard& pasteboard, platform::RunLoop& runLoop)
        : store_(store), pasteboard_(pasteboard), runLoop_(runLoop) {}

    /// Another program's copy that is captured: it may stay when the program goes.
    void keep(int changeCount);
    /// Another program's copy that may not be captured: it goes with the program.
    void refuse(int changeCount);
    /// What we put there ourselves, and what it holds of a clip that expires.
    void noteOwn(int changeCount, const std::optional<PasteService::Secret>& secret);
    /// The content of that change, if it is still the last one, is the text of a clip that expires.
    void noteSecret(int changeCount, const PasteService::Secret& secret);
    /// Takes what has expired by now off the pasteboard, unless its clip no longer expires. It runs by itself when the
    /// date has come; to be called now and then as well, since a machine that sleeps holds timers up.
    void removeExpired();

private:
    void begin(int changeCount);

    ClipStore& store_;
    platform::Pasteboard& pasteboard_;
    platform::RunLoop& runLoop_;
    int changeCount_ = 0;
    std::optional<PasteService::Secret> secret_;
    platform::Token timer_;
};

}  // namespace brimquill

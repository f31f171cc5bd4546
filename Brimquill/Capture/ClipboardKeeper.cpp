#include "Brimquill/Capture/ClipboardKeeper.h"

#include <algorithm>

namespace brimquill {
namespace {

/// Seconds that a timer may come too early, by the two clocks' drifting apart; the difference is nobody's concern.
constexpr double timerTolerance = 0.05;

}  // namespace

void ClipboardKeeper::begin(int changeCount) {
    changeCount_ = changeCount;
    secret_.reset();
    timer_.reset();
}

void ClipboardKeeper::keep(int changeCount) {
    begin(changeCount);
    pasteboard_.keep(changeCount);
}

void ClipboardKeeper::refuse(int changeCount) {
    begin(changeCount);
    pasteboard_.drop(changeCount);
}

void ClipboardKeeper::noteOwn(int changeCount, const std::optional<PasteService::Secret>& secret) {
    begin(changeCount);
    if (secret) noteSecret(changeCount, *secret);
}

void ClipboardKeeper::noteSecret(int changeCount, const PasteService::Secret& secret) {
    if (changeCount != changeCount_) return;
    secret_ = secret;
    timer_ = runLoop_.after(std::max(secret.expiresAt - runLoop_.now(), 0.0), [this] { removeExpired(); });
}

void ClipboardKeeper::removeExpired() {
    if (!secret_ || secret_->expiresAt - runLoop_.now() > timerTolerance) return;
    const auto clip = store_.clip(secret_->clipId);
    const bool isRescued = clip && !clip->expiresAt;
    secret_.reset();
    if (!isRescued) pasteboard_.drop(changeCount_);
}

}  // namespace brimquill

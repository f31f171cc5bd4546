#include "Brimquill/Paste/PasteService.h"

#include "Brimquill/Capture/PictureFile.h"
#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brimquill {
namespace {

/// From the write to the ⌘V: the time in which the program below gets the keyboard back.
constexpr double pasteDelay = 0.15;
bool isPng(const platform::Bytes& bytes) {
    static constexpr std::uint8_t signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    return bytes.size() > sizeof signature && std::equal(std::begin(signature), std::end(signature), bytes.begin());
}

}  // namespace

const std::set<std::string>& PasteService::terminalBundleIds() {
    static const std::set<std::string> ids{"com.apple.Terminal",   "com.googlecode.iterm2", "dev.warp.Warp",
                                           "io.alacritty",         "net.kovidgoyal.kitty",  "com.github.wez.wezterm",
                                           "com.mitchellh.ghostty"};
    return ids;
}

std::optional<PasteService::Secret> PasteService::soonestSecret(std::span<const ClipItem> items) {
    std::optional<Secret> soonest;
    for (const ClipItem& item : items)
        if (item.expiresAt && (!soonest || *item.expiresAt < soonest->expiresAt)) soonest = {item.id, *item.expiresAt};
    return soonest;
}

PasteService::PasteService(Environment environment)
    : environment_(std::move(environment)), files_(environment_.runLoop) {}

void PasteService::paste(const ClipItem& item, bool thenPaste, Done done) {
    inTurn([this, item, thenPaste, done = std::move(done)] { begin(item, thenPaste, done); });
}

/// What is pasted first must be on the pasteboard first, however long its files take.
void PasteService::inTurn(Turn turn) {
    if (isWaitingForFiles_) {
        waiting_.push_back(std::move(turn));
    } else {
        turn();
    }
}

void PasteService::endTurn(const Done& done, Outcome outcome) {
    isWaitingForFiles_ = false;
    if (done) done(outcome);
    while (!isWaitingForFiles_ && !waiting_.empty()) {
        const auto turn = std::move(waiting_.front());
        waiting_.pop_front();
        turn();
    }
}

void PasteService::begin(const ClipItem& item, bool thenPaste, const Done& done) {
    ++pasteCount_;
    if (item.kind == ClipKind::file) return pasteFiles(item, thenPaste, done);
    if (item.kind == ClipKind::image && item.imagePath) return pastePicture(item, thenPaste, done);
    const auto outcome = pasteItemText(item, thenPaste);
    if (done) done(outcome);
}

PasteService::Outcome PasteService::pasteItemText(const ClipItem& item, bool thenPaste) {
    return finish({.string = item.isSnippet() ? environment_.expand(item.text) : item.text}, thenPaste,
                  soonestSecret({&item, 1}));
}

void PasteService::pasteFiles(const ClipItem& item, bool thenPaste, const Done& done) {
    isWaitingForFiles_ = true;
    files_.findExisting(text::split(item.text, '\n'), [weak = std::weak_ptr<PasteService*>(self_), thenPaste,
                                                       done](const std::vector<std::string>& paths) {
        const auto self = weak.lock();
        if (!self) return;
        auto outcome = Outcome::troubleTold;
        if (paths.empty()) {
            (*self)->environment_.hud.show("Original file no longer exists", "questionmark.folder");
        } else {
            outcome = (*self)->finish({.filePaths = paths}, thenPaste);
        }
        (*self)->endTurn(done, outcome);
    });
}

void PasteService::pastePicture(const ClipItem& item, bool thenPaste, const Done& done) {
    isWaitingForFiles_ = true;
    files_.findExisting({*item.imagePath}, [weak = std::weak_ptr<PasteService*>(self_), item, thenPaste,
                                            done](const std::vector<std::string>& found) {
        const auto self = weak.lock();
        if (!self) return;
        if (!found.empty() && !(*self)->isTerminalInFront()) {
            const auto& path = found.front();
            return (*self)->files_.read(path, [weak, path, thenPaste, done](const platform::SharedBytes& bytes) {
                const auto again = weak.lock();
                if (!again) return;
                (*again)->endTurn(done, (*again)->pasteBytes(path, bytes, thenPaste));
            });
        }
        // What was read off a picture whose file has gone is pasted, without a word.
        (*self)->endTurn(done, found.empty() ? (*self)->pasteItemText(item, thenPaste)
                                             : (*self)->finish({.string = found.front()}, thenPaste));
    });
}

bool PasteService::isTerminalInFront() const {
    const auto front = environment_.workspace.frontmostApplication();
    return front && front->bundleIdentifier && terminalBundleIds().contains(*front->bundleIdentifier);
}

PasteService::Outcome PasteService::pasteBytes(const std::string& path, const platform::SharedBytes& bytes,
                                               bool thenPaste) {
    if (bytes && text::lowercased(path).ends_with(".gif"))
        return finish({.filePaths = {path}, .gif = bytes}, thenPaste);
    if (bytes && isPng(*bytes)) return finish({.filePaths = {path}, .png = bytes}, thenPaste);
    environment_.pasteboard.write({});
    if (bytes) pasteConverted(path, bytes, thenPaste);
    return Outcome::asAsked;
}

/// A picture that is no PNG is made one beside the main thread, which it may take long.
void PasteService::pasteConverted(const std::string& path, const platform::SharedBytes& bytes, bool thenPaste) {
    auto done = [weak = std::weak_ptr<PasteService*>(self_), path, thenPaste,
                 paste = pasteCount_](const platform::SharedBytes& png) {
        const auto self = weak.lock();
        if (self && (*self)->pasteCount_ == paste) (*self)->finish({.filePaths = {path}, .png = png}, thenPaste);
    };
    environment_.runLoop.global(
        platform::QualityOfService::userInitiated, [bytes, done = std::move(done), &runLoop = environment_.runLoop] {
            auto png = PictureFile::pngFrom(*bytes);
            if (!png) return;
            runLoop.async([done, shared = std::make_shared<platform::Bytes>(std::move(*png))] { done(shared); });
        });
}

void PasteService::write(const platform::PasteboardContents& contents, std::optional<Secret> secret) {
    selfWriteChangeCount_ = environment_.pasteboard.write(contents);
    selfWriteSecret_ = secret;
}

void PasteService::pasteText(const std::string& text, bool thenPaste, std::optional<Secret> secret, Done done) {
    inTurn([this, text, thenPaste, secret, done = std::move(done)] {
        ++pasteCount_;
        const auto outcome = finish({.string = text}, thenPaste, secret);
        if (done) done(outcome);
    });
}

PasteService::Outcome PasteService::finish(const platform::PasteboardContents& contents, bool thenPaste,
                                           std::optional<Secret> secret) {
    write(contents, secret);
    return thenPaste ? sendCmdVIfAllowed() : Outcome::asAsked;
}

PasteService::Outcome PasteService::sendCmdVIfAllowed() {
    auto outcome = Outcome::asAsked;
    if (environment_.accessibility.isProcessTrusted()) {
        environment_.runLoop.asyncAfter(pasteDelay, [weak = std::weak_ptr<PasteService*>(self_)] {
            if (const auto self = weak.lock()) (*self)->sendCmdV();
        });
    } else {
        environment_.accessibility.isProcessTrustedWithPrompt();
        environment_.hud.show("Copied — press ⌘V (grant Accessibility to auto-paste)", "hand.raised");
        outcome = Outcome::troubleTold;
    }
    environment_.center.post({TourEvents::didPaste, this, {}});
    return outcome;
}

void PasteService::sendCmdV() {
    environment_.syntheticKeys.post(platform::key::v, {.command = true});
}

}  // namespace brimquill

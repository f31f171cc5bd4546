#include "Brimquill/Paste/PasteService.h"

#include "Brimquill/Capture/PictureFile.h"
#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"

#include <filesystem>
#include <optional>
#include <utility>

namespace brimquill {
namespace {

/// From the write to the ⌘V: the time in which the program below gets the keyboard back.
constexpr double pasteDelay = 0.15;
/// A picture file larger than this many bytes is not put on the pasteboard.
constexpr std::size_t maximumPictureSize = std::size_t{512} << 20;

bool fileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

platform::SharedBytes readBytes(const std::string& path) {
    const auto bytes = files::readFile(path, maximumPictureSize);
    return bytes ? std::make_shared<platform::Bytes>(bytes->begin(), bytes->end()) : nullptr;
}

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

PasteService::PasteService(Environment environment) : environment_(std::move(environment)) {}

void PasteService::paste(const ClipItem& item, bool thenPaste) {
    ++pasteCount_;
    if (item.kind == ClipKind::file) return pasteFiles(item, thenPaste);
    if (item.kind == ClipKind::image && item.imagePath && fileExists(*item.imagePath))
        return pastePicture(*item.imagePath, thenPaste);
    // Also a picture whose file has gone: what was read off it is pasted, without a word.
    finish({.string = item.isSnippet() ? environment_.expand(item.text) : item.text}, thenPaste,
           soonestSecret({&item, 1}));
}

void PasteService::pasteFiles(const ClipItem& item, bool thenPaste) {
    std::vector<std::string> paths = text::split(item.text, '\n');
    std::erase_if(paths, [](const std::string& path) { return !fileExists(path); });
    if (paths.empty()) return environment_.hud.show("Original file no longer exists", "questionmark.folder");
    finish({.filePaths = std::move(paths)}, thenPaste);
}

void PasteService::pastePicture(const std::string& path, bool thenPaste) {
    const auto front = environment_.workspace.frontmostApplication();
    if (front && front->bundleIdentifier && terminalBundleIds().contains(*front->bundleIdentifier))
        return finish({.string = path}, thenPaste);
    const platform::SharedBytes bytes = readBytes(path);
    if (bytes && text::lowercased(path).ends_with(".gif"))
        return finish({.filePaths = {path}, .gif = bytes}, thenPaste);
    if (bytes && isPng(*bytes)) return finish({.filePaths = {path}, .png = bytes}, thenPaste);
    environment_.pasteboard.write({});
    if (bytes) pasteConverted(path, thenPaste);
}

/// A picture that is no PNG is made one beside the main thread, which it may take long.
void PasteService::pasteConverted(const std::string& path, bool thenPaste) {
    auto done = [weak = std::weak_ptr<PasteService*>(self_), path, thenPaste,
                 paste = pasteCount_](platform::SharedBytes png) {
        const auto self = weak.lock();
        if (self && png && (*self)->pasteCount_ == paste) (*self)->finish({.filePaths = {path}, .png = png}, thenPaste);
    };
    environment_.runLoop.global(
        platform::QualityOfService::userInitiated, [path, done = std::move(done), &runLoop = environment_.runLoop] {
            const platform::SharedBytes bytes = readBytes(path);
            auto png = bytes ? PictureFile::pngFrom(*bytes) : std::nullopt;
            if (!png) return;
            runLoop.async([done, shared = std::make_shared<platform::Bytes>(std::move(*png))] { done(shared); });
        });
}

void PasteService::write(const platform::PasteboardContents& contents, std::optional<Secret> secret) {
    selfWriteChangeCount_ = environment_.pasteboard.write(contents);
    selfWriteSecret_ = secret;
}

void PasteService::pasteText(const std::string& text, bool thenPaste, std::optional<Secret> secret) {
    ++pasteCount_;
    finish({.string = text}, thenPaste, secret);
}

void PasteService::finish(const platform::PasteboardContents& contents, bool thenPaste, std::optional<Secret> secret) {
    write(contents, secret);
    if (thenPaste) sendCmdVIfAllowed();
}

void PasteService::sendCmdVIfAllowed() {
    if (environment_.accessibility.isProcessTrusted()) {
        environment_.runLoop.asyncAfter(pasteDelay, [weak = std::weak_ptr<PasteService*>(self_)] {
            if (const auto self = weak.lock()) (*self)->sendCmdV();
        });
    } else {
        environment_.accessibility.isProcessTrustedWithPrompt();
        environment_.hud.show("Copied — press ⌘V (grant Accessibility to auto-paste)", "hand.raised");
    }
    environment_.center.post({TourEvents::didPaste, this, {}});
}

void PasteService::sendCmdV() {
    environment_.syntheticKeys.post(platform::key::v, {.command = true});
}

}  // namespace brimquill

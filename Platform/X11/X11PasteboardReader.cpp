#include "Platform/X11/X11PasteboardReader.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace brimquill::platform {

using x11_formats::ContentKind;
using Outcome = X11SelectionTransfer::Outcome;

namespace {

// An owner that offers everything names some hundred targets; a list beyond this one is a fault or an attack.
constexpr std::size_t mostTargetBytes = std::size_t{256} << 10;

bool isBlank(const std::optional<std::string>& text) {
    return !text || text::trimmed(*text).empty();
}

}  // namespace

X11PasteboardReader::X11PasteboardReader(X11PasteboardConnection& connection, X11SelectionTransfer& transfer,
                                         Finished finished)
    : connection_(connection), transfer_(transfer), finished_(std::move(finished)) {}

void X11PasteboardReader::start(xcb_timestamp_t time) {
    abandon();
    time_ = time;
    started_ = Clock::now();
    snapshot_ = std::make_shared<PasteboardSnapshot>();
    offered_.clear();
    isListed_ = false;
    received_ = 0;
    place_.reset();
    ask("TARGETS");
}

void X11PasteboardReader::abandon() {
    transfer_.abandon();
    snapshot_.reset();
}

void X11PasteboardReader::ask(const std::string& target) {
    const std::size_t limit = place_ ? connection_.options().cap - received_ : mostTargetBytes;
    transfer_.begin(connection_.atom(target), time_, {limit, started_, received_},
                    [this](X11SelectionTransfer::Result result) { answered(std::move(result)); });
}

void X11PasteboardReader::answered(X11SelectionTransfer::Result result) {
    received_ += place_ ? result.value.size() : 0;
    if (result.outcome == Outcome::timedOut) {
        connection_.log("A copy was given up: its owner does not answer");
        return finishWithoutContent();
    }
    if (result.outcome == Outcome::tooLarge) {
        connection_.log("A copy of over " + std::to_string(connection_.options().cap >> 20) + " MiB was refused");
        return finishWithoutContent();
    }
    if (!place_)
        takeTargets(result);
    else
        take(x11_formats::targets()[(*place_)++], std::move(result));
    if (place_) askNext();
}

// Without a list the owner is asked for everything in turn: old programs answer to STRING alone.
void X11PasteboardReader::takeTargets(const X11SelectionTransfer::Result& result) {
    place_ = 0;
    if (result.outcome != Outcome::done) return;
    isListed_ = true;
    offered_.resize(result.value.size() / sizeof(xcb_atom_t));
    if (!offered_.empty()) std::memcpy(offered_.data(), result.value.data(), offered_.size() * sizeof(xcb_atom_t));
    snapshot_->types.emplace();
    for (const x11_formats::Target& target : x11_formats::targets())
        if (target.kind != ContentKind::concealedHint && isOffered(target)) addType(target.kind);
}

bool X11PasteboardReader::isOffered(const x11_formats::Target& target) {
    return !isListed_ || std::find(offered_.begin(), offered_.end(), connection_.atom(target.name)) != offered_.end();
}

bool X11PasteboardReader::addType(ContentKind kind) {
    const std::string name = x11_formats::typeName(kind);
    auto& types = *snapshot_->types;
    if (std::find(types.begin(), types.end(), name) != types.end()) return false;
    types.push_back(name);
    return true;
}

void X11PasteboardReader::askNext() {
    const auto& targets = x11_formats::targets();
    while (*place_ < targets.size() && !(isOffered(targets[*place_]) && isWanted(targets[*place_].kind)))
        ++*place_;
    if (*place_ < targets.size())
        ask(targets[*place_].name);
    else
        finish();
}

// Files win over text, text over pictures, and text of white space alone counts as none.
bool X11PasteboardReader::isWanted(ContentKind kind) const {
    if (kind == ContentKind::concealedHint) return true;
    if (!snapshot_->filePaths.empty()) return false;
    if (kind == ContentKind::files) return true;
    if (kind == ContentKind::text) return !snapshot_->string;
    return !snapshot_->gif && !snapshot_->png && !snapshot_->tiff && isBlank(snapshot_->string);
}

void X11PasteboardReader::take(const x11_formats::Target& target, X11SelectionTransfer::Result result) {
    const bool done = result.outcome == Outcome::done;
    if (target.kind == ContentKind::concealedHint) {
        // A hint that is announced and then withheld is taken for the secret that it may be.
        if (done ? x11_formats::isSecretHint(result.value) : isListed_) {
            if (!snapshot_->types) snapshot_->types.emplace();
            addType(ContentKind::concealedHint);
            place_.reset();
            finish();
        }
        return;
    }
    if (!done) return;
    if (target.kind == ContentKind::files) {
        snapshot_->filePaths = x11_formats::decodeFileList(result.value);
    } else if (target.kind == ContentKind::text) {
        snapshot_->string = x11_formats::decodeText(target.name, result.value);
    } else if (!result.value.empty()) {
        auto image = std::make_shared<const Bytes>(std::move(result.value));
        if (target.kind == ContentKind::tiff) snapshot_->tiffTarget = target.name;
        (target.kind == ContentKind::gif   ? snapshot_->gif
         : target.kind == ContentKind::png ? snapshot_->png
                                           : snapshot_->tiff) = std::move(image);
    }
}

void X11PasteboardReader::finish() {
    // A list of links to elsewhere is offered like files, but holds none.
    if (snapshot_->types && snapshot_->filePaths.empty() && place_)
        std::erase(*snapshot_->types, x11_formats::typeName(ContentKind::files));
    finished_(std::exchange(snapshot_, nullptr));
}

void X11PasteboardReader::finishWithoutContent() {
    auto standing = std::make_shared<PasteboardSnapshot>();
    standing->types = std::move(snapshot_->types);
    snapshot_.reset();
    finished_(std::move(standing));
}

}  // namespace brimquill::platform

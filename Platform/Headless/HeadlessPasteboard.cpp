#include "Platform/Headless/HeadlessPasteboard.h"

#include <utility>

namespace brimquill::platform {

void HeadlessPasteboard::copy(const ForeignCopy& copy) {
    put(copy, Owner::another);
}

int HeadlessPasteboard::write(const PasteboardContents& contents) {
    written_.push_back(contents);
    ForeignCopy own;
    own.contents = contents;
    put(std::move(own), Owner::us);
    return changeCount_;
}

void HeadlessPasteboard::quitOwner() {
    if (owner_ != Owner::another) return;
    offered_.reset();
    owner_ = Owner::gone;
    if (decision_ == Decision::keep) keep(changeCount_);
    if (decision_ == Decision::drop) empty();
}

void HeadlessPasteboard::keep(int changeCount) {
    if (changeCount != changeCount_ || owner_ == Owner::us || decision_ == Decision::drop) return;
    decision_ = Decision::keep;
    if (owner_ != Owner::gone) return;
    owner_ = Owner::us;
    offered_ = current_.contents;
}

void HeadlessPasteboard::drop(int changeCount) {
    if (changeCount != changeCount_ || (owner_ == Owner::gone && decision_ == Decision::drop)) return;
    decision_ = Decision::drop;
    if (owner_ != Owner::another) empty();
}

void HeadlessPasteboard::empty() {
    put({.contents = {}, .data = {}, .markers = {}, .tellsTypes = false}, Owner::gone);
}

void HeadlessPasteboard::put(ForeignCopy copy, Owner owner) {
    current_ = std::move(copy);
    owner_ = owner;
    decision_ = owner == Owner::gone ? Decision::drop : Decision::none;
    offered_ = owner == Owner::gone ? std::nullopt : std::optional(current_.contents);
    ++changeCount_;
    if (!announces_) return;
    runLoop_.async([weak = std::weak_ptr(handler_)] {
        if (const auto handler = weak.lock(); handler && *handler) (*handler)();
    });
}

bool HeadlessPasteboard::setChangeHandler(std::function<void()> handler) {
    handler_ = std::make_shared<std::function<void()>>(std::move(handler));
    return announces_;
}

std::optional<std::vector<std::string>> HeadlessPasteboard::types() const {
    if (!current_.tellsTypes) return std::nullopt;
    std::vector<std::string> types;
    const PasteboardContents& contents = current_.contents;
    if (!contents.filePaths.empty()) types.emplace_back(pasteboard_type::fileURL);
    if (contents.png) types.emplace_back(pasteboard_type::png);
    if (contents.gif) types.emplace_back(pasteboard_type::gif);
    for (const auto& [type, bytes] : current_.data)
        types.push_back(type);
    if (contents.string) types.emplace_back(pasteboard_type::string);
    if (current_.isConcealed) types.emplace_back(pasteboard_type::concealed);
    types.insert(types.end(), current_.markers.begin(), current_.markers.end());
    return types;
}

std::vector<std::string> HeadlessPasteboard::filePaths() const {
    return current_.isConcealed ? std::vector<std::string>{} : current_.contents.filePaths;
}

std::optional<std::string> HeadlessPasteboard::string() const {
    return current_.isConcealed ? std::nullopt : current_.contents.string;
}

SharedBytes HeadlessPasteboard::data(const std::string& type) const {
    if (current_.isConcealed) return nullptr;
    if (type == pasteboard_type::png) return current_.contents.png;
    if (type == pasteboard_type::gif) return current_.contents.gif;
    const auto found = current_.data.find(type);
    return found == current_.data.end() ? nullptr : found->second;
}

}  // namespace brimquill::platform

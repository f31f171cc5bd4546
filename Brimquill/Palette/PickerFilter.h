#pragma once

#include "BrimquillCore/ClipFolder.h"
#include "BrimquillCore/ClipItem.h"

#include <string>
#include <variant>

namespace brimquill {

/// The palette's scope: which part of the hoard it lists. One of small structs, compared by all that they hold.
namespace scope {

struct Folder {
    ClipFolder folder;
    /// Its full slash path.
    std::string path;
    friend bool operator==(const Folder&, const Folder&) = default;
};
struct Tag {
    std::string tag;
    friend bool operator==(const Tag&, const Tag&) = default;
};
struct Kind {
    ClipKind kind = ClipKind::text;
    friend bool operator==(const Kind&, const Kind&) = default;
};
struct App {
    std::string name;
    friend bool operator==(const App&, const App&) = default;
};
struct Clipboard {
    friend bool operator==(const Clipboard&, const Clipboard&) = default;
};
struct Snippets {
    friend bool operator==(const Snippets&, const Snippets&) = default;
};
struct Stack {
    friend bool operator==(const Stack&, const Stack&) = default;
};
struct Emoji {
    friend bool operator==(const Emoji&, const Emoji&) = default;
};

}  // namespace scope

using PickerFilter = std::variant<scope::Folder, scope::Tag, scope::Kind, scope::App, scope::Clipboard, scope::Snippets,
                                  scope::Stack, scope::Emoji>;

/// What its chip says.
std::string label(const PickerFilter& filter);
/// A string that stays the same while the filter means the same: "folder:7", "tag:work", "clipboard".
std::string key(const PickerFilter& filter);

template <typename Case>
bool is(const PickerFilter& filter) {
    return std::holds_alternative<Case>(filter);
}

}  // namespace brimquill

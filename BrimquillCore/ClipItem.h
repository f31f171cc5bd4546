#pragma once

#include "BrimquillCore/Foundation/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimquill {

/// What the text of a clip means. The raw value is what the database stores.
enum class ClipKind { text, image, ocr, file };

/// "text", "image", "ocr", "file".
std::string_view rawValue(ClipKind kind);
/// The kind of a raw value; nothing for any other string.
std::optional<ClipKind> clipKind(std::string_view rawValue);

/// One record of the hoard: a captured clip or, when it has a `name`, a snippet. A plain value: changing one changes
/// nothing in the store. A negative `id` is a transient card that is never stored.
struct ClipItem {
    std::int64_t id = 0;
    ClipKind kind = ClipKind::text;
    std::string text;
    Date createdAt;
    std::optional<std::string> sourceApp;
    bool pinned = false;
    std::optional<std::string> imagePath;
    std::optional<std::string> name;
    std::optional<std::string> keyword;
    std::optional<std::int64_t> folderId;
    std::optional<Date> expiresAt;
    std::vector<std::string> tags;
    std::string uuid;
    Date modifiedAt = Date::distantPast();
    bool deleted = false;
    std::optional<std::string> sourceBundleId;

    bool isSnippet() const { return name.has_value(); }

    /// The text for list display: file names for files, a label for a picture without text, else the trimmed text.
    /// Never shortened.
    std::string preview() const;

    /// The trimmed text when it is a colour such as "#FFF" or "#a1b2c3", as written; otherwise nothing.
    std::optional<std::string> hexColor() const;

    friend bool operator==(const ClipItem&, const ClipItem&) = default;
};

}  // namespace brimquill

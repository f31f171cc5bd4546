#pragma once

#include "BrimquillCore/ClipItem.h"

#include <array>
#include <optional>
#include <string>

namespace brimquill {

/// What a person would call the type of a clip. One clip can be of several; none is stored.
enum class ContentType { text, link, image, gif, screenshot, file };

inline constexpr std::array allContentTypes = {ContentType::text, ContentType::link,       ContentType::image,
                                               ContentType::gif,  ContentType::screenshot, ContentType::file};

/// "Text", "Links", "Images", "GIFs", "Screenshots", "Files".
std::string label(ContentType type);
/// The symbol of its button.
std::string symbol(ContentType type);

/// Whether the text begins exactly with "http://" or "https://".
bool isLink(const ClipItem& item);

/// Whether the clip is of the type; without a type every clip is.
bool matches(const ClipItem& item, std::optional<ContentType> type);

}  // namespace brimquill

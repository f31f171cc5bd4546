#pragma once

#include "Brimquill/Palette/CardStyle.h"
#include "BrimquillCore/ClipItem.h"

#include <string>

namespace brimquill {

/// What the body of a card shows.
enum class CardBody { text, image, color, files, missingFile, emoji };

/// Everything a card shows of its clip, decided once when the list is made, so that drawing it touches memory only.
struct Card {
    std::int64_t id = 0;
    CardStyle::Header header;
    std::string age;
    CardBody body = CardBody::text;
    /// The text of the body: the beginning of the clip's text, the code of a colour, the name of a file, an emoji.
    std::string text;
    /// The name of an emoji, the path of a file.
    std::string caption;
    std::string imagePath;
    /// The colour of a colour clip.
    CardColor swatch;
    /// What is below the body: a count of characters or files, the size of a picture.
    std::string footer;
    std::string sourceBundleId;
    bool isPinned = false, expires = false;
    /// What a screen reader says.
    std::string accessibleName;
    friend bool operator==(const Card&, const Card&) = default;
};

/// How far into a clip's text a card looks: more never fits on one.
inline constexpr std::size_t cardTextLimit = 600;

/// What a card shows of its clip's files.
struct FileFacts {
    /// Whether any of them is there.
    bool exists = true;
    /// Of a picture, "640 × 480" in pixels; empty when that is not known, or the file is no picture.
    std::string pictureSize;
    friend bool operator==(const FileFacts&, const FileFacts&) = default;
};

Card makeCard(const ClipItem& item, CardStyle& style, Date now, const FileFacts& files);

}  // namespace brimquill

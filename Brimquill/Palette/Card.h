#pragma once

#include "Brimquill/Palette/CardStyle.h"
#include "BrimquillCore/ClipItem.h"

#include <functional>
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
};

/// How far into a clip's text a card looks: more never fits on one.
inline constexpr std::size_t cardTextLimit = 600;

/// What a card needs to know of files. Both are asked on the main thread and must answer at once.
struct CardFiles {
    std::function<bool(const std::string& path)> exists;
    /// "640 × 480" in pixels; empty when the file is no picture.
    std::function<std::string(const std::string& path)> pictureSize;
};

Card makeCard(const ClipItem& item, CardStyle& style, Date now, const CardFiles& files);

}  // namespace brimquill

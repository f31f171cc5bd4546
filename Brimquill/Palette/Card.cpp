#include "Brimquill/Palette/Card.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>

namespace brimquill {
namespace {

/// The first `cardTextLimit` characters or so: enough for any card, whatever the clip's size.
std::string beginning(const std::string& text) {
    constexpr std::size_t bytesLooked = cardTextLimit * 8;
    return text.size() <= cardTextLimit ? text : text::prefix(text, cardTextLimit, bytesLooked);
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun;
}

std::string characters(const std::string& text) {
    return counted(text::characterCount(text), "characters");
}

void describeFiles(Card& card, const ClipItem& item, const FileFacts& files) {
    const auto paths = text::split(item.text, '\n');
    const bool isThere = files.exists && !paths.empty();
    card.body = isThere ? CardBody::files : CardBody::missingFile;
    card.text = isThere ? beginning(item.preview()) : "Original file no longer exists";
    card.caption = paths.empty() ? "" : paths.front();
    card.footer = counted(paths.size(), "file(s)");
}

void describeText(Card& card, const ClipItem& item) {
    card.footer = characters(item.text);
    if (const auto color = item.hexColor()) {
        card.body = CardBody::color;
        card.text = *color;
        card.swatch = CardStyle::custom(*CardStyle::hex(*color));
        return;
    }
    card.body = CardBody::text;
    card.text = text::trimmed(beginning(item.preview()));
}

}  // namespace

Card makeCard(const ClipItem& item, CardStyle& style, Date now, const FileFacts& files) {
    Card card;
    card.id = item.id;
    card.header = style.header(item);
    card.isPinned = item.pinned;
    card.expires = item.expiresAt.has_value();
    card.sourceBundleId = item.sourceBundleId.value_or("");
    card.age = CardStyle::age(item.createdAt, now);
    if (item.id < 0) {
        card.body = CardBody::emoji;
        card.text = item.text;
        card.caption = item.name.value_or("");
        card.footer = characters(item.text);
    } else if (item.kind == ClipKind::file) {
        describeFiles(card, item, files);
    } else if (item.kind == ClipKind::image && item.imagePath) {
        card.body = CardBody::image;
        card.imagePath = *item.imagePath;
        card.text = beginning(item.preview());
        card.footer = files.pictureSize;
    } else {
        describeText(card, item);
    }
    card.accessibleName = card.header.title + ", " + (card.body == CardBody::emoji ? card.caption : card.text);
    return card;
}

}  // namespace brimquill

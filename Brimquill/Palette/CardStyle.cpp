#include "Brimquill/Palette/CardStyle.h"

#include "Brimquill/Palette/ContentType.h"
#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brimquill {
namespace {

struct NamedColor {
    std::string_view name, fill, ink;
};

/// The first eight have names that a user may choose, and are the palette that tags and applications draw from.
constexpr std::array<NamedColor, 10> allColors{{{"orange", "#BA5C0A", "#E6720C"},
                                                {"red", "#DF3127", "#E86C65"},
                                                {"blue", "#0A6CFF", "#4791FF"},
                                                {"green", "#26863F", "#2FA84F"},
                                                {"purple", "#9C4DDB", "#B477E4"},
                                                {"pink", "#E51D59", "#ED618B"},
                                                {"teal", "#118196", "#159FB8"},
                                                {"indigo", "#5A58DC", "#8A88E6"},
                                                {"yellow", "#937100", "#B78C00"},
                                                {"mint", "#00847E", "#00A39B"}}};
constexpr std::size_t paletteSize = 8;
constexpr const char* nearBlack = "#1C1D21";
const CardColor secondary{"#63666E", "#A6A9B2", "#FFFFFF"};

CardColor color(const NamedColor& named) {
    return {std::string(named.fill), std::string(named.ink)};
}

CardColor known(std::string_view name) {
    return color(*std::find_if(allColors.begin(), allColors.end(), [&](const auto& c) { return c.name == name; }));
}

/// Relative luminance of "#RRGGBB", 0 to 1.
double luminance(const std::string& hex) {
    const auto channel = [&](std::size_t at) {
        const double value = std::stoi(hex.substr(at, 2), nullptr, 16) / 255.0;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(1) + 0.7152 * channel(3) + 0.0722 * channel(5);
}

double contrast(const std::string& a, const std::string& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

std::string firstComponent(const std::string& path) {
    return path.substr(0, path.find('/'));
}

std::size_t lineCount(const std::string& text) {
    return text::split(text, '\n').size();
}

}  // namespace

CardStyle::CardStyle(ClipStore& store, NotificationCenter& center) : store_(store) {
    observation_ = center.observe(ClipStore::didChangeNotification, &store,
                                  [this](const Notification&) { foldersAreStale_.store(true); });
}

std::optional<CardColor> CardStyle::named(std::string_view name) {
    const auto* const end = allColors.begin() + paletteSize;
    const auto* const found = std::find_if(allColors.begin(), end, [&](const auto& c) { return c.name == name; });
    return found == end ? std::nullopt : std::optional(brimquill::color(*found));
}

CardColor CardStyle::palette(std::string_view text) {
    std::uint64_t sum = 0;
    for (const char32_t scalar : text::scalars(text))
        sum += scalar;
    return brimquill::color(allColors[sum % paletteSize]);
}

std::optional<std::string> CardStyle::hex(std::string_view code) {
    auto digits = text::trimmed(code);
    if (digits.starts_with('#')) digits.erase(0, 1);
    if (digits.size() == 3) digits = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
    if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return {};
    return "#" + text::uppercased(digits);
}

CardColor CardStyle::custom(const std::string& hex) {
    constexpr double readable = 4.5;
    const double white = contrast(hex, "#FFFFFF"), dark = contrast(hex, nearBlack);
    if (std::max(white, dark) < readable) return {hex, hex, "#000000"};
    return {hex, hex, white >= dark ? "#FFFFFF" : nearBlack};
}

std::string CardStyle::age(Date created, Date now) {
    constexpr double minute = 60, hour = 60 * minute, day = 24 * hour, week = 7 * day, year = 365 * day;
    const double seconds = now - created;
    const auto count = [&](double unit, const char* suffix) {
        return std::to_string(static_cast<long>(seconds / unit)) + suffix;
    };
    if (seconds < minute) return "now";
    if (seconds < hour) return count(minute, "m");
    if (seconds < day) return count(hour, "h");
    if (seconds < 2 * week) return count(day, "d");
    return seconds < year ? count(week, "w") : count(year, "y");
}

CardColor CardStyle::folderColor(const ClipFolder& folder, const std::string& path) {
    const auto own = [](const ClipFolder& f) -> std::optional<CardColor> {
        if (!f.color) return std::nullopt;
        if (auto color = named(*f.color)) return color;
        if (const auto code = hex(*f.color)) return custom(*code);
        return std::nullopt;
    };
    if (const auto color = own(folder)) return *color;
    const auto root = firstComponent(path);
    for (const auto at : folders().children(std::nullopt)) {
        const auto& candidate = folders().folders()[at];
        if (candidate.name != root) continue;
        if (const auto color = own(candidate)) return *color;
    }
    return palette(root);
}

std::string CardStyle::path(const ClipFolder& folder) {
    return folders().path(folder);
}

CardStyle::Header CardStyle::header(const ClipItem& item) {
    if (item.id < 0) return {"Emoji", known("pink")};
    const auto ofKind = [&]() -> Header {
        if (item.name) return {*item.name, known("yellow")};
        switch (item.kind) {
            case ClipKind::file: {
                const auto lines = lineCount(item.text);
                return {lines <= 1 ? "File" : std::to_string(lines) + " Files", known("teal")};
            }
            case ClipKind::ocr:
                return {"Screen OCR", known("purple")};
            case ClipKind::image:
                return {"Image", known("pink")};
            case ClipKind::text:
                break;
        }
        if (item.hexColor()) return {"Color", known("indigo")};
        if (isLink(item)) return {"Link", known("blue")};
        return {"Text", known("orange")};
    };
    auto header = ofKind();
    if (const auto* filed = item.folderId ? folders().find(*item.folderId) : nullptr) {
        header.color = folderColor(*filed, path(*filed));
    }
    return header;
}

CardColor CardStyle::color(const PickerFilter& filter) {
    if (const auto* folder = std::get_if<scope::Folder>(&filter)) return folderColor(folder->folder, folder->path);
    if (const auto* tag = std::get_if<scope::Tag>(&filter)) return palette(tag->tag);
    if (const auto* app = std::get_if<scope::App>(&filter)) return palette(app->name);
    if (const auto* kind = std::get_if<scope::Kind>(&filter)) {
        switch (kind->kind) {
            case ClipKind::text:
                return known("orange");
            case ClipKind::image:
                return known("pink");
            case ClipKind::ocr:
                return known("purple");
            case ClipKind::file:
                return known("teal");
        }
    }
    if (is<scope::Snippets>(filter)) return known("yellow");
    if (is<scope::Stack>(filter)) return known("mint");
    if (is<scope::Emoji>(filter)) return known("pink");
    return secondary;
}

const FolderTree& CardStyle::folders() {
    // Asked before reading: what is written meanwhile counts for the next time.
    if (foldersAreStale_.exchange(false) || !folders_) folders_ = FolderTree(store_.folders());
    return *folders_;
}

}  // namespace brimquill

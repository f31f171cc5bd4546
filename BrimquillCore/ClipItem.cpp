#include "BrimquillCore/ClipItem.h"

#include "BrimquillCore/Foundation/Text.h"

#include <algorithm>
#include <array>

namespace brimquill {
namespace {

struct KindName {
    ClipKind kind;
    std::string_view rawValue;
};

constexpr std::array kindNames{KindName{ClipKind::text, "text"}, KindName{ClipKind::image, "image"},
                               KindName{ClipKind::ocr, "ocr"}, KindName{ClipKind::file, "file"}};

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

}  // namespace

std::string_view rawValue(ClipKind kind) {
    for (const auto& entry : kindNames) {
        if (entry.kind == kind) return entry.rawValue;
    }
    return "text";
}

std::optional<ClipKind> clipKind(std::string_view rawValue) {
    for (const auto& entry : kindNames) {
        if (entry.rawValue == rawValue) return entry.kind;
    }
    return std::nullopt;
}

std::string ClipItem::preview() const {
    if (kind == ClipKind::file) {
        auto names = text::split(text, '\n');
        for (auto& line : names)
            line = text::lastPathComponent(line);
        return text::join(names, "\n");
    }
    if (kind == ClipKind::image && text.empty()) return "🖼 Image";
    return text::trimmed(text);
}

std::optional<std::string> ClipItem::hexColor() const {
    auto candidate = text::trimmed(text);
    const bool hasColorLength = candidate.size() == 4 || candidate.size() == 7;
    if (!hasColorLength || candidate[0] != '#') return std::nullopt;
    if (!std::all_of(candidate.begin() + 1, candidate.end(), isHexDigit)) return std::nullopt;
    return candidate;
}

}  // namespace brimquill

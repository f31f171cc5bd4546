#include "BrimquillCore/SecretDetector.h"

#include "BrimquillCore/Foundation/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <algorithm>
#include <array>
#include <string>

namespace brimquill::SecretDetector {
namespace {

constexpr std::array<std::string_view, 5> secretPrefixes{"-----BEGIN", "ghp_", "sk-", "xoxb-", "AKIA"};
constexpr std::size_t longestCardNumber = 23;

/// The code points of a text that is short enough to be a number; empty for a longer one, which is not scanned.
std::u32string shortText(std::string_view text) {
    constexpr std::size_t bytesPerCodePoint = 4;
    std::u32string result;
    if (text.size() > longestCardNumber * bytesPerCodePoint) return result;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t at = 0; at < length;) {
        UChar32 c = 0;
        U8_NEXT_OR_FFFD(bytes, at, length, c);
        result.push_back(static_cast<char32_t>(c));
    }
    return result;
}

/// A decimal digit of any script.
bool isDigit(char32_t c) {
    return u_isdigit(static_cast<UChar32>(c)) != 0;
}

bool isOneTimeCode(const std::u32string& text) {
    return text.size() >= 4 && text.size() <= 8 && std::all_of(text.begin(), text.end(), isDigit);
}

bool luhnValid(const std::u32string& digits) {
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto digit = u_charDigitValue(static_cast<UChar32>(digits[digits.size() - 1 - i]));
        if (digit < 0) return false;
        if (i % 2 == 0) {
            sum += digit;
        } else {
            sum += digit < 5 ? 2 * digit : 2 * digit - 9;
        }
    }
    return sum % 10 == 0;
}

bool isCardNumber(const std::u32string& text) {
    if (text.size() < 13 || text.size() > longestCardNumber) return false;
    if (!isDigit(text.front()) || !isDigit(text.back())) return false;
    std::u32string digits;
    for (const char32_t c : text) {
        if (isDigit(c)) {
            digits.push_back(c);
        } else if (c != U' ' && c != U'-') {
            return false;
        }
    }
    return digits.size() >= 13 && digits.size() <= 19 && luhnValid(digits);
}

bool hasSecretPrefix(std::string_view text) {
    return std::any_of(secretPrefixes.begin(), secretPrefixes.end(),
                       [text](std::string_view prefix) { return text.starts_with(prefix); });
}

}  // namespace

std::atomic<bool> autoExpiryEnabled = true;

std::optional<Date> expiryDate(std::string_view text, Date now) {
    if (!autoExpiryEnabled) return {};
    const auto trimmed = text::trimmed(text);
    const auto number = shortText(trimmed);
    if (isOneTimeCode(number) || isCardNumber(number) || hasSecretPrefix(trimmed)) return now + expiryInterval;
    return {};
}

}  // namespace brimquill::SecretDetector

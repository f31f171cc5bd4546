#pragma once

#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// ICU regular expressions for those who may call ICU. Any thread.
namespace brimquill {

inline icu::UnicodeString unicodeString(std::string_view utf8) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
}

inline std::string utf8String(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

/// A compiled pattern, to be kept: compiling costs far more than a match.
class RegularExpression final {
public:
    /// Ends the process when the pattern does not compile, which is a programming error.
    explicit RegularExpression(const char* pattern);

    /// The matches of a pattern in a text, left to right, not overlapping. The text must outlive it.
    class Matches final {
    public:
        /// Moves to the next match; false at the end, and when a search takes unreasonably long.
        bool next();
        int32_t start() const;
        int32_t end() const;
        /// The text of a group, 0 being the whole match; nothing when the group took no part.
        std::optional<std::string> group(int32_t number) const;

    private:
        friend class RegularExpression;
        Matches(const icu::RegexPattern& pattern, const icu::UnicodeString& text);
        mutable UErrorCode status_ = U_ZERO_ERROR;
        const icu::UnicodeString& text_;
        std::unique_ptr<icu::RegexMatcher> matcher_;
    };
    Matches matches(const icu::UnicodeString& text) const;

private:
    std::unique_ptr<icu::RegexPattern> pattern_;
};

}  // namespace brimquill

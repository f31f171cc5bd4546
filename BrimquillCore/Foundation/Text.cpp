#include "BrimquillCore/Foundation/Text.h"

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/unorm.h>
#include <unicode/utf8.h>
#include <algorithm>
#include <memory>

namespace brimquill::text {
namespace {

bool isAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

bool isSpaceOrNewline(UChar32 c) {
    return u_isUWhiteSpace(c) != 0 || c == 0x200B;
}

/// The code point that ends before `end`, which moves to its start.
UChar32 previous(std::string_view text, int32_t& end) {
    UChar32 c = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    U8_PREV_OR_FFFD(bytes, 0, end, c);
    return c;
}

UChar32 next(std::string_view text, int32_t& start) {
    UChar32 c = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    U8_NEXT_OR_FFFD(bytes, start, length, c);
    return c;
}

template <typename Predicate>
std::string_view trimmedWhere(std::string_view text, Predicate drop) {
    int32_t start = 0;
    auto end = static_cast<int32_t>(text.size());
    for (int32_t at = start; at < end;) {
        if (!drop(next(text, at))) break;
        start = at;
    }
    for (int32_t at = end; at > start;) {
        if (!drop(previous(text, at))) break;
        end = at;
    }
    return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

icu::UnicodeString normalized(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto* nfd = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status)) return text;
    auto result = nfd->normalize(text, status);
    return U_SUCCESS(status) ? result : text;
}

/// One iterator a thread: making one costs far more than using it.
icu::BreakIterator* characterIterator(const icu::UnicodeString& text) {
    thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }();
    if (iterator) iterator->setText(text);
    return iterator.get();
}

bool isPlainAscii(std::string_view text) {
    return isAscii(text) && text.find('\r') == std::string_view::npos;
}

}  // namespace

std::string lowercased(std::string_view text) {
    if (!isAscii(text)) return utf8(unicode(text).toLower(icu::Locale::getRoot()));
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

std::string uppercased(std::string_view text) {
    if (!isAscii(text)) return utf8(unicode(text).toUpper(icu::Locale::getRoot()));
    std::string result(text);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return result;
}

std::string trimmed(std::string_view text) {
    return std::string(trimmedWhere(text, isSpaceOrNewline));
}

std::string trimmedBlanks(std::string_view text) {
    return std::string(trimmedWhere(text, [](UChar32 c) { return c == ' ' || c == '\t'; }));
}

bool equal(std::string_view a, std::string_view b) {
    if (a == b) return true;
    if (isAscii(a) && isAscii(b)) return false;
    return normalized(unicode(a)) == normalized(unicode(b));
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    const auto left = unicode(a);
    const auto right = unicode(b);
    UErrorCode status = U_ZERO_ERROR;
    const auto order = unorm_compare(left.getBuffer(), left.length(), right.getBuffer(), right.length(),
                                     U_COMPARE_IGNORE_CASE, &status);
    return U_SUCCESS(status) && order == 0;
}

bool contains(std::string_view text, std::string_view needle) {
    if (needle.empty() || text.find(needle) != std::string_view::npos) return true;
    if (isAscii(needle) && isAscii(text)) return false;
    return normalized(unicode(text)).indexOf(normalized(unicode(needle))) >= 0;
}

int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b) {
    thread_local const std::unique_ptr<icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        // The POSIX variant would collate by code point, capitals first: nobody reads lists that way.
        const auto& user = icu::Locale::getDefault();
        const bool posix = std::string_view(user.getVariant()) == "POSIX";
        std::unique_ptr<icu::Collator> made(
            icu::Collator::createInstance(posix ? icu::Locale::getRoot() : user, status));
        if (U_FAILURE(status)) return std::unique_ptr<icu::Collator>();
        made->setStrength(icu::Collator::SECONDARY);
        return made;
    }();
    if (!collator) return lowercased(a).compare(lowercased(b));
    UErrorCode status = U_ZERO_ERROR;
    return static_cast<int>(collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                                  icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status));
}

std::size_t characterCount(std::string_view text) {
    if (isPlainAscii(text)) return text.size();
    const auto wide = unicode(text);
    auto* iterator = characterIterator(wide);
    if (iterator == nullptr) return static_cast<std::size_t>(wide.countChar32());
    std::size_t count = 0;
    while (iterator->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

std::string prefix(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return validUtf8(text);
    if (limit == 0) return {};
    const auto plain = text.substr(0, limit + 1);
    // The character after the cut must not be one that joins the one before it.
    if (isPlainAscii(plain)) return std::string(plain.substr(0, limit));
    const auto wide = unicode(text);
    auto* iterator = characterIterator(wide);
    if (iterator == nullptr) return utf8(wide.tempSubString(0, static_cast<int32_t>(limit)));
    for (std::size_t taken = 0; taken < limit; ++taken) {
        if (iterator->next() == icu::BreakIterator::DONE) break;
    }
    return utf8(wide.tempSubString(0, iterator->current()));
}

std::string prefix(std::string_view text, std::size_t limit, std::size_t bytes) {
    auto end = std::min(text.size(), bytes);
    // Where a code point begins.
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return prefix(text.substr(0, end), limit);
}

std::vector<std::string> split(std::string_view text, char separator, bool keepEmpty) {
    std::vector<std::string> pieces;
    for (std::size_t start = 0;;) {
        const auto end = std::min(text.find(separator, start), text.size());
        if (keepEmpty || end > start) pieces.emplace_back(text.substr(start, end - start));
        if (end == text.size()) return pieces;
        start = end + 1;
    }
}

std::string join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string result;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) result += separator;
        result += pieces[i];
    }
    return result;
}

std::string replacingNewlines(std::string_view text, std::string_view replacement) {
    std::string result;
    result.reserve(text.size());
    for (int32_t at = 0; at < static_cast<int32_t>(text.size());) {
        const auto start = static_cast<std::size_t>(at);
        const auto c = next(text, at);
        const bool isBreak = (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
        if (c == '\r' && static_cast<std::size_t>(at) < text.size() && text[static_cast<std::size_t>(at)] == '\n') ++at;
        result += isBreak ? replacement : text.substr(start, static_cast<std::size_t>(at) - start);
    }
    return result;
}

std::string lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos || path.size() == 1) return std::string(path);
    return std::string(path.substr(slash + 1));
}

std::string pathExtension(std::string_view path) {
    const auto name = lastPathComponent(path);
    const auto dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return {};
    return name.substr(dot + 1);
}

std::u32string scalars(std::string_view text) {
    std::u32string result;
    for (int32_t at = 0; at < static_cast<int32_t>(text.size());) {
        result.push_back(static_cast<char32_t>(next(text, at)));
    }
    return result;
}

std::string validUtf8(std::string_view text) {
    return isAscii(text) ? std::string(text) : utf8(unicode(text));
}

}  // namespace brimquill::text

#include "BrimquillCore/Placeholders.h"

#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/RegularExpression.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"
#include "BrimquillCore/PlaceholderDate.h"

#include <charconv>
#include <limits>
#include <map>
#include <optional>
#include <vector>

namespace brimquill::Placeholders {
namespace {

using Attributes = std::map<std::string, std::string>;

std::string textInHoard(std::int64_t offset) {
    constexpr std::int64_t furthest = std::numeric_limits<int>::max() - 1;
    if (offset > furthest) return {};
    const auto clips = ClipStore::shared().fetchHistory(static_cast<int>(offset + 1));
    if (offset >= static_cast<std::int64_t>(clips.size())) return {};
    return clips.at(static_cast<std::size_t>(offset)).text;
}

std::optional<std::string> value(const Attributes& attributes, const std::string& key) {
    const auto found = attributes.find(key);
    return found == attributes.end() ? std::nullopt : std::optional(found->second);
}

/// `text` as a decimal integer with an optional sign, as a whole; else 0.
std::int64_t integer(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return 0;
    }
    std::int64_t result = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    return error == std::errc() && end == text.data() + text.size() ? result : 0;
}

/// Pairs such as offset=1 or format="MMM d"; the last one of a key wins, and stray words are ignored.
Attributes parseAttributes(const std::string& raw) {
    // Beside its grammar the pattern says that a key begins a word, so that no long word is tried from each letter on.
    // The sets are bracketed since ICU repeats those, and no others, without a stack.
    static const RegularExpression attribute(R"re((?<![\w])([\w]+)=(?:"([^"]*)"|([\S]+)))re");
    Attributes attributes;
    const auto text = unicodeString(raw);
    for (auto matches = attribute.matches(text); matches.next();) {
        const auto quoted = matches.group(2);
        attributes[matches.group(1).value_or("")] = quoted ? *quoted : matches.group(3).value_or("");
    }
    return attributes;
}

std::string date(PlaceholderDate::Style style, const Attributes& attributes, Date now) {
    const auto offset = value(attributes, "offset");
    return PlaceholderDate::formatted(offset ? PlaceholderDate::offsetDate(*offset, now) : now, style,
                                      value(attributes, "format"));
}

/// The value of a placeholder; nothing for an unknown name.
std::optional<std::string> resolve(const std::string& name, const Attributes& attributes, const Clock& clock) {
    using PlaceholderDate::Style;
    if (name == "date") return date(Style::date, attributes, clock());
    if (name == "time") return date(Style::time, attributes, clock());
    if (name == "datetime") return date(Style::dateTime, attributes, clock());
    if (name == "clipboard") return clipboardProvider();
    if (name == "hoard") return hoardProvider(integer(value(attributes, "offset").value_or("0")));
    if (name == "uuid") return text::uppercased(makeUuid());
    return {};
}

/// Percent-encoded but for what may stand in the query of a URL.
std::string percentEncoded(std::string_view text) {
    constexpr std::string_view allowed =
        "!$&'()*+,-./0123456789:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ_"
        "abcdefghijklmnopqrstuvwxyz~";
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text::validUtf8(text)) {
        if (allowed.find(c) != std::string_view::npos) {
            result += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += {'%', hexDigits[byte >> 4], hexDigits[byte & 15]};
        }
    }
    return result;
}

std::string piped(std::string value, const std::string& pipes) {
    for (const auto& piece : text::split(pipes, '|')) {
        const auto pipe = text::trimmedBlanks(piece);
        if (pipe == "trim") value = text::trimmed(value);
        if (pipe == "uppercase") value = text::uppercased(value);
        if (pipe == "lowercase") value = text::lowercased(value);
        if (pipe == "percent-encode") value = percentEncoded(value);
    }
    return value;
}

}  // namespace

std::function<std::string()> clipboardProvider = [] { return std::string(); };
std::function<std::string(std::int64_t)> hoardProvider = textInHoard;

std::string expand(const std::string& templateText, const Clock& clock) {
    if (templateText.find('{') == std::string::npos) return templateText;
    // No placeholder ends behind the last closing brace. Looking no further than that, no search runs to the end in
    // vain, and the whole takes linear time.
    const auto lastBrace = templateText.rfind('}');
    if (lastBrace == std::string::npos) return templateText;

    static const RegularExpression placeholder(R"(\{([a-z]+)([^}|]*)((?:\|[^}|]*)*)\})");
    const auto searched = unicodeString(std::string_view(templateText).substr(0, lastBrace + 1));
    std::string result;
    int32_t copied = 0;
    for (auto matches = placeholder.matches(searched); matches.next();) {
        searched.tempSubStringBetween(copied, matches.start()).toUTF8String(result);
        const auto name = matches.group(1).value_or("");
        const auto attributes = parseAttributes(matches.group(2).value_or(""));
        auto value = resolve(name, attributes, clock);
        // An unknown placeholder stands for its own text, on which its pipes work all the same.
        if (!value) value = matches.group(0);
        result += piped(value.value_or(""), matches.group(3).value_or(""));
        copied = matches.end();
    }
    searched.tempSubString(copied).toUTF8String(result);
    return result.append(templateText, lastBrace + 1);
}

}  // namespace brimquill::Placeholders

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Unicode text operations on UTF-8. All of them are total: bytes that are no UTF-8 are read as U+FFFD, never
/// refused. "Characters" are grapheme clusters. None depends on the process's locale unless it says so. Any thread.
namespace brimquill::text {

/// Lower and upper case of every character, by the root locale.
std::string lowercased(std::string_view text);
std::string uppercased(std::string_view text);

/// Without white space and line breaks (Unicode) at both ends.
std::string trimmed(std::string_view text);
/// Without spaces and tabs at both ends.
std::string trimmedBlanks(std::string_view text);

/// Equal under canonical equivalence, and the same with case folded away.
bool equal(std::string_view a, std::string_view b);
bool equalIgnoringCase(std::string_view a, std::string_view b);
/// Whether `needle` stands in `text` as it is, under canonical equivalence; the empty needle does.
bool contains(std::string_view text, std::string_view needle);

/// Below, at or above 0, for lists that people read: collated by the user's locale, case ignored.
int localizedCaseInsensitiveCompare(std::string_view a, std::string_view b);

/// The number of characters, and the first `limit` of them.
std::size_t characterCount(std::string_view text);
std::string prefix(std::string_view text, std::size_t limit);
/// The same of no more than its first `bytes` bytes or so: a character may be of any length.
std::string prefix(std::string_view text, std::size_t limit, std::size_t bytes);

/// The pieces between separators. With `keepEmpty` false, empty pieces are dropped.
std::vector<std::string> split(std::string_view text, char separator, bool keepEmpty = false);
std::string join(const std::vector<std::string>& pieces, std::string_view separator);
/// `text` with every line break (LF, CR, CRLF, NEL, LS, PS) replaced by `replacement`.
std::string replacingNewlines(std::string_view text, std::string_view replacement);

/// The last component of a path, trailing slashes ignored; "/" for the root, "" for "".
std::string lastPathComponent(std::string_view path);
/// What follows the last dot of the last component, without the dot; "" when there is none or it leads the name.
std::string pathExtension(std::string_view path);

/// The Unicode scalar values.
std::u32string scalars(std::string_view text);

/// Bytes that are valid UTF-8: `text` itself, or with each malformed sequence replaced by U+FFFD.
std::string validUtf8(std::string_view text);

}  // namespace brimquill::text

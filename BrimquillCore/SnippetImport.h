#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimquill {
class ClipStore;
}

/// Brings in snippets from the exports of other text expanders: two forgiving readers, which take what they recognise
/// by its key, and a writer. Bad input gives fewer snippets or none, never an error. Any thread that the store allows.
namespace brimquill::SnippetImport {

struct Parsed {
    std::string name;
    std::string text;
    /// The abbreviation that triggers it; may be empty.
    std::optional<std::string> keyword;
    friend bool operator==(const Parsed&, const Parsed&) = default;
};

/// Longer files, in bytes, are no such export and are not read.
inline constexpr std::size_t largestFile = std::size_t{8} * 1024 * 1024;

/// The snippets of a JSON or a YAML export. `fileExtension`, in any case and without the dot, only tells where to
/// begin: what is no JSON is read as YAML.
std::vector<Parsed> parse(std::string_view data, std::string_view fileExtension);

/// Stores each snippet that has a text, unfiled, also when its like is there already. How many were stored.
int write(const std::vector<Parsed>& snippets, ClipStore& store);

/// Reads `file` and writes what it holds: the number of snippets created. 0 also when it cannot be read.
int importFile(const std::filesystem::path& file, ClipStore& store);

}  // namespace brimquill::SnippetImport

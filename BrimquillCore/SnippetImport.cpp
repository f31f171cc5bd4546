#include "BrimquillCore/SnippetImport.h"

#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <initializer_list>

namespace brimquill::SnippetImport {
namespace {

using Json = nlohmann::json;
constexpr std::size_t nameLength = 30;
/// Snippets stand at most three levels deep; what lies deeper is checked but not kept, however much there is of it.
constexpr int deepestKept = 6;

/// The document, or nothing when the data is not JSON.
std::optional<Json> decoded(std::string_view data) {
    const auto keep = [](int depth, Json::parse_event_t, const Json&) { return depth <= deepestKept; };
    auto json = Json::parse(data, keep, false);
    if (json.is_discarded()) return {};
    return json;
}

bool isArrayOfObjects(const Json& json) {
    return json.is_array() && std::all_of(json.begin(), json.end(), [](const Json& each) { return each.is_object(); });
}

/// The value of the first key that is there, whatever its type; null without one.
const Json& first(const Json& object, std::initializer_list<const char*> keys) {
    static const Json none;
    for (const char* key : keys) {
        if (const auto found = object.find(key); found != object.end()) return *found;
    }
    return none;
}

std::optional<std::string> string(const Json& json) {
    return json.is_string() ? std::optional(json.get<std::string>()) : std::nullopt;
}

std::optional<Parsed> parseObject(const Json& object) {
    const auto text = string(first(object, {"text", "snippet", "plainText", "replace", "value"}));
    if (!text || text->empty()) return {};
    auto keyword = string(first(object, {"keyword", "abbreviation", "trigger"}));
    auto name = string(first(object, {"name", "label", "title"}));
    if (!name) name = keyword ? *keyword : text::prefix(*text, nameLength);
    return Parsed{*name, *text, std::move(keyword)};
}

const Json* snippetList(const Json& root) {
    if (isArrayOfObjects(root)) return &root;
    if (!root.is_object()) return nullptr;
    for (const char* key : {"snippets", "matches"}) {
        const auto found = root.find(key);
        if (found != root.end() && isArrayOfObjects(*found)) return &*found;
    }
    return nullptr;
}

std::vector<Parsed> parseJSON(const Json& root) {
    std::vector<Parsed> result;
    const auto* list = snippetList(root);
    if (list == nullptr) return result;
    for (const auto& object : *list) {
        if (auto snippet = parseObject(object)) result.push_back(std::move(*snippet));
    }
    return result;
}

/// What follows `key` on its line, out of its quotes and with "\n" as a line break; nothing when that is empty.
std::optional<std::string> value(std::string_view key, const std::string& line) {
    if (!line.starts_with(key)) return {};
    auto rest = text::trimmedBlanks(std::string_view(line).substr(key.size()));
    if (rest.size() >= 2 && (rest.front() == '"' || rest.front() == '\'') && rest.front() == rest.back()) {
        rest = rest.substr(1, rest.size() - 2);
    }
    if (rest.empty()) return {};
    std::string result;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const bool lineBreak = rest[i] == '\\' && i + 1 < rest.size() && rest[i + 1] == 'n';
        result += lineBreak ? '\n' : rest[i];
        if (lineBreak) ++i;
    }
    return result;
}

/// Reads triggers and replacements line by line. No other structure of YAML is seen.
std::vector<Parsed> parseEspanso(std::string_view data) {
    std::vector<Parsed> result;
    if (text::validUtf8(data) != data) return result;
    std::optional<std::string> pendingTrigger;
    for (const auto& raw : text::split(text::replacingNewlines(data, "\n"), '\n')) {
        const auto line = text::trimmedBlanks(raw);
        auto trigger = value("trigger:", line);
        if (!trigger) trigger = value("- trigger:", line);
        if (trigger) {
            pendingTrigger = std::move(trigger);
            continue;
        }
        const auto body = value("replace:", line);
        if (!body) continue;
        result.push_back({pendingTrigger ? *pendingTrigger : text::prefix(*body, nameLength), *body, pendingTrigger});
        pendingTrigger.reset();
    }
    return result;
}

/// The bytes of a file of bearable length; nothing when it cannot be read.
std::optional<std::string> contents(const std::filesystem::path& file) {
    std::error_code error;
    // A pipe or a device could keep the reader waiting for ever.
    if (!std::filesystem::is_regular_file(file, error)) return {};
    std::ifstream stream(file, std::ios::binary);
    std::string result(largestFile + 1, '\0');
    stream.read(result.data(), static_cast<std::streamsize>(result.size()));
    if (stream.bad() || !stream.is_open() || !stream.eof()) return {};
    result.resize(static_cast<std::size_t>(stream.gcount()));
    return result;
}

}  // namespace

std::vector<Parsed> parse(std::string_view data, std::string_view fileExtension) {
    const auto extension = text::lowercased(fileExtension);
    if (extension != "yml" && extension != "yaml") {
        if (const auto json = decoded(data)) return parseJSON(*json);
    }
    return parseEspanso(data);
}

int write(const std::vector<Parsed>& snippets, ClipStore& store) {
    int count = 0;
    for (const auto& [name, text, keyword] : snippets) {
        if (text.empty()) continue;
        store.createSnippet(name, text, keyword, {});
        ++count;
    }
    return count;
}

int importFile(const std::filesystem::path& file, ClipStore& store) {
    const auto data = contents(file);
    return data ? write(parse(*data, text::pathExtension(file.string())), store) : 0;
}

}  // namespace brimquill::SnippetImport

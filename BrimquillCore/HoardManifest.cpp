#include "BrimquillCore/HoardManifest.h"

#include "BrimquillCore/Foundation/Files.h"

#include <sys/stat.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <utility>

namespace brimquill::HoardArchive {
namespace {

using Json = nlohmann::json;
constexpr int indentation = 2, deepestNesting = 512;

double finite(double seconds) {
    if (!std::isfinite(seconds)) throw std::runtime_error("A clip has a date that cannot be written.");
    return seconds;
}

// Writing. Members go in by the order of their names, in which they are to stand; that is cheaper than sorting them.

using Members = nlohmann::ordered_json;

void put(Members& object, const char* key, std::optional<std::string>& value) {
    if (value) object[key] = std::move(*value);
}

Members emptyObject(std::size_t members) {
    Members object = Members::object();
    object.get_ref<Members::object_t&>().reserve(members);
    return object;
}

Members encoded(Folder& folder) {
    auto object = emptyObject(4);
    put(object, "color", folder.color);
    object["name"] = std::move(folder.name);
    put(object, "parentUuid", folder.parentUuid);
    object["uuid"] = std::move(folder.uuid);
    return object;
}

Members encoded(Clip& clip) {
    auto object = emptyObject(12);
    object["createdAt"] = finite(clip.createdAt);
    put(object, "folderUuid", clip.folderUuid);
    put(object, "image", clip.image);
    put(object, "keyword", clip.keyword);
    object["kind"] = std::move(clip.kind);
    put(object, "name", clip.name);
    object["pinned"] = clip.pinned;
    put(object, "sourceApp", clip.sourceApp);
    put(object, "sourceBundleId", clip.sourceBundleId);
    object["tags"] = std::move(clip.tags);
    object["text"] = std::move(clip.text);
    object["uuid"] = std::move(clip.uuid);
    return object;
}

template <typename Element>
Members encodedList(std::vector<Element>& elements) {
    auto list = Members::array();
    list.get_ref<Members::array_t&>().reserve(elements.size());
    for (auto& element : elements)
        list.push_back(encoded(element));
    return list;
}

// Reading. A value that is missing or of another type makes the whole manifest none.

Json& required(Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) throw ArchiveError::notAnArchive();
    return *found;
}

std::string takeString(Json& value) {
    if (!value.is_string()) throw ArchiveError::notAnArchive();
    return std::move(value.get_ref<std::string&>());
}

std::optional<std::string> takeOptional(Json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) return std::nullopt;
    return takeString(*found);
}

double number(const Json& value) {
    if (!value.is_number()) throw ArchiveError::notAnArchive();
    return value.get<double>();
}

/// A whole number of 64 bits, which may be written with a fraction of zero.
std::int64_t integer(const Json& value) {
    constexpr double beyond = 9223372036854775808.0;
    const double rounded = number(value);
    const bool fits = value.is_number_integer()
                          ? !value.is_number_unsigned() || static_cast<std::int64_t>(value.get<std::uint64_t>()) >= 0
                          : rounded >= -beyond && rounded < beyond && std::trunc(rounded) == rounded;
    if (!fits) throw ArchiveError::notAnArchive();
    return value.get<std::int64_t>();
}

bool boolean(const Json& value) {
    if (!value.is_boolean()) throw ArchiveError::notAnArchive();
    return value.get<bool>();
}

Folder folder(Json& object) {
    return {takeString(required(object, "uuid")), takeString(required(object, "name")),
            takeOptional(object, "parentUuid"), takeOptional(object, "color")};
}

Clip clip(Json& object) {
    Clip clip;
    clip.uuid = takeString(required(object, "uuid"));
    clip.kind = takeString(required(object, "kind"));
    clip.text = takeString(required(object, "text"));
    clip.createdAt = number(required(object, "createdAt"));
    clip.sourceApp = takeOptional(object, "sourceApp");
    clip.sourceBundleId = takeOptional(object, "sourceBundleId");
    clip.pinned = boolean(required(object, "pinned"));
    clip.name = takeOptional(object, "name");
    clip.keyword = takeOptional(object, "keyword");
    clip.folderUuid = takeOptional(object, "folderUuid");
    auto& tags = required(object, "tags");
    if (!tags.is_array()) throw ArchiveError::notAnArchive();
    for (auto& tag : tags)
        clip.tags.push_back(takeString(tag));
    clip.image = takeOptional(object, "image");
    return clip;
}

/// Follows the parser. Each folder and clip is taken out of the document at its end, what is unknown never gets into
/// it, and what cannot be right ends the reading at once: so a hostile file costs no more than its own size.
class ManifestReader final {
public:
    explicit ManifestReader(Manifest& manifest) : manifest_(manifest) {}

    /// Whether the parser is to keep what it has found. Depth 1 is the manifest's members, 2 the folders and clips, 3
    /// their members, 4 the tags.
    bool operator()(int depth, Json::parse_event_t event, Json& value) {
        using Event = Json::parse_event_t;
        const bool isStart = event == Event::object_start || event == Event::array_start;
        if (depth > deepestNesting) throw ArchiveError::notAnArchive();
        if (event == Event::key) return startMember(depth, value.get_ref<const std::string&>());
        if (depth == 0) return require(event == Event::object_start || event == Event::object_end);
        if (section_ == Section::unknown || (depth > 2 && !isKnownMember_)) return false;
        if (depth == 2 && event == Event::object_end) return take(value);
        if (depth == 2) return require(event == Event::object_start);
        if (event == Event::object_start) return require(false);
        // Only tags hold a list among the members, and only texts stand in it.
        if (depth == 1) return require(!isStart || section_ != Section::value);
        if (depth == 3) return require(!isStart || isTags_);
        return require(event == Event::value && value.is_string());
    }

private:
    enum class Section { unknown, value, folders, clips };

    static bool require(bool isRight) {
        if (!isRight) throw ArchiveError::notAnArchive();
        return true;
    }

    template <std::size_t count>
    static bool isOneOf(const std::array<std::string_view, count>& names, std::string_view name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    bool startMember(int depth, const std::string& key) {
        if (depth == 1) return startSection(key);
        if (depth != 3) return false;
        constexpr std::array<std::string_view, 4> ofFolder{"uuid", "name", "parentUuid", "color"};
        constexpr std::array<std::string_view, 12> ofClip{"uuid",      "kind",           "text",   "createdAt",
                                                          "sourceApp", "sourceBundleId", "pinned", "name",
                                                          "keyword",   "folderUuid",     "tags",   "image"};
        isTags_ = section_ == Section::clips && key == "tags";
        isKnownMember_ = section_ == Section::clips ? isOneOf(ofClip, key) : isOneOf(ofFolder, key);
        return isKnownMember_;
    }

    bool startSection(const std::string& key) {
        constexpr std::array<std::string_view, 4> values{"format", "version", "exportedAt", "scope"};
        section_ = Section::unknown;
        if (isOneOf(values, key)) section_ = Section::value;
        if (key == "folders") section_ = Section::folders;
        if (key == "clips") section_ = Section::clips;
        // Of a key that stands twice, the last one counts.
        if (section_ == Section::folders) manifest_.folders.clear();
        if (section_ == Section::clips) manifest_.clips.clear();
        return section_ != Section::unknown;
    }

    bool take(Json& object) {
        if (section_ == Section::folders) {
            manifest_.folders.push_back(folder(object));
        } else {
            manifest_.clips.push_back(clip(object));
        }
        return false;
    }

    Manifest& manifest_;
    Section section_ = Section::unknown;
    bool isKnownMember_ = false, isTags_ = false;
};

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openManifest(const std::filesystem::path& directory) {
    auto descriptor = files::openFileBeneath(directory, manifestFileName);
    struct stat status {};
    if (!descriptor.isOpen() || ::fstat(descriptor.value(), &status) != 0 ||
        static_cast<std::size_t>(status.st_size) > largestManifest) {
        throw ArchiveError::notAnArchive();
    }
    File file(::fdopen(descriptor.value(), "rb"), &std::fclose);
    if (!file) throw ArchiveError::notAnArchive();
    descriptor.release();
    return file;
}

}  // namespace

std::string_view rawValue(Scope scope) {
    return scope == Scope::everything ? "everything" : "snippetsAndPinboards";
}

ArchiveError ArchiveError::unsupportedVersion(std::int64_t version) {
    return {Reason::unsupportedVersion, "This export was made by a newer Brimquill (format " + std::to_string(version) +
                                            "). Update the app to import it."};
}

ArchiveError ArchiveError::notAnArchive() {
    return {Reason::notAnArchive, "This file is not a Brimquill export."};
}

std::string encode(Manifest manifest) {
    auto document = emptyObject(6);
    document["clips"] = encodedList(manifest.clips);
    document["exportedAt"] = finite(manifest.exportedAt);
    document["folders"] = encodedList(manifest.folders);
    document["format"] = manifest.format;
    document["scope"] = manifest.scope;
    document["version"] = manifest.version;
    auto text = document.dump(indentation, ' ', false, Members::error_handler_t::replace);
    if (text.size() > largestManifest) throw std::runtime_error("There is too much text for one export.");
    return text;
}

Manifest readManifest(const std::filesystem::path& directory) {
    Manifest manifest;
    ManifestReader reader(manifest);
    auto document = Json::parse(openManifest(directory).get(), std::ref(reader), false);
    if (!document.is_object()) throw ArchiveError::notAnArchive();
    if (!required(document, "folders").is_array() || !required(document, "clips").is_array()) {
        throw ArchiveError::notAnArchive();
    }
    manifest.exportedAt = number(required(document, "exportedAt"));
    manifest.scope = takeString(required(document, "scope"));
    manifest.version = integer(required(document, "version"));
    manifest.format = takeString(required(document, "format"));
    if (manifest.format != formatName) throw ArchiveError::notAnArchive();
    if (manifest.version > formatVersion) throw ArchiveError::unsupportedVersion(manifest.version);
    return manifest;
}

}  // namespace brimquill::HoardArchive

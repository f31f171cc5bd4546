#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The format by which clips move between installations: a directory with a manifest and a directory of images.
namespace brimquill::HoardArchive {

inline constexpr const char* formatName = "brimquill-export";
inline constexpr std::int64_t formatVersion = 1;
inline constexpr const char* manifestFileName = "manifest.json";
inline constexpr const char* imagesDirectoryName = "images";
/// A manifest that holds more bytes is neither written nor read.
inline constexpr std::size_t largestManifest = std::size_t{512} << 20U;

/// Snippets, pinned and filed clips with the folders these need; or all clips that may travel, and all folders.
enum class Scope { snippetsAndPinboards, everything };

/// "snippetsAndPinboards", "everything".
std::string_view rawValue(Scope scope);

struct Folder {
    std::string uuid;
    std::string name;
    std::optional<std::string> parentUuid{};
    std::optional<std::string> color{};
    friend bool operator==(const Folder&, const Folder&) = default;
};

struct Clip {
    std::string uuid;
    /// The raw value of a `ClipKind`, or whatever else the file says.
    std::string kind;
    std::string text;
    /// Seconds since 1970 (UTC).
    double createdAt = 0;
    std::optional<std::string> sourceApp{}, sourceBundleId{};
    bool pinned = false;
    std::optional<std::string> name{}, keyword{}, folderUuid{};
    std::vector<std::string> tags{};
    /// Where the picture stands, told from the archive's directory.
    std::optional<std::string> image{};
    friend bool operator==(const Clip&, const Clip&) = default;
};

struct Manifest {
    std::string format = formatName;
    std::int64_t version = formatVersion;
    /// Seconds since 1970 (UTC).
    double exportedAt = 0;
    std::string scope;
    std::vector<Folder> folders{};
    std::vector<Clip> clips{};
    friend bool operator==(const Manifest&, const Manifest&) = default;
};

/// What is wrong with a directory that should be an archive; `what()` is for the user.
class ArchiveError final : public std::runtime_error {
public:
    enum class Reason { unsupportedVersion, notAnArchive };

    static ArchiveError unsupportedVersion(std::int64_t version);
    static ArchiveError notAnArchive();

    Reason reason() const { return reason_; }

private:
    ArchiveError(Reason reason, const std::string& text) : std::runtime_error(text), reason_(reason) {}
    Reason reason_;
};

/// The manifest as JSON, pretty-printed with sorted keys. Bytes that are no UTF-8 become U+FFFD. Throws
/// `std::runtime_error`, with words for the user, when a date is no finite number or the whole is too large. Any
/// thread.
std::string encode(Manifest manifest);

/// The manifest of the archive in `directory`. Throws `ArchiveError` when there is none that can be used. What the file
/// holds may come from anybody: time and memory stay in proportion to its size. Any thread.
Manifest readManifest(const std::filesystem::path& directory);

}  // namespace brimquill::HoardArchive

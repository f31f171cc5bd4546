#pragma once

#include "BrimquillCore/Foundation/Date.h"
#include "BrimquillCore/HoardManifest.h"

#include <filesystem>

namespace brimquill {
class ClipStore;
}

/// Writes and reads archives, as plain directories. Both operations run on the caller's thread, beside whatever else
/// the store is asked meanwhile; neither is a transaction. The memory they take does not grow with the images.
namespace brimquill::HoardArchive {

struct ExportSummary {
    int clips = 0, folders = 0, images = 0;
    friend bool operator==(const ExportSummary&, const ExportSummary&) = default;
};

struct ImportSummary {
    int clipsAdded = 0, clipsSkipped = 0, foldersAdded = 0, imagesCopied = 0;
    friend bool operator==(const ImportSummary&, const ImportSummary&) = default;
};

/// Writes an archive into `directory`, which is made if it is missing. Clips that wait for their expiry and references
/// to files never leave the machine; a picture that cannot be copied is left out. Throws `std::runtime_error` or a
/// `std::system_error`, with words for the user, when the archive cannot be written; what was copied so far stays.
ExportSummary exportArchive(ClipStore& store, Scope scope, const std::filesystem::path& directory,
                            const Clock& clock = Date::now);

/// Adds what the archive in `directory` has and the store has not; deleted clips count as there, deleted folders come
/// back. A clip of an unknown kind is ignored, a picture that cannot be copied is left out. Throws `ArchiveError`, the
/// store being as it was, when there is no usable manifest.
ImportSummary importArchive(const std::filesystem::path& directory, ClipStore& store, const Clock& clock = Date::now);

}  // namespace brimquill::HoardArchive

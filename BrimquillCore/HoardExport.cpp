#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/HoardArchive.h"

#include <cerrno>
#include <set>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace brimquill::HoardArchive {
namespace {

class Exporter final {
public:
    Exporter(ClipStore& store, Scope scope, const std::filesystem::path& directory)
        : scope_(scope), imagesDirectory_(directory / imagesDirectoryName), folders_(store.folders()) {
        for (const auto& folder : folders_)
            folderOfId_.emplace(folder.id, &folder);
    }

    Manifest manifest(std::vector<ClipItem> clips, Date now) {
        Manifest manifest;
        manifest.exportedAt = now.seconds;
        manifest.scope = rawValue(scope_);
        for (auto& clip : clips) {
            if (travels(clip)) manifest.clips.push_back(exported(clip));
        }
        for (const auto& folder : folders_) {
            if (scope_ == Scope::everything || neededFolders_.count(folder.id) > 0) {
                manifest.folders.push_back({folder.uuid, folder.name, folderUuid(folder.parentId), folder.color});
            }
        }
        return manifest;
    }

    int images() const { return images_; }

private:
    bool travels(const ClipItem& clip) const {
        if (clip.expiresAt || clip.kind == ClipKind::file || clip.uuid.empty()) return false;
        return scope_ == Scope::everything || clip.name || clip.pinned || clip.folderId;
    }

    Clip exported(ClipItem& clip) {
        auto image = copyImage(clip);
        needFolders(clip.folderId);
        return {std::move(clip.uuid),
                std::string(brimquill::rawValue(clip.kind)),
                std::move(clip.text),
                clip.createdAt.seconds,
                std::move(clip.sourceApp),
                std::move(clip.sourceBundleId),
                clip.pinned,
                std::move(clip.name),
                std::move(clip.keyword),
                folderUuid(clip.folderId),
                std::move(clip.tags),
                std::move(image)};
    }

    /// The copy's path within the archive; nothing when there is no picture or it cannot be copied.
    std::optional<std::string> copyImage(const ClipItem& clip) {
        // Clips of other machines bring their own uuids, which must not lead out of the directory.
        if (!clip.imagePath || clip.uuid.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return {};
        const auto source = files::openFile(*clip.imagePath);
        if (!source.isOpen()) return {};
        const auto extension = text::pathExtension(*clip.imagePath);
        const auto name = clip.uuid + "." + (extension.empty() ? "png" : extension);
        files::removeFile(imagesDirectory_ / name);
        if (!files::copyToNewFile(source, imagesDirectory_ / name)) return {};
        ++images_;
        return std::string(imagesDirectoryName) + "/" + name;
    }

    void needFolders(std::optional<std::int64_t> id) {
        while (id) {
            const auto folder = folderOfId_.find(*id);
            if (folder == folderOfId_.end() || !neededFolders_.insert(*id).second) return;
            id = folder->second->parentId;
        }
    }

    std::optional<std::string> folderUuid(std::optional<std::int64_t> id) const {
        const auto folder = id ? folderOfId_.find(*id) : folderOfId_.end();
        return folder == folderOfId_.end() ? std::nullopt : std::optional(folder->second->uuid);
    }

    const Scope scope_;
    const std::filesystem::path imagesDirectory_;
    const std::vector<ClipFolder> folders_;
    std::unordered_map<std::int64_t, const ClipFolder*> folderOfId_;
    std::set<std::int64_t> neededFolders_;
    int images_ = 0;
};

}  // namespace

ExportSummary exportArchive(ClipStore& store, Scope scope, const std::filesystem::path& directory, const Clock& clock) {
    if (!files::makePrivateDirectory(directory / imagesDirectoryName)) {
        throw std::runtime_error("The folder for the images cannot be created in " + directory.string() + ".");
    }
    Exporter exporter(store, scope, directory);
    auto manifest = exporter.manifest(store.allClips(), clock());
    const ExportSummary summary{static_cast<int>(manifest.clips.size()), static_cast<int>(manifest.folders.size()),
                                exporter.images()};
    if (!files::writePrivateFile(directory / manifestFileName, encode(std::move(manifest)))) {
        throw std::system_error(errno, std::generic_category(), "The list of clips cannot be written");
    }
    return summary;
}

}  // namespace brimquill::HoardArchive

#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/HoardArchive.h"

#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace brimquill::HoardArchive {
namespace {

/// Brings in folders as repeated passes over the manifest's list would, each taking those whose parent is there by
/// then, without looking at any of them more than twice.
class FolderImporter final {
public:
    FolderImporter(ClipStore& store, const std::vector<Folder>& folders, const Clock& clock)
        : store_(store), folders_(folders), clock_(clock) {}

    void run() {
        // 1. The folders that hang on a top-level one, however deep.
        for (std::size_t index = 0; index < folders_.size(); ++index) {
            if (const auto& parent = folders_[index].parentUuid) {
                waiting_[*parent].push_back(index);
            } else {
                ready_.insert({0, index});
            }
        }
        takeReady();
        // 2. Orphans and cycles, which become top-level.
        isParentKept_ = false;
        waiting_.clear();
        for (std::size_t index = 0; index < folders_.size(); ++index)
            ready_.insert({0, index});
        takeReady();
    }

    int added() const { return added_; }
    std::optional<std::int64_t> localId(const std::optional<std::string>& uuid) const {
        const auto found = uuid ? localIds_.find(*uuid) : localIds_.end();
        return found == localIds_.end() ? std::nullopt : std::optional(found->second);
    }

private:
    void takeReady() {
        while (!ready_.empty()) {
            const auto [pass, index] = *ready_.begin();
            ready_.erase(ready_.begin());
            const auto& folder = folders_[index];
            if (!taken_.insert(folder.uuid).second) continue;
            bringIn(folder);
            if (localId(folder.uuid)) wakeChildren(folder.uuid, pass, index);
        }
    }

    /// A child further down the list has its turn in the same pass, one further up in the next.
    void wakeChildren(const std::string& uuid, std::size_t pass, std::size_t parent) {
        const auto children = waiting_.extract(uuid);
        if (children.empty()) return;
        for (const auto child : children.mapped())
            ready_.insert({child > parent ? pass : pass + 1, child});
    }

    void bringIn(const Folder& folder) {
        auto known = store_.anyFolder(folder.uuid);
        if (!known || known->deleted) {
            store_.applyRemoteFolder(folder.uuid, folder.name, isParentKept_ ? folder.parentUuid : std::nullopt,
                                     clock_());
            known = store_.anyFolder(folder.uuid);
            if (known && folder.color) store_.setFolderColor(known->folder.id, folder.color);
            ++added_;
        }
        if (known) localIds_[folder.uuid] = known->folder.id;
    }

    ClipStore& store_;
    const std::vector<Folder>& folders_;
    const Clock& clock_;
    /// Which folders can be brought in, by the pass that would come to them and their place in the list.
    std::set<std::pair<std::size_t, std::size_t>> ready_;
    /// Places of folders, by the parent that they wait for.
    std::unordered_map<std::string, std::vector<std::size_t>> waiting_;
    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, std::int64_t> localIds_;
    bool isParentKept_ = true;
    int added_ = 0;
};

/// Copies a clip's picture into the store; nothing when there is none or it cannot be copied. Both the path and the
/// uuid are somebody else's, and neither may lead out of its directory.
std::optional<std::string> copyImage(const Clip& clip, const std::filesystem::path& directory,
                                     const std::filesystem::path& imagesDirectory) {
    if (!clip.image || clip.uuid.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return {};
    const auto source = files::openFileBeneath(directory, *clip.image);
    if (!source.isOpen()) return {};
    const auto target = imagesDirectory / ("import-" + clip.uuid + "." + text::pathExtension(*clip.image));
    files::removeFile(target);
    if (!files::copyToNewFile(source, target)) return {};
    return target.string();
}

}  // namespace

ImportSummary importArchive(const std::filesystem::path& directory, ClipStore& store, const Clock& clock) {
    auto manifest = readManifest(directory);
    FolderImporter folders(store, manifest.folders, clock);
    folders.run();
    ImportSummary summary;
    summary.foldersAdded = folders.added();
    ClipStore::KnownClips known(store);
    for (auto& clip : manifest.clips) {
        const auto kind = clipKind(clip.kind);
        if (!kind || kind == ClipKind::file) continue;
        if (known.contains(clip.uuid)) {
            ++summary.clipsSkipped;
            continue;
        }
        auto image = copyImage(clip, directory, store.imagesDirectory);
        if (image) ++summary.imagesCopied;
        const auto id =
            store.insertImported({std::move(clip.uuid), *kind, std::move(clip.text), Date{clip.createdAt},
                                  ClipStore::Source{std::move(clip.sourceApp), std::move(clip.sourceBundleId)},
                                  clip.pinned, std::move(clip.name), std::move(clip.keyword),
                                  folders.localId(clip.folderUuid), std::move(clip.tags), std::move(image)},
                                 known);
        ++(id ? summary.clipsAdded : summary.clipsSkipped);
    }
    return summary;
}

}  // namespace brimquill::HoardArchive

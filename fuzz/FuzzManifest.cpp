// Manifests of archives: read, written again, and brought into a store.
#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/HoardArchive.h"
#include "tests/core/TemporaryDirectory.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace brimquill;

namespace {

struct World {
    test::TemporaryDirectory directory, archive;
    NotificationCenter center;
    ClipStore store{directory.path(), center};
    sqlite::Connection database{store.databaseURL};
};

void demand(bool isRight) {
    if (!isRight) std::abort();
}

void bringIn(World& world, const HoardArchive::Manifest& manifest) {
    constexpr std::size_t most = 40;  // else a run would do little but insert
    if (manifest.clips.size() + manifest.folders.size() > most) return;
    world.database.exec("DELETE FROM clips; DELETE FROM folders");
    const auto first = HoardArchive::importArchive(world.archive.path(), world.store);
    const auto second = HoardArchive::importArchive(world.archive.path(), world.store);
    demand(second.clipsAdded == 0 && second.foldersAdded == 0 && second.imagesCopied == 0);
    demand(second.clipsSkipped == first.clipsAdded + first.clipsSkipped);
    demand(static_cast<int>(world.store.allClips().size()) == first.clipsAdded);
    demand(static_cast<int>(world.store.folders().size()) == first.foldersAdded);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const world = new World;
    const auto file = world->archive / HoardArchive::manifestFileName;
    test::writeFile(file, {reinterpret_cast<const char*>(data), size});
    try {
        const auto manifest = HoardArchive::readManifest(world->archive.path());
        bringIn(*world, manifest);
        test::writeFile(file, HoardArchive::encode(manifest));
        demand(HoardArchive::readManifest(world->archive.path()) == manifest);
    } catch (const HoardArchive::ArchiveError&) {
        return 0;  // anything but a manifest may be refused, in just this way
    }
    return 0;
}

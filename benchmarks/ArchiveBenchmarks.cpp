#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "BrimquillCore/HoardArchive.h"
#include "benchmarks/SeededClips.h"
#include "tests/core/TemporaryDirectory.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

// Export and import of 10,000 clips, 500 of them with images of the size in bytes that the argument gives. Each stands
// beside its bound: copying the same bytes and reading or inserting the same rows, directly. CPU time is what counts.

namespace brimquill::benchmarks {
namespace {

namespace fs = std::filesystem;
constexpr int clipCount = 10000, imageEvery = 20;

struct StoreDirectory {
    test::TemporaryDirectory directory;
    NotificationCenter center;
    ClipStore store{directory.path(), center};
    sqlite::Connection connection{store.databaseURL};
};

/// A store to export, and its archive.
struct World : StoreDirectory {
    explicit World(std::size_t imageSize) {
        addSeededClips(store.databaseURL, clipCount);
        const std::string image(imageSize, '\x7F');
        for (int id = imageEvery; id <= clipCount; id += imageEvery)
            test::writeFile(store.imagesDirectory / (std::to_string(id) + ".png"), image);
        connection.exec("UPDATE clips SET image_path = '" + store.imagesDirectory.string() +
                        "/' || id || '.png' WHERE id % " + std::to_string(imageEvery) + " = 0");
        HoardArchive::exportArchive(store, HoardArchive::Scope::everything, archive.path());
        manifest = test::fileBytes(archive / HoardArchive::manifestFileName);
        clips = store.allClips();
    }
    test::TemporaryDirectory archive;
    std::string manifest;
    std::vector<ClipItem> clips;
};

World& world(const benchmark::State& state) {
    static std::map<std::int64_t, std::unique_ptr<World>> worlds;
    auto& found = worlds[state.range(0)];
    if (!found) found = std::make_unique<World>(static_cast<std::size_t>(state.range(0)));
    return *found;
}

/// How far this process's memory rises above where it stands when this is made, in MB.
class PeakMemory final {
public:
    PeakMemory() {
        ::malloc_trim(0);  // what was freed before would hide a rise
        std::ofstream("/proc/self/clear_refs") << "5";
        before_ = highest();
    }
    double rise() const { return (highest() - before_) / 1024; }

private:
    static double highest() {
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);) {
            if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6));
        }
        return 0;
    }
    double before_ = 0;
};

void copyImages(const fs::path& from, const fs::path& to) {
    for (const auto& entry : fs::directory_iterator(from))
        fs::copy_file(entry.path(), to / entry.path().filename());
}

void exportArchive(benchmark::State& state) {
    auto& store = world(state).store;
    const PeakMemory memory;
    for (auto _ : state) {
        const test::TemporaryDirectory target;
        HoardArchive::exportArchive(store, HoardArchive::Scope::everything, target.path());
    }
    state.counters["peakMB"] = memory.rise();
}

void exportBound(benchmark::State& state) {
    auto& made = world(state);
    for (auto _ : state) {
        const test::TemporaryDirectory target;
        copyImages(made.store.imagesDirectory, target.path());
        benchmark::DoNotOptimize(made.store.allClips());
        test::writeFile(target / "manifest.json", made.manifest);
    }
}

void importArchive(benchmark::State& state) {
    auto& made = world(state);
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto target = std::make_unique<StoreDirectory>();
        const PeakMemory memory;
        state.ResumeTiming();
        const auto summary = HoardArchive::importArchive(made.archive.path(), target->store);
        state.PauseTiming();
        if (summary.clipsAdded != clipCount) state.SkipWithError("not all clips came in");
        peak = std::max(peak, memory.rise());
        target.reset();
        state.ResumeTiming();
    }
    state.counters["peakMB"] = peak;
}

void insertDirectly(const sqlite::Connection& connection, const ClipItem& clip) {
    sqlite::Statement(connection,
                      "INSERT INTO clips (text, kind, created_at, source_app, pinned, name, keyword,\n"
                      "    folder_id, tags, image_path, uuid, modified_at, source_bundle_id)\n"
                      "VALUES (?, 'text', ?, ?, ?, ?, ?, NULL, ?, ?, ?, ?, ?)")
        .bind(clip.text)
        .bind(clip.createdAt)
        .bind(clip.sourceApp)
        .bind(std::int64_t{clip.pinned})
        .bind(clip.name)
        .bind(clip.keyword)
        .bind(clip.tags.empty() ? std::nullopt : std::optional(clip.tags.front()))
        .bind(clip.imagePath)
        .bind(clip.uuid)
        .bind(clip.modifiedAt)
        .bind(clip.sourceBundleId)
        .run();
}

void importBound(benchmark::State& state) {
    auto& made = world(state);
    for (auto _ : state) {
        state.PauseTiming();
        auto target = std::make_unique<StoreDirectory>();
        state.ResumeTiming();
        copyImages(made.archive / HoardArchive::imagesDirectoryName, target->store.imagesDirectory);
        for (const auto& clip : made.clips)
            insertDirectly(target->connection, clip);
        state.PauseTiming();
        target.reset();
        state.ResumeTiming();
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(20'000)->Arg(1'000'000)->Iterations(2)->Repetitions(5)->ReportAggregatesOnly();
    benchmark->Unit(benchmark::kMillisecond);
}

}  // namespace

BENCHMARK(exportArchive)->Apply(sizes);
BENCHMARK(exportBound)->Apply(sizes);
BENCHMARK(importArchive)->Apply(sizes);
BENCHMARK(importBound)->Apply(sizes);

}  // namespace brimquill::benchmarks

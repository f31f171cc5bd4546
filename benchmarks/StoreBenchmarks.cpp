#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/ClipStoreStatement.h"
#include "benchmarks/SeededClips.h"
#include "tests/core/TemporaryDirectory.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>

// Each figure stands beside the same statements run directly, without the store, in the same run.

namespace brimquill::benchmarks {
namespace {

constexpr int resultLimit = 200;

struct World {
    explicit World(int count) {
        store.retentionLimit = 0;
        addSeededClips(store.databaseURL, count);
    }
    test::TemporaryDirectory directory;
    NotificationCenter center;
    ClipStore store{directory.path(), center};
    sqlite::Connection connection{store.databaseURL};
};

World& world(int count) {
    static std::map<int, World> worlds;
    return worlds.try_emplace(count, count).first->second;
}

/// Steps through all rows and touches each column where it lies.
void readAll(sqlite::Statement& statement) {
    while (statement.step()) {
        for (int column = 0; column <= sqlite::sourceBundleIdColumn; ++column) {
            benchmark::DoNotOptimize(statement.textView(column));
        }
    }
}

void searchDirectly(const sqlite::Connection& connection, const std::string& query) {
    const auto limit = std::to_string(resultLimit);
    sqlite::Statement text(connection,
                           "SELECT c.id, c.kind, c.text, c.created_at, c.source_app, c.pinned, c.image_path, c.name, "
                           "c.keyword, c.folder_id, c.expires_at, c.tags, c.uuid, c.modified_at, c.deleted, "
                           "c.source_bundle_id\nFROM clips_fts f JOIN clips c ON c.id = f.rowid\n"
                           "WHERE clips_fts MATCH ? AND c.deleted = 0\n"
                           "ORDER BY (c.name IS NOT NULL) DESC, c.pinned DESC, c.created_at DESC LIMIT " +
                               limit);
    text.bind('"' + query + "\"*");
    readAll(text);
    sqlite::Statement snippets(connection, sqlite::snippetsSql());
    readAll(snippets);
    sqlite::Statement tagged(
        connection,
        sqlite::selectClips(" FROM clips WHERE tags LIKE ? AND deleted = 0\nORDER BY created_at DESC LIMIT " + limit));
    tagged.bind('%' + query + '%');
    readAll(tagged);
}

void search(benchmark::State& state, const std::string& query) {
    auto& store = world(static_cast<int>(state.range(0))).store;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.search(query, resultLimit));
}

void searchRaw(benchmark::State& state, const std::string& query) {
    const auto& connection = world(static_cast<int>(state.range(0))).connection;
    for (auto _ : state)
        searchDirectly(connection, query);
}

void fetchHistory(benchmark::State& state) {
    auto& store = world(static_cast<int>(state.range(0))).store;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.fetchHistory(50));
}

void fetchHistoryRaw(benchmark::State& state) {
    const auto& connection = world(static_cast<int>(state.range(0))).connection;
    for (auto _ : state) {
        sqlite::Statement statement(connection, sqlite::historySql(50));
        readAll(statement);
    }
}

/// A capture as it comes: a text that is new, with retention on.
void insert(benchmark::State& state) {
    World own(static_cast<int>(state.range(0)));
    own.store.retentionLimit = 10000;
    int number = 0;
    for (auto _ : state)
        own.store.insert("captured text " + std::to_string(++number), ClipKind::text);
}

/// What of it is SQLite's own: one row committed, the index included.
void insertRaw(benchmark::State& state) {
    World own(static_cast<int>(state.range(0)));
    int number = 0;
    for (auto _ : state) {
        ++number;
        sqlite::Statement(own.connection,
                          "INSERT INTO clips (text, kind, created_at, uuid, modified_at) VALUES (?, 'text', ?, ?, ?)")
            .bind("captured text " + std::to_string(number))
            .bind(Date{1.7e9 + number})
            .bind("raw-" + std::to_string(number))
            .bind(Date{1.7e9 + number})
            .run();
    }
}

/// 1,000,000 clips take a minute to make, so they are asked for.
void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10000)->Arg(100000);
    if (std::getenv("BRIMQUILL_BENCHMARK_MILLION")) benchmark->Arg(1000000);
    benchmark->Unit(benchmark::kMillisecond);
}

}  // namespace

BENCHMARK_CAPTURE(search, rare, rarePrefix)->Apply(sizes);
BENCHMARK_CAPTURE(searchRaw, rare, rarePrefix)->Apply(sizes);
BENCHMARK_CAPTURE(search, common, commonPrefix)->Apply(sizes);
BENCHMARK_CAPTURE(searchRaw, common, commonPrefix)->Apply(sizes);
BENCHMARK_CAPTURE(search, oneLetter, oneLetter)->Apply(sizes);
BENCHMARK_CAPTURE(searchRaw, oneLetter, oneLetter)->Apply(sizes);
BENCHMARK_CAPTURE(search, miss, noMatch)->Apply(sizes);
BENCHMARK_CAPTURE(searchRaw, miss, noMatch)->Apply(sizes);
BENCHMARK(fetchHistory)->Apply(sizes);
BENCHMARK(fetchHistoryRaw)->Apply(sizes);
BENCHMARK(insert)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(insertRaw)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace brimquill::benchmarks

#include "BrimquillCore/EmojiCatalog.h"
#include "BrimquillCore/Placeholders.h"

#include <benchmark/benchmark.h>
#include <string>

namespace brimquill {
namespace {

/// A template of ten placeholders, as pasting a long letter takes it. The aim is 0.2 ms.
void expandTenPlaceholders(benchmark::State& state) {
    Placeholders::clipboardProvider = [] { return std::string("Ada Lovelace"); };
    Placeholders::hoardProvider = [](std::int64_t) { return std::string("an earlier clip"); };
    const std::string letter =
        "Dear {clipboard | trim},\n{date} {time} {datetime} {date format=\"MMM d, yyyy\" offset=\"+1M2d\"} "
        "{hoard offset=1} {uuid} {time format=HH:mm | uppercase} {clipboard | percent-encode} {cursor}\n";
    for (auto _ : state)
        benchmark::DoNotOptimize(Placeholders::expand(letter));
}
BENCHMARK(expandTenPlaceholders)->Unit(benchmark::kMicrosecond);

/// The bound of the one above: the same length of text without a placeholder.
void expandPlainText(benchmark::State& state) {
    const std::string plain(230, 'x');
    for (auto _ : state)
        benchmark::DoNotOptimize(Placeholders::expand(plain));
}
BENCHMARK(expandPlainText)->Unit(benchmark::kMicrosecond);

/// A keystroke in the emoji filter, with the palette's limit: blank, many hits, few hits, none. The aim is 0.3 ms.
void searchEmoji(benchmark::State& state, const std::string& query) {
    for (auto _ : state)
        benchmark::DoNotOptimize(EmojiCatalog::search(query, 400));
}
BENCHMARK_CAPTURE(searchEmoji, blank, "")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, many, "a")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, few, "heart")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(searchEmoji, none, "xyzzy")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace brimquill

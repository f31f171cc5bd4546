#pragma once

#include "BrimquillCore/ClipStore.h"

#include <filesystem>

namespace brimquill::benchmarks {

/// Queries with a known share of the seeded clips: one in 2,000, four in ten, nearly all, none.
inline constexpr const char* rarePrefix = "quokk";
inline constexpr const char* commonPrefix = "the";
inline constexpr const char* oneLetter = "t";
inline constexpr const char* noMatch = "zzyzx";

/// Adds `count` clips to the store's database in one transaction, the same ones at each run: texts of 4 to 30 words,
/// one in 200 a snippet, one in 20 tagged, one in 500 pinned.
void addSeededClips(const std::filesystem::path& database, int count);

}  // namespace brimquill::benchmarks

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace brimquill::platform {

/// The whole of a regular file; nothing when it cannot be read or is larger than `limit` bytes. Never waits for a
/// writer.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit);

/// Replaces a file as a whole or leaves it as it was; the new one is readable by its user alone, and on the disk when
/// this returns.
bool replaceFile(const std::filesystem::path& path, std::string_view content);

/// Makes a directory, and those above it, for its user alone; true when it is there.
bool makePrivateDirectory(const std::filesystem::path& path);

}  // namespace brimquill::platform

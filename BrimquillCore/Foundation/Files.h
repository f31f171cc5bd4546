#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Files that are the user's alone. Failures are told by the result, never thrown. Any thread.
namespace brimquill::files {

/// Makes the directory and what is missing above it, each readable by the user alone (0700). A directory that stands
/// already keeps its mode. False when there is no directory afterwards.
bool makePrivateDirectory(const std::filesystem::path& directory);

/// Puts `bytes` into the file in one step, readable by the user alone (0600). On failure false, and a file that stood
/// there is as it was.
bool writePrivateFile(const std::filesystem::path& file, std::string_view bytes);

/// The bytes of a regular file; nothing when it cannot be read or holds more than `maximum` bytes.
std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t maximum);

/// Removes a file or a link, never a directory. A failure is ignored.
void removeFile(const std::filesystem::path& file);

}  // namespace brimquill::files

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Files that are the user's alone. Failures are told by the result, never thrown. Any thread.
namespace brimquill::files {

/// Owns a file descriptor; closed with its holder.
class Descriptor final {
public:
    /// Takes `value` over; a negative one is none.
    explicit Descriptor(int value = -1) : value_(value) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : value_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return value_ >= 0; }
    int value() const { return value_; }
    /// Gives it up without closing it.
    int release();
    /// False when what was written could not be kept.
    bool close();

private:
    int value_;
};

/// Makes the directory and what is missing above it, each readable by the user alone (0700). A directory that stands
/// already keeps its mode. False when there is no directory afterwards.
bool makePrivateDirectory(const std::filesystem::path& directory);

/// Puts `bytes` into the file in one step, readable by the user alone (0600). On failure false, `errno` telling why,
/// and a file that stood there is as it was.
bool writePrivateFile(const std::filesystem::path& file, std::string_view bytes);

/// The bytes of a regular file; nothing when it cannot be read or holds more than `maximum` bytes.
std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t maximum);

/// A regular file, open for reading; none when there is no such file or it cannot be read.
Descriptor openFile(const std::filesystem::path& file);

/// The same for a path that somebody else wrote, told from `directory`. None when the path is absolute, leads out of
/// the directory, or is or passes through a symbolic link.
Descriptor openFileBeneath(const std::filesystem::path& directory, std::string_view path);

/// Copies what is left of `source` into a new file, readable by the user alone (0600), in constant memory. False, and
/// no new file, when something of that name exists or on any failure.
bool copyToNewFile(const Descriptor& source, const std::filesystem::path& file);

/// Removes a file or a link, never a directory. A failure is ignored.
void removeFile(const std::filesystem::path& file);

}  // namespace brimquill::files

#include "BrimquillCore/Foundation/Files.h"

#include "BrimquillCore/Foundation/Uuid.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace brimquill::files {
namespace {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

Descriptor ifRegular(int value) {
    Descriptor descriptor(value);
    struct stat status {};
    const bool isRegular = descriptor.isOpen() && ::fstat(descriptor.value(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? std::move(descriptor) : Descriptor();
}

/// Not blocking: the path may lead to a pipe that nobody writes to.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

bool copyAll(int source, int target) {
    // 1. Within the kernel, as far as the two file systems allow it.
    constexpr std::size_t atOnce = 1U << 30U;
    while (::copy_file_range(source, nullptr, target, nullptr, atOnce, 0) > 0) {
    }
    // 2. What is left: mostly nothing.
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(source, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        if (!writeAll(target, {buffer, static_cast<std::size_t>(count)})) return false;
    }
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        value_ = other.release();
    }
    return *this;
}

int Descriptor::release() {
    return std::exchange(value_, -1);
}

bool Descriptor::close() {
    const int value = release();
    return value < 0 || ::close(value) == 0;
}

bool makePrivateDirectory(const std::filesystem::path& directory) {
    std::filesystem::path soFar;
    for (const auto& component : directory) {
        soFar /= component;
        ::mkdir(soFar.c_str(), S_IRWXU);  // fails for what exists, which is all right
    }
    std::error_code error;
    return std::filesystem::is_directory(directory, error);
}

bool writePrivateFile(const std::filesystem::path& file, std::string_view bytes) {
    auto part = file;
    part += "." + makeUuid() + ".part";
    Descriptor descriptor(::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor.isOpen()) return false;
    const bool isWritten = writeAll(descriptor.value(), bytes) && descriptor.close();
    if (isWritten && ::rename(part.c_str(), file.c_str()) == 0) return true;
    const int reason = errno;
    removeFile(part);
    errno = reason;
    return false;
}

std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t maximum) {
    const auto descriptor = openFile(file);
    if (!descriptor.isOpen()) return {};
    std::string bytes;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor.value(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) return bytes;
        if (static_cast<std::size_t>(count) > maximum - bytes.size()) return std::nullopt;
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
}

Descriptor openFile(const std::filesystem::path& file) {
    return ifRegular(::open(file.c_str(), readingFlags));
}

Descriptor openFileBeneath(const std::filesystem::path& directory, std::string_view path) {
    if (path.size() >= PATH_MAX || path.find('\0') != std::string_view::npos) return Descriptor();
    const auto normal = std::filesystem::path(path).lexically_normal();
    if (normal.empty() || normal.is_absolute() || *normal.begin() == "..") return Descriptor();
    // From component to component, so that nothing is exchanged for a link between a look and the opening.
    Descriptor parent(::open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (const auto& component : normal.parent_path()) {
        parent = Descriptor(::openat(parent.value(), component.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    }
    return ifRegular(::openat(parent.value(), normal.filename().c_str(), readingFlags | O_NOFOLLOW));
}

bool copyToNewFile(const Descriptor& source, const std::filesystem::path& file) {
    Descriptor copy(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!copy.isOpen()) return false;
    if (copyAll(source.value(), copy.value()) && copy.close()) return true;
    removeFile(file);
    return false;
}

void removeFile(const std::filesystem::path& file) {
    ::unlink(file.c_str());
}

}  // namespace brimquill::files

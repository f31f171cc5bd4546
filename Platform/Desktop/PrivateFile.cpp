#include "Platform/Desktop/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace brimquill::platform {
namespace {

class FileDescriptor final {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return descriptor_; }
    bool close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int descriptor_;
};

bool writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void syncDirectory(const std::filesystem::path& path) {
    const FileDescriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0) fsync(directory.get());
}

}  // namespace

std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    std::string content;
    char buffer[16384];
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) return content;
        content.append(buffer, static_cast<std::size_t>(count));
        if (content.size() > limit) return std::nullopt;
    }
}

bool replaceFile(const std::filesystem::path& path, std::string_view content) {
    std::string temporary = path.string() + ".XXXXXX";
    FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));  // readable by its user alone
    if (file.get() < 0) return false;
    const bool written = writeAll(file.get(), content) && fsync(file.get()) == 0 && file.close() &&
                         std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!written) {
        unlink(temporary.c_str());
        return false;
    }
    syncDirectory(path.parent_path());
    return true;
}

bool makePrivateDirectory(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return true;
    const auto above = path.parent_path();
    if (!above.empty() && above != path && !makePrivateDirectory(above)) return false;
    return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST;
}

}  // namespace brimquill::platform

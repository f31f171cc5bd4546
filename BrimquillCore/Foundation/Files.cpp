#include "BrimquillCore/Foundation/Files.h"

#include "BrimquillCore/Foundation/Uuid.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace brimquill::files {
namespace {

/// Owns a descriptor; -1 is none.
class Descriptor final {
public:
    explicit Descriptor(int value) : value_(value) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int value() const { return value_; }
    bool close() {
        const int value = value_;
        value_ = -1;
        return value < 0 || ::close(value) == 0;
    }

private:
    int value_;
};

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

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
    if (descriptor.value() < 0) return false;
    const bool isWritten = writeAll(descriptor.value(), bytes) && descriptor.close();
    if (isWritten && ::rename(part.c_str(), file.c_str()) == 0) return true;
    removeFile(part);
    return false;
}

std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t maximum) {
    // Not blocking: the path may lead to a pipe that nobody writes to.
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (descriptor.value() < 0 || ::fstat(descriptor.value(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
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

void removeFile(const std::filesystem::path& file) {
    ::unlink(file.c_str());
}

}  // namespace brimquill::files

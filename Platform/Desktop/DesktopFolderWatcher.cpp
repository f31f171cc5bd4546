#include "Platform/Desktop/DesktopFolderWatcher.h"

#include <QSocketNotifier>

#include <sys/inotify.h>
#include <unistd.h>
#include <array>
#include <utility>

namespace brimquill::platform {
namespace {

class Watch final : public Held {
public:
    Watch(int queue, std::function<void()> changed)
        : queue_(queue), changed_(std::move(changed)), notifier_(queue, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { drain(); });
    }
    ~Watch() override {
        notifier_.setEnabled(false);
        close(queue_);
    }

private:
    void drain() {
        alignas(inotify_event) std::array<char, 16384> events{};
        while (read(queue_, events.data(), events.size()) > 0) {
        }
        const auto changed = changed_;  // the handler may end this watch
        changed();
    }

    int queue_;
    std::function<void()> changed_;
    QSocketNotifier notifier_;
};

}  // namespace

Token DesktopFolderWatcher::watch(const std::string& directory, std::function<void()> changed) {
    const int queue = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (queue < 0) return nullptr;
    constexpr std::uint32_t mask = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;
    if (inotify_add_watch(queue, directory.c_str(), mask) < 0) {
        close(queue);
        return nullptr;
    }
    return std::make_unique<Watch>(queue, std::move(changed));
}

}  // namespace brimquill::platform

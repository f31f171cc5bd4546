#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace brimquill::platform {

/// The installed programs, by their desktop files. Read at the first question and kept for a while. Any thread.
class DesktopFiles final {
public:
    struct Entry {
        /// Without ".desktop".
        std::string id;
        std::string name, icon, windowClass, executable;
    };

    std::optional<Entry> byId(const std::string& id);
    /// By window class, then by file name, then by executable; case does not count. Empty arguments match nothing.
    std::optional<Entry> find(const std::string& windowClass, const std::string& instance,
                              const std::string& executable);

private:
    using Index = std::map<std::string, Entry>;
    const Index& index();

    std::mutex mutex_;
    Index index_;
    double readAt_ = -1;
};

}  // namespace brimquill::platform

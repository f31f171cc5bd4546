#pragma once

#include "Platform/Types.h"

#include <memory>
#include <utility>
#include <vector>

namespace brimquill::platform {

/// Handlers in the order in which they were added, each in force as long as its token is held. A handler may add and
/// remove others, and itself, while it runs; one removed is not called any more. One thread. Tokens may outlive the
/// list.
template <typename Handler>
class HandlerList final {
public:
    [[nodiscard]] Token add(Handler handler) {
        auto entry = std::make_shared<Handler>(std::move(handler));
        entries_.push_back(entry);
        return std::make_unique<Entry>(std::move(entry));
    }

    /// Calls `visit` with each handler until it answers true; whether one did.
    template <typename Visit>
    bool anyOf(Visit visit) {
        std::erase_if(entries_, [](const auto& entry) { return entry.expired(); });
        const auto entries = entries_;
        for (const auto& weak : entries) {
            if (const auto handler = weak.lock(); handler && visit(*handler)) return true;
        }
        return false;
    }

    template <typename... Arguments>
    void callAll(const Arguments&... arguments) {
        anyOf([&](const Handler& handler) {
            handler(arguments...);
            return false;
        });
    }

    bool isEmpty() const {
        for (const auto& entry : entries_) {
            if (!entry.expired()) return false;
        }
        return true;
    }

private:
    class Entry final : public Held {
    public:
        explicit Entry(std::shared_ptr<Handler> handler) : handler_(std::move(handler)) {}

    private:
        std::shared_ptr<Handler> handler_;
    };

    std::vector<std::weak_ptr<Handler>> entries_;
};

}  // namespace brimquill::platform

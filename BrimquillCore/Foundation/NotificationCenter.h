#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace brimquill {

/// One broadcast: its name, who sent it (compared by address, may be null) and what it says.
struct Notification {
    std::string name;
    const void* object = nullptr;
    std::map<std::string, std::string> userInfo;
};

/// A synchronous broadcast within the process. `post` calls every observer before it returns, on the
/// poster's thread, in the order in which they registered. Observers may post, register and cancel from
/// within their call; one cancelled during a broadcast is not called any more in it. Any thread.
class NotificationCenter final {
public:
    using Handler = std::function<void(const Notification&)>;

    /// Alive while held: destroying it ends the observation.
    class Observation final {
    public:
        Observation() = default;
        ~Observation();
        Observation(Observation&&) noexcept;
        Observation& operator=(Observation&&) noexcept;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;

        /// Ends the observation now; harmless to repeat.
        void cancel();

    private:
        friend class NotificationCenter;
        struct Entry;
        explicit Observation(std::shared_ptr<Entry> entry);
        std::shared_ptr<Entry> entry_;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The running program's one centre.
    static NotificationCenter& defaultCenter();

    /// Calls `handler` for each broadcast of `name`; with an `object`, only for those that it sent.
    [[nodiscard]] Observation observe(std::string name, const void* object, Handler handler);

    void post(const Notification& notification);

private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace brimquill

#include "BrimquillCore/Foundation/Log.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace brimquill::log {
namespace {

struct SinkSlot {
    std::mutex mutex;
    Sink sink;
};

SinkSlot& slot() {
    // Never destroyed: lines may still come while the process ends.
    static auto* const instance = new SinkSlot;
    return *instance;
}

}  // namespace

void write(std::string_view message) {
    const std::string line = "Brimquill: " + std::string(message);
    Sink sink;
    {
        const std::lock_guard lock(slot().mutex);
        sink = slot().sink;
    }
    // Outside the lock, so that a sink may itself log.
    if (sink) {
        sink(line);
    } else {
        std::fprintf(stderr, "%s\n", line.c_str());
    }
}

Sink setSink(Sink sink) {
    const std::lock_guard lock(slot().mutex);
    return std::exchange(slot().sink, std::move(sink));
}

}  // namespace brimquill::log

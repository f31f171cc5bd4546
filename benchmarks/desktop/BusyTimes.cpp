// Loaded into a program by LD_PRELOAD, tells how long its main thread is busy at a time: from one wait of its event
// loop to the next, which for a program that paints is a frame or less. Each such turn of a millisecond or more becomes
// a line "END WALL CPU" in the file that the environment variable BUSY_TIMES names, in milliseconds, END on the
// monotonic clock.

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

int file() {
    static const int opened = [] {
        const char* path = std::getenv("BUSY_TIMES");
        return path == nullptr ? -1 : open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    }();
    return opened;
}

double wallBefore = 0, cpuBefore = 0;

template <typename Wait>
int watched(Wait wait, nfds_t count) {
    // The event loop waits for several things; who waits for one, such as an answer of the X server, is in a turn of
    // it.
    if (count < 2 || gettid() != getpid()) return wait();
    const double end = milliseconds(CLOCK_MONOTONIC);
    if (const double wall = end - wallBefore; wallBefore > 0 && wall >= 1 && file() >= 0) {
        char line[96];
        const double cpu = milliseconds(CLOCK_THREAD_CPUTIME_ID) - cpuBefore;
        const int size = std::snprintf(line, sizeof line, "%.2f %.2f %.2f\n", end, wall, cpu);
        if (write(file(), line, static_cast<std::size_t>(size)) < 0) std::abort();
    }
    const int result = wait();
    wallBefore = milliseconds(CLOCK_MONOTONIC);
    cpuBefore = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    return result;
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int poll(pollfd* descriptors, nfds_t count, int timeout) {
    static const auto original = next<int (*)(pollfd*, nfds_t, int)>("poll");
    return watched([=] { return original(descriptors, count, timeout); }, count);
}

extern "C" int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
    static const auto original = next<int (*)(pollfd*, nfds_t, const timespec*, const sigset_t*)>("ppoll");
    return watched([=] { return original(descriptors, count, timeout, mask); }, count);
}

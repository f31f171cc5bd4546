#include "Platform/Desktop/DesktopRunLoop.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/DesktopSerialQueue.h"
#include "Platform/Desktop/Uptime.h"

#include <QDeadlineTimer>
#include <QThread>
#include <QTimer>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

namespace brimquill::platform {
namespace {

/// Rounded up, so that nothing runs early.
std::chrono::milliseconds milliseconds(double seconds) {
    const double wanted = std::ceil(std::max(0.0, seconds) * 1000);
    return std::chrono::milliseconds(static_cast<int>(std::min<double>(wanted, std::numeric_limits<int>::max())));
}

class TimerToken final : public Held {
public:
    TimerToken(double seconds, bool repeats, RunLoop::Work work) {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setSingleShot(!repeats);
        // The work may destroy this token, and with it the timer: it runs on a copy of its own.
        QObject::connect(&timer_, &QTimer::timeout,
                         [shared = std::make_shared<RunLoop::Work>(std::move(work))] { run(std::shared_ptr(shared)); });
        timer_.start(milliseconds(seconds));
    }

private:
    static void run(const std::shared_ptr<RunLoop::Work>& work) { (*work)(); }

    QTimer timer_;
};

/// Background work gives way to everything else on the machine. Niceness is a thread's own here.
void lowerPriorityOfThisThread() {
    static thread_local const int lowered = nice(10);
    static_cast<void>(lowered);
}

}  // namespace

DesktopRunLoop::DesktopRunLoop() {
    // On few cores too: threads that wait for silent disks must not keep the others from their work.
    userInitiated_.setMaxThreadCount(4);
    utility_.setMaxThreadCount(1);
    utility_.setExpiryTimeout(-1);  // one lowered thread, kept
}

void DesktopRunLoop::End::operator()(DesktopRunLoop* runLoop) const {
    if (runLoop->endWork()) {
        delete runLoop;
    } else {
        runLoop->hasEnded_ = true;
        log::write("work in the background does not end and is left behind");
    }
}

bool DesktopRunLoop::endWork() {
    QDeadlineTimer deadline(End::limit);
    for (QThreadPool* pool : {&userInitiated_, &utility_}) {
        pool->clear();
        if (!pool->waitForDone(static_cast<int>(deadline.remainingTime()))) return false;
    }
    return true;
}

Date DesktopRunLoop::now() const {
    return Date::now();
}

double DesktopRunLoop::uptime() const {
    return platform::uptime();
}

void DesktopRunLoop::async(Work work) {
    if (hasEnded_) return;
    QMetaObject::invokeMethod(
        &context_, [work = std::move(work)] { work(); }, Qt::QueuedConnection);
}

void DesktopRunLoop::asyncAfter(double seconds, Work work) {
    if (QThread::currentThread() == context_.thread()) {
        QTimer::singleShot(milliseconds(seconds), Qt::PreciseTimer, &context_, std::move(work));
        return;
    }
    const double due = uptime() + seconds;
    async([this, due, work = std::move(work)] { asyncAfter(due - uptime(), work); });
}

Token DesktopRunLoop::after(double seconds, Work work) {
    return std::make_unique<TimerToken>(seconds, false, std::move(work));
}

Token DesktopRunLoop::every(double seconds, Work work) {
    return std::make_unique<TimerToken>(std::max(seconds, 0.001), true, std::move(work));
}

void DesktopRunLoop::global(QualityOfService qos, Work work) {
    if (qos == QualityOfService::userInitiated) {
        userInitiated_.start(std::move(work));
        return;
    }
    utility_.start([work = std::move(work)] {
        lowerPriorityOfThisThread();
        work();
    });
}

std::unique_ptr<SerialQueue> DesktopRunLoop::serialQueue(std::string label) {
    return std::make_unique<DesktopSerialQueue>(std::move(label));
}

}  // namespace brimquill::platform

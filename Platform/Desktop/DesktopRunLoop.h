#pragma once

#include "Platform/RunLoop.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <memory>

namespace brimquill::platform {

/// The main queue on Qt's event loop, the background queues on threads of its own. To be made and destroyed on the
/// thread of the application object.
class DesktopRunLoop final : public RunLoop {
public:
    /// Drops the background work that has not begun and waits for what runs. What takes longer than this many
    /// milliseconds, on a disk that is silent say, is left behind with the run loop, which it may go on calling to no
    /// effect.
    struct End {
        static constexpr int limit = 2000;
        void operator()(DesktopRunLoop* runLoop) const;
    };
    static std::unique_ptr<DesktopRunLoop, End> make() {
        return std::unique_ptr<DesktopRunLoop, End>(new DesktopRunLoop);
    }

    Date now() const override;
    double uptime() const override;
    void async(Work work) override;
    void asyncAfter(double seconds, Work work) override;
    Token after(double seconds, Work work) override;
    Token every(double seconds, Work work) override;
    void global(QualityOfService qos, Work work) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label) override;

private:
    DesktopRunLoop();
    bool endWork();

    QObject context_;
    QThreadPool userInitiated_, utility_;
    /// For work that is left behind.
    std::atomic<bool> hasEnded_ = false;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/RunLoop.h"

#include <QObject>
#include <QThreadPool>

namespace brimquill::platform {

/// The main queue on Qt's event loop, the background queues on threads of its own. To be made and destroyed on the
/// thread of the application object; destroying it waits for background work that runs and drops the rest.
class DesktopRunLoop final : public RunLoop {
public:
    DesktopRunLoop();
    ~DesktopRunLoop() override;

    Date now() const override;
    double uptime() const override;
    void async(Work work) override;
    void asyncAfter(double seconds, Work work) override;
    Token after(double seconds, Work work) override;
    Token every(double seconds, Work work) override;
    void global(QualityOfService qos, Work work) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label) override;

private:
    QObject context_;
    QThreadPool userInitiated_, utility_;
};

}  // namespace brimquill::platform

#pragma once

#include "Platform/Instance.h"

#include <QLocalServer>

#include <memory>
#include <string>

namespace brimquill::platform {

/// A lock file and a socket in the user's runtime directory, named after the data directory. The lock is the system's,
/// so that it goes with the process that held it, however that ends; a socket left behind is replaced by the next
/// holder.
class DesktopInstance final : public Instance {
public:
    explicit DesktopInstance(const std::string& dataDirectory);
    ~DesktopInstance() override;

    bool claim() override;
    void setReopenHandler(std::function<void()> handler) override;

private:
    bool tellRunningOne(int milliseconds) const;
    void listen();

    std::string base_;
    int lock_ = -1;
    std::unique_ptr<QLocalServer> server_;
    std::function<void()> handler_;
};

}  // namespace brimquill::platform

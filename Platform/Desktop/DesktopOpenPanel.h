#pragma once

#include "Platform/OpenPanel.h"

#include <QObject>

namespace brimquill::platform {

/// The desktop portal's dialogs, or where there is no portal the toolkit's own.
class DesktopOpenPanel final : public OpenPanel {
public:
    void run(const Request& request, std::function<void(std::optional<std::string>)> done) override;
    void runSave(const SaveRequest& request, std::function<void(std::optional<SaveAnswer>)> done) override;

private:
    /// Owns the dialogs that are open.
    QObject context_;
};

}  // namespace brimquill::platform

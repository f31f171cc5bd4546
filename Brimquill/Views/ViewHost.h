#pragma once

#include "Brimquill/Views/Appearance.h"
#include "Platform/Panels.h"

#include <memory>

class QQmlEngine;

namespace brimquill {

/// What all views of the program share. Main thread.
class ViewHost final {
public:
    /// All must outlive it.
    ViewHost(AppSettings& settings, platform::SystemAppearance& system, platform::Panels& panels);
    ~ViewHost();

    Appearance& appearance() { return appearance_; }
    platform::Panels& panels() { return panels_; }
    /// Made at first use, which takes some tens of milliseconds.
    QQmlEngine& engine();

private:
    platform::Panels& panels_;
    Appearance appearance_;
    std::unique_ptr<QQmlEngine> engine_;
};

}  // namespace brimquill

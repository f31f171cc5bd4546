#pragma once

#include "Platform/RunLoop.h"
#include "Platform/SecureInput.h"

#include <QObject>
#include <QString>

#include <optional>
#include <string>

namespace brimquill {

/// Knows whether another program holds the keyboard, so that pasting and watching keys cannot be relied on, and which.
/// Main thread.
class SecureInputMonitor final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool secureInputActive READ secureInputActive NOTIFY changed)
    Q_PROPERTY(QString culpritName READ culpritNameText NOTIFY changed)

public:
    SecureInputMonitor(platform::SecureInput& secureInput, platform::RunLoop& runLoop)
        : secureInput_(secureInput), runLoop_(runLoop) {}

    /// Looks now, every two seconds, and when a hold turns out to last.
    void start();

    bool secureInputActive() const { return secureInputActive_; }
    /// Nothing when nobody holds it, or its name cannot be known.
    const std::optional<std::string>& culpritName() const { return culpritName_; }
    QString culpritNameText() const { return QString::fromStdString(culpritName_.value_or("")); }

Q_SIGNALS:
    /// Only when one of the two is another than before.
    void changed();

private:
    void check();

    platform::SecureInput& secureInput_;
    platform::RunLoop& runLoop_;
    bool secureInputActive_ = false;
    std::optional<std::string> culpritName_;
    platform::Token timer_, observation_;
};

}  // namespace brimquill

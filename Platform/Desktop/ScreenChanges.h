#pragma once

#include "Platform/HandlerList.h"
#include "Platform/Types.h"

#include <QObject>

#include <functional>

class QScreen;

namespace brimquill::platform {

/// Tells of changes of the screens that the user interface knows. Main thread, after the application object is made.
class ScreenChanges final {
public:
    ScreenChanges();
    [[nodiscard]] Token observe(std::function<void()> changed) { return observers_.add(std::move(changed)); }

private:
    void follow(const QScreen* screen);

    HandlerList<std::function<void()>> observers_;
    /// The connections go with it.
    QObject context_;
};

}  // namespace brimquill::platform

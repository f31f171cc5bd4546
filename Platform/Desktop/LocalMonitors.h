#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/HandlerList.h"

#include <QObject>

class QKeyEvent;

namespace brimquill::platform {

/// What a key event of the user interface says in the system's words, as far as the toolkit tells.
Event eventFromQt(const QKeyEvent& event);

/// Local monitors: they see the keys of every window of this program before the window does. Keys with Super that no
/// monitor swallowed reach the window with Control, for both are ⌘ and the toolkit's fields know one of them: with the
/// other they would type.
class LocalMonitors final : public QObject {
public:
    using Translate = std::function<Event(const QKeyEvent&)>;
    explicit LocalMonitors(Translate translate);

    Token add(EventMask mask, std::function<bool(const Event&)> handler);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool send(const Event& event);
    /// Whether it was passed on so, which ends its own way.
    bool passesWithControl(QObject* window, const QKeyEvent& pressed, const Event& said);

    Translate translate_;
    HandlerList<std::function<bool(const Event&)>> handlers_;
    bool isPassing_ = false;
};

}  // namespace brimquill::platform

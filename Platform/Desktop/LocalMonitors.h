#pragma once

#include "Platform/EventMonitors.h"
#include "Platform/HandlerList.h"

#include <QObject>

class QKeyEvent;

namespace brimquill::platform {

/// What a key event of the user interface says in the system's words, as far as the toolkit tells.
Event eventFromQt(const QKeyEvent& event);

/// Local monitors: they see the keys of every window of this program before the window does.
class LocalMonitors final : public QObject {
public:
    using Translate = std::function<Event(const QKeyEvent&)>;
    explicit LocalMonitors(Translate translate);

    Token add(EventMask mask, std::function<bool(const Event&)> handler);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool send(const Event& event);

    Translate translate_;
    HandlerList<std::function<bool(const Event&)>> handlers_;
};

}  // namespace brimquill::platform

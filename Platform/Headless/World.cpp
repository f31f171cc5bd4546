#include "Platform/Headless/World.h"

namespace brimquill::platform {

void World::copy(const ForeignCopy& copy) {
    pasteboard_.copy(copy);
    advance(copyTime);
}

void World::copyText(const std::string& text) {
    ForeignCopy foreign;
    foreign.contents.string = text;
    copy(foreign);
}

void World::copyFiles(const std::vector<std::string>& paths) {
    ForeignCopy foreign;
    foreign.contents.filePaths = paths;
    copy(foreign);
}

Event World::event(EventType type, Modifiers modifiers) const {
    Event event;
    event.type = type;
    event.modifiers = modifiers;
    event.uptime = runLoop_.uptime();
    return event;
}

Delivery World::press(int keyCode, Modifiers modifiers, const std::string& characters) {
    Event pressed = event(EventType::keyDown, modifiers);
    pressed.keyCode = keyCode;
    pressed.characters = characters;
    pressed.charactersIgnoringModifiers = characters;
    return eventMonitors_.sendLocal(pressed) ? Delivery::swallowed : Delivery::passed;
}

void World::globalKey(int keyCode, Modifiers modifiers, const std::string& characters) {
    Event pressed = event(EventType::keyDown, modifiers);
    pressed.keyCode = keyCode;
    pressed.characters = characters;
    pressed.charactersIgnoringModifiers = characters;
    eventMonitors_.sendGlobal(pressed);
}

void World::changeModifiers(Modifiers modifiers) {
    const Event changed = event(EventType::flagsChanged, modifiers);
    if (panels_.keyPanel()) {
        eventMonitors_.sendLocal(changed);
    } else {
        eventMonitors_.sendGlobal(changed);
    }
}

void World::click(Point point) {
    screens_.setMouseLocation(point);
    Event clicked = event(EventType::mouseDown, {});
    clicked.location = point;
    if (panels_.click(point)) {
        eventMonitors_.sendLocal(clicked);
    } else {
        eventMonitors_.sendGlobal(clicked);
    }
}

}  // namespace brimquill::platform

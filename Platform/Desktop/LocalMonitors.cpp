#include "Platform/Desktop/LocalMonitors.h"

#include "Platform/Desktop/Uptime.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>

#include <cctype>
#include <utility>

namespace brimquill::platform {
namespace {

constexpr std::pair<int, int> keyCodes[] = {
    {Qt::Key_A, key::a},
    {Qt::Key_B, key::b},
    {Qt::Key_C, key::c},
    {Qt::Key_D, key::d},
    {Qt::Key_E, key::e},
    {Qt::Key_F, key::f},
    {Qt::Key_G, key::g},
    {Qt::Key_H, key::h},
    {Qt::Key_I, key::i},
    {Qt::Key_J, key::j},
    {Qt::Key_K, key::k},
    {Qt::Key_L, key::l},
    {Qt::Key_M, key::m},
    {Qt::Key_N, key::n},
    {Qt::Key_O, key::o},
    {Qt::Key_P, key::p},
    {Qt::Key_Q, key::q},
    {Qt::Key_R, key::r},
    {Qt::Key_S, key::s},
    {Qt::Key_T, key::t},
    {Qt::Key_U, key::u},
    {Qt::Key_V, key::v},
    {Qt::Key_W, key::w},
    {Qt::Key_X, key::x},
    {Qt::Key_Y, key::y},
    {Qt::Key_Z, key::z},
    {Qt::Key_0, key::zero},
    {Qt::Key_1, key::one},
    {Qt::Key_2, key::two},
    {Qt::Key_3, key::three},
    {Qt::Key_4, key::four},
    {Qt::Key_5, key::five},
    {Qt::Key_6, key::six},
    {Qt::Key_7, key::seven},
    {Qt::Key_8, key::eight},
    {Qt::Key_9, key::nine},
    {Qt::Key_Slash, key::slash},
    {Qt::Key_Return, key::returnKey},
    {Qt::Key_Enter, key::returnKey},
    {Qt::Key_Tab, key::tab},
    {Qt::Key_Backtab, key::tab},
    {Qt::Key_Space, key::space},
    {Qt::Key_Backspace, key::deleteKey},
    {Qt::Key_Delete, key::deleteKey},
    {Qt::Key_Escape, key::escape},
    {Qt::Key_Left, key::left},
    {Qt::Key_Right, key::right},
    {Qt::Key_Down, key::down},
    {Qt::Key_Up, key::up},
};

bool isModifier(int qtKey) {
    switch (qtKey) {
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Alt:
        case Qt::Key_Shift:
            return true;
        default:
            return false;
    }
}

/// The modifiers held after the event; the toolkit leaves the changed key out when it goes down, and in when it goes
/// up.
Modifiers modifiersAfter(const QKeyEvent& event) {
    const auto held = event.modifiers();
    Modifiers after{(held & (Qt::ControlModifier | Qt::MetaModifier)) != 0, (held & Qt::ShiftModifier) != 0,
                    (held & Qt::AltModifier) != 0, false};
    const bool down = event.type() == QEvent::KeyPress;
    switch (event.key()) {
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
            after.command = down;
            break;
        case Qt::Key_Alt:
            after.option = down;
            break;
        case Qt::Key_Shift:
            after.shift = down;
            break;
        default:
            break;
    }
    return after;
}

}  // namespace

Event eventFromQt(const QKeyEvent& event) {
    Event translated;
    for (const auto& [qtKey, keyCode] : keyCodes) {
        if (qtKey == event.key()) translated.keyCode = keyCode;
    }
    translated.modifiers = modifiersAfter(event);
    const QString text = event.text();
    const bool types = !text.isEmpty() && text.front().isPrint();
    if (types) translated.characters = text.toStdString();
    translated.charactersIgnoringModifiers = translated.characters;
    const bool isAscii = event.key() > Qt::Key_Space && event.key() < 0x7f;
    if (!types && isAscii) translated.charactersIgnoringModifiers = QString(QChar(event.key())).toLower().toStdString();
    return translated;
}

LocalMonitors::LocalMonitors(Translate translate) : translate_(std::move(translate)) {
    QCoreApplication::instance()->installEventFilter(this);
}

Token LocalMonitors::add(EventMask mask, std::function<bool(const Event&)> handler) {
    return handlers_.add([mask, handler = std::move(handler)](const Event& event) {
        return contains(mask, maskOf(event.type)) && handler(event);
    });
}

bool LocalMonitors::send(const Event& event) {
    return handlers_.anyOf([&](const auto& handler) { return handler(event); });
}

bool LocalMonitors::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType() || isPassing_) return false;
    const auto type = event->type();
    if (type == QEvent::MouseButtonPress) {
        Event clicked;
        clicked.type = EventType::mouseDown;
        const QPoint pointer = QCursor::pos();
        clicked.location = {static_cast<double>(pointer.x()), static_cast<double>(pointer.y())};
        clicked.uptime = uptime();
        return send(clicked);
    }
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) return false;
    const auto& pressed = static_cast<const QKeyEvent&>(*event);
    const bool changesModifiers = isModifier(pressed.key());
    if (type == QEvent::KeyRelease && !changesModifiers) return false;
    if (changesModifiers && pressed.isAutoRepeat()) return false;
    Event translated = changesModifiers ? eventFromQt(pressed) : translate_(pressed);
    translated.type = changesModifiers ? EventType::flagsChanged : EventType::keyDown;
    translated.uptime = uptime();
    return send(translated) || passesWithControl(watched, pressed, translated);
}

bool LocalMonitors::passesWithControl(QObject* window, const QKeyEvent& pressed, const Event& said) {
    if (!pressed.modifiers().testFlag(Qt::MetaModifier) || said.type != EventType::keyDown) return false;
    int key = pressed.key();
    // On a keyboard of another script the letter of the Latin one, as the toolkit has it for Control.
    if (const auto& text = said.charactersIgnoringModifiers; text.size() == 1) {
        key = std::toupper(static_cast<unsigned char>(text.front()));
    }
    const auto modifiers = (pressed.modifiers() & ~Qt::MetaModifier) | Qt::ControlModifier;
    QKeyEvent chord(QEvent::KeyPress, key, modifiers, QString(), pressed.isAutoRepeat());
    isPassing_ = true;
    QCoreApplication::sendEvent(window, &chord);
    isPassing_ = false;
    return true;
}

}  // namespace brimquill::platform

#include "Platform/Desktop/ScreenChanges.h"

#include <QGuiApplication>
#include <QScreen>

namespace brimquill::platform {

ScreenChanges::ScreenChanges() {
    for (const QScreen* screen : QGuiApplication::screens())
        follow(screen);
    const auto tell = [this] { observers_.callAll(); };
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, &context_, [this, tell](const QScreen* screen) {
        follow(screen);
        tell();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &context_, tell);
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &context_, tell);
}

void ScreenChanges::follow(const QScreen* screen) {
    const auto tell = [this] { observers_.callAll(); };
    QObject::connect(screen, &QScreen::geometryChanged, &context_, tell);
    QObject::connect(screen, &QScreen::availableGeometryChanged, &context_, tell);
}

}  // namespace brimquill::platform

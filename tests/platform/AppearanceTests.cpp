#include "Platform/Desktop/DesktopAppearance.h"
#include "tests/platform/FakePortal.h"
#include "tests/platform/ServicesFixture.h"

#include <QGuiApplication>
#include <QPalette>

namespace brimquill::platform {
namespace {

const auto colours = QStringLiteral("org.freedesktop.appearance");
const auto scheme = QStringLiteral("color-scheme");
const auto gnome = QStringLiteral("org.gnome.desktop.interface");
const auto animations = QStringLiteral("enable-animations");

TEST(SystemAppearance, TheDesktopInMemoryTellsOfChanges) {
    World world;
    int changes = 0;
    const Token observer = world.appearance().observe([&] { ++changes; });
    world.appearance().set(true, true);
    EXPECT_TRUE(world.appearance().prefersDark() && world.appearance().reduceMotion());
    EXPECT_EQ(changes, 1);
}

TEST(SystemAppearance, WhatThePortalSaysHoldsFromTheStart) {
    FakePortal portal;
    portal.set(colours, scheme, uint{1});
    portal.set(gnome, animations, false);
    const auto services = createServices(userDefaultsDirectory().string());
    EXPECT_TRUE(
        eventually([&] { return services->appearance().prefersDark() && services->appearance().reduceMotion(); }));
}

TEST(SystemAppearance, ChangesAreToldOnceEach) {
    struct Case {
        const char* what;
        QString space, key;
        QVariant value;
        bool isDark, reducesMotion;
    };
    const std::vector<Case> cases = {
        {"dark", colours, scheme, uint{1}, true, false},
        {"light", colours, scheme, uint{2}, false, false},
        {"dark again", colours, scheme, uint{1}, true, false},
        {"no animations", gnome, animations, false, true, true},
        {"no preference: the toolkit's colours", colours, scheme, uint{0}, false, true},
        {"animations", gnome, animations, true, false, false},
        {"dark at last", colours, scheme, uint{1}, true, false},
    };
    const QPalette before = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(Qt::white));
    FakePortal portal;
    DesktopAppearance appearance;
    EXPECT_TRUE(eventually([&] { return portal.readCount() == 2; }));
    int changes = 0;
    const Token observer = appearance.observe([&] { ++changes; });
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        changes = 0;
        // Neither what concerns others nor the same again is a change.
        portal.set(colours, QStringLiteral("accent-color"), uint{1});
        portal.set(test.space, test.key, test.value);
        portal.set(test.space, test.key, test.value);
        EXPECT_TRUE(eventually([&] { return changes > 0; }));
        EXPECT_EQ(changes, 1);
        EXPECT_EQ(appearance.prefersDark(), test.isDark);
        EXPECT_EQ(appearance.reduceMotion(), test.reducesMotion);
    }
    QGuiApplication::setPalette(before);
}

TEST(SystemAppearance, WithoutAPortalTheToolkitsColoursTell) {
    const QPalette before = QGuiApplication::palette();
    const DesktopAppearance appearance;
    for (const bool isDark : {true, false}) {
        QGuiApplication::setPalette(QPalette(isDark ? Qt::black : Qt::white));
        EXPECT_EQ(appearance.prefersDark(), isDark);
        EXPECT_FALSE(appearance.reduceMotion());
    }
    QGuiApplication::setPalette(before);
}

}  // namespace
}  // namespace brimquill::platform

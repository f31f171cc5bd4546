#include "Platform/Desktop/JsonUserDefaults.h"
#include "Platform/Desktop/LimitedDesktop.h"
#include "tests/platform/Desktop.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QTemporaryDir>
#include <QWindow>

#include <gtest/gtest.h>

namespace brimquill::platform {
namespace {

class LimitedDesktopTest : public testing::Test {
protected:
    QTemporaryDir directory_;
    LimitedDesktop desktop_{std::make_unique<JsonUserDefaults>(directory_.path().toStdString(), "suite"),
                            directory_.path().toStdString()};
};

TEST_F(LimitedDesktopTest, WhatItCannotDoItRefuses) {
    const auto hotKey = desktop_.hotKeys().registerHotKey(key::v, {.command = true}, [] { FAIL(); });
    EXPECT_EQ(hotKey.status, HotKeys::unavailable);
    EXPECT_EQ(hotKey.token, nullptr);
    EXPECT_FALSE(desktop_.syntheticKeys().post(key::v, {.command = true}));
    EXPECT_FALSE(desktop_.syntheticKeys().type("text"));
    EXPECT_FALSE(desktop_.accessibility().isProcessTrusted());
    EXPECT_FALSE(desktop_.accessibility().isProcessTrustedWithPrompt());
    EXPECT_EQ(desktop_.eventMonitors().addGlobalMonitor(EventMask::keyDown, [](const Event&) { FAIL(); }), nullptr);
    EXPECT_FALSE(desktop_.workspace().frontmostApplication());
    EXPECT_FALSE(desktop_.secureInput().isEnabled());
    EXPECT_FALSE(desktop_.panels().isTranslucencyAvailable());
}

TEST_F(LimitedDesktopTest, WhatTheToolkitCanDoWorks) {
    desktop_.pasteboard().write({"our own", {}, {}, {}});
    EXPECT_EQ(desktop_.pasteboard().string(), "our own");
    desktop_.defaults().set("kept", true);
    EXPECT_EQ(desktop_.defaults().boolean("kept"), true);
    const auto screen = desktop_.screens().main();
    ASSERT_TRUE(screen);
    EXPECT_GT(screen->visibleFrame.width, 0);

    QWindow window;
    int keys = 0;
    const Token monitor = desktop_.eventMonitors().addLocalMonitor(EventMask::keyDown, [&](const Event& event) {
        keys += event.keyCode == key::f ? 1 : 0;
        return true;
    });
    auto panel = desktop_.panels().makePanel(window, PanelRole::keyable);
    EXPECT_TRUE(panel->show({100, 100, 300, 200}));
    ASSERT_TRUE(eventually([&] { return panel->isVisible() && panel->isKey(); }));
    ASSERT_EQ(runCommand("xdotool key f"), 0);
    EXPECT_TRUE(eventually([&] { return keys == 1; }));
    panel->close();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(panel->isKey());
}

/// Notes what would reach a field.
class NotingWindow final : public QWindow {
public:
    std::string noted;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        noted +=
            QKeySequence(event->keyCombination()).toString().toStdString() + "|" + event->text().toStdString() + " ";
    }
};

TEST_F(LimitedDesktopTest, SuperReachesAFieldAsControlAndTypesNothing) {
    NotingWindow window;
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(&window, &event);
        return std::exchange(window.noted, {});
    };
    int seen = 0;
    const Token monitor = desktop_.eventMonitors().addLocalMonitor(EventMask::keyDown, [&](const Event& event) {
        ++seen;
        return event.charactersIgnoringModifiers == "f";
    });
    EXPECT_EQ(press(Qt::Key_V, Qt::MetaModifier, QStringLiteral("v")), "Ctrl+V| ");
    EXPECT_EQ(press(Qt::Key_Z, Qt::MetaModifier | Qt::ShiftModifier, QStringLiteral("Z")), "Ctrl+Shift+Z| ");
    EXPECT_EQ(press(Qt::Key_Left, Qt::MetaModifier, {}), "Ctrl+Left| ");
    EXPECT_EQ(press(Qt::Key_V, {}, QStringLiteral("v")), "V|v ");
    EXPECT_EQ(press(Qt::Key_F, Qt::MetaModifier, QStringLiteral("f")), "") << "swallowed";
    EXPECT_EQ(seen, 5) << "each is seen once";
}

}  // namespace
}  // namespace brimquill::platform

// Who holds the keyboard of a real server: this program's windows play the other one, on a connection of their own.

#include "Platform/Headless/World.h"
#include "Platform/X11/X11SecureInput.h"
#include "Platform/X11/X11Workspace.h"
#include "tests/platform/Desktop.h"
#include "tests/platform/ForeignClient.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMenu>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

namespace brimquill::platform {
namespace {

class SecureInputTest : public testing::Test {
protected:
    SecureInputTest() {
        window.resize(200, 100);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(eventually([&] { return window.isActiveWindow(); }));
        EXPECT_FALSE(input.isEnabled());
    }
    void hold() {
        window.grabKeyboard();
        QCoreApplication::processEvents();
    }
    /// The toolkit only asks for it, by a connection of its own.
    void release() {
        window.releaseKeyboard();
        EXPECT_TRUE(eventually([&] { return !isKeyboardHeld(); }));
    }
    /// What it says of a hold that lasts.
    bool isEnabledAfterAMoment() {
        EXPECT_FALSE(input.isEnabled()) << "not at once";
        world.advance(1);
        return input.isEnabled();
    }

    /// Whether the server refuses the keyboard to others.
    bool isKeyboardHeld() {
        if (!other.holdKeyboard()) return true;
        other.releaseKeyboard();
        return false;
    }

    World world;
    ForeignClient other;
    X11Connection connection;
    X11Workspace workspace{connection};
    bool isOurs = false;
    X11SecureInput input{connection, workspace, world.runLoop(), [this] { return isOurs; }};
    int changes = 0;
    Token observation = input.observe([this] { ++changes; });
    QWidget window;
};

TEST_F(SecureInputTest, AHoldCountsOnceItHasLastedUntilItEnds) {
    hold();
    EXPECT_TRUE(isEnabledAfterAMoment());
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(eventually([&] { return input.holderName().has_value(); })) << "the frontmost program is told later";
    world.advance(10);
    EXPECT_TRUE(input.isEnabled());
    EXPECT_EQ(changes, 1);
    window.releaseKeyboard();
    EXPECT_TRUE(eventually([&] { return !input.isEnabled(); }));
    EXPECT_FALSE(input.holderName());
}

TEST_F(SecureInputTest, AShortHoldDoesNotCountNorHastenTheNext) {
    hold();
    EXPECT_FALSE(input.isEnabled());
    release();
    world.advance(1);
    EXPECT_FALSE(input.isEnabled());
    hold();
    EXPECT_TRUE(isEnabledAfterAMoment());
}

TEST_F(SecureInputTest, OurOwnHoldDoesNotCount) {
    isOurs = true;
    hold();
    EXPECT_FALSE(isEnabledAfterAMoment());
    isOurs = false;
    EXPECT_TRUE(isEnabledAfterAMoment());
}

TEST_F(SecureInputTest, AnOpenMenuDoesNotCount) {
    QMenu owned(&window), alone;
    QComboBox choice(&window);
    for (QMenu* menu : {&owned, &alone})
        menu->addAction(QStringLiteral("Undo"));
    choice.addItems({QStringLiteral("one"), QStringLiteral("two")});
    choice.show();
    const QPoint at(300, 300);
    const std::tuple<const char*, std::function<void()>, std::function<void()>> cases[] = {
        {"a context menu", [&] { owned.popup(at); }, [&] { owned.close(); }},
        {"a menu without a window", [&] { alone.popup(at); }, [&] { alone.close(); }},
        {"a list of choices", [&] { choice.showPopup(); }, [&] { choice.hidePopup(); }},
    };
    for (const auto& [what, open, close] : cases) {
        SCOPED_TRACE(what);
        open();
        ASSERT_TRUE(eventually([&] { return isKeyboardHeld(); }));
        EXPECT_FALSE(isEnabledAfterAMoment());
        close();
        ASSERT_TRUE(eventually([&] { return !isKeyboardHeld(); }));
    }
    EXPECT_EQ(changes, 0);
}

TEST_F(SecureInputTest, AHoldOfThePointerTooOrBesideAPopupCounts) {
    QWidget panel(&window, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    panel.show();
    EXPECT_TRUE(eventually([&] { return panel.isVisible(); }));
    hold();
    window.grabMouse();
    QCoreApplication::processEvents();
    EXPECT_TRUE(isEnabledAfterAMoment()) << "a password dialog may hold both, and a panel is no menu";
    window.releaseMouse();

    QWidget popup(&window, Qt::ToolTip | Qt::BypassWindowManagerHint);
    popup.setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu);
    popup.show();
    EXPECT_TRUE(eventually([&] { return popup.isVisible(); }));
    EXPECT_TRUE(input.isEnabled()) << "a menu holds the pointer too";
    window.releaseKeyboard();
}

}  // namespace
}  // namespace brimquill::platform

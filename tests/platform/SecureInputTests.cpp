// Who holds the keyboard of a real server: this program's windows play the other one, on a connection of their own.

#include "Platform/Headless/World.h"
#include "Platform/X11/X11SecureInput.h"
#include "Platform/X11/X11Workspace.h"
#include "tests/platform/Desktop.h"

#include <QCoreApplication>
#include <QWidget>

#include <gtest/gtest.h>

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
    /// What it says of a hold that lasts.
    bool isEnabledAfterAMoment() {
        EXPECT_FALSE(input.isEnabled()) << "not at once";
        world.advance(1);
        return input.isEnabled();
    }

    World world;
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
    window.releaseKeyboard();
    QCoreApplication::processEvents();
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

}  // namespace
}  // namespace brimquill::platform

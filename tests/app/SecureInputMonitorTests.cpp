#include "Brimquill/Capture/SecureInputMonitor.h"
#include "tests/app/AppFixture.h"

#include <QSignalSpy>

namespace brimquill {
namespace {

class SecureInputMonitorTest : public AppFixture {
protected:
    SecureInputMonitor monitor{world.secureInput(), world.runLoop()};
    QSignalSpy changes{&monitor, &SecureInputMonitor::changed};
};

TEST_F(SecureInputMonitorTest, LooksAtOnceAndEveryTwoSeconds) {
    world.secureInput().set(true, "Pinentry");
    monitor.start();
    EXPECT_TRUE(monitor.secureInputActive());
    EXPECT_EQ(monitor.culpritName(), "Pinentry");
    world.secureInput().set(false);
    world.advance(1.9);
    EXPECT_TRUE(monitor.secureInputActive());
    world.advance(0.2);
    EXPECT_FALSE(monitor.secureInputActive());
    EXPECT_FALSE(monitor.culpritName());
}

TEST_F(SecureInputMonitorTest, LooksWhenAHoldTurnsOutToLast) {
    monitor.start();
    world.secureInput().set(true, "Pinentry");
    world.secureInput().confirm();
    EXPECT_TRUE(monitor.secureInputActive()) << "before two seconds are over";
}

TEST_F(SecureInputMonitorTest, TellsOnlyWhatIsNew) {
    monitor.start();
    world.advance(10);
    EXPECT_EQ(changes.count(), 0);
    world.secureInput().set(true, "xterm");
    world.advance(10);
    EXPECT_EQ(changes.count(), 1);
    world.secureInput().set(true, "Pinentry");
    world.advance(2);
    EXPECT_EQ(changes.count(), 2) << "another culprit is news";
    world.secureInput().set(true);
    world.advance(2);
    EXPECT_EQ(changes.count(), 3) << "one that has quit leaves no name";
    EXPECT_TRUE(monitor.secureInputActive());
    EXPECT_FALSE(monitor.culpritName());
}

}  // namespace
}  // namespace brimquill

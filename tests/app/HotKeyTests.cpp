#include "Brimquill/Paste/DoubleTapCommandMonitor.h"
#include "Brimquill/Paste/HotKeyCenter.h"
#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Headless/World.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

class RecordedLog final {
public:
    RecordedLog() : before_(log::setSink([this](std::string_view line) { lines.emplace_back(line); })) {}
    ~RecordedLog() { log::setSink(before_); }
    std::vector<std::string> lines;

private:
    log::Sink before_;
};

TEST(HotKeyCenter, TellsWhichKeysItGotAndGoesOnWithoutTheOthers) {
    platform::World world;
    RecordedLog log;
    world.hotKeys().takeElsewhere(platform::key::v, {.command = true, .control = true});
    HotKeyCenter center(world.hotKeys());
    int palette = 0, caret = 0, stack = 0;
    center.registerHotKey(platform::key::v, {.command = true, .shift = true}, "⇧⌘V palette", [&] { ++palette; });
    center.registerHotKey(platform::key::v, {.command = true, .control = true}, "⌃⌘V caret", [&] { ++caret; });
    center.registerHotKey(platform::key::v, {.command = true, .option = true}, "⌥⌘V stack", [&] { ++stack; });
    EXPECT_THAT(log.lines,
                testing::ElementsAre("Brimquill: hotkey ⇧⌘V palette registered",
                                     "Brimquill: hotkey ⌃⌘V caret FAILED to register, OSStatus -9878 (already taken by "
                                     "another app)",
                                     "Brimquill: hotkey ⌥⌘V stack registered"));
    world.hotKeys().fire(platform::key::v, {.command = true, .shift = true});
    world.hotKeys().fire(platform::key::v, {.command = true, .control = true});
    world.hotKeys().fire(platform::key::v, {.command = true, .option = true});
    EXPECT_EQ(std::vector({palette, caret, stack}), std::vector({1, 0, 1}));
}

TEST(HotKeyCenter, SaysWithoutAReasonWhenThereAreNoHotKeys) {
    platform::World world;
    RecordedLog log;
    world.hotKeys().setAvailable(false);
    HotKeyCenter center(world.hotKeys());
    center.registerHotKey(platform::key::two, {.command = true, .shift = true}, "⇧⌘2 OCR", [] {});
    EXPECT_THAT(log.lines, testing::ElementsAre("Brimquill: hotkey ⇧⌘2 OCR FAILED to register, OSStatus -9868"));
}

/// "d" presses ⌘, "u" lets it go, "s" adds ⇧ to it, "c" presses a key; a number waits so many milliseconds.
int firings(const std::vector<std::string>& steps) {
    platform::World world;
    DoubleTapCommandMonitor monitor(world.eventMonitors(), world.runLoop());
    int count = 0;
    monitor.onDoubleTap = [&] { ++count; };
    monitor.start();
    monitor.start();
    for (const std::string& step : steps) {
        if (step == "d")
            world.changeModifiers({.command = true});
        else if (step == "u")
            world.changeModifiers({});
        else if (step == "s")
            world.changeModifiers({.command = true, .shift = true});
        else if (step == "c")
            world.globalKey(platform::key::c, {.command = true}, "c");
        else
            world.advance(std::stod(step) / 1000);
    }
    return count;
}

TEST(DoubleTapCommandMonitor, FiresOnTwoQuickPressesOfCommandAlone) {
    struct Case {
        const char* name;
        std::vector<std::string> steps;
        int expected;
    };
    const Case cases[] = {
        {"quick", {"d", "u", "340", "d", "u"}, 1},
        {"too slow, but the second begins a pair", {"d", "u", "360", "d", "u", "340", "d", "u"}, 1},
        {"the gap runs from press to press", {"d", "1000", "u", "100", "d", "u"}, 0},
        {"a key in between", {"d", "u", "50", "d", "c", "u", "50", "d", "u"}, 1},
        {"a key within the first", {"d", "c", "u", "50", "d", "u"}, 0},
        {"shift in between", {"d", "s", "d", "u", "50", "d", "u"}, 0},
        {"three taps", {"d", "u", "50", "d", "u", "50", "d", "u"}, 1},
        {"four taps", {"d", "u", "50", "d", "u", "50", "d", "u", "50", "d", "u"}, 2},
        {"held", {"d", "50", "d", "50", "d"}, 0},
        {"after an interruption a pair begins anew", {"d", "c", "u", "50", "d", "u", "50", "d", "u"}, 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(firings(c.steps), c.expected) << c.name;
}

TEST(DoubleTapCommandMonitor, StillWorksInOurOwnPanelsWhenTheSystemDeclinesAndEndsWhenStopped) {
    platform::World world;
    world.eventMonitors().setAllowsGlobalMonitors(false);
    DoubleTapCommandMonitor monitor(world.eventMonitors(), world.runLoop());
    int count = 0;
    monitor.onDoubleTap = [&] { ++count; };
    const auto tap = [&] {
        platform::Event event;
        event.type = platform::EventType::flagsChanged;
        event.modifiers.command = true;
        EXPECT_FALSE(world.eventMonitors().sendLocal(event));
        event.modifiers.command = false;
        EXPECT_FALSE(world.eventMonitors().sendLocal(event));
    };
    monitor.start();
    tap();
    tap();
    EXPECT_EQ(count, 1);
    monitor.stop();
    tap();
    tap();
    EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace brimquill

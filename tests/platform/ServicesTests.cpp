#include "Platform/Desktop/DesktopRunLoop.h"
#include "Platform/Desktop/JsonUserDefaults.h"
#include "tests/platform/ServicesFixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <QWindow>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace brimquill::platform {
namespace {

class ServicesTest : public ServicesFixture {
protected:
    void click(Point point) {
        if (world_ != nullptr) {
            world_->click(point);
        } else {
            ASSERT_EQ(runCommand("xdotool mousemove " + std::to_string(static_cast<int>(point.x)) + " " +
                                 std::to_string(static_cast<int>(point.y)) + " click 1"),
                      0);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Backends, ServicesTest, testing::Bool(), backendName);

TEST_P(ServicesTest, MainQueueKeepsOrderAndTimersEndWithTheirTokens) {
    RunLoop& loop = services_->runLoop();
    std::string order;
    Token dropped = loop.after(0.01, [&] { order += 'x'; });
    Token last = loop.after(0.05, [&] { order += 'd'; });
    loop.async([&] { order += 'a'; });
    loop.async([&] {
        order += 'b';
        dropped.reset();
    });
    loop.asyncAfter(0, [&] { order += 'c'; });
    EXPECT_TRUE(until([&] { return order.size() == 4; }));
    EXPECT_EQ(order, "abcd");
    int count = 0;
    Token repeating = loop.every(0.001, [&] {
        if (++count == 3) repeating.reset();
    });
    EXPECT_TRUE(until([&] { return repeating == nullptr; }));
    bool later = false;
    loop.asyncAfter(0.02, [&] { later = true; });
    EXPECT_TRUE(until([&] { return later; }));
    EXPECT_EQ(count, 3);
}

TEST_P(ServicesTest, QueuesRunInOrderAndComeBackToTheMainQueue) {
    RunLoop& loop = services_->runLoop();
    auto queue = loop.serialQueue("com.brimquill.test");
    std::string order;
    bool finished = false;
    queue->async([&] {
        order += 'a';
        queue->wait(0.02);
        order += 'b';
    });
    queue->async([&] {
        order += 'c';
        loop.async([&] { finished = true; });
    });
    EXPECT_TRUE(until([&] { return finished; }));
    EXPECT_EQ(order, "abc");
    std::atomic<int> ran = 0;
    loop.global(QualityOfService::utility, [&] { ++ran; });
    loop.global(QualityOfService::userInitiated, [&] { ++ran; });
    EXPECT_TRUE(until([&] { return ran == 2; }));
    // A queue that goes waits for the piece that runs, cuts its wait short and drops the rest.
    std::atomic<bool> started = false, ended = false, dropped = true;
    queue->async([&] {
        started = true;
        queue->wait(1e6);
        ended = true;
    });
    queue->async([&] { dropped = false; });
    EXPECT_TRUE(until([&] { return started.load(); }));
    queue.reset();
    EXPECT_TRUE(ended);
    EXPECT_TRUE(dropped);
}

TEST(DesktopRunLoop, LeavesWorkBehindThatDoesNotEnd) {
    std::atomic<bool> begins = false, mayEnd = false, ended = false;
    auto loop = DesktopRunLoop::make();
    [[maybe_unused]] static const void* const leftBehind = loop.get();  // no leak for the sanitizer
    loop->global(QualityOfService::userInitiated, [&, &runLoop = *loop] {
        begins = true;
        begins.notify_all();
        mayEnd.wait(false);
        runLoop.async([] { FAIL() << "nobody is there any more"; });
        ended = true;
        ended.notify_all();
    });
    loop->global(QualityOfService::utility, [] {});
    begins.wait(false);
    loop.reset();
    EXPECT_FALSE(ended);
    mayEnd = true;
    mayEnd.notify_all();
    ended.wait(false);
    QCoreApplication::processEvents();
}

TEST_P(ServicesTest, WorkFromOtherThreadsKeepsItsOrder) {
    RunLoop& loop = services_->runLoop();
    std::string order;
    loop.global(QualityOfService::userInitiated, [&] {
        loop.asyncAfter(0.05, [&] { order += 'd'; });
        for (const char letter : {'a', 'b', 'c'})
            loop.async([&order, letter] { order += letter; });
    });
    EXPECT_TRUE(until([&] { return order.size() == 4; }));
    EXPECT_EQ(order, "abcd");
    // What a piece of work puts into its queue runs after it.
    order.clear();
    auto queue = loop.serialQueue("com.brimquill.test");
    std::atomic<bool> ended = false;
    queue->async([&] {
        order += 'a';
        queue->async([&] { order += 'b'; });
        queue->async([&] {
            order += 'd';
            ended = true;
        });
        order += '1';
    });
    EXPECT_TRUE(until([&] { return ended.load(); }));
    EXPECT_EQ(order, "a1bd");
}

TEST_P(ServicesTest, HotKeyFiresWhileItIsHeldAndIsFreeAfterwards) {
    constexpr Modifiers combination{true, true, false, false};
    int fired = 0;
    auto first = services_->hotKeys().registerHotKey(key::v, combination, [&] { ++fired; });
    ASSERT_EQ(first.status, HotKeys::noError);
    EXPECT_EQ(services_->hotKeys().registerHotKey(key::v, combination, [] {}).status, HotKeys::alreadyTaken);
    EXPECT_EQ(services_->hotKeys().registerHotKey(key::other, combination, [] {}).status, HotKeys::unavailable);
    for (int press = 1; press <= 2; ++press) {
        pressHotKey();
        EXPECT_TRUE(until([&] { return fired == press; }));
    }
    first.token.reset();
    EXPECT_EQ(services_->hotKeys().registerHotKey(key::v, combination, [] {}).status, HotKeys::noError);
}

TEST_P(ServicesTest, PanelsHandTheKeyboardToEachOtherAndBack) {
    QWindow below, above;
    auto palette = services_->panels().makePanel(below, PanelRole::keyable);
    auto tags = services_->panels().makePanel(above, PanelRole::keyable);
    ASSERT_TRUE(palette->show({100, 100, 300, 200}));
    EXPECT_TRUE(until([&] { return palette->isKey(); }));
    ASSERT_TRUE(tags->show({150, 150, 200, 100}));
    EXPECT_TRUE(until([&] { return tags->isKey() && !palette->isKey(); }));
    tags->close();
    EXPECT_TRUE(until([&] { return palette->isKey() && palette->isVisible() && !tags->isVisible(); }));
    palette->close();
    palette->close();
    EXPECT_FALSE(palette->isKey());
    EXPECT_FALSE(palette->isVisible());
}

TEST_P(ServicesTest, APanelLeavesTheKeyboardUntilItIsClicked) {
    QWindow below, above;
    auto palette = services_->panels().makePanel(below, PanelRole::keyable);
    auto tags = services_->panels().makePanel(above, PanelRole::keyable);
    palette->show({100, 100, 300, 200});
    tags->show({500, 100, 200, 100});
    ASSERT_TRUE(until([&] { return tags->isKey(); }));
    tags->resignKey();
    EXPECT_TRUE(until([&] { return palette->isKey() && tags->isVisible() && !tags->isKey(); }));
    click({600, 150});
    EXPECT_TRUE(until([&] { return tags->isKey() && !palette->isKey(); }));
    tags->resignKey();
    EXPECT_FALSE(tags->isKey() || palette->isKey()) << "a click takes the keyboard from all other panels";
    click({150, 150});
    EXPECT_TRUE(until([&] { return palette->isKey(); }));
}

TEST_P(ServicesTest, MonitorsTellOurKeysFromThoseOfOthers) {
    int global = 0, local = 0;
    std::string typed;
    Token seen = services_->eventMonitors().addGlobalMonitor(EventMask::keyDown, [&](const Event& event) {
        ++global;
        typed += event.characters;
    });
    Token own = services_->eventMonitors().addLocalMonitor(EventMask::keyDown, [&](const Event& event) {
        ++local;
        return event.keyCode == key::f && event.modifiers.command;
    });
    ASSERT_NE(seen, nullptr);
    if (world_ != nullptr) {
        world_->globalKey(key::b, {false, true, false, false}, "B");
    } else {
        ASSERT_EQ(runCommand("xdotool key B"), 0);
    }
    EXPECT_TRUE(until([&] { return global == 1; }));
    EXPECT_EQ(typed, "B");
    QWindow window;
    auto panel = services_->panels().makePanel(window, PanelRole::keyable);
    panel->show({100, 100, 300, 200});
    ASSERT_TRUE(until([&] { return panel->isKey(); }));
    if (world_ != nullptr) {
        EXPECT_EQ(world_->press(key::f, {true, false, false, false}, "f"), Delivery::swallowed);
    } else {
        ASSERT_EQ(runCommand("xdotool key ctrl+f"), 0);
    }
    EXPECT_TRUE(until([&] { return local == 1; }));
    EXPECT_EQ(global, 1);
}

TEST_P(ServicesTest, AccessIsGrantedAndTheScreenIsKnown) {
    EXPECT_TRUE(services_->accessibility().isProcessTrusted());
    const auto screen = services_->screens().main();
    ASSERT_TRUE(screen);
    EXPECT_GT(screen->visibleFrame.width, 0);
    EXPECT_LE(screen->visibleFrame.height, screen->frame.height);
    EXPECT_FALSE(services_->workspace().open("javascript:alert(1)"));
}

TEST_P(ServicesTest, TheProgramInFrontIsKnownAndNobodyWhenNobodyIs) {
    Workspace& workspace = services_->workspace();
    QProcess terminal;
    if (world_ != nullptr) {
        world_->workspace().bringToFront("com.apple.Terminal", "xterm");
    } else {
        terminal.start(QStringLiteral("xterm"), {QStringLiteral("-e"), QStringLiteral("cat")});
    }
    EXPECT_TRUE(until([&] {
        const auto front = workspace.frontmostApplication();
        return front && front->bundleIdentifier == "com.apple.Terminal" && front->localizedName;
    }));
    EXPECT_FALSE(workspace.frontmostApplication() == workspace.currentApplication());
    if (world_ != nullptr) {
        world_->workspace().setFrontmostApplication(std::nullopt);
    } else {
        terminal.kill();
        EXPECT_TRUE(until([&] { return terminal.state() == QProcess::NotRunning; }));
    }
    EXPECT_TRUE(until([&] { return !workspace.frontmostApplication(); }));
}

TEST_P(ServicesTest, PreferencesKeepTheirTypes) {
    UserDefaults& defaults = services_->defaults();
    defaults.set("yes", true);
    defaults.set("number", std::int64_t{42});
    defaults.set("words", std::vector<std::string>{"a", "ü"});
    EXPECT_EQ(defaults.boolean("yes"), true);
    EXPECT_EQ(defaults.integer("yes"), std::nullopt) << "a value of another type counts as absent";
    EXPECT_EQ(defaults.integer("number"), 42);
    EXPECT_EQ(defaults.stringArray("words"), (std::vector<std::string>{"a", "ü"}));
    defaults.set("number", std::string("changed"));
    EXPECT_EQ(defaults.string("number"), "changed");
    defaults.removeObject("number");
    EXPECT_EQ(defaults.object("number"), std::nullopt);
}

TEST_P(ServicesTest, PanelsThatTakeNoKeysLeaveThemWhereTheyAre) {
    QWindow keyed, toast, line;
    auto palette = services_->panels().makePanel(keyed, PanelRole::keyable);
    auto passive = services_->panels().makePanel(toast, PanelRole::passive);
    auto display = services_->panels().makePanel(line, PanelRole::display);
    ASSERT_TRUE(palette->show({100, 100, 300, 200}));
    EXPECT_TRUE(until([&] { return palette->isKey(); }));
    ASSERT_TRUE(passive->show({500, 100, 100, 50}));
    ASSERT_TRUE(display->show({500, 200, 100, 50}));
    EXPECT_TRUE(passive->isVisible() && display->isVisible());
    EXPECT_FALSE(passive->isKey() || display->isKey());
    EXPECT_TRUE(palette->isKey());
}

/// What a real terminal receives: typed text, also beyond the keyboard, and a paste in its own manner.
TEST(X11Desktop, TypesAndPastesIntoTheProgramInFront) {
    const auto services = createServices(userDefaultsDirectory().string());
    const auto file = userDefaultsDirectory().parent_path() / "received";
    QProcess terminal;
    terminal.setProcessEnvironment([] {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        return environment;
    }());
    terminal.start(QStringLiteral("xterm"), {QStringLiteral("-u8"), QStringLiteral("-e"),
                                             QStringLiteral("cat > '%1'").arg(QString::fromStdString(file.string()))});
    Workspace& workspace = services->workspace();
    ASSERT_TRUE(eventually([&] {
        const auto front = workspace.frontmostApplication();
        return front && front->bundleIdentifier == "com.apple.Terminal" && std::filesystem::exists(file);
    }));
    EXPECT_EQ(workspace.frontmostApplication()->processIdentifier, static_cast<int>(terminal.processId()));
    const auto received = [&] {
        std::ifstream in(file);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    auto queue = services->runLoop().serialQueue("com.brimquill.test");
    queue->async([&] { services->syntheticKeys().type("Hello, W\xc3\xb6rld \xe2\x82\xac\n"); });
    EXPECT_TRUE(eventually([&] { return received() == "Hello, W\xc3\xb6rld \xe2\x82\xac\n"; })) << received();
    services->pasteboard().write({"pasted", {}, {}, {}});
    EXPECT_TRUE(services->syntheticKeys().post(key::v, {true, false, false, false}));
    // The terminal asks for the selection and goes on reading keys meanwhile: a line ends after the paste at some
    // Return.
    EXPECT_TRUE(eventually([&] {
        services->syntheticKeys().post(key::returnKey, {});
        return received().find("pasted\n") != std::string::npos;
    })) << received();
    terminal.kill();
    EXPECT_TRUE(eventually([&] { return terminal.state() == QProcess::NotRunning; }));
    EXPECT_TRUE(eventually([&] { return !workspace.frontmostApplication(); }));
}

}  // namespace
}  // namespace brimquill::platform

#include "Platform/X11/X11Modifiers.h"
#include "tests/platform/ForeignClient.h"
#include "tests/platform/ServicesFixture.h"

#include <QWindow>

#include <atomic>
#include <chrono>
#include <thread>

namespace brimquill::platform {
namespace {

constexpr Modifiers command{.command = true};
constexpr Modifiers commandShift{.command = true, .shift = true};

using KeyboardContract = ServicesFixture;
INSTANTIATE_TEST_SUITE_P(Backends, KeyboardContract, testing::Bool(), backendName);

TEST_P(KeyboardContract, AHotKeyThatAnotherProgramHoldsFailsAlone) {
    std::optional<ForeignClient> other;
    if (world_ != nullptr) {
        world_->hotKeys().takeElsewhere(key::b, commandShift);
    } else {
        other.emplace();
        ASSERT_TRUE(other->holdKey(position::b, x11_modifiers::hotKeyMask(commandShift)));
    }
    int fired = 0;
    const auto taken = services_->hotKeys().registerHotKey(key::b, commandShift, [] { FAIL(); });
    EXPECT_EQ(taken.status, HotKeys::alreadyTaken);
    EXPECT_EQ(taken.token, nullptr);
    const auto free = services_->hotKeys().registerHotKey(key::v, commandShift, [&] { ++fired; });
    EXPECT_EQ(free.status, HotKeys::noError);
    pressHotKey();
    EXPECT_TRUE(until([&] { return fired == 1; }));
}

TEST_P(KeyboardContract, APanelGetsTheKeyboardWhenItsHolderLetsGo) {
    std::optional<ForeignClient> other;
    const auto hold = [&](bool holds) {
        if (world_ != nullptr) {
            world_->panels().setKeyboardHeldElsewhere(holds);
        } else if (holds) {
            other.emplace();
            ASSERT_TRUE(other->holdKeyboard());
        } else {
            other->releaseKeyboard();
        }
    };
    hold(true);
    QWindow window;
    auto panel = services_->panels().makePanel(window, PanelRole::keyable);
    EXPECT_TRUE(panel->show({100, 100, 300, 200}));
    EXPECT_TRUE(panel->isVisible());
    EXPECT_FALSE(panel->isKey());
    hold(false);
    EXPECT_TRUE(until([&] { return panel->isKey(); }));
    panel->close();
    // One that was closed meanwhile asks no more.
    if (other) {
        ASSERT_TRUE(eventually([&] { return other->holdKeyboard(); }));
    } else {
        hold(true);
    }
    panel->show({100, 100, 300, 200});
    panel->close();
    hold(false);
    bool later = false;
    services_->runLoop().asyncAfter(0.3, [&] { later = true; });
    EXPECT_TRUE(until([&] { return later; }));
    EXPECT_FALSE(panel->isKey());
}

class X11Keyboard : public testing::Test {
protected:
    ~X11Keyboard() override { other_.keysUp({position::shift, position::alt, position::super, position::control}); }
    std::optional<ForeignClient::Key> arrived() {
        std::optional<ForeignClient::Key> key;
        EXPECT_TRUE(eventually([&] { return (key = other_.nextKey()).has_value(); }));
        return key;
    }

    std::unique_ptr<Services> services_ = createServices(userDefaultsDirectory().string());
    ForeignClient other_;
};

TEST_F(X11Keyboard, ModifiersThatAreStillHeldDoNotChangeTheKeysSent) {
    struct Case {
        const char* what;
        std::vector<xcb_keycode_t> held;
        bool isLetGo;
    };
    const std::vector<Case> cases = {
        {"nothing", {}, false},
        {"the hot key's own, let go at once", {position::super, position::shift}, true},
        {"the hot key's own", {position::super, position::shift}, false},
        {"⌥", {position::alt}, false},
        {"⌃", {position::control}, false},
    };
    other_.takeFocus();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        other_.keysDown(test.held);
        EXPECT_TRUE(services_->syntheticKeys().post(key::v, command));
        if (test.isLetGo) other_.keysUp(test.held);
        const auto key = arrived();
        ASSERT_TRUE(key);
        EXPECT_EQ(key->keycode, position::v);
        EXPECT_EQ(key->modifiers, x11_modifiers::control);
        for (const auto keycode : test.held)
            EXPECT_FALSE(other_.isDown(keycode)) << "a modifier pressed again could stay down for ever";
        other_.keysUp(test.held);
    }
    other_.keysDown({position::shift});
    auto queue = services_->runLoop().serialQueue("com.brimquill.test");
    queue->async([&] { services_->syntheticKeys().type("ab"); });
    for (const auto letter : {position::a, position::b}) {
        const auto key = arrived();
        ASSERT_TRUE(key);
        EXPECT_EQ(key->keycode, letter);
        EXPECT_EQ(key->modifiers, 0);
    }
}

TEST_F(X11Keyboard, AHotKeyThatIsHeldCountsOnceHoweverLateItIsHeardOf) {
    int fired = 0;
    bool isMarked = false;
    const auto hotKey = services_->hotKeys().registerHotKey(key::v, commandShift, [&] { ++fired; });
    const auto marker = services_->hotKeys().registerHotKey(key::two, commandShift, [&] { isMarked = true; });
    ASSERT_EQ(hotKey.status, HotKeys::noError);
    ASSERT_EQ(marker.status, HotKeys::noError);
    const auto handleAll = [&] {
        isMarked = false;
        other_.press({position::super, position::shift, position::two});
        return eventually([&] { return isMarked; });
    };
    const std::vector<xcb_keycode_t> keys = {position::super, position::shift, position::v};
    for (int press = 1; press <= 2; ++press) {
        other_.keysDown(keys);
        // Nothing is handled here while the server repeats the key.
        std::this_thread::sleep_for(std::chrono::milliseconds(1200));
        other_.keysUp(keys);
        ASSERT_TRUE(handleAll());
        EXPECT_EQ(fired, press);
    }
    // Twice in a row, both heard of afterwards.
    other_.press(keys);
    other_.press(keys);
    ASSERT_TRUE(handleAll());
    EXPECT_EQ(fired, 4);
}

/// The keyboard's layout is another one for as long as this lives.
class Layout final {
public:
    explicit Layout(const std::string& name) { EXPECT_EQ(runCommand("setxkbmap " + name), 0); }
    ~Layout() { EXPECT_EQ(runCommand("setxkbmap us"), 0); }
};

TEST_F(X11Keyboard, ALayoutThatChangesIsFollowed) {
    struct Case {
        const char* layout;
        xcb_keycode_t hotKey;
        std::optional<xcb_keycode_t> noHotKey;
        const char* typed;
    };
    constexpr xcb_keycode_t dvorakV = 60;
    const std::vector<Case> cases = {
        {"dvorak", dvorakV, position::v, "f"},     {"us", position::v, dvorakV, "y"},
        {"de", position::v, std::nullopt, "z"},    {"ru", position::v, std::nullopt, "н"},
        {"ru,us", position::v, std::nullopt, "н"},
    };
    int fired = 0, markers = 0;
    std::string typed;
    const auto hotKey = services_->hotKeys().registerHotKey(key::v, commandShift, [&] { ++fired; });
    const auto marker = services_->hotKeys().registerHotKey(key::two, commandShift, [&] { ++markers; });
    ASSERT_EQ(hotKey.status, HotKeys::noError);
    ASSERT_EQ(marker.status, HotKeys::noError);
    const auto awaitMarker = [&] {
        const int before = markers;
        other_.press({position::super, position::shift, position::two});
        return eventually([&] { return markers > before; });
    };
    const Token seen = services_->eventMonitors().addGlobalMonitor(
        EventMask::keyDown, [&](const Event& event) { typed = event.characters; });
    for (const auto& test : cases) {
        SCOPED_TRACE(test.layout);
        const Layout layout(test.layout);
        fired = 0;
        EXPECT_TRUE(eventually([&] {
            other_.press({position::super, position::shift, test.hotKey});
            return fired > 0;
        }));
        EXPECT_TRUE(awaitMarker());
        fired = 0;
        if (test.noHotKey) other_.press({position::super, position::shift, *test.noHotKey});
        EXPECT_TRUE(awaitMarker());
        EXPECT_EQ(fired, 0) << "a key that has another symbol now";
        other_.takeFocus();
        EXPECT_TRUE(eventually([&] {
            other_.press({position::y});
            return typed == test.typed;
        })) << typed;
        while (other_.nextKey()) {
        }
        EXPECT_TRUE(services_->syntheticKeys().post(key::v, command));
        const auto key = arrived();
        ASSERT_TRUE(key);
        EXPECT_TRUE(other_.carries(key->keycode, XKB_KEY_v)) << int{key->keycode};
        EXPECT_EQ(key->modifiers, x11_modifiers::control);
    }
}

}  // namespace
}  // namespace brimquill::platform

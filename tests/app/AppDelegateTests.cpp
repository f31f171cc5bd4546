#include "Brimquill/AppDelegate.h"

#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/SecretDetector.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <fstream>
#include <memory>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr platform::Modifiers commandShift{.command = true, .shift = true};
constexpr platform::Modifiers commandOption{.command = true, .option = true};

class AppDelegateTest : public AppFixture {
protected:
    AppDelegateTest() {
        previousSink_ = log::setSink([this](std::string_view line) { lines.emplace_back(line); });
        world.workspace().bringToFront("org.gnome.gedit", "gedit");
        preferences.set("location", directory.path().string());
    }
    ~AppDelegateTest() override {
        log::setSink(previousSink_);
        SecretDetector::autoExpiryEnabled = true;
    }

    void start(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), "brimquill");
        delegate = std::make_unique<AppDelegate>(
            AppDelegate::Environment{world, store, settings, center, preferences, std::move(arguments)});
        delegate->applicationDidFinishLaunching();
    }
    bool isPaletteUp() { return delegate->palette().isVisible(); }

    std::vector<std::string> lines;
    platform::HeadlessDefaults preferences;
    std::unique_ptr<AppDelegate> delegate;

private:
    log::Sink previousSink_;
};

TEST_F(AppDelegateTest, StartsItsServicesInOrder) {
    settings.setCaptureScreenshotFiles(true);
    start();
    EXPECT_THAT(lines, ElementsAre("Brimquill: ready", "Brimquill: hotkey ⇧⌘V palette registered",
                                   "Brimquill: hotkey ⌥⌘V stack registered", "Brimquill: hotkey ⇧⌘2 OCR registered",
                                   "Brimquill: accessibility trusted=1",
                                   "Brimquill: watching screenshot folder " + directory.path().string()));
    world.copyText("captured");
    ASSERT_EQ(store.fetchHistory(10).size(), 1U);
}

TEST_F(AppDelegateTest, RunsOnWithoutAHotKeyThatSomebodyElseHolds) {
    world.hotKeys().takeElsewhere(platform::key::v, commandShift);
    world.accessibility().setTrusted(false);
    start();
    EXPECT_THAT(lines, testing::IsSupersetOf<std::string>(
                           {"Brimquill: hotkey ⌥⌘V stack registered", "Brimquill: accessibility trusted=0"}));
    EXPECT_THAT(lines, testing::Contains(HasSubstr("⇧⌘V palette FAILED to register")));
    EXPECT_TRUE(world.hotKeys().fire(platform::key::two, commandShift));
}

TEST_F(AppDelegateTest, TheFirstKeyTogglesThePalette) {
    start();
    EXPECT_TRUE(world.hotKeys().fire(platform::key::v, commandShift));
    EXPECT_TRUE(isPaletteUp());
    EXPECT_TRUE(world.hotKeys().fire(platform::key::v, commandShift));
    EXPECT_FALSE(isPaletteUp());
}

TEST_F(AppDelegateTest, TheSecondKeyPastesTheNextOfTheStack) {
    const auto clip = store.insert("from the stack", ClipKind::text);
    world.defaults().set(StackManager::itemsKey, std::vector<std::string>{std::to_string(clip->id)});
    start();
    world.hotKeys().fire(platform::key::v, commandShift);
    EXPECT_TRUE(world.hotKeys().fire(platform::key::v, commandOption));
    EXPECT_EQ(world.pasteboard().string(), "from the stack");
    EXPECT_FALSE(isPaletteUp()) << "it would be pasted into its field";
    world.advance(1);
    EXPECT_EQ(delegate->hud().model().text(), QStringLiteral("Stack finished"));
    EXPECT_EQ(world.syntheticKeys().posted().size(), 1U);
}

TEST_F(AppDelegateTest, TheStackIsPastedPastAFormThatIsBeingFilledIn) {
    const auto clip = store.insert("from the stack", ClipKind::text);
    world.defaults().set(StackManager::itemsKey, std::vector<std::string>{std::to_string(clip->id)});
    start();
    delegate->editPanel().show(*clip, {});
    ASSERT_TRUE(delegate->editPanel().panel().isKey());
    world.hotKeys().fire(platform::key::v, commandOption);
    world.advance(1);
    EXPECT_EQ(world.syntheticKeys().posted().size(), 1U);
    EXPECT_EQ(world.panels().keyPanel(), nullptr) << "the keystroke would go to the form";
    EXPECT_TRUE(delegate->editPanel().isVisible()) << "with what was typed into it";
}

TEST_F(AppDelegateTest, TheThirdKeySnipsWithThePaletteOutOfTheWay) {
    start();
    world.screenCapture().setPicture("picture");
    world.textRecognizer().setResult({{}, {"off the screen"}});
    world.hotKeys().fire(platform::key::v, commandShift);
    EXPECT_TRUE(world.hotKeys().fire(platform::key::two, commandShift));
    EXPECT_FALSE(isPaletteUp());
    EXPECT_EQ(world.screenCapture().targets().size(), 1U);
    world.advance(2);
    ASSERT_EQ(store.fetchHistory(10).size(), 1U);
    EXPECT_EQ(store.fetchHistory(10).front().kind, ClipKind::ocr);
}

TEST_F(AppDelegateTest, AFormThatIsBeingFilledInGivesWayToASnipAndComesBack) {
    const auto clip = store.insert("to be edited", ClipKind::text);
    start();
    delegate->editPanel().show(*clip, {});
    ASSERT_TRUE(delegate->editPanel().isVisible());
    world.hotKeys().fire(platform::key::two, commandShift);
    EXPECT_FALSE(delegate->editPanel().isVisible());
    world.advance(2);
    EXPECT_TRUE(delegate->editPanel().isVisible());
    EXPECT_EQ(store.fetchHistory(10).size(), 1U);
}

TEST_F(AppDelegateTest, ASnipThatIsOpenAtTheEndTellsNobody) {
    start();
    world.screenCapture().setPicture("picture");
    world.hotKeys().fire(platform::key::two, commandShift);
    delegate.reset();
    world.advance(10);
    EXPECT_TRUE(store.fetchHistory(10).empty());
}

TEST_F(AppDelegateTest, OpeningItAgainShowsThePaletteAndSaysHow) {
    start();
    for (const char* visible : {"0", "1"}) {
        lines.clear();
        world.instance().reopen();
        world.run();
        EXPECT_THAT(lines, testing::Contains(std::string("Brimquill: reopen event (visible windows=") + visible + ")"));
        EXPECT_TRUE(isPaletteUp());
        EXPECT_EQ(delegate->hud().model().text(),
                  QStringLiteral("Brimquill is running in your menu bar · ⇧⌘V opens this palette"));
        EXPECT_EQ(delegate->hud().model().symbol(), QStringLiteral("menubar.arrow.up.rectangle"));
    }
}

TEST_F(AppDelegateTest, OpenedAgainBeforeTheTourHasEndedItShowsTheTour) {
    int tours = 0;
    delegate = std::make_unique<AppDelegate>(
        AppDelegate::Environment{world, store, settings, center, preferences, {"brimquill"}, [&] { ++tours; }});
    delegate->applicationDidFinishLaunching();
    world.instance().reopen();
    EXPECT_EQ(tours, 1);
    EXPECT_FALSE(isPaletteUp());
    world.defaults().set("onboardingShown", true);
    world.instance().reopen();
    EXPECT_EQ(tours, 1);
    EXPECT_TRUE(isPaletteUp());
}

TEST_F(AppDelegateTest, AClickOnTheToastOpensThePalette) {
    start();
    world.copyText("captured");
    delegate->toast().model().open();
    EXPECT_TRUE(isPaletteUp());
}

TEST_F(AppDelegateTest, TheCommandLineCanAskForThePalette) {
    start({"--picker"});
    world.advance(0.49);
    EXPECT_FALSE(isPaletteUp());
    world.advance(0.02);
    EXPECT_TRUE(isPaletteUp());
}

TEST_F(AppDelegateTest, SettingsTuneTheCore) {
    start();
    settings.setMaxHistoryItems(123);
    EXPECT_EQ(store.retentionLimit.load(), 123);
    settings.setSecretAutoExpiry(false);
    EXPECT_FALSE(SecretDetector::autoExpiryEnabled);
    settings.setSecretAutoExpiry(true);
    EXPECT_TRUE(SecretDetector::autoExpiryEnabled);
}

TEST_F(AppDelegateTest, ASettingStartsAndStopsFollowingScreenshots) {
    const auto countAfter = [this](const char* name) {
        std::ofstream(directory.path() / name) << "\xFF\xD8 a picture \xFF\xD9";
        world.folderWatcher().change(directory.path().string());
        world.advance(5);
        return store.fetchHistory(10).size();
    };
    start();
    EXPECT_EQ(countAfter("Screenshot 1.jpg"), 0U);
    settings.setCaptureScreenshotFiles(true);
    const auto following = countAfter("Screenshot 2.jpg");
    EXPECT_GE(following, 1U);
    settings.setCaptureScreenshotFiles(false);
    EXPECT_EQ(countAfter("Screenshot 3.jpg"), following);
}

TEST_F(AppDelegateTest, ASettingMakesTheLoginItemOrSaysWhyNot) {
    start();
    settings.setLaunchAtLogin(true);
    EXPECT_TRUE(world.loginItem().isEnabled());
    settings.setLaunchAtLogin(false);
    EXPECT_FALSE(world.loginItem().isEnabled());

    world.loginItem().setFailure("read-only");
    testing::internal::CaptureStdout();
    settings.setLaunchAtLogin(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Launch at login unavailable: read-only\n");
}

}  // namespace
}  // namespace brimquill

#include "Brimquill/Capture/ClipboardWatcher.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using platform::ForeignCopy;

/// What another program would paste once the program that copied has quit.
class ClipboardKeeperTest : public AppFixture {
protected:
    static constexpr const char* secret = "482913";

    ClipboardKeeperTest() {
        world.workspace().bringToFront("org.gnome.gedit", "gedit");
        watcher.start();
    }

    void quitOwner() {
        world.pasteboard().quitOwner();
        world.run();
    }
    std::optional<std::string> pasted() {
        const auto& offered = world.pasteboard().offered();
        return offered ? offered->string : std::nullopt;
    }
    std::size_t storedCount() { return store.fetchHistory(100).size(); }
    /// Seconds until the newest clip expires.
    double untilExpiry() { return store.fetchHistory(1).front().expiresAt.value() - world.runLoop().now(); }

    ClipboardWatcher watcher{{store, settings, pasteService, toast, nullptr, center, world.pasteboard(),
                              world.workspace(), world.eventMonitors(), world.runLoop()}};
};

TEST_F(ClipboardKeeperTest, KeepsWhatIsCapturedAndNothingElse) {
    struct Case {
        const char* name;
        std::function<void(ForeignCopy&)> arrange;
        bool isKept;
    };
    const Case cases[] = {
        {"plain", [](ForeignCopy&) {}, true},
        {"concealed", [](ForeignCopy& c) { c.isConcealed = true; }, false},
        {"transient", [](ForeignCopy& c) { c.markers = {"org.nspasteboard.TransientType"}; }, false},
        {"ignored application",
         [this](ForeignCopy&) { world.workspace().bringToFront("com.bitwarden.desktop", "Bitwarden"); }, false},
        {"selected in a terminal",
         [this](ForeignCopy&) { world.workspace().bringToFront("io.alacritty", "Alacritty"); }, false},
        {"paused", [this](ForeignCopy&) { settings.setCapturePaused(true); }, false},
        {"resumed", [this](ForeignCopy&) { settings.setCapturePaused(false); }, true},
        {"repeated", [](ForeignCopy& c) { c.contents.string = "resumed"; }, true},
    };
    for (const Case& c : cases) {
        world.workspace().bringToFront("org.gnome.gedit", "gedit");
        ForeignCopy copy;
        copy.contents.string = c.name;
        c.arrange(copy);
        world.copy(copy);
        const std::size_t count = storedCount(), toasts = toast.contents.size();
        quitOwner();
        EXPECT_EQ(pasted(), c.isKept ? copy.contents.string : std::nullopt) << c.name;
        EXPECT_EQ(world.pasteboard().isOurs(), c.isKept) << c.name;
        world.advance(1);
        EXPECT_EQ(storedCount(), count) << c.name;
        EXPECT_EQ(toast.contents.size(), toasts) << c.name;
    }
}

TEST_F(ClipboardKeeperTest, KeepsAPictureThatIsCopiedWhileTheProgramQuits) {
    ForeignCopy copy;
    copy.contents.gif = std::make_shared<platform::Bytes>(3, 'x');
    world.pasteboard().copy(copy);
    quitOwner();
    ASSERT_TRUE(world.pasteboard().offered());
    EXPECT_EQ(world.pasteboard().offered()->gif, copy.contents.gif);
    EXPECT_EQ(storedCount(), 1U);
}

TEST_F(ClipboardKeeperTest, TakesAKeptSecretOffWhenItExpires) {
    world.copyText(secret);
    quitOwner();
    world.advance(untilExpiry() - 0.5);
    EXPECT_EQ(pasted(), secret);
    world.advance(0.6);
    EXPECT_EQ(pasted(), std::nullopt);
    world.advance(30);
    EXPECT_EQ(storedCount(), 0U);
}

TEST_F(ClipboardKeeperTest, LeavesASecretToItsOwnerAndLetsItGoWithIt) {
    world.copyText(secret);
    world.advance(untilExpiry() + 15);
    EXPECT_EQ(pasted(), secret);
    EXPECT_FALSE(world.pasteboard().isOurs());
    quitOwner();
    EXPECT_EQ(pasted(), std::nullopt);
}

TEST_F(ClipboardKeeperTest, TakesAPastedSecretOffWhenItExpires) {
    world.copyText(secret);
    const ClipItem clip = store.fetchHistory(1).front();
    const double left = untilExpiry();
    ClipItem other;
    other.text = "no secret";
    const std::vector<ClipItem> both{other, clip};
    const std::function<void()> pastes[] = {
        [&] { pasteService.paste(clip, false); },
        [&] { pasteService.pasteText("no secret\n" + clip.text, false, PasteService::soonestSecret(both)); },
    };
    settings.setCapturePaused(true);
    pastes[1]();
    world.run();
    pastes[0]();
    world.advance(left - 0.5);
    EXPECT_EQ(pasted(), secret);
    pastes[1]();
    world.advance(0.4);
    EXPECT_EQ(pasted(), "no secret\n" + clip.text);
    world.advance(0.2);
    EXPECT_EQ(pasted(), std::nullopt);
}

TEST_F(ClipboardKeeperTest, LeavesWhatCameAfterTheSecret) {
    world.copyText(secret);
    const ClipItem clip = store.fetchHistory(1).front();
    const double left = untilExpiry();
    ClipItem other;
    other.text = "no secret";
    const std::function<void()> replacements[] = {
        [&] { pasteService.paste(other, false); },
        [&] { world.copyText("no secret"); },
    };
    for (const auto& replace : replacements) {
        pasteService.paste(clip, false);
        world.run();
        replace();
        world.run();
    }
    pasteService.paste(clip, false);
    replacements[0]();
    world.advance(left + 15);
    EXPECT_EQ(pasted(), "no secret");
}

TEST_F(ClipboardKeeperTest, LeavesASecretThatWasMadeASnippet) {
    world.copyText(secret);
    quitOwner();
    const double left = untilExpiry();
    store.promoteToSnippet(store.fetchHistory(1).front().id, "code");
    world.advance(left + 15);
    EXPECT_EQ(pasted(), secret);
}

TEST_F(ClipboardKeeperTest, RepeatedSecretGoesWithItsClip) {
    world.copyText(secret);
    const double left = untilExpiry();
    world.advance(left / 2);
    world.copyText(secret);
    quitOwner();
    EXPECT_EQ(pasted(), secret);
    world.advance(left / 2 + 0.1);
    EXPECT_EQ(pasted(), std::nullopt);
}

}  // namespace
}  // namespace brimquill

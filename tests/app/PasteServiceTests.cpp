#include "Brimquill/Paste/PasteService.h"

#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Files.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <QImage>

#include <utility>
#include <vector>

namespace brimquill {
namespace {

using Posted = platform::HeadlessSyntheticKeys::Posted;
const Posted commandV{platform::key::v, {.command = true}};

/// A world whose background work waits until it is let go: disks that do not answer.
class SilentDisks final : public platform::RunLoop {
public:
    explicit SilentDisks(platform::RunLoop& inner) : inner_(inner) {}
    Date now() const override { return inner_.now(); }
    double uptime() const override { return inner_.uptime(); }
    void async(Work work) override { inner_.async(std::move(work)); }
    void asyncAfter(double seconds, Work work) override { inner_.asyncAfter(seconds, std::move(work)); }
    platform::Token after(double seconds, Work work) override { return inner_.after(seconds, std::move(work)); }
    platform::Token every(double seconds, Work work) override { return inner_.every(seconds, std::move(work)); }
    void global(platform::QualityOfService, Work work) override { held.push_back(std::move(work)); }
    std::unique_ptr<platform::SerialQueue> serialQueue(std::string label) override {
        return inner_.serialQueue(std::move(label));
    }
    void answer() {
        for (const auto& work : std::exchange(held, {}))
            work();
    }
    std::vector<Work> held;

private:
    platform::RunLoop& inner_;
};

class PasteServiceTest : public AppFixture {
protected:
    std::string file(const char* name, const std::string& content = "content") {
        const auto path = directory.path() / name;
        files::writePrivateFile(path, content);
        return path.string();
    }
    std::string image(const char* name, const char* format) {
        std::string path = (directory.path() / name).string();
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        picture.save(QString::fromStdString(path), format);
        return path;
    }
    static ClipItem clip(ClipKind kind, const std::string& text, std::optional<std::string> imagePath = {}) {
        ClipItem item;
        item.kind = kind;
        item.text = text;
        item.imagePath = std::move(imagePath);
        return item;
    }
    const platform::PasteboardContents& written() { return world.pasteboard().written().back(); }
};

TEST_F(PasteServiceTest, PutsTextThereAndExpandsSnippetsOnly) {
    ClipItem item = clip(ClipKind::text, "{date}");
    pasteService.paste(item, false);
    EXPECT_EQ(written().string, "{date}");
    item.name = "Today";
    pasteService.paste(item, false);
    EXPECT_EQ(written().string, "<{date}>");
    pasteService.paste(clip(ClipKind::image, "read off it", "/nowhere/gone.png"), false);
    world.run();
    EXPECT_EQ(written().string, "read off it");
    pasteService.paste(clip(ClipKind::ocr, "off the screen", file("o.png")), false);
    EXPECT_EQ(written().string, "off the screen");
    EXPECT_EQ(pasteService.selfWriteChangeCount(), world.pasteboard().changeCount());
    world.advance(1);
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
}

TEST_F(PasteServiceTest, KeepsTheFilesThatStillExist) {
    const std::string a = file("a"), b = file("b c");
    pasteService.paste(clip(ClipKind::file, a + "\n/nowhere/gone\n\n" + b + "\n"), true);
    world.run();
    EXPECT_THAT(written().filePaths, testing::ElementsAre(a, b));
    EXPECT_TRUE(hud.lines.empty());
    world.advance(0.15);
    EXPECT_THAT(world.syntheticKeys().posted(), testing::ElementsAre(commandV));
}

TEST_F(PasteServiceTest, LeavesThePasteboardAloneWhenAllFilesAreGone) {
    const int before = world.pasteboard().changeCount();
    pasteService.paste(clip(ClipKind::file, "/nowhere/gone"), true);
    world.advance(1);
    EXPECT_THAT(hud.lines,
                testing::ElementsAre(testing::Pair("Original file no longer exists", "questionmark.folder")));
    EXPECT_EQ(world.pasteboard().changeCount(), before);
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
}

TEST_F(PasteServiceTest, OffersPicturesInTheFormThatSuits) {
    const std::string png = image("p.png", "PNG"), jpeg = image("j.jpg", "JPG"), gif = file("g.GIF", "GIF89a");
    struct Case {
        std::string path, front;
        bool hasPng, hasGif, hasText;
    };
    for (const Case& c :
         {Case{png, "org.gnome.gedit", true, false, false}, Case{jpeg, "org.gnome.gedit", true, false, false},
          Case{gif, "org.gnome.gedit", false, true, false}, Case{png, "net.kovidgoyal.kitty", false, false, true},
          Case{gif, "com.apple.Terminal", false, false, true}}) {
        world.workspace().bringToFront(c.front);
        pasteService.paste(clip(ClipKind::image, "", c.path), false);
        world.run();
        EXPECT_EQ(written().png != nullptr, c.hasPng) << c.path << c.front;
        EXPECT_EQ(written().gif != nullptr, c.hasGif) << c.path << c.front;
        EXPECT_EQ(written().string, c.hasText ? std::optional(c.path) : std::nullopt) << c.path << c.front;
        EXPECT_EQ(written().filePaths, c.hasText ? std::vector<std::string>{} : std::vector{c.path}) << c.path;
        EXPECT_EQ(pasteService.selfWriteChangeCount(), world.pasteboard().changeCount());
    }
}

TEST_F(PasteServiceTest, LeavesAnEmptyPasteboardForAPictureThatCannotBeRead) {
    pasteService.paste(clip(ClipKind::image, "words", file("broken.png", "no picture")), true);
    world.advance(1);
    EXPECT_FALSE(written().string || written().png || written().gif || !written().filePaths.empty());
    EXPECT_NE(pasteService.selfWriteChangeCount(), world.pasteboard().changeCount());
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
    EXPECT_TRUE(hud.lines.empty());
}

TEST_F(PasteServiceTest, NeverReplacesANewerPasteByAPictureConvertedLate) {
    pasteService.paste(clip(ClipKind::image, "", image("j.jpg", "JPG")), false);
    pasteService.paste(clip(ClipKind::text, "newer"), false);
    world.run();
    EXPECT_EQ(written().string, "newer");
    EXPECT_EQ(world.pasteboard().written().size(), 2U) << "emptied for the picture, then the text";
}

TEST_F(PasteServiceTest, KeepsTheOrderOfWhatIsAskedForWhileADiskIsSlow) {
    SilentDisks disks(world.runLoop());
    PasteService slow({world.pasteboard(), world.workspace(), world.accessibility(), world.syntheticKeys(), disks, hud,
                       center, [](const std::string& text) { return text; }});
    const std::string path = file("a"), png = image("p.png", "PNG");
    std::vector<std::string> done;
    slow.paste(clip(ClipKind::file, path), true, [&](auto) { done.emplace_back("file"); });
    slow.paste(clip(ClipKind::image, "", png), false, [&](auto) { done.emplace_back("picture"); });
    slow.paste(clip(ClipKind::text, "text"), true, [&](auto) { done.emplace_back("text"); });
    slow.pasteText("several", false, {}, [&](auto) { done.emplace_back("several"); });
    world.advance(1);
    EXPECT_TRUE(world.pasteboard().written().empty());
    EXPECT_TRUE(world.syntheticKeys().posted().empty()) << "no key before there is something to paste";
    for (int step = 0; step < 3; ++step) {
        EXPECT_EQ(disks.held.size(), 1U);
        disks.answer();
        world.run();
    }
    const auto& all = world.pasteboard().written();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_THAT(all[0].filePaths, testing::ElementsAre(path));
    EXPECT_TRUE(all[1].png);
    EXPECT_EQ(all[2].string, "text");
    EXPECT_EQ(all[3].string, "several");
    EXPECT_THAT(done, testing::ElementsAre("file", "picture", "text", "several"));
    world.advance(0.15);
    EXPECT_THAT(world.syntheticKeys().posted(), testing::ElementsAre(commandV, commandV));
    world.advance(10);
    EXPECT_EQ(all.size(), 4U);
}

TEST_F(PasteServiceTest, TakesAFileWhoseDiskIsSilentForGone) {
    SilentDisks disks(world.runLoop());
    PasteService hung({world.pasteboard(), world.workspace(), world.accessibility(), world.syntheticKeys(), disks, hud,
                       center, [](const std::string& text) { return text; }});
    const std::string path = file("a"), png = image("p.png", "PNG");
    hung.paste(clip(ClipKind::file, path), true);
    hung.paste(clip(ClipKind::image, "read off", png), false);
    world.advance(1.9);
    EXPECT_TRUE(hud.lines.empty());
    world.advance(0.2);
    EXPECT_THAT(hud.lines, testing::ElementsAre(testing::Pair("Original file no longer exists", testing::_)));
    EXPECT_TRUE(world.pasteboard().written().empty());
    world.advance(2);
    EXPECT_EQ(written().string, "read off");
    // Two threads wait; no third one is spent, and nobody waits for it.
    hung.paste(clip(ClipKind::file, path), true);
    hung.paste(clip(ClipKind::text, "goes on"), false);
    EXPECT_EQ(hud.lines.size(), 2U);
    EXPECT_EQ(written().string, "goes on");
    EXPECT_EQ(disks.held.size(), 2U);
    // They answer after all: too late for what was asked, in time for what is asked next.
    disks.answer();
    world.run();
    EXPECT_EQ(written().string, "goes on");
    hung.paste(clip(ClipKind::file, path), false);
    disks.answer();
    world.run();
    EXPECT_THAT(written().filePaths, testing::ElementsAre(path));
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
}

TEST_F(PasteServiceTest, EmptiesThePasteboardForAPictureThatIsNotGivenOutInTime) {
    SilentDisks disks(world.runLoop());
    PasteService hung({world.pasteboard(), world.workspace(), world.accessibility(), world.syntheticKeys(), disks, hud,
                       center, [](const std::string& text) { return text; }});
    hung.paste(clip(ClipKind::image, "read off", image("p.png", "PNG")), true);
    disks.answer();
    world.run();
    world.advance(PasteFiles::readDeadline + 1);
    ASSERT_EQ(world.pasteboard().written().size(), 1U);
    EXPECT_FALSE(written().string || written().png || !written().filePaths.empty());
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
}

TEST_F(PasteServiceTest, PressesTheKeysOnceTheOtherProgramIsReady) {
    int posts = 0;
    const auto observation = center.observe(TourEvents::didPaste, &pasteService, [&](const Notification&) { ++posts; });
    pasteService.paste(clip(ClipKind::text, "one"), true);
    EXPECT_EQ(posts, 1);
    world.advance(0.1);
    pasteService.paste(clip(ClipKind::text, "two"), true);
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
    world.advance(0.06);
    EXPECT_EQ(world.syntheticKeys().posted().size(), 1U);
    world.advance(0.1);
    EXPECT_THAT(world.syntheticKeys().posted(), testing::ElementsAre(commandV, commandV));
}

TEST_F(PasteServiceTest, AsksTheUserToPasteWhereItMayNot) {
    world.accessibility().setTrusted(false);
    int posts = 0;
    const auto observation = center.observe(TourEvents::didPaste, &pasteService, [&](const Notification&) { ++posts; });
    pasteService.paste(clip(ClipKind::text, "one"), true);
    world.advance(1);
    EXPECT_EQ(posts, 1);
    EXPECT_EQ(world.accessibility().promptCount(), 1);
    EXPECT_EQ(written().string, "one");
    EXPECT_TRUE(world.syntheticKeys().posted().empty());
    EXPECT_THAT(hud.lines, testing::ElementsAre(
                               testing::Pair("Copied — press ⌘V (grant Accessibility to auto-paste)", "hand.raised")));
}

}  // namespace
}  // namespace brimquill

#include "Brimquill/Paste/PasteService.h"

#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/Foundation/Files.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <QImage>

namespace brimquill {
namespace {

using Posted = platform::HeadlessSyntheticKeys::Posted;
const Posted commandV{platform::key::v, {.command = true}};

class PasteServiceTest : public AppFixture {
protected:
    std::string file(const char* name, const std::string& content = "content") {
        const auto path = directory.path() / name;
        files::writePrivateFile(path, content);
        return path.string();
    }
    std::string image(const char* name, const char* format) {
        const std::string path = (directory.path() / name).string();
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

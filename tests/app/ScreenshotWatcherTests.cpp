#include "Brimquill/Capture/ScreenshotWatcher.h"
#include "BrimquillCore/Foundation/Log.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <QImage>

#include <fstream>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ScreenshotWatcherTest : public AppFixture {
protected:
    ScreenshotWatcherTest() {
        std::filesystem::create_directory(folder);
        world.defaults().set("location", folder.string());
        watcher.onCapture = [this] { ++captures; };
    }

    /// Files are dated by the real clock; the watcher's is virtual and starts long before.
    void save(const std::string& name, const char* tool = nullptr) const {
        QImage picture(20, 10, QImage::Format_RGB32);
        picture.fill(Qt::white);
        if (tool != nullptr) picture.setText(QStringLiteral("Software"), QString::fromUtf8(tool));
        ASSERT_TRUE(
            picture.save(QString::fromStdString((folder / name).string()), name.ends_with("jpg") ? "JPG" : "PNG"));
    }
    void changed() {
        world.folderWatcher().change(folder.string());
        world.advance(2);
    }
    std::vector<std::string> stored() {
        std::vector<std::string> names;
        for (const auto& clip : store.fetchHistory(100))
            names.push_back(clip.sourceApp.value_or("") + " " + std::string(rawValue(clip.kind)) + " " + clip.text);
        return names;
    }

    std::filesystem::path folder = directory.path() / "shots";
    OCRService ocr{
        {store, pasteService, toast, hud, center, world.runLoop(), world.textRecognizer(), world.screenCapture()}};
    ScreenshotWatcher watcher{
        {store, settings, toast, ocr, world.defaults(), world.folderWatcher(), world.runLoop(), world.screenCapture()}};
    int captures = 0;
};

TEST_F(ScreenshotWatcherTest, ANewScreenshotBecomesAClipFoundByItsWords) {
    world.textRecognizer().setResult({{}, {"words in it"}});
    watcher.start();
    save("Screenshot one.PNG");
    changed();
    EXPECT_THAT(stored(), ElementsAre("Screenshot image words in it"));
    EXPECT_EQ(store.search("words", 10).size(), 1U);
    EXPECT_EQ(captures, 2) << "when it came and when it was read";
    ASSERT_EQ(toast.contents.size(), 1U);
    EXPECT_EQ(toast.contents[0].title, "Screenshot captured");
    EXPECT_EQ(toast.contents[0].subtitle, "In your hoard — reading text…");
    EXPECT_TRUE(std::filesystem::exists(folder / "Screenshot one.PNG")) << "the file stays";
    const std::filesystem::path copy = *store.fetchHistory(1)[0].imagePath;
    EXPECT_TRUE(copy.filename().string().starts_with("shot-"));
    EXPECT_EQ(copy.extension(), ".PNG");
    changed();
    EXPECT_EQ(stored().size(), 1U) << "taken once";
}

TEST_F(ScreenshotWatcherTest, KnowsScreenshotsByNameAndByTheirTool) {
    watcher.start();
    save("screenshot.jpg");
    save("Bild.png", "gnome-screenshot");
    save("holiday.png", "camera");
    std::ofstream(folder / "Screenshot.tiff") << "II*";
    save(".Screenshot hidden.png");
    changed();
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(ScreenshotWatcherTest, TakesAFileThatIsStillBeingWrittenOnceWhole) {
    watcher.start();
    save("whole.png", "spectacle");
    std::ifstream whole(folder / "whole.png", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
    std::filesystem::remove(folder / "whole.png");
    std::ofstream(folder / "Screenshot.png", std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    changed();
    EXPECT_THAT(stored(), IsEmpty());
    std::ofstream(folder / "Screenshot.png", std::ios::binary) << bytes;
    changed();
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(ScreenshotWatcherTest, TakesOnlyWhatEndsAsItsFormatDoes) {
    using namespace std::string_literals;
    const std::string boxes = "\0\0\0\x10"s + "ftypheic\0\0\0\0"s + "\0\0\0\x0c"s + "mdatdata"s;
    const struct {
        const char* name;
        std::string bytes;
        bool isTaken;
    } cases[] = {
        {"Screenshot whole.heic", boxes, true},
        {"Screenshot open.heic", boxes.substr(0, 16) + "\0\0\0\0mdatand so on"s, true},
        {"Screenshot half.heic", boxes.substr(0, boxes.size() - 2), false},
        {"Screenshot head.heic", boxes.substr(0, 20), false},
        {"Screenshot half.jpg", "\xFF\xD8\xFF\xE0 some of it"s, false},
        {"Screenshot whole.jpg", "\xFF\xD8\xFF\xE0 all of it \xFF\xD9"s, true},
        {"Screenshot empty.png", "", false},
    };
    watcher.start();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const auto before = stored().size();
        std::ofstream(folder / test.name, std::ios::binary) << test.bytes;
        changed();
        EXPECT_EQ(stored().size() - before, test.isTaken ? 1U : 0U);
    }
}

TEST_F(ScreenshotWatcherTest, FollowsTheUsersWishThenTheDesktopsToolThenTheDesktop) {
    world.screenCapture().setSavingDirectory("/tool");
    EXPECT_EQ(watcher.directory(), folder);
    world.defaults().set("location", "~/shots");
    EXPECT_EQ(watcher.directory(), std::string(std::getenv("HOME")) + "/shots");
    world.defaults().removeObject("location");
    EXPECT_EQ(watcher.directory(), "/tool");
    world.screenCapture().setSavingDirectory(std::nullopt);
    EXPECT_EQ(watcher.directory().filename(), "Desktop");
}

TEST_F(ScreenshotWatcherTest, WordsReadAfterItsEndAreKept) {
    world.textRecognizer().setResult({{}, {"words in it"}});
    auto other = std::make_unique<ScreenshotWatcher>(ScreenshotWatcher::Environment{
        store, settings, toast, ocr, world.defaults(), world.folderWatcher(), world.runLoop(), world.screenCapture()});
    other->onCapture = [this] { ++captures; };
    other->start();
    save("Screenshot.png");
    world.folderWatcher().change(folder.string());
    world.advance(2 * OrderedWork::pause);
    ASSERT_EQ(captures, 1);
    other.reset();
    world.advance(2);
    EXPECT_EQ(store.search("words", 10).size(), 1U);
    EXPECT_EQ(captures, 1) << "nobody is there to be told";
}

TEST_F(ScreenshotWatcherTest, WhatComesDuringAPauseIsTakenAfterIt) {
    watcher.start();
    settings.setCapturePaused(true);
    save("Screenshot.png");
    changed();
    EXPECT_THAT(stored(), IsEmpty());
    settings.setCapturePaused(false);
    changed();
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(ScreenshotWatcherTest, OldFilesAndAStoppedWatcherTakeNothing) {
    save("Screenshot old.png");
    // From here on the watcher's clock is past every file there is.
    world.advance((Date::now() + 3600.0) - world.runLoop().now());
    watcher.start();
    changed();
    EXPECT_THAT(stored(), IsEmpty());
    watcher.stop();
    changed();
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(ScreenshotWatcherTest, AFolderThatCannotBeWatchedIsLogged) {
    std::vector<std::string> lines;
    const auto before = log::setSink([&](std::string_view line) { lines.emplace_back(line); });
    world.folderWatcher().setUnwatchable(folder.string());
    watcher.start();
    log::setSink(before);
    EXPECT_THAT(lines, ElementsAre("Brimquill: cannot watch screenshot folder " + folder.string()));
}

}  // namespace
}  // namespace brimquill

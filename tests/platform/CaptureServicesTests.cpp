#include "Platform/Desktop/DesktopFolderWatcher.h"
#include "Platform/Desktop/DesktopLoginItem.h"
#include "Platform/Desktop/DesktopRunLoop.h"
#include "Platform/Desktop/DesktopScreenCapture.h"
#include "Platform/Desktop/DesktopTextRecognizer.h"
#include "tests/platform/Desktop.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace brimquill::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

class CaptureServicesTest : public testing::Test {
protected:
    std::string path(const std::string& name) const { return directory_.path().toStdString() + "/" + name; }
    std::string script(const std::string& name, const std::string& text) const {
        std::ofstream(path(name)) << "#!/bin/sh\n" << text << "\n";
        fs::permissions(path(name), fs::perms::owner_all);
        return path(name);
    }
    /// What one picture gives; waits for it.
    TextRecognizer::Result read(TextRecognizer& recognizer, const std::string& file) {
        TextRecognizer::Result result;
        int answers = 0;
        recognizer.recognize(file, QualityOfService::utility, [&](TextRecognizer::Result given) {
            result = std::move(given);
            ++answers;
        });
        EXPECT_EQ(answers, 0) << "never from within the call";
        EXPECT_TRUE(eventually([&] { return answers > 0; }));
        EXPECT_EQ(answers, 1);
        return result;
    }

private:
    const std::unique_ptr<DesktopRunLoop, DesktopRunLoop::End> ownedRunLoop_ = DesktopRunLoop::make();
    QTemporaryDir directory_;

protected:
    DesktopRunLoop& runLoop = *ownedRunLoop_;
};

TEST_F(CaptureServicesTest, PicturesThatSomebodyWaitsForGoFirst) {
    const auto echo = script("echo", R"(while read -r line; do echo '{"codes": [], "lines": ["read"]}'; done)");
    DesktopTextRecognizer recognizer(runLoop, {.helper = echo});
    std::string order;
    recognizer.recognize("/1", QualityOfService::utility, [&](const auto&) { order += '1'; });
    recognizer.recognize("/2", QualityOfService::utility, [&](const auto&) { order += '2'; });
    recognizer.recognize("/3", QualityOfService::userInitiated, [&](const auto&) { order += '3'; });
    EXPECT_TRUE(eventually([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "132");
}

TEST_F(CaptureServicesTest, AHelperThatFailsGivesNothingAndIsReplaced) {
    struct Case {
        const char* what;
        std::string helper;
        double deadline;
    };
    const std::vector<Case> cases = {
        {"is missing", path("missing"), 30},
        {"ends at once", script("ends", "exit 3"), 30},
        {"is killed", script("killed", "read -r line; kill -9 $$"), 30},
        {"answers nonsense", script("nonsense", "while read -r line; do echo nonsense; done"), 30},
        {"hangs", script("hangs", "exec sleep 1000"), 0.2},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        DesktopTextRecognizer recognizer(runLoop, {.helper = test.helper, .deadline = test.deadline});
        EXPECT_EQ(read(recognizer, "/a.png"), TextRecognizer::Result{});
        EXPECT_EQ(read(recognizer, "/b.png"), TextRecognizer::Result{});
    }
    // Fails for its first picture only.
    const auto once = script("once", "if [ -e '" + path("failed") +
                                         "' ]; then read -r line; echo '{\"lines\": [\"ok\"]}'; cat; "
                                         "else touch '" +
                                         path("failed") + "'; fi");
    DesktopTextRecognizer recognizer(runLoop, {.helper = once});
    EXPECT_THAT(read(recognizer, "/a.png").lines, IsEmpty());
    EXPECT_THAT(read(recognizer, "/b.png").lines, ElementsAre("ok"));
}

TEST_F(CaptureServicesTest, AnIdleHelperGoes) {
    const auto echo = script("echo", R"(while read -r line; do echo '{"lines": []}'; done)");
    DesktopTextRecognizer recognizer(runLoop, {.helper = echo, .idleTime = 0.05});
    read(recognizer, "/a.png");
    EXPECT_TRUE(eventually([&] { return !recognizer.isHelperRunning(); }));
}

TEST_F(CaptureServicesTest, AScreenCaptureEndsOnceWhateverItsToolDoes) {
    struct Case {
        const char* what;
        std::string tool;
        double longest;
        bool saves;
    };
    const std::vector<Case> cases = {
        {"saves", script("saves", "for target; do :; done; echo picture > \"$target\""), 30, true},
        {"is cancelled", script("cancelled", "exit 1"), 30, false},
        {"is left alone", script("left", "exec sleep 1000"), 0.2, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        DesktopScreenCapture capture(runLoop, {.tool = test.tool, .longest = test.longest});
        const auto target = path(std::string(test.what) + ".png");
        int ends = 0;
        ASSERT_EQ(capture.captureInteractively(target, [&] { ++ends; }), ScreenCapture::Launch::started);
        EXPECT_TRUE(eventually([&] { return ends > 0; }));
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(fs::exists(target), test.saves);
        if (test.saves) {
            EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
        }
    }
    DesktopScreenCapture missing(runLoop, {.tool = path("missing")});
    EXPECT_EQ(missing.captureInteractively(path("x.png"), [] { FAIL(); }), ScreenCapture::Launch::failed);
}

TEST_F(CaptureServicesTest, AFolderTellsOfNewFilesUntilItIsNoLongerWatched) {
    DesktopFolderWatcher watcher;
    int changes = 0;
    auto watch = watcher.watch(path(""), [&] { ++changes; });
    ASSERT_NE(watch, nullptr);
    std::ofstream(path("new.png")) << "x";
    EXPECT_TRUE(eventually([&] { return changes > 0; }));
    watch.reset();
    auto other = watcher.watch(path(""), [&] { changes = -1; });
    std::ofstream(path("newer.png")) << "x";
    EXPECT_TRUE(eventually([&] { return changes == -1; })) << "only the watch that is held is told";
    EXPECT_EQ(watcher.watch(path("missing"), [] {}), nullptr);
    EXPECT_EQ(watcher.watch(path("new.png"), [] {}), nullptr);
}

TEST_F(CaptureServicesTest, TheLoginEntryComesAndGoes) {
    const fs::path folder = path("autostart");
    DesktopLoginItem item(folder, "/opt/a \"b\" 100%/brimquill");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
    std::ifstream entry(folder / "brimquill.desktop");
    const std::string text{std::istreambuf_iterator<char>(entry), {}};
    EXPECT_THAT(text, testing::HasSubstr("\nExec=\"/opt/a \\\"b\\\" 100%%/brimquill\"\n"));
    std::ofstream(folder / "brimquill.desktop", std::ios::app) << "Hidden=true\n";
    EXPECT_FALSE(item.isEnabled()) << "the desktop has switched it off";
    EXPECT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_FALSE(fs::exists(folder / "brimquill.desktop"));
    EXPECT_EQ(item.setEnabled(false), std::nullopt) << "it is off already";
    std::ofstream(path("file")) << "x";
    DesktopLoginItem hopeless(path("file") + "/autostart", "/opt/brimquill");
    EXPECT_NE(hopeless.setEnabled(true), std::nullopt);
}

}  // namespace
}  // namespace brimquill::platform

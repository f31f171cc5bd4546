#include "Platform/X11/X11PasteboardFormats.h"
#include "tests/platform/SelectionWorld.h"

#include <gmock/gmock.h>

namespace brimquill::platform::testing {
namespace {

using namespace std::chrono_literals;

/// What other programs get of what the program itself put on the clipboard.
class X11PasteboardOffer : public ::testing::Test {
protected:
    /// Writes and waits until the clipboard is ours.
    void offer(const PasteboardContents& contents) {
        const auto marker = world_.peer({"own"});
        ASSERT_TRUE(marker->waitForLine("owned"));
        world_.pasteboard().write(contents);
        ASSERT_TRUE(marker->waitForLine("lost"));
    }

    SharedBytes bytes(const std::string& text) { return std::make_shared<const Bytes>(x11_formats::bytes(text)); }

    SelectionWorld world_;
};

TEST_F(X11PasteboardOffer, TextInEveryForm) {
    offer({.string = "Grüße €", .filePaths = {}, .png = nullptr, .gif = nullptr});
    for (const std::string target : {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"})
        EXPECT_EQ(world_.pasted(target), "Grüße €") << target;
    EXPECT_EQ(world_.pasted("STRING"),
              "Gr\xFC\xDF"
              "e ?");
    for (const std::string target : {"image/png", "text/uri-list", "MULTIPLE", "x-unknown"})
        EXPECT_EQ(world_.pasted(target), "refused") << target;
    EXPECT_EQ(world_.pasted("SAVE_TARGETS"), "");
    EXPECT_EQ(world_.pasted("TIMESTAMP").size(), 4U);
    EXPECT_EQ(world_.pasted("TARGETS").size(), 9 * 4U);
}

TEST_F(X11PasteboardOffer, FilesAsUrlsAndAsText) {
    offer({.string = std::nullopt, .filePaths = {"/a b", "/ü%"}, .png = nullptr, .gif = nullptr});
    EXPECT_EQ(world_.pasted("text/uri-list"), "file:///a%20b\r\nfile:///%C3%BC%25\r\n");
    EXPECT_EQ(world_.pasted("x-special/gnome-copied-files"), "copy\nfile:///a%20b\nfile:///%C3%BC%25");
    EXPECT_EQ(world_.pasted("UTF8_STRING"), "/a b\n/ü%");
}

TEST_F(X11PasteboardOffer, PictureBesideItsFile) {
    offer({.string = std::nullopt, .filePaths = {"/p.png"}, .png = bytes("png"), .gif = bytes("gif")});
    EXPECT_EQ(world_.pasted("image/png"), "png");
    EXPECT_EQ(world_.pasted("image/gif"), "gif");
    EXPECT_EQ(world_.pasted("text/uri-list"), "file:///p.png\r\n");
    EXPECT_EQ(world_.pasted("UTF8_STRING"), "refused");
}

TEST_F(X11PasteboardOffer, SeveralTargetsInOneRequest) {
    offer({.string = "text", .filePaths = {}, .png = bytes("png"), .gif = nullptr});
    EXPECT_EQ(world_.pasted("UTF8_STRING,image/gif,image/png"), "text\nrefused\npng\n");
}

TEST_F(X11PasteboardOffer, NothingIsServedOfAnEmptyWrite) {
    offer({.string = "full", .filePaths = {}, .png = nullptr, .gif = nullptr});
    offer({});
    EXPECT_EQ(world_.pasted("UTF8_STRING"), "refused");
}

TEST_F(X11PasteboardOffer, LastOfManyWritesIsServed) {
    for (int i = 0; i < 100; ++i)
        world_.pasteboard().write({.string = std::to_string(i), .filePaths = {}, .png = nullptr, .gif = nullptr});
    EXPECT_TRUE(world_.waitFor([&] { return world_.pasted("UTF8_STRING") == "99"; }));
    EXPECT_EQ(world_.pasteboard().string(), "99");
}

TEST_F(X11PasteboardOffer, LargePictureGoesToSeveralAtOnceThoughOthersDieOrHang) {
    offer({.string = std::nullopt,
           .filePaths = {},
           .png = std::make_shared<const Bytes>(pattern(20'000'000)),
           .gif = nullptr});
    const auto hanging = world_.peer({"get", "image/png", "--hang"});
    ASSERT_TRUE(hanging->waitForLine("hanging"));
    const auto dying = world_.peer({"get", "image/png", "--die-after", "1000000"});
    const auto first = world_.peer({"get", "image/png"});
    const auto second = world_.peer({"get", "image/png"});
    const Bytes expected = pattern(20'000'000);
    for (const auto& requestor : {first.get(), second.get()}) {
        EXPECT_EQ(requestor->wait(), 0);
        EXPECT_TRUE(Bytes(requestor->output().begin(), requestor->output().end()) == expected);
    }
    EXPECT_EQ(dying->wait(), 0);
    EXPECT_EQ(world_.pasted("TIMESTAMP").size(), 4U);
}

TEST_F(X11PasteboardOffer, TransferUnderWayEndsWellAfterTheClipboardWasLost) {
    offer({.string = std::nullopt,
           .filePaths = {},
           .png = std::make_shared<const Bytes>(pattern(20'000'000)),
           .gif = nullptr});
    const auto requestor = world_.peer({"get", "image/png"});
    ASSERT_TRUE(world_.waitFor([&] { return !requestor->output().empty() || !world_.pasted("TARGETS").empty(); }));
    const auto other = world_.peer({"own", "--offer", "UTF8_STRING=other"});
    EXPECT_TRUE(world_.waitFor([&] { return world_.pasteboard().string() == "other"; }));
    const int status = requestor->wait();
    // Refused when the other program was the faster one, else complete.
    EXPECT_TRUE(status == 1 || requestor->output().size() == 20'000'000U);
}

TEST_F(X11PasteboardOffer, PrimaryCarriesTheText) {
    EXPECT_FALSE(world_.pasteboard().write({}) == 0 || world_.pasteboard().offerPrimary()) << "there is no text";
    offer({.string = "for the terminal", .filePaths = {}, .png = nullptr, .gif = nullptr});
    ASSERT_TRUE(world_.waitFor([&] { return world_.pasteboard().offerPrimary(); }));
    const auto requestor = world_.peer({"get", "UTF8_STRING", "--selection", "PRIMARY"});
    EXPECT_EQ(requestor->wait(), 0);
    EXPECT_EQ(requestor->output(), "for the terminal");
}

TEST_F(X11PasteboardOffer, OtherProgramsPasteIt) {
    offer({.string = "for xclip", .filePaths = {}, .png = nullptr, .gif = nullptr});
    Process xclip({"xclip", "-selection", "clipboard", "-o"}, "DISPLAY=" + XServer::shared().display());
    EXPECT_EQ(xclip.wait(), 0);
    EXPECT_EQ(xclip.output(), "for xclip");
}

}  // namespace
}  // namespace brimquill::platform::testing

#include "Brimquill/Capture/OCRService.h"
#include "Brimquill/Surfaces/TourEvents.h"
#include "BrimquillCore/SecretDetector.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

namespace brimquill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class OCRServiceTest : public AppFixture {
protected:
    OCRService ocr{
        {store, pasteService, toast, hud, center, world.runLoop(), world.textRecognizer(), world.screenCapture()}};
    int completions = 0;
    std::optional<ClipItem> clip;

    void snip() {
        ocr.captureAndRecognize([this](std::optional<ClipItem> stored) {
            ++completions;
            clip = std::move(stored);
        });
        world.advance(5);
    }
    bool hasPictures() const { return !std::filesystem::is_empty(store.imagesDirectory); }
};

TEST_F(OCRServiceTest, ASnipBecomesAClipAndLiesOnThePasteboard) {
    world.screenCapture().setPicture("picture");
    world.textRecognizer().setResult({{"https://example.com"}, {" first line", "second"}});
    NotificationCenter::Observation observation;
    std::vector<std::string> kinds;
    observation = center.observe(TourEvents::didCapture, nullptr,
                                 [&](const Notification& n) { kinds.push_back(n.userInfo.at("kind")); });
    snip();
    ASSERT_EQ(completions, 1);
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->text, "https://example.com\n first line\nsecond") << "payloads first, nothing trimmed";
    EXPECT_EQ(clip->kind, ClipKind::ocr);
    EXPECT_EQ(clip->sourceApp, "Screen OCR");
    EXPECT_FALSE(clip->sourceBundleId);
    EXPECT_TRUE(std::filesystem::exists(*clip->imagePath));
    EXPECT_TRUE(std::filesystem::path(*clip->imagePath).filename().string().starts_with("ocr-"));
    EXPECT_EQ(world.pasteboard().string(), clip->text);
    EXPECT_EQ(pasteService.selfWriteChangeCount(), world.pasteboard().changeCount()) << "or it is captured again";
    ASSERT_EQ(toast.contents.size(), 1U);
    EXPECT_EQ(toast.contents[0].title, "Captured 38 characters");
    EXPECT_EQ(toast.contents[0].subtitle, "On your clipboard · in your hoard");
    EXPECT_EQ(toast.occasions[0], CaptureToast::Occasion::answer);
    EXPECT_THAT(kinds, ElementsAre("ocr"));
    EXPECT_EQ(world.textRecognizer().requests().at(0).qos, platform::QualityOfService::userInitiated);
}

TEST_F(OCRServiceTest, ACancelledSnipStoresAndShowsNothing) {
    snip();
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(clip);
    EXPECT_TRUE(store.fetchHistory(10).empty());
    EXPECT_THAT(hud.lines, IsEmpty());
    EXPECT_THAT(toast.contents, IsEmpty());
}

TEST_F(OCRServiceTest, ASnipWithoutTextLeavesNoFile) {
    world.screenCapture().setPicture("picture");
    world.textRecognizer().setResult({{}, {"  ", ""}});
    snip();
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(clip);
    EXPECT_FALSE(hasPictures());
    EXPECT_TRUE(store.fetchHistory(10).empty());
    EXPECT_THAT(hud.lines, ElementsAre(Pair("No text found", "eye.slash")));
}

TEST_F(OCRServiceTest, AMissingToolIsTold) {
    world.screenCapture().setAvailable(false);
    snip();
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(clip);
    EXPECT_THAT(hud.lines, ElementsAre(Pair("Could not launch screencapture", "exclamationmark.triangle.fill")));
}

TEST_F(OCRServiceTest, ASecretReadOffTheScreenExpires) {
    world.screenCapture().setPicture("picture");
    world.textRecognizer().setResult({{}, {"482913"}});
    SecretDetector::autoExpiryEnabled = true;
    snip();
    ASSERT_TRUE(clip && clip->expiresAt);
    EXPECT_GT(*clip->expiresAt, clip->createdAt);
}

}  // namespace
}  // namespace brimquill

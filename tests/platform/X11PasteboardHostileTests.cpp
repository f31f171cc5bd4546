#include "tests/platform/SelectionWorld.h"

#include <gmock/gmock.h>

namespace brimquill::platform::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Optional;
using namespace std::chrono_literals;

/// Short patience, so that the tests need none; long enough for an honest owner on a busy machine.
X11PasteboardOptions impatient() {
    X11PasteboardOptions options;
    options.stepDeadline = 2s;
    options.readBound = 4s;
    options.restartPause = 50ms;
    return options;
}

X11PasteboardOptions endlesslyPatient() {
    X11PasteboardOptions options;
    options.stepDeadline = 1h;
    options.readBound = 1h;
    return options;
}

class X11PasteboardHostile : public ::testing::Test {
protected:
    void begin(X11PasteboardOptions options, XServer& server = XServer::shared()) {
        world_ = std::make_unique<SelectionWorld>(std::move(options), server);
        marker_ = world_->peer({"own", "--offer", "UTF8_STRING=before the test"});
        ASSERT_TRUE(waitForString("before the test"));
        countBefore_ = pasteboard().changeCount();
        pasteboard().setChangeHandler([this] {
            strings_.push_back(pasteboard().string().value_or("none"));
            sawImage_ |= pasteboard().data(pasteboard_type::png) != nullptr;
        });
    }

    X11Pasteboard& pasteboard() { return world_->pasteboard(); }
    std::unique_ptr<Process> own(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "own");
        return world_->peer(arguments);
    }
    bool waitForString(const std::string& text) {
        return world_->waitFor([&] { return pasteboard().string() == text; });
    }
    bool waitForChange() {
        return world_->waitFor([this] { return pasteboard().changeCount() > countBefore_; });
    }
    /// The pasteboard still does its work for an honest owner.
    void expectStillWorks() {
        const auto honest = own({"--offer", "UTF8_STRING=honest"});
        EXPECT_TRUE(waitForString("honest"));
    }

    std::unique_ptr<SelectionWorld> world_;
    std::unique_ptr<Process> marker_;
    int countBefore_ = 0;
    std::vector<std::string> strings_;
    bool sawImage_ = false;
};

TEST_F(X11PasteboardHostile, OwnerThatNeverAnswersIsGivenUp) {
    begin(impatient());
    const auto owner = own({"--do", "hang", "--offer", "UTF8_STRING=text"});
    ASSERT_TRUE(waitForChange());
    EXPECT_TRUE(world_->waitForLog("does not answer"));
    EXPECT_EQ(pasteboard().types(), std::nullopt);
    EXPECT_THAT(strings_, ElementsAre("none"));
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, OwnerThatHangsAfterTheTypesLeavesThemAlone) {
    begin(impatient());
    const auto owner = own({"--do", "hang@UTF8_STRING", "--offer", "UTF8_STRING=text", "--offer", "image/png=png"});
    ASSERT_TRUE(waitForChange());
    EXPECT_THAT(pasteboard().types(), Optional(ElementsAre(pasteboard_type::string, pasteboard_type::png)));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_FALSE(sawImage_);
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, HintThatIsAnnouncedAndWithheldCountsAsSecret) {
    begin(impatient());
    const auto owner = own({"--do", "refuse@x-kde-passwordManagerHint", "--offer", "UTF8_STRING=hunter2", "--offer",
                            "x-kde-passwordManagerHint=secret"});
    ASSERT_TRUE(waitForChange());
    EXPECT_THAT(pasteboard().types(), Optional(Contains(pasteboard_type::concealed)));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_FALSE(owner->output().find("UTF8_STRING") != std::string::npos) << "the secret was asked for";
}

TEST_F(X11PasteboardHostile, PasteFromUsWorksWhileAnOwnerHangs) {
    begin(endlesslyPatient());
    const auto owner = own({"--do", "hang", "--offer", "UTF8_STRING=text"});
    ASSERT_TRUE(owner->waitForLine("hung at TARGETS"));
    pasteboard().write({.string = "ours", .filePaths = {}, .png = nullptr, .gif = nullptr});
    ASSERT_TRUE(owner->waitForLine("lost"));
    EXPECT_EQ(world_->pasted("UTF8_STRING"), "ours");
    EXPECT_EQ(pasteboard().string(), "ours");
}

TEST_F(X11PasteboardHostile, EndsWhileAnOwnerHangs) {
    begin(endlesslyPatient());
    const auto owner = own({"--do", "hang", "--offer", "UTF8_STRING=text"});
    ASSERT_TRUE(owner->waitForLine("hung at TARGETS"));
    world_->destroyPasteboard();
    // That this is reached at all is the point: the owner would be waited for during an hour.
    EXPECT_EQ(owner->output().find("lost"), std::string::npos);
}

TEST_F(X11PasteboardHostile, OwnerThatDiesInMidTransferLeavesNothing) {
    begin(impatient());
    const auto owner = own({"--do", "die@image/png", "--offer-pattern", "image/png=1000000"});
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().types(), std::nullopt);
    EXPECT_FALSE(sawImage_);
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, OwnersDeathCountsAndEmpties) {
    X11PasteboardOptions options = impatient();
    options.decisionDeadline = 1ms;
    begin(options);
    marker_->kill();
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().changeCount(), countBefore_ + 1);
    EXPECT_EQ(pasteboard().types(), std::nullopt);
    EXPECT_EQ(pasteboard().string(), std::nullopt);
}

TEST_F(X11PasteboardHostile, AnnouncedSizeIsNotBelieved) {
    begin(impatient());
    const auto owner = own({"--do", "huge@UTF8_STRING", "--offer", "UTF8_STRING=small after all"});
    EXPECT_TRUE(waitForString("small after all"));
}

TEST_F(X11PasteboardHostile, PieceThatIsAnnouncedTwiceIsNotTakenForTheEnd) {
    begin(impatient());
    const std::string words = "the words of an owner that does not wait";
    const auto owner = own({"--do", "hasty@UTF8_STRING", "--chunk", "3", "--offer", "UTF8_STRING=" + words});
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().string(), words);
}

TEST_F(X11PasteboardHostile, EndlessTransferEndsAtTheCap) {
    X11PasteboardOptions options = impatient();
    options.cap = 8 << 20;
    options.readBound = 1h;
    begin(options);
    const auto owner = own({"--do", "endless@image/png", "--offer", "image/png=x"});
    ASSERT_TRUE(world_->waitForLog("A copy of over 8 MiB was refused"));
    ASSERT_TRUE(waitForChange());
    EXPECT_THAT(pasteboard().types(), Optional(ElementsAre(pasteboard_type::png)));
    EXPECT_FALSE(sawImage_);
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, LargePropertyIsRefusedUnread) {
    X11PasteboardOptions options = impatient();
    options.cap = 1 << 20;
    begin(options);
    const auto owner = own({"--chunk", "4000000", "--offer-pattern", "image/png=3000000"});
    ASSERT_TRUE(world_->waitForLog("A copy of over 1 MiB was refused"));
    ASSERT_TRUE(waitForChange());
    EXPECT_FALSE(sawImage_);
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, TrickleEndsAtTheBound) {
    begin(impatient());
    const auto owner = own({"--do", "trickle@UTF8_STRING", "--offer", "UTF8_STRING=x"});
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_TRUE(world_->waitForLog("does not answer"));
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, OwnerThatRefusesAllLeavesNothing) {
    begin(impatient());
    const auto owner = own({"--do", "refuse", "--offer", "UTF8_STRING=text"});
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().types(), std::nullopt);
    EXPECT_THAT(strings_, ElementsAre("none"));
}

TEST_F(X11PasteboardHostile, OwnerThatOffersThousandsOfTypesIsRead) {
    begin(impatient());
    const auto owner = own({"--do", "many@TARGETS", "--offer", "UTF8_STRING=among many"});
    EXPECT_TRUE(waitForString("among many"));
}

TEST_F(X11PasteboardHostile, ChangeDuringTheReadLeavesTheNewestAlone) {
    for (const std::string at : {"TARGETS", "UTF8_STRING"}) {
        begin(impatient());
        strings_.clear();
        const auto owner = own({"--do", "change@" + at, "--offer", "UTF8_STRING=outdated"});
        ASSERT_TRUE(waitForString("after")) << at;
        EXPECT_THAT(strings_, ElementsAre("after")) << at;
    }
}

TEST_F(X11PasteboardHostile, OwnerThatClaimsAnewAtEachRequestIsLeftAlone) {
    begin(impatient());
    const auto owner = own({"--do", "reown", "--offer", "UTF8_STRING=text"});
    ASSERT_TRUE(world_->waitForLog("changes faster than it answers"));
    ASSERT_TRUE(waitForChange());
    EXPECT_THAT(strings_, ElementsAre("none"));
    expectStillWorks();
}

TEST_F(X11PasteboardHostile, EveryChangeOfABurstArrives) {
    begin(endlesslyPatient());
    constexpr int count = 500;
    const auto owner = own({"--changes", std::to_string(count), "--every", "20"});
    ASSERT_TRUE(waitForString("change 500"));
    ASSERT_EQ(strings_.size(), count);
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(strings_[static_cast<std::size_t>(i)], "change " + std::to_string(i + 1));
    EXPECT_EQ(pasteboard().changeCount(), countBefore_ + count);
}

TEST_F(X11PasteboardHostile, ChangesThatPileUpAreEachSeenByWhoLooksATurnLater) {
    begin(endlesslyPatient());
    pasteboard().setChangeHandler(
        [this] { world_->runLoop().async([this] { strings_.push_back(pasteboard().string().value_or("none")); }); });
    const auto owner = own({"--changes", "10", "--every", "5"});
    // Meanwhile the main thread does nothing.
    ASSERT_TRUE(owner->waitForLine("owned", 10));
    ASSERT_TRUE(world_->waitFor([this] { return !strings_.empty() && strings_.back() == "change 10"; }));
    EXPECT_EQ(strings_.size(), 10U);
}

TEST_F(X11PasteboardHostile, TwentyMegabytesArriveUnchanged) {
    X11PasteboardOptions options = endlesslyPatient();
    begin(options);
    for (const std::string chunk : {"65536", "1000001", "12000000"}) {
        const auto owner = own({"--chunk", chunk, "--offer-pattern", "image/png=20000000"});
        ASSERT_TRUE(world_->waitFor([&] { return pasteboard().data(pasteboard_type::png) != nullptr; })) << chunk;
        EXPECT_TRUE(*pasteboard().data(pasteboard_type::png) == pattern(20'000'000)) << chunk;
        const auto between = own({"--offer", "UTF8_STRING=between"});
        ASSERT_TRUE(waitForString("between"));
    }
}

TEST_F(X11PasteboardHostile, LostDisplayLeavesAnEmptyPasteboard) {
    XServer server;
    begin(impatient(), server);
    server.kill();
    ASSERT_TRUE(world_->waitForLog("display was lost"));
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    const int count = pasteboard().changeCount();
    EXPECT_EQ(pasteboard().write({.string = "ours", .filePaths = {}, .png = nullptr, .gif = nullptr}), count);
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_FALSE(pasteboard().setChangeHandler({}));
    EXPECT_FALSE(pasteboard().offerPrimary());
}

TEST_F(X11PasteboardHostile, NoDisplayAtAllLeavesAnEmptyPasteboard) {
    X11PasteboardOptions options;
    options.display = ":65000";
    SelectionWorld world(options);
    EXPECT_FALSE(world.pasteboard().setChangeHandler({}));
    const int count = world.pasteboard().changeCount();
    EXPECT_EQ(world.pasteboard().write({.string = "x", .filePaths = {}, .png = nullptr, .gif = nullptr}), count);
    EXPECT_EQ(world.pasteboard().string(), std::nullopt);
}

TEST_F(X11PasteboardHostile, WhatWasThereAtTheStartIsSeenWithoutCounting) {
    begin(impatient());
    X11PasteboardOptions options = impatient();
    SelectionWorld later(options);
    const int count = later.pasteboard().changeCount();
    EXPECT_TRUE(later.waitFor([&] { return later.pasteboard().string() == "before the test"; }));
    EXPECT_EQ(later.pasteboard().changeCount(), count);
}

}  // namespace
}  // namespace brimquill::platform::testing

#include "Platform/Headless/HeadlessPasteboard.h"
#include "Platform/X11/X11PasteboardFormats.h"
#include "tests/platform/SelectionWorld.h"

#include <gmock/gmock.h>

namespace brimquill::platform::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Optional;

/// A pasteboard and the other programs around it.
class Bench {
public:
    virtual ~Bench() = default;
    virtual Pasteboard& pasteboard() = 0;
    virtual void copy(const ForeignCopy& copy) = 0;
    /// The program that copied last quits.
    virtual void quitOwner() = 0;
    /// The text that another program pastes now, or "refused".
    virtual std::string pasted() = 0;
    virtual bool waitFor(const std::function<bool()>& condition) = 0;
};

class HeadlessBench final : public Bench {
public:
    Pasteboard& pasteboard() override { return pasteboard_; }
    void copy(const ForeignCopy& copy) override { pasteboard_.copy(copy); }
    void quitOwner() override { pasteboard_.quitOwner(); }
    std::string pasted() override {
        const auto& offered = pasteboard_.offered();
        return offered && offered->string ? *offered->string : "refused";
    }
    bool waitFor(const std::function<bool()>& condition) override {
        runLoop_.run();
        return condition();
    }

private:
    HeadlessRunLoop runLoop_;
    HeadlessPasteboard pasteboard_{runLoop_};
};

X11PasteboardOptions patient() {
    X11PasteboardOptions options;
    options.decisionDeadline = std::chrono::hours(1);
    return options;
}

class X11Bench final : public Bench {
public:
    // What an earlier test left on the shared server is seen before this one begins.
    X11Bench() {
        marker_ = world_.peer({"own", "--offer", "UTF8_STRING=before the test"});
        world_.waitFor([this] { return world_.pasteboard().string() == "before the test"; });
    }
    Pasteboard& pasteboard() override { return world_.pasteboard(); }
    bool waitFor(const std::function<bool()>& condition) override { return world_.waitFor(condition); }
    void quitOwner() override { owner_->kill(); }
    std::string pasted() override { return world_.pasted("UTF8_STRING"); }

    void copy(const ForeignCopy& copy) override {
        // A write of ours is claimed a moment after it is seen; this copy is to come after that.
        if (const auto current = pasteboard().string())
            world_.waitFor([&] { return world_.pasted("UTF8_STRING") == *current; });
        std::vector<std::string> arguments{"own"};
        auto offer = [&](const std::string& target, const auto& value) {
            arguments.insert(arguments.end(), {"--offer", target + "=" + std::string(value.begin(), value.end())});
        };
        const PasteboardContents& contents = copy.contents;
        if (contents.string) offer("UTF8_STRING", *contents.string);
        if (contents.gif) offer("image/gif", *contents.gif);
        if (contents.png) offer("image/png", *contents.png);
        std::string list;
        for (const std::string& path : contents.filePaths)
            list += x11_formats::fileUrl(path) + "\r\n";
        if (!list.empty()) offer("text/uri-list", list);
        for (const auto& [type, bytes] : copy.data)
            offer("image/jpeg", *bytes);
        if (copy.isConcealed) offer("x-kde-passwordManagerHint", std::string("secret"));
        if (!copy.tellsTypes) arguments.insert(arguments.end(), {"--do", "refuse@TARGETS"});
        owner_ = world_.peer(arguments);
    }

private:
    SelectionWorld world_{patient()};
    std::unique_ptr<Process> marker_, owner_;
};

class PasteboardContract : public ::testing::TestWithParam<const char*> {
protected:
    PasteboardContract() {
        if (std::string(GetParam()) == "X11")
            bench_ = std::make_unique<X11Bench>();
        else
            bench_ = std::make_unique<HeadlessBench>();
    }

    Pasteboard& pasteboard() { return bench_->pasteboard(); }

    void copyAndWait(const ForeignCopy& copy) {
        const int before = pasteboard().changeCount();
        bench_->copy(copy);
        ASSERT_TRUE(bench_->waitFor([&] { return pasteboard().changeCount() > before; }));
        EXPECT_EQ(pasteboard().changeCount(), before + 1);
    }

    int copyText(const std::string& text) {
        ForeignCopy foreign;
        foreign.contents.string = text;
        copyAndWait(foreign);
        return pasteboard().changeCount();
    }
    bool waitForPaste(const std::string& text) {
        return bench_->waitFor([&] { return bench_->pasted() == text; });
    }
    bool waitForChangeAfter(int count) {
        return bench_->waitFor([&] { return pasteboard().changeCount() != count; });
    }

    static SharedBytes bytes(const std::string& text) {
        return std::make_shared<const Bytes>(x11_formats::bytes(text));
    }

    std::unique_ptr<Bench> bench_;
};

TEST_P(PasteboardContract, OwnWriteCountsAndIsSeenAtOnce) {
    const int before = pasteboard().changeCount();
    PasteboardContents contents;
    contents.string = "ours";
    contents.filePaths = {"/a b", "/ü"};
    contents.png = bytes("png");
    contents.gif = bytes("gif");
    EXPECT_EQ(pasteboard().write(contents), before + 1);
    EXPECT_EQ(pasteboard().changeCount(), before + 1);
    EXPECT_EQ(pasteboard().string(), "ours");
    EXPECT_THAT(pasteboard().filePaths(), ElementsAre("/a b", "/ü"));
    EXPECT_EQ(pasteboard().data(pasteboard_type::png), contents.png);
    EXPECT_EQ(pasteboard().data(pasteboard_type::gif), contents.gif);
    EXPECT_EQ(pasteboard().data(pasteboard_type::tiff), nullptr);
    EXPECT_THAT(pasteboard().types(),
                Optional(::testing::UnorderedElementsAre(pasteboard_type::string, pasteboard_type::fileURL,
                                                         pasteboard_type::png, pasteboard_type::gif)));
}

TEST_P(PasteboardContract, EmptyWriteLeavesNothing) {
    pasteboard().write({.string = "full", .filePaths = {}, .png = nullptr, .gif = nullptr});
    pasteboard().write({});
    EXPECT_THAT(pasteboard().types(), Optional(ElementsAre()));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
}

TEST_P(PasteboardContract, HandlerIsCalledAfterEachChangeWithItsContentInPlace) {
    std::vector<std::string> seen;
    bool isWriting = false;
    ASSERT_TRUE(pasteboard().setChangeHandler([&] {
        EXPECT_FALSE(isWriting);
        seen.push_back(pasteboard().string().value_or("none"));
    }));
    isWriting = true;
    pasteboard().write({.string = "ours", .filePaths = {}, .png = nullptr, .gif = nullptr});
    isWriting = false;
    ASSERT_TRUE(bench_->waitFor([&] { return seen.size() == 1; }));
    ForeignCopy foreign;
    foreign.contents.string = "theirs";
    bench_->copy(foreign);
    ASSERT_TRUE(bench_->waitFor([&] { return seen.size() == 2; }));
    EXPECT_THAT(seen, ElementsAre("ours", "theirs"));
}

TEST_P(PasteboardContract, OwnWriteAfterACopyWins) {
    ForeignCopy foreign;
    foreign.contents.string = "theirs";
    copyAndWait(foreign);
    const int written = pasteboard().write({.string = "ours", .filePaths = {}, .png = nullptr, .gif = nullptr});
    foreign.contents.string = "theirs again";
    bench_->copy(foreign);
    ASSERT_TRUE(bench_->waitFor([&] { return pasteboard().changeCount() != written; }));
    EXPECT_EQ(pasteboard().changeCount(), written + 1);
    EXPECT_EQ(pasteboard().string(), "theirs again");
}

TEST_P(PasteboardContract, ReadsFiles) {
    ForeignCopy foreign;
    foreign.contents.filePaths = {"/home/a b.txt", "/tmp/100%#ü"};
    copyAndWait(foreign);
    EXPECT_EQ(pasteboard().filePaths(), foreign.contents.filePaths);
    EXPECT_THAT(pasteboard().types(), Optional(Contains(pasteboard_type::fileURL)));
}

TEST_P(PasteboardContract, ReadsThePictureThatComesWithBlankText) {
    ForeignCopy foreign;
    foreign.contents.string = " \n";
    foreign.contents.png = bytes("picture");
    copyAndWait(foreign);
    ASSERT_NE(pasteboard().data(pasteboard_type::png), nullptr);
    EXPECT_EQ(*pasteboard().data(pasteboard_type::png), *foreign.contents.png);
}

TEST_P(PasteboardContract, PresentsOtherPicturesAsTiff) {
    ForeignCopy foreign;
    foreign.data[pasteboard_type::tiff] = bytes("jpeg");
    copyAndWait(foreign);
    EXPECT_THAT(pasteboard().types(), Optional(ElementsAre(pasteboard_type::tiff)));
    ASSERT_NE(pasteboard().data(pasteboard_type::tiff), nullptr);
    EXPECT_EQ(*pasteboard().data(pasteboard_type::tiff), x11_formats::bytes("jpeg"));
}

TEST_P(PasteboardContract, ConcealedCopyShowsItsMarkerAndNoContent) {
    ForeignCopy foreign;
    foreign.contents.string = "hunter2";
    foreign.contents.png = bytes("picture");
    foreign.isConcealed = true;
    copyAndWait(foreign);
    EXPECT_THAT(pasteboard().types(), Optional(Contains(pasteboard_type::concealed)));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(pasteboard().data(pasteboard_type::png), nullptr);
}

TEST_P(PasteboardContract, OwnerThatTellsNoTypesIsReadAllTheSame) {
    ForeignCopy foreign;
    foreign.contents.string = "plain";
    foreign.tellsTypes = false;
    copyAndWait(foreign);
    EXPECT_EQ(pasteboard().types(), std::nullopt);
    EXPECT_EQ(pasteboard().string(), "plain");
}

TEST_P(PasteboardContract, KeptCopyOutlivesItsOwnerWithoutAChange) {
    const int count = copyText("to be kept");
    pasteboard().keep(count);
    bench_->quitOwner();
    ASSERT_TRUE(waitForPaste("to be kept"));
    EXPECT_EQ(pasteboard().changeCount(), count);
    EXPECT_EQ(pasteboard().string(), "to be kept");
}

TEST_P(PasteboardContract, CopyThatIsKeptAfterItsOwnersDeathIsOfferedToo) {
    const int count = copyText("decided late");
    bench_->quitOwner();
    pasteboard().keep(count);
    ASSERT_TRUE(waitForPaste("decided late"));
    EXPECT_EQ(pasteboard().changeCount(), count);
}

TEST_P(PasteboardContract, DroppedCopyStaysAndGoesWithItsOwner) {
    const int count = copyText("to be dropped");
    pasteboard().keep(count);
    pasteboard().drop(count);
    EXPECT_TRUE(waitForPaste("to be dropped"));
    EXPECT_EQ(pasteboard().changeCount(), count);
    bench_->quitOwner();
    ASSERT_TRUE(waitForChangeAfter(count));
    EXPECT_EQ(pasteboard().changeCount(), count + 1);
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(bench_->pasted(), "refused");
}

TEST_P(PasteboardContract, CopyThatWasTakenOverIsTakenOff) {
    const int count = copyText("secret");
    pasteboard().keep(count);
    bench_->quitOwner();
    ASSERT_TRUE(waitForPaste("secret"));
    pasteboard().drop(count);
    ASSERT_TRUE(waitForChangeAfter(count));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(bench_->pasted(), "refused");
    pasteboard().drop(pasteboard().changeCount());
    EXPECT_EQ(copyText("the next"), count + 2);
}

TEST_P(PasteboardContract, OwnWriteIsTakenOff) {
    const int count = pasteboard().write({.string = "secret", .filePaths = {}, .png = nullptr, .gif = nullptr});
    ASSERT_TRUE(waitForPaste("secret"));
    pasteboard().drop(count - 1);
    pasteboard().drop(count);
    ASSERT_TRUE(waitForChangeAfter(count));
    EXPECT_EQ(pasteboard().changeCount(), count + 1);
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(bench_->pasted(), "refused");
}

TEST_P(PasteboardContract, WordAboutAnEarlierCopyIsIgnored) {
    const int first = copyText("first");
    const int second = copyText("second");
    pasteboard().keep(second);
    pasteboard().drop(first);
    bench_->quitOwner();
    EXPECT_TRUE(waitForPaste("second"));
}

INSTANTIATE_TEST_SUITE_P(Backends, PasteboardContract, ::testing::Values("Headless", "X11"),
                         [](const auto& instance) { return std::string(instance.param); });

}  // namespace
}  // namespace brimquill::platform::testing

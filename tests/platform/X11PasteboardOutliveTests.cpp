#include "Platform/X11/X11PasteboardFormats.h"
#include "tests/platform/SelectionWorld.h"

#include <gmock/gmock.h>

namespace brimquill::platform::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using namespace std::chrono_literals;

using Arguments = std::vector<std::string>;

X11PasteboardOptions patient() {
    X11PasteboardOptions options;
    options.stepDeadline = 1h;
    options.readBound = 1h;
    options.decisionDeadline = 1h;
    return options;
}

/// Short patience, but long enough for an honest owner on a busy machine.
X11PasteboardOptions impatient() {
    X11PasteboardOptions options = patient();
    options.stepDeadline = 2s;
    options.readBound = 4s;
    return options;
}

/// Copies whose owners quit or die.
class X11PasteboardOutlive : public ::testing::Test {
protected:
    void begin(X11PasteboardOptions options = patient()) {
        world_.reset();  // it would still be the manager
        world_ = std::make_unique<SelectionWorld>(std::move(options));
        marker_ = world_->peer({"own", "--offer", "UTF8_STRING=before the test"});
        ASSERT_TRUE(world_->waitFor([this] { return pasteboard().string() == "before the test"; }));
    }

    X11Pasteboard& pasteboard() { return world_->pasteboard(); }

    /// Another program copies; what it put on the clipboard was read.
    std::unique_ptr<Process> copy(Arguments arguments) {
        const int before = pasteboard().changeCount();
        arguments.insert(arguments.begin(), "own");
        auto owner = world_->peer(arguments);
        EXPECT_TRUE(world_->waitFor([&] { return pasteboard().changeCount() > before; }));
        return owner;
    }
    std::unique_ptr<Process> copyAndKeep(const Arguments& arguments) {
        auto owner = copy(arguments);
        pasteboard().keep(pasteboard().changeCount());
        return owner;
    }
    bool waitForPaste(const std::string& target, const std::string& value) {
        return world_->waitFor([&] { return world_->pasted(target) == value; });
    }
    /// The owner quits by having its targets saved; everything that it told.
    static std::string quit(Process& owner) {
        owner.terminate();
        EXPECT_EQ(owner.wait(), 0);
        return owner.output();
    }

    std::unique_ptr<SelectionWorld> world_;
    std::unique_ptr<Process> marker_;
};

std::string text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

TEST_F(X11PasteboardOutlive, EverythingThatWasReadOfAKilledOwnersCopyIsOffered) {
    struct Case {
        Arguments offers;
        std::vector<std::pair<std::string, std::string>> served;
    };
    const std::string list = "file:///a%20b\r\nfile:///c\r\n", large = text(pattern(20'000'000));
    const Case cases[] = {
        {{"--offer", "UTF8_STRING=Grüße"}, {{"UTF8_STRING", "Grüße"}, {"text/plain", "Grüße"}}},
        {{"--offer", "STRING=old"}, {{"UTF8_STRING", "old"}, {"STRING", "old"}}},
        {{"--offer", "text/uri-list=" + list},
         {{"text/uri-list", list}, {"x-special/gnome-copied-files", "copy\nfile:///a%20b\nfile:///c"}}},
        {{"--offer", "image/jpeg=jpeg"}, {{"image/jpeg", "jpeg"}, {"image/tiff", "refused"}}},
        {{"--offer", "UTF8_STRING= ", "--offer", "image/gif=gif"}, {{"image/gif", "gif"}, {"UTF8_STRING", " "}}},
        {{"--offer-pattern", "image/png=20000000"}, {{"image/png", large}}},
    };
    begin();
    for (const Case& example : cases) {
        SCOPED_TRACE(example.offers[1]);
        const auto owner = copyAndKeep(example.offers);
        const int count = pasteboard().changeCount();
        owner->kill();
        for (const auto& [target, value] : example.served)
            EXPECT_TRUE(waitForPaste(target, value)) << target;
        EXPECT_EQ(pasteboard().changeCount(), count);
    }
}

TEST_F(X11PasteboardOutlive, UndecidedCopyGoesInTheEnd) {
    X11PasteboardOptions options = patient();
    options.decisionDeadline = 1ms;
    begin(options);
    const auto owner = copy({"--offer", "UTF8_STRING=nobody says a word"});
    const int count = pasteboard().changeCount();
    owner->kill();
    ASSERT_TRUE(world_->waitFor([&] { return pasteboard().changeCount() != count; }));
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(world_->pasted("UTF8_STRING"), "refused");
}

TEST_F(X11PasteboardOutlive, CopyAfterTheOwnersDeathWins) {
    begin();
    for (int i = 0; i < 10; ++i) {
        const auto owner = copyAndKeep({"--offer", "UTF8_STRING=earlier"});
        owner->kill();
        const std::string later = "later " + std::to_string(i);
        const auto other = world_->peer({"own", "--offer", "UTF8_STRING=" + later});
        ASSERT_TRUE(world_->waitFor([&] { return pasteboard().string() == later; }));
        EXPECT_EQ(world_->pasted("UTF8_STRING"), later);
        EXPECT_EQ(other->output().find("lost"), std::string::npos);
    }
}

TEST_F(X11PasteboardOutlive, DeathInTheMiddleOfTheFirstReadLeavesNothing) {
    begin();
    const auto owner = world_->peer({"own", "--do", "die@image/png", "--offer-pattern", "image/png=1000000"});
    ASSERT_TRUE(world_->waitFor([&] { return pasteboard().string() == std::nullopt; }));
    pasteboard().keep(pasteboard().changeCount());
    EXPECT_EQ(world_->pasted("image/png"), "refused");
}

TEST_F(X11PasteboardOutlive, OwnerThatQuitsHasTheRestSaved) {
    struct Case {
        std::string save;
        std::string html, rtf;
    };
    const std::string html = text(pattern(3'000'000));
    const Case cases[] = {
        {"UTF8_STRING,text/html", html, "refused"}, {"text/rtf", "refused", "rtf"}, {"all", html, "rtf"}};
    begin();
    for (const Case& example : cases) {
        SCOPED_TRACE(example.save);
        const auto owner = copyAndKeep({"--offer", "UTF8_STRING=text", "--offer-pattern", "text/html=3000000",
                                        "--offer", "text/rtf=rtf", "--save", example.save});
        const int count = pasteboard().changeCount();
        const std::string told = quit(*owner);
        EXPECT_TRUE(told.ends_with("\nsaved\n")) << told;
        EXPECT_EQ(told.find("served UTF8_STRING"), told.rfind("served UTF8_STRING")) << "the text was read again";
        EXPECT_TRUE(waitForPaste("UTF8_STRING", "text"));
        EXPECT_TRUE(world_->pasted("text/html") == example.html);
        EXPECT_EQ(world_->pasted("text/rtf"), example.rtf);
        EXPECT_EQ(pasteboard().changeCount(), count);
    }
}

TEST_F(X11PasteboardOutlive, PictureIsSavedOnce) {
    begin();
    const auto owner = copyAndKeep({"--offer-pattern", "image/png=20000000", "--offer", "image/bmp=bmp", "--offer",
                                    "application/x-own=own", "--save", "image/bmp,image/png,application/x-own"});
    const std::string told = quit(*owner);
    EXPECT_TRUE(told.ends_with("\nsaved\n")) << told;
    EXPECT_EQ(told.find("served image/png"), told.rfind("served image/png"));
    EXPECT_THAT(told, Not(HasSubstr("served image/bmp")));
    EXPECT_TRUE(waitForPaste("application/x-own", "own"));
    EXPECT_TRUE(world_->pasted("image/png") == text(pattern(20'000'000)));
}

TEST_F(X11PasteboardOutlive, SavingWaitsForTheReadAndForTheWord) {
    begin();
    for (const bool isKept : {true, false}) {
        const int before = pasteboard().changeCount();
        const auto owner = world_->peer({"own", "--offer-pattern", "image/png=20000000", "--save", "image/png"});
        ASSERT_TRUE(owner->waitForLine("owned"));
        owner->terminate();
        ASSERT_TRUE(world_->waitFor([&] { return pasteboard().changeCount() > before; }));
        if (isKept)
            pasteboard().keep(pasteboard().changeCount());
        else
            pasteboard().drop(pasteboard().changeCount());
        EXPECT_EQ(owner->wait(), 0);
        EXPECT_TRUE(owner->output().ends_with(isKept ? "\nsaved\n" : "\nnot saved\n")) << owner->output();
        EXPECT_TRUE(waitForPaste("image/png", isKept ? text(pattern(20'000'000)) : "refused"));
    }
}

TEST_F(X11PasteboardOutlive, OwnersThatMisbehaveWhileTheyAreSaved) {
    struct Case {
        std::string behaviour, log;
    };
    const Case cases[] = {
        {"hang@text/html", "saved in part: its owner does not answer"},
        {"trickle@text/html", "saved in part: its owner does not answer"},
        {"endless@text/html", "saved in part: it is too large"},
        {"refuse@text/html", ""},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(example.behaviour);
        X11PasteboardOptions options = impatient();
        options.cap = 8 << 20;
        begin(options);
        const auto owner = copyAndKeep({"--offer", "UTF8_STRING=text", "--offer", "text/html=x", "--do",
                                        example.behaviour, "--save", "text/html"});
        owner->terminate();
        ASSERT_TRUE(owner->waitForLine("saved"));
        EXPECT_TRUE(world_->waitForLog(example.log));
        owner->kill();
        EXPECT_TRUE(waitForPaste("UTF8_STRING", "text"));
        EXPECT_EQ(world_->pasted("text/html"), "refused");
    }
}

TEST_F(X11PasteboardOutlive, DeathWhileItIsSavedLeavesWhatWasRead) {
    begin();
    const auto owner = copyAndKeep({"--offer", "UTF8_STRING=text", "--offer-pattern", "text/html=1000000", "--do",
                                    "die@text/html", "--save", "text/html"});
    quit(*owner);
    EXPECT_TRUE(waitForPaste("UTF8_STRING", "text"));
    EXPECT_EQ(world_->pasted("text/html"), "refused");
}

TEST_F(X11PasteboardOutlive, ManagerTellsOfItselfAndRefusesWhereThereIsNothingToSave) {
    const std::string manager = "CLIPBOARD_MANAGER";
    begin();
    EXPECT_EQ(world_->pasted("TARGETS", manager).size(), 4 * 4U);
    EXPECT_EQ(world_->pasted("TIMESTAMP", manager).size(), 4U);
    EXPECT_EQ(world_->pasted("SAVE_TARGETS,UTF8_STRING", manager), "refused\nrefused\n");
    pasteboard().drop(pasteboard().changeCount());
    EXPECT_EQ(world_->pasted("SAVE_TARGETS", manager), "refused");
    marker_->kill();
    ASSERT_TRUE(world_->waitFor([&] { return pasteboard().string() == std::nullopt; }));
    EXPECT_EQ(world_->pasted("SAVE_TARGETS", manager), "refused");
    pasteboard().write({.string = "ours", .filePaths = {}, .png = nullptr, .gif = nullptr});
    ASSERT_TRUE(waitForPaste("UTF8_STRING", "ours"));
    EXPECT_EQ(world_->pasted("SAVE_TARGETS", manager), "");
}

TEST_F(X11PasteboardOutlive, AnotherManagerIsLeftInItsPlace) {
    XServer& server = XServer::shared();
    Process other({SELECTION_PEER, "own", "--selection", "CLIPBOARD_MANAGER"}, "DISPLAY=" + server.display());
    ASSERT_TRUE(other.waitForLine("owned"));
    begin();
    const auto owner = copyAndKeep({"--offer", "UTF8_STRING=text", "--save", "all"});
    EXPECT_THAT(quit(*owner), HasSubstr("\nnot saved\n"));
    EXPECT_TRUE(other.waitForLine("refused SAVE_TARGETS"));
    EXPECT_THAT(other.output(), Not(HasSubstr("lost")));
    EXPECT_TRUE(waitForPaste("UTF8_STRING", "text"));
}

TEST_F(X11PasteboardOutlive, AnotherManagerMayTakeThePlace) {
    begin();
    const auto other = world_->peer({"own", "--selection", "CLIPBOARD_MANAGER"});
    ASSERT_TRUE(other->waitForLine("owned"));
    EXPECT_EQ(world_->pasted("TIMESTAMP", "CLIPBOARD_MANAGER"), "refused");
    const auto owner = copyAndKeep({"--offer", "UTF8_STRING=text", "--save", "all"});
    EXPECT_THAT(quit(*owner), HasSubstr("\nnot saved\n"));
    EXPECT_TRUE(waitForPaste("UTF8_STRING", "text"));
    EXPECT_THAT(other->output(), Not(HasSubstr("lost")));
}

TEST_F(X11PasteboardOutlive, SecretGoesFromThePrimarySelectionToo) {
    begin();
    const int count = pasteboard().write({.string = "secret", .filePaths = {}, .png = nullptr, .gif = nullptr});
    ASSERT_TRUE(world_->waitFor([&] { return pasteboard().offerPrimary(); }));
    EXPECT_EQ(world_->pasted("UTF8_STRING", "PRIMARY"), "secret");
    pasteboard().drop(count);
    ASSERT_TRUE(world_->waitFor([&] { return pasteboard().changeCount() != count; }));
    EXPECT_EQ(world_->pasted("UTF8_STRING", "PRIMARY"), "refused");
}

TEST(X11FurtherTargets, AreThoseThatHoldMoreThanWasRead) {
    using x11_formats::furtherTargets;
    const auto some = std::make_shared<const Bytes>(x11_formats::bytes("x"));
    PasteboardSnapshot text, picture, files, nothing;
    text.string = "text";
    picture.png = some;
    files.filePaths = {"/a"};
    const Arguments office{
        "TARGETS",   "text/html", "UTF8_STRING",  "COMPOUND_TEXT",          "text/plain;charset=UTF-8",
        "image/bmp", "image/png", "image/x-icon", "application/x-qt-image", "text/html"};
    EXPECT_THAT(furtherTargets(office, text), ElementsAre("text/html", "COMPOUND_TEXT", "image/png"));
    EXPECT_THAT(furtherTargets(office, picture),
                ElementsAre("text/html", "UTF8_STRING", "COMPOUND_TEXT", "text/plain;charset=UTF-8"));
    EXPECT_THAT(furtherTargets({"text/uri-list", "x-special/gnome-copied-files", "image/svg+xml"}, files),
                ElementsAre("x-special/gnome-copied-files", "image/svg+xml"));
    EXPECT_THAT(furtherTargets({"MULTIPLE", "SAVE_TARGETS", "x-kde-passwordManagerHint"}, nothing), IsEmpty());
}

}  // namespace
}  // namespace brimquill::platform::testing

#include "Platform/Desktop/DesktopOpenPanel.h"
#include "tests/platform/FakePortal.h"
#include "tests/platform/ServicesFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDBusMessage>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <fstream>

namespace brimquill::platform {
namespace {

using testing::ElementsAre;
using Dialogs = FakePortal::Dialogs;

/// What a dialog was answered with.
template <typename T>
struct Answers {
    std::vector<std::optional<T>> given;
    std::function<void(std::optional<T>)> handler() {
        return [this](std::optional<T> answer) { given.push_back(std::move(answer)); };
    }
    bool await() const {
        return eventually([this] { return !given.empty(); });
    }
};

QFileDialog* shownDialog() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QFileDialog*>(widget); dialog != nullptr && dialog->isVisible()) return dialog;
    }
    return nullptr;
}

/// Types a path, which `selectFile` leaves alone once the field has the keyboard, and presses the button. A dialog that
/// is still reading its directory does not take it.
void accept(const QString& path) {
    if (QFileDialog* dialog = shownDialog()) {
        dialog->findChild<QLineEdit*>()->setText(path);
        static_cast<QDialog*>(dialog)->accept();
    }
}

using OpenPanelContract = ServicesFixture;
INSTANTIATE_TEST_SUITE_P(Backends, OpenPanelContract, testing::Bool(), backendName);

TEST_P(OpenPanelContract, EachDialogIsAnsweredOnceAndLater) {
    std::optional<FakePortal> portal;
    if (world_ == nullptr) portal.emplace();
    for (const auto& path : {std::optional<std::string>("/tmp/a"), std::optional<std::string>()}) {
        const auto before = portal ? portal->requests().size() : 0;
        if (!portal) world_->openPanel().setAnswer(path);
        Answers<std::string> answers;
        services_->openPanel().run({"Choose", {}, false}, answers.handler());
        EXPECT_TRUE(answers.given.empty());
        if (portal) {
            ASSERT_TRUE(until([&] { return portal->requests().size() > before; }));
            portal->answer(path ? 0 : 1, {QStringLiteral("file:///tmp/a")});
        }
        EXPECT_TRUE(until([&] { return !answers.given.empty(); }));
        EXPECT_THAT(answers.given, ElementsAre(path));
    }
}

TEST(OpenPanel, ThePortalIsAskedAndItsAnswerHanded) {
    struct Case {
        const char* what;
        uint response;
        QStringList uris;
        std::optional<std::string> path;
    };
    const std::vector<Case> cases = {
        {"a file", 0, {QStringLiteral("file:///tmp/a%20b%C3%BC.txt")}, "/tmp/a bü.txt"},
        {"cancelled", 1, {QStringLiteral("file:///tmp/a")}, std::nullopt},
        {"ended otherwise", 2, {}, std::nullopt},
        {"nothing chosen", 0, {}, std::nullopt},
        {"no file of this machine", 0, {QStringLiteral("smb://host/a")}, std::nullopt},
    };
    for (const auto dialogs : {Dialogs::shown, Dialogs::shownElsewhere}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.what);
            FakePortal portal(dialogs);
            DesktopOpenPanel panel;
            Answers<std::string> answers;
            panel.run({.message = "Choose", .allowedExtensions = {"json"}}, answers.handler());
            EXPECT_TRUE(answers.given.empty());
            ASSERT_TRUE(eventually([&] { return !portal.requests().empty(); }));
            EXPECT_EQ(portal.requests().back().member(), QStringLiteral("OpenFile"));
            EXPECT_EQ(portal.requests().back().arguments().at(1).toString(), QStringLiteral("Choose"));
            // A path of the portal's own is heard of only once its reply has come.
            ASSERT_TRUE(eventually([&] {
                portal.answer(test.response, test.uris);
                return !answers.given.empty();
            }));
            EXPECT_THAT(answers.given, ElementsAre(test.path));
        }
    }
}

TEST(OpenPanel, APlaceToSaveHasItsExtensionAndChoice) {
    FakePortal portal;
    DesktopOpenPanel panel;
    const OpenPanel::SaveRequest request{"Save", "name.zip", "zip", "Content:", {"all", "some"}};
    struct Case {
        const char* uri;
        std::optional<int> choice;
        OpenPanel::SaveAnswer answer;
    };
    const std::vector<Case> cases = {
        {"file:///tmp/a.zip", 1, {"/tmp/a.zip", 1}},
        {"file:///tmp/a.ZIP", 0, {"/tmp/a.ZIP", 0}},
        {"file:///tmp/a", std::nullopt, {"/tmp/a.zip", 0}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.uri);
        Answers<OpenPanel::SaveAnswer> answers;
        const auto before = portal.requests().size();
        panel.runSave(request, answers.handler());
        ASSERT_TRUE(eventually([&] { return portal.requests().size() > before; }));
        EXPECT_EQ(portal.requests().back().member(), QStringLiteral("SaveFile"));
        portal.answer(0, {QLatin1String(test.uri)}, test.choice);
        ASSERT_TRUE(answers.await());
        ASSERT_EQ(answers.given.size(), 1U);
        ASSERT_TRUE(answers.given.front());
        EXPECT_EQ(answers.given.front()->path, test.answer.path);
        EXPECT_EQ(answers.given.front()->choice, test.answer.choice);
    }
}

TEST(OpenPanel, ADialogThatGoesWithItsPortalCountsAsCancelled) {
    FakePortal portal;
    DesktopOpenPanel panel;
    Answers<std::string> answers;
    panel.run({}, answers.handler());
    ASSERT_TRUE(eventually([&] { return !portal.requests().empty(); }));
    portal.vanish();
    ASSERT_TRUE(answers.await());
    EXPECT_THAT(answers.given, ElementsAre(std::nullopt));
}

TEST(OpenPanel, ADialogThatIsOpenAtTheEndIsNeverAnswered) {
    FakePortal portal;
    auto panel = std::make_unique<DesktopOpenPanel>();
    Answers<std::string> answers, others;
    panel->run({}, answers.handler());
    ASSERT_TRUE(eventually([&] { return !portal.requests().empty(); }));
    panel.reset();
    portal.answer(0, {QStringLiteral("file:///tmp/a")});
    DesktopOpenPanel other;
    other.run({}, others.handler());
    ASSERT_TRUE(eventually([&] { return portal.requests().size() == 2; }));
    portal.answer(1, {});
    ASSERT_TRUE(others.await());
    EXPECT_TRUE(answers.given.empty());
}

TEST(OpenPanel, WhereThePortalHasNoDialogTheToolkitShowsOne) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a.json"));
    std::ofstream(file.toStdString()) << "{}";
    std::optional<FakePortal> portal;
    for (const bool hasBus : {true, false}) {
        SCOPED_TRACE(hasBus);
        portal.reset();
        if (hasBus) portal.emplace(Dialogs::refused);
        DesktopOpenPanel panel;
        Answers<std::string> chosen, cancelled;
        Answers<OpenPanel::SaveAnswer> saved;
        panel.run({"Choose", {}, false}, chosen.handler());
        ASSERT_TRUE(eventually([] { return shownDialog() != nullptr; }));
        EXPECT_EQ(shownDialog()->windowTitle(), QStringLiteral("Choose"));
        ASSERT_TRUE(eventually([&] {
            accept(file);
            return !chosen.given.empty();
        }));
        EXPECT_THAT(chosen.given, ElementsAre(file.toStdString()));

        ASSERT_TRUE(eventually([] { return shownDialog() == nullptr; }));
        panel.run({}, cancelled.handler());
        ASSERT_TRUE(eventually([] { return shownDialog() != nullptr; }));
        shownDialog()->reject();
        ASSERT_TRUE(cancelled.await());
        EXPECT_THAT(cancelled.given, ElementsAre(std::nullopt));

        ASSERT_TRUE(eventually([] { return shownDialog() == nullptr; }));
        panel.runSave({"Save", "name", "zip", "Content:", {"all", "some"}}, saved.handler());
        ASSERT_TRUE(eventually([] { return shownDialog() != nullptr; }));
        for (auto* box : shownDialog()->findChildren<QComboBox*>()) {
            if (box->itemText(1) == QStringLiteral("some")) box->setCurrentIndex(1);
        }
        const QString place = folder.filePath(QStringLiteral("name"));
        ASSERT_TRUE(eventually([&] {
            accept(place);
            return !saved.given.empty();
        }));
        ASSERT_TRUE(saved.given.front());
        EXPECT_EQ(saved.given.front()->path, folder.filePath(QStringLiteral("name.zip")).toStdString());
        EXPECT_EQ(saved.given.front()->choice, 1U);
        ASSERT_TRUE(eventually([] { return shownDialog() == nullptr; }));
    }
}

}  // namespace
}  // namespace brimquill::platform

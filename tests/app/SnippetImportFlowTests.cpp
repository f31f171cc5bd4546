#include "Brimquill/Sharing/SnippetImportFlow.h"
#include "tests/app/AppFixture.h"

#include <gmock/gmock.h>

#include <fstream>

namespace brimquill {
namespace {

using SnippetImportFlowTest = AppFixture;

TEST_F(SnippetImportFlowTest, BringsInTheChosenFileAndTellsHowMany) {
    const auto file = directory.path() / "export.json";
    std::ofstream(file) << R"([{"name": "Greeting", "text": "Hello"}, {"text": ""}, {"text": "Bye", "keyword": ":b"}])";
    world.openPanel().setAnswer(file.string());
    SnippetImportFlow flow(world.openPanel(), store);
    int created = -1;
    flow.run([&](int count) { created = count; });
    EXPECT_EQ(created, -1) << "the user has not chosen yet";
    world.run();
    EXPECT_EQ(created, 2);
    EXPECT_EQ(store.fetchSnippets().size(), 2U);
    ASSERT_EQ(world.openPanel().requests().size(), 1U);
    EXPECT_EQ(world.openPanel().requests()[0].message, "Choose a Raycast / Espanso / TextExpander export");
}

TEST_F(SnippetImportFlowTest, CancellingOrAnUnreadableFileCreatesNothing) {
    SnippetImportFlow flow(world.openPanel(), store);
    std::vector<int> counts;
    flow.run([&](int count) { counts.push_back(count); });
    world.run();
    world.openPanel().setAnswer((directory.path() / "missing.json").string());
    flow.run([&](int count) { counts.push_back(count); });
    world.run();
    EXPECT_THAT(counts, testing::ElementsAre(0, 0));
    EXPECT_TRUE(store.fetchSnippets().empty());
}

TEST_F(SnippetImportFlowTest, AnAnswerAfterItsEndReachesNobody) {
    bool called = false;
    {
        SnippetImportFlow flow(world.openPanel(), store);
        flow.run([&](int) { called = true; });
    }
    world.run();
    EXPECT_FALSE(called);
}

}  // namespace
}  // namespace brimquill

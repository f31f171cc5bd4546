#include "tests/core/ScopedVariable.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

namespace brimquill::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StoreSearch : public StoreTest {
protected:
    std::vector<std::string> find(const std::string& query, int limit = 10) {
        return textsOf(store.search(query, limit));
    }
    void insertTagged(const std::string& text, const std::vector<std::string>& tags) {
        store.setTags(insertText(text), tags);
    }
};

TEST_F(StoreSearch, TextIsFoundByThePrefixesOfItsWords) {
    insertText("selftest passed");
    insertText("Über ÄRGER ab-cd ef");
    insertText("日本 e\u0301clair");
    insertText("number 42 stays");
    struct Case {
        std::string query;
        std::vector<std::string> expected;
    };
    const std::string first = "selftest passed", second = "Über ÄRGER ab-cd ef", third = "日本 e\u0301clair";
    for (const auto& [query, expected] : {
             Case{"sel", {first}},
             Case{"SELF", {first}},
             Case{"test", {}},
             Case{"pass self", {first}},
             Case{"  self   pass ", {first}},
             Case{"self 42", {}},
             Case{"ab-c", {second}},
             Case{"b-cd", {}},
             Case{"cd-ab", {}},
             Case{"ärg", {second}},
             Case{"arg", {second}},  // the index folds accents
             Case{"UBER", {second}},
             Case{"日", {third}},
             Case{"\u00e9cl", {third}},
             Case{"selftest\tpass", {first}},  // a tab does not cut the query; the index reads a phrase
             Case{"self\tpass", {}},
             Case{"-", {}},
             Case{"*", {}},
             Case{"' OR 1", {}},
         }) {
        EXPECT_EQ(find(query), expected) << query;
    }
}

TEST_F(StoreSearch, FullTextMatchesStandSnippetsThenPinnedThenNewest) {
    const auto pinned = insertText("word pinned");
    store.setPinned(pinned, true);
    insertText("word old");
    store.createSnippet("other", "word snippet");
    insertText("word new");
    EXPECT_THAT(find("word"), ElementsAre("word snippet", "word pinned", "word new", "word old"));
    EXPECT_THAT(find("word", 2), ElementsAre("word snippet", "word pinned"));
    EXPECT_THAT(find("word", 0), IsEmpty());
}

TEST_F(StoreSearch, EmptyQueryGivesAllSnippetsAndThenTheHistory) {
    for (const auto* text : {"one", "two", "three"})
        insertText(text);
    store.createSnippet("b", "second");
    store.createSnippet("A", "first");
    EXPECT_THAT(find("", 2), ElementsAre("first", "second", "three", "two"));
    EXPECT_THAT(find("", 0), ElementsAre("first", "second"));
}

TEST_F(StoreSearch, LaterPassesPutTheirMatchesInFront) {
    insertText("alpha in the text");
    advance(1);
    store.createSnippet("Alpha 1", "by name, first");
    advance(1);
    store.createSnippet("alpha 2", "by name, second");
    advance(1);
    store.createSnippet("zzz", "by keyword", ";ALPHA");
    advance(1);
    store.createSnippet("Alpha 0", "alpha in the text and name");
    insertTagged("tagged early", {"alphabet"});
    insertTagged("tagged late", {"x", "my alpha"});
    EXPECT_THAT(find("alpha"), ElementsAre("tagged early", "tagged late", "by keyword", "by name, second",
                                           "by name, first", "alpha in the text and name", "alpha in the text"));
    EXPECT_THAT(find("alpha", 1), ElementsAre("tagged late", "by keyword", "by name, second", "by name, first",
                                              "alpha in the text and name"))
        << "the limit binds each statement, not the whole";
}

TEST_F(StoreSearch, NamesMatchAnywhereWithCaseFoldedByUnicode) {
    store.createSnippet("GRÜSSE an Ärzte", "umlauts");
    store.createSnippet("cafe\u0301", "decomposed");
    store.createSnippet("ΟΔΟΣ", "greek");
    store.createSnippet("", "empty name", ";kürzel");
    EXPECT_THAT(find("üsse"), ElementsAre("umlauts"));
    EXPECT_THAT(find("ÄRZ"), ElementsAre("umlauts"));
    EXPECT_THAT(find("AF\u00c9"), ElementsAre("decomposed"));
    EXPECT_THAT(find("δο"), ElementsAre("greek"));
    EXPECT_THAT(find("KÜR"), ElementsAre("empty name"));
    EXPECT_THAT(find("an är"), ElementsAre("umlauts")) << "blanks of the query count in names";
}

TEST_F(StoreSearch, TagsMatchAsOneText) {
    insertTagged("both", {"a", "b"});
    insertTagged("labelled", {"work"});
    insertText("talk of work");
    EXPECT_THAT(find("a,b"), ElementsAre("both"));
    EXPECT_THAT(find("or"), ElementsAre("labelled"));
    EXPECT_THAT(find("#WOR"), ElementsAre("labelled", "talk of work")) << "the index reads past the #";
    EXPECT_THAT(find("##wor"), ElementsAre("talk of work")) << "only one # falls away";
    EXPECT_THAT(find("#"), IsEmpty());
    EXPECT_THAT(find("w_r"), ElementsAre("labelled")) << "wildcards of LIKE are not escaped";
}

TEST_F(StoreSearch, MalformedQueryStillRunsTheOtherPasses) {
    insertText("say \"hello");
    store.createSnippet("the \"hello\" snippet", "by name");
    insertTagged("by tag", {"\"hello"});
    EXPECT_THAT(find("\"hello"), ElementsAre("by tag", "by name"));
    EXPECT_THAT(find(std::string("other\0x", 7)), IsEmpty());
    EXPECT_THAT(find(std::string(200000, 'a') + " " + std::string(5000, '"')), IsEmpty());
}

TEST_F(StoreSearch, DeletedClipsAreFoundByNoPass) {
    insertTagged("gone text", {"gone"});
    store.createSnippet("gone", "gone snippet", "gone");
    for (const auto& clip : store.allClips())
        store.deleteClip(clip.id);
    EXPECT_THAT(find("gone"), IsEmpty());
    EXPECT_THAT(find(""), IsEmpty());
}

using StoreQueries = StoreTest;

TEST_F(StoreQueries, SnippetsStandUnfiledFirstThenByFolderAndName) {
    store.createSnippet("b", "2");
    store.createSnippet("A", "1");
    store.createSnippet("a", "4", {}, 9);
    store.createSnippet("z", "3", {}, 2);
    EXPECT_THAT(textsOf(store.fetchSnippets()), ElementsAre("1", "2", "3", "4"));
}

TEST_F(StoreQueries, HistoryStandsPinnedFirstThenNewest) {
    const auto old = insertText("old");
    insertText("middle");
    insertText("new");
    store.setPinned(old, true);
    EXPECT_THAT(textsOf(store.fetchHistory(2)), ElementsAre("old", "new"));
    EXPECT_THAT(textsOf(store.fetchHistory(-1)), ElementsAre("old", "new", "middle"));
}

TEST_F(StoreQueries, TagsAreCountedEvenOfDeletedClips) {
    const auto first = insertText("one");
    const auto second = insertText("two");
    store.setTags(first, {"a", "b", "c"});
    store.setTags(second, {"b", "c", "c"});
    store.deleteClip(second);
    const std::vector<ClipStore::TagCount> expected{{"c", 3}, {"b", 2}, {"a", 1}};
    EXPECT_EQ(store.tagCounts(), expected);
    EXPECT_THAT(store.allTags(2), ElementsAre("c", "b"));
    EXPECT_THAT(store.allTags(9), ElementsAre("c", "b", "a"));
    EXPECT_THAT(store.allTags(0), IsEmpty());
}

TEST_F(StoreQueries, NegativeTagLimitEndsTheProcess) {
    EXPECT_DEATH(store.allTags(-1), "negative limit");
}

TEST_F(StoreQueries, KindsAndApplicationsAreCountedMostUsedFirst) {
    store.insert("1", ClipKind::ocr, {"Editor", "com.editor"});
    store.insert("2", ClipKind::ocr, {"Editor", {}});
    store.insert("3", ClipKind::ocr, {"Shell", "com.shell"});
    store.createSnippet("n", "4");
    const auto odd = insertText("5");
    database.run("UPDATE clips SET kind = 'video' WHERE id = " + std::to_string(odd));
    const auto gone = store.insert("6", ClipKind::file, {"Gone", {}})->id;
    store.deleteClip(gone);

    const std::vector<ClipStore::KindCount> kinds{{ClipKind::ocr, 3}, {ClipKind::text, 1}};
    EXPECT_EQ(store.kindCounts(), kinds);
    const auto apps = store.sourceAppCounts(10);
    ASSERT_EQ(apps.size(), 2U);
    EXPECT_EQ(apps[0].app, "Editor");
    EXPECT_EQ(apps[0].count, 2);
    EXPECT_EQ(apps[1].bundleId, "com.shell");
    EXPECT_EQ(store.sourceAppCounts(1).size(), 1U);
}

TEST_F(StoreQueries, TodayBeginsAtLocalMidnight) {
    const ScopedVariable zone("TZ", "Europe/Berlin");
    const double midnight = 1699916400;
    now = {midnight - 0.001};
    store.insert("yesterday", ClipKind::ocr);
    EXPECT_EQ(store.capturedTodayCount(), 1);
    now = {midnight};
    EXPECT_EQ(store.capturedTodayCount(), 0);
    store.insert("today", ClipKind::ocr);
    store.createSnippet("n", "today too");
    EXPECT_EQ(store.capturedTodayCount(), 2);
    advance(23 * 3600);
    EXPECT_EQ(store.capturedTodayCount(), 2);
    store.clearUnpinned();
    EXPECT_EQ(store.capturedTodayCount(), 1);
}

}  // namespace
}  // namespace brimquill::test

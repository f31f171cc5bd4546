#include "BrimquillCore/SnippetImport.h"

#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

namespace brimquill::test {
namespace {

using SnippetImport::parse;
using SnippetImport::Parsed;
using testing::IsEmpty;

struct Case {
    std::string data;
    std::vector<Parsed> expected;
};

TEST(SnippetImport, TakesFromJsonWhatItRecognises) {
    const std::string hundred(100, 'x');
    const Case cases[] = {
        {R"([{"name":"N","text":"T"}])", {{"N", "T", {}}}},
        {R"([{"text":5,"snippet":"good"}])", {}},
        {R"([{"text":null,"snippet":"good"}])", {}},
        {R"([{"text":{"deep":[[[[[[[1]]]]]]]},"snippet":"good"}])", {}},
        {R"([{"text":""},{"snippet":"b"}])", {{"b", "b", {}}}},
        {R"({"snippets":3,"matches":[{"replace":"R","trigger":":r"}]})", {{":r", "R", ":r"}}},
        {R"({"snippets":[],"matches":[{"replace":"R"}]})", {}},
        {R"({"snippets":[{"value":"V"}],"matches":[{"replace":"R"}]})", {{"V", "V", {}}}},
        {R"([{"abbreviation":"ab","plainText":"P"}])", {{"ab", "P", "ab"}}},
        {R"([{"keyword":"","text":"T"}])", {{"", "T", ""}}},
        {R"([{"keyword":1,"trigger":":t","name":2,"label":"L","text":"T"}])", {{"T", "T", {}}}},
        {R"([{"title":"","text":"T"}])", {{"", "T", {}}}},
        {"[{\"text\":\"" + hundred + "\"}]", {{hundred.substr(0, 30), hundred, {}}}},
        {"\xEF\xBB\xBF[{\"text\":\"after a byte order mark\"}]",
         {{"after a byte order mark", "after a byte order mark", {}}}},
        {R"([{"text":"T"},1])", {}},
        {R"([["text"]])", {}},
        {R"("text")", {}},
        {"null", {}},
        {"[]", {}},
        {"", {}},
    };
    for (const auto& [data, expected] : cases)
        EXPECT_EQ(parse(data, "json"), expected) << data;
}

TEST(SnippetImport, ReadsYamlLineByLine) {
    const Case cases[] = {
        {"matches:\n  - trigger: \":hi\"\n    replace: \"a\\nb\"\n", {{":hi", "a\nb", ":hi"}}},
        {"trigger: ':x'\r\nreplace: it's\r\n", {{":x", "it's", ":x"}}},
        {"- trigger: :a\nreplace: 1\nreplace: 2", {{":a", "1", ":a"}, {"2", "2", {}}}},
        {"- trigger: :a\n- trigger: :b\nreplace: 1", {{":b", "1", ":b"}}},
        {"trigger: :a\nreplace: \"\"\nreplace:\nreplace: late", {{":a", "late", ":a"}}},
        {"trigger: :a\nreplace: |\n  block", {{":a", "|", ":a"}}},
        {"replace: \"", {{"\"", "\"", {}}}},
        {"replace: \"open'", {{"\"open'", "\"open'", {}}}},
        {"replace: \\t\\\\n", {{"\\t\\\n", "\\t\\\n", {}}}},
        {"- replace: no", {}},
        {" # replace: no\nxreplace: no", {}},
        {"replace: \xff", {}},
    };
    for (const auto& [data, expected] : cases) {
        EXPECT_EQ(parse(data, "yml"), expected) << data;
        EXPECT_EQ(parse(data, "YAML"), expected) << data;
        EXPECT_EQ(parse(data, "txt"), expected) << "what is no JSON is read as YAML: " << data;
    }
    EXPECT_THAT(parse(R"([{"text":"T"}])", "yml"), IsEmpty());
}

TEST(SnippetImport, CutsANameBetweenCharacters) {
    std::string body;
    for (int i = 0; i < 40; ++i)
        body += "👩‍👧";
    const auto snippets = parse("replace: " + body, "yml");
    ASSERT_EQ(snippets.size(), 1u);
    EXPECT_EQ(snippets[0].name, body.substr(0, body.size() / 40 * 30));
}

TEST(SnippetImport, SurvivesHostileDepth) {
    constexpr int depth = 200'000;
    const std::string open(depth, '['), close(depth, ']');
    EXPECT_THAT(parse(open, "json"), IsEmpty());
    EXPECT_THAT(parse(open + close, "json"), IsEmpty());
    EXPECT_EQ(parse("[{\"x\":" + open + close + ",\"text\":\"T\"}]", "json"), (std::vector<Parsed>{{"T", "T", {}}}));
}

TEST(SnippetImport, WritesEachSnippetThatHasAText) {
    const TemporaryDirectory directory;
    NotificationCenter center;
    ClipStore store(directory / "store", center);
    writeFile(directory / "export.JSON", R"([{"name":"N","text":"T","keyword":"k"},{"name":"M","text":"U"}])");
    EXPECT_EQ(SnippetImport::importFile(directory / "export.JSON", store), 2);
    EXPECT_EQ(SnippetImport::importFile(directory / "export.JSON", store), 2) << "importing twice doubles";
    EXPECT_EQ(SnippetImport::write({{"empty", "", {}}}, store), 0);
    EXPECT_EQ(store.fetchSnippets().size(), 4u);
    const auto snippet = store.snippetForKeyword("k");
    ASSERT_TRUE(snippet);
    EXPECT_EQ(snippet->text, "T");
    EXPECT_EQ(snippet->folderId, std::nullopt);
}

TEST(SnippetImport, ReadsNoFileThatIsNone) {
    const TemporaryDirectory directory;
    NotificationCenter center;
    ClipStore store(directory / "store", center);
    writeFile(directory / "long.yml", "replace: x\n" + std::string(SnippetImport::largestFile, ' '));
    for (const auto& file :
         {directory / "missing.yml", directory.path(), directory / "long.yml", std::filesystem::path("/dev/zero")}) {
        EXPECT_EQ(SnippetImport::importFile(file, store), 0) << file;
    }
}

}  // namespace
}  // namespace brimquill::test

#include "BrimquillCore/HoardManifest.h"
#include "tests/core/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <limits>

namespace brimquill::HoardArchive {
namespace {

using test::TemporaryDirectory;
using test::writeFile;

/// The text of the failure to read `json` as a manifest; "" when it can be read.
std::string failureOf(std::string_view json) {
    const TemporaryDirectory directory;
    writeFile(directory / manifestFileName, json);
    try {
        readManifest(directory.path());
    } catch (const ArchiveError& error) {
        return error.what();
    }
    return "";
}

Manifest decoded(std::string_view json) {
    const TemporaryDirectory directory;
    writeFile(directory / manifestFileName, json);
    return readManifest(directory.path());
}

constexpr const char* notOurs = "This file is not a Brimquill export.";
constexpr const char* wholeClip =
    R"({"uuid":"u","kind":"ocr","text":"t","createdAt":1.5,"pinned":true,"tags":["a","b"],"name":"n","keyword":"k",)"
    R"("sourceApp":"s","sourceBundleId":"i","folderUuid":"f","image":"images/u.png"})";

/// A manifest of these members, with what is not given standing as it should.
std::string manifest(const std::string& clips, const std::string& folders = "[]", const std::string& version = "1",
                     const std::string& rest = R"("exportedAt":2,"scope":"everything")") {
    return R"({"format":"brimquill-export","version":)" + version + R"(,"folders":)" + folders + R"(,"clips":)" +
           clips + "," + rest + "}";
}

TEST(HoardManifest, IsWrittenSortedAndPretty) {
    Manifest manifest;
    manifest.exportedAt = 1700000000.25;
    manifest.scope = rawValue(Scope::snippetsAndPinboards);
    manifest.folders = {{"f", "Work/\"q\"", "p", "red"}};
    manifest.clips = {{"u", "text", "é\n\xFF", 0.1}};
    EXPECT_EQ(encode(manifest), R"({
  "clips": [
    {
      "createdAt": 0.1,
      "kind": "text",
      "pinned": false,
      "tags": [],
      "text": "é\n)"
                                "\xEF\xBF\xBD"
                                R"(",
      "uuid": "u"
    }
  ],
  "exportedAt": 1700000000.25,
  "folders": [
    {
      "color": "red",
      "name": "Work/\"q\"",
      "parentUuid": "p",
      "uuid": "f"
    }
  ],
  "format": "brimquill-export",
  "scope": "snippetsAndPinboards",
  "version": 1
})");
}

TEST(HoardManifest, SortsAllMembersOfAClip) {
    Manifest manifest;
    manifest.clips = {{"u", "image", "t", 1, "a", "b", true, "n", "k", "f", {"x"}, "images/u.png"}};
    const auto json = encode(manifest);
    std::size_t last = 0;
    for (const char* member : {"createdAt", "folderUuid", "image", "keyword", "kind", "name", "pinned", "sourceApp",
                               "sourceBundleId", "tags", "text", "uuid"}) {
        const auto place = json.find("      \"" + std::string(member) + "\": ");
        ASSERT_NE(place, std::string::npos) << member;
        EXPECT_GT(place, last) << member;
        last = place;
    }
}

TEST(HoardManifest, ComesBackAsItWas) {
    Manifest manifest;
    manifest.exportedAt = 1700000000.123456;
    manifest.scope = rawValue(Scope::everything);
    manifest.folders = {{"f", "", {}, {}}, {"g", "Ünï", "f", "#abc"}};
    manifest.clips = {{"u", "text", std::string("nul\0 \u2028 \"\\/", 12), -1e-300},
                      {"v", "image", "", 5e18, "App", "com.app", true, "", ";k", "g", {"a", "", "b"}, "images/v.png"}};
    EXPECT_EQ(decoded(encode(manifest)), manifest);
}

TEST(HoardManifest, IsNotWrittenWithADateThatIsNone) {
    for (const double seconds : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        Manifest manifest;
        manifest.clips = {{"u", "text", "t", seconds}};
        EXPECT_THROW(encode(manifest), std::runtime_error);
    }
}

TEST(HoardManifest, IsReadWhateverItHoldsBesides) {
    const auto read = decoded(manifest("[" + std::string(wholeClip) + R"(,
        {"x":{"uuid":[{"text":1}]},"uuid":"v","kind":"?","text":"","createdAt":-3,"pinned":false,"tags":[],
         "y":[[{}],{},{"tags":3}],"name":null,"image":null}])",
                                       R"([{"uuid":"f","name":"n","text":{"a":[1]},"parentUuid":null}])", "1.0",
                                       R"("exportedAt":2,"scope":"?","more":[{"uuid":1},[2],{"clips":[{}]}],"z":{})"));
    const Clip first{"u", "ocr", "t", 1.5, "s", "i", true, "n", "k", "f", {"a", "b"}, "images/u.png"};
    EXPECT_EQ(read.clips, (std::vector<Clip>{first, {"v", "?", "", -3}}));
    EXPECT_EQ(read.folders, (std::vector<Folder>{{"f", "n"}}));
    EXPECT_EQ(read.scope, "?");
    EXPECT_EQ(decoded(manifest("[" + std::string(wholeClip) + "],\"clips\":[]")).clips.size(), 0U);
}

TEST(HoardManifest, PassesByItsVersion) {
    const std::string newer = "This export was made by a newer Brimquill (format ";
    const std::string advice = "). Update the app to import it.";
    const std::pair<const char*, std::string> table[] = {
        {"1", ""},
        {"0", ""},
        {"-7", ""},
        {"-9223372036854775808", ""},
        {"2", newer + "2" + advice},
        {"2.0", newer + "2" + advice},
        {"9223372036854775807", newer + "9223372036854775807" + advice},
        {"9223372036854775808", notOurs},
        {"1e30", notOurs},
        {"1.5", notOurs},
        {"\"1\"", notOurs},
        {"true", notOurs},
        {"null", notOurs},
        {"[1]", notOurs},
        {"{}", notOurs},
    };
    for (const auto& [version, failure] : table) {
        EXPECT_EQ(failureOf(manifest("[]", "[]", version)), failure) << version;
    }
}

TEST(HoardManifest, IsRefusedWhenAnythingIsMissingOrOfAnotherType) {
    const auto clip = std::string(wholeClip);
    const std::pair<const char*, const char*> wrong[] = {
        {R"("uuid":"u",)", ""},
        {R"("kind":"ocr",)", ""},
        {R"("text":"t",)", ""},
        {R"("createdAt":1.5,)", ""},
        {R"("pinned":true,)", ""},
        {R"("tags":["a","b"],)", ""},
        {R"("pinned":true)", R"("pinned":1)"},
        {R"("pinned":true)", R"("pinned":null)"},
        {R"("createdAt":1.5)", R"("createdAt":"1.5")"},
        {R"("createdAt":1.5)", R"("createdAt":1e999)"},
        {R"("createdAt":1.5)", R"("createdAt":NaN)"},
        {R"("text":"t")", R"("text":["t"])"},
        {R"("text":"t")", R"("text":null)"},
        {R"("text":"t")", "\"text\":\"\xFF\""},
        {R"("tags":["a","b"])", R"("tags":["a",1])"},
        {R"("tags":["a","b"])", R"("tags":[["a"]])"},
        {R"("tags":["a","b"])", R"("tags":{"a":"b"})"},
        {R"("tags":["a","b"])", R"("tags":"a")"},
        {R"("tags":["a","b"])", R"("tags":null)"},
        {R"("name":"n")", R"("name":{})"},
        {R"("image":"images/u.png")", R"("image":3)"},
    };
    for (const auto& [right, replacement] : wrong) {
        auto broken = clip;
        broken.replace(broken.find(right), std::string(right).size(), replacement);
        EXPECT_EQ(failureOf(manifest("[" + broken + "]")), notOurs) << broken;
    }
    for (const auto& json :
         {std::string(),
          std::string("null"),
          std::string("[]"),
          std::string("{}"),
          std::string("\"text\""),
          std::string("PK\3\4"),
          manifest("{}"),
          manifest("[1]"),
          manifest("[[]]"),
          manifest("null"),
          manifest("[{}]"),
          manifest("[]", "{}"),
          manifest("[]", "[null]"),
          manifest("[]", R"([{"uuid":"f"}])"),
          manifest("[]", R"([{"uuid":"f","name":"n","color":7}])"),
          manifest("[]", "[]", "1", R"("exportedAt":1)"),
          manifest("[]", "[]", "1", R"("scope":"everything")"),
          manifest("[]") + "x",
          manifest("[]").substr(0, manifest("[]").size() - 1),
          "[" + manifest("[]") + "]",
          std::string(R"({"format":"brimquill-export","version":1,"exportedAt":1,"scope":"s","clips":[]})"),
          std::string(R"({"format":"other","version":2,"exportedAt":1,"scope":"s","clips":[],"folders":[]})")}) {
        EXPECT_EQ(failureOf(json), notOurs) << json;
    }
}

TEST(HoardManifest, EndsEarlyAtHostileDepthAndSize) {
    for (const char* open : {"[", "{\"a\":"}) {
        std::string deep;
        for (int level = 0; level < 1'000'000; ++level)
            deep += open;
        EXPECT_EQ(failureOf(deep), notOurs);
        EXPECT_EQ(failureOf(manifest("[]", "[]", "1", "\"x\":" + deep)), notOurs);
    }
    const TemporaryDirectory directory;
    writeFile(directory / manifestFileName, manifest("[]"));
    // As long as the file claims to be, it is not even looked into.
    ASSERT_EQ(::truncate((directory / manifestFileName).c_str(), off_t{1} << 40), 0);
    EXPECT_THROW(readManifest(directory.path()), ArchiveError);
}

TEST(HoardManifest, IsARegularFile) {
    const TemporaryDirectory directory;
    EXPECT_THROW(readManifest(directory.path()), ArchiveError);
    EXPECT_THROW(readManifest(directory / "nowhere"), ArchiveError);
    ASSERT_EQ(::mkfifo((directory / manifestFileName).c_str(), 0600), 0);
    EXPECT_THROW(readManifest(directory.path()), ArchiveError);
    std::filesystem::remove(directory / manifestFileName);
    std::filesystem::create_directory(directory / manifestFileName);
    EXPECT_THROW(readManifest(directory.path()), ArchiveError);
    std::filesystem::remove(directory / manifestFileName);
    writeFile(directory / "other.json", manifest("[]"));
    std::filesystem::create_symlink("other.json", directory / manifestFileName);
    EXPECT_THROW(readManifest(directory.path()), ArchiveError);
}

}  // namespace
}  // namespace brimquill::HoardArchive

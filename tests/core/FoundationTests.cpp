#include "BrimquillCore/Foundation/Calendar.h"
#include "BrimquillCore/Foundation/Files.h"
#include "BrimquillCore/Foundation/Log.h"
#include "BrimquillCore/Foundation/Uuid.h"
#include "tests/core/ScopedVariable.h"
#include "tests/core/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <set>

namespace brimquill::test {
namespace {

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

TEST(Uuid, IsRandomOfVersionFour) {
    std::set<std::string> seen;
    for (int count = 0; count < 200; ++count) {
        const auto uuid = makeUuid();
        EXPECT_THAT(uuid, MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
        EXPECT_TRUE(isUuid(uuid));
        EXPECT_TRUE(seen.insert(uuid).second);
    }
}

TEST(Uuid, FormIsToldFromOtherText) {
    EXPECT_TRUE(isUuid("0F8FAD5B-d9cb-469f-a165-70867728950e"));
    for (const auto* text : {"", "0f8fad5bd9cb469fa16570867728950e", "0f8fad5b-d9cb-469f-a165-70867728950",
                             "0f8fad5b-d9cb-469f-a165-70867728950e0", "0f8fad5b-d9cb-469f-a165_70867728950e",
                             "0f8fad5g-d9cb-469f-a165-70867728950e", "../../..-d9cb-469f-a165-70867728950e"}) {
        EXPECT_FALSE(isUuid(text)) << text;
    }
}

TEST(Log, LinesCarryThePrefixAndASinkMayLog) {
    std::vector<std::string> lines;
    const auto before = log::setSink([&lines](std::string_view line) {
        lines.emplace_back(line);
        if (lines.size() == 1) log::write("again");
    });
    log::write("started");
    log::setSink(before);
    EXPECT_THAT(lines, ElementsAre("Brimquill: started", "Brimquill: again"));
}

TEST(Files, WritesAreWholeOrNotAtAll) {
    const TemporaryDirectory directory;
    const auto file = directory / "a.png";
    const std::string bytes("\0one\xff", 5);
    EXPECT_TRUE(files::writePrivateFile(file, bytes));
    EXPECT_EQ(files::readFile(file, 5), bytes);
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_TRUE(files::writePrivateFile(file, "two"));
    EXPECT_EQ(files::readFile(file, 100), "two");

    std::filesystem::create_directories(directory / "taken/inner");
    EXPECT_FALSE(files::writePrivateFile(directory / "taken", "x"));
    EXPECT_FALSE(files::writePrivateFile(directory / "missing/a", "x"));
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path()))
        names.insert(entry.path().filename());
    EXPECT_THAT(names, ElementsAre("a.png", "taken"));
}

TEST(Files, ReadsRegularFilesUpToTheMaximumOnly) {
    const TemporaryDirectory directory;
    writeFile(directory / "six", "sixsix");
    ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(files::readFile(directory / "six", 5), std::nullopt);
    EXPECT_EQ(files::readFile(directory / "pipe", 5), std::nullopt);
    EXPECT_EQ(files::readFile(directory.path(), 5), std::nullopt);
    EXPECT_EQ(files::readFile(directory / "none", 5), std::nullopt);
    EXPECT_EQ(files::readFile("/dev/zero", 5), std::nullopt);
}

TEST(Files, RemovesNoDirectory) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory / "empty");
    files::removeFile(directory / "empty");
    EXPECT_TRUE(std::filesystem::exists(directory / "empty"));
    std::filesystem::create_symlink(directory / "empty", directory / "link");
    files::removeFile(directory / "link");
    EXPECT_FALSE(std::filesystem::is_symlink(directory / "link"));
    EXPECT_TRUE(std::filesystem::exists(directory / "empty"));
}

TEST(Files, PrivateDirectoryIsToldFromAFile) {
    const TemporaryDirectory directory;
    writeFile(directory / "file", "");
    EXPECT_FALSE(files::makePrivateDirectory(directory / "file"));
    EXPECT_FALSE(files::makePrivateDirectory(directory / "file/below"));
    EXPECT_TRUE(files::makePrivateDirectory(directory / "a/b/"));
    EXPECT_TRUE(files::makePrivateDirectory(directory / "a/b"));
    EXPECT_EQ(modeOf(directory / "a/b"), 0700U);
}

TEST(Calendar, DayStartsAtLocalMidnightOrTheFirstMomentThereIs) {
    struct Case {
        const char* zone;
        double moment, start;
    };
    for (const auto& [zone, moment, start] : {
             Case{"UTC", 1700000000.25, 1699920000},
             Case{"Europe/Berlin", 1700000000.25, 1699916400},
             Case{"Europe/Berlin", 1699916400, 1699916400},
             Case{"Europe/Berlin", 1699916399.999, 1699830000},
             Case{"Europe/Berlin", 1711890000, 1711839600},      // the day of the change to summer time
             Case{"America/Sao_Paulo", 1541340000, 1541300400},  // a day without midnight
             Case{"America/Havana", 1699203600, 1699156800},     // a day with two midnights
             Case{"Asia/Kolkata", 0.5, -19800},
         }) {
        const ScopedVariable variable("TZ", zone);
        EXPECT_EQ(startOfDay({moment}), Date{start}) << zone << " " << moment;
    }
}

}  // namespace
}  // namespace brimquill::test

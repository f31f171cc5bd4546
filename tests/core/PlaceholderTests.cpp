#include "BrimquillCore/Placeholders.h"

#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Uuid.h"
#include "tests/core/StoreFixture.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <cstdlib>
#include <stdexcept>

namespace brimquill::test {
namespace {

/// Wednesday, 31 January 2024, 15:04:05 UTC.
constexpr Date now{1706713445};

class PlaceholderTest : public testing::Test {
protected:
    PlaceholderTest() {
        setenv("LC_ALL", "en_US.UTF-8", 1);
        setLocale("en_US");
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("UTC"));
        Placeholders::hoardProvider = [](std::int64_t offset) { return "clip " + std::to_string(offset); };
    }
    ~PlaceholderTest() override {
        Placeholders::clipboardProvider = clipboardProvider_;
        Placeholders::hoardProvider = hoardProvider_;
    }
    static void setLocale(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
    }
    static std::string expand(const std::string& text) {
        return Placeholders::expand(text, [] { return now; });
    }

private:
    decltype(Placeholders::clipboardProvider) clipboardProvider_ = Placeholders::clipboardProvider;
    decltype(Placeholders::hoardProvider) hoardProvider_ = Placeholders::hoardProvider;
};

struct Case {
    std::string text, expected;
};

TEST_F(PlaceholderTest, LeavesAloneWhatIsNoPlaceholder) {
    for (const char* text :
         {"", "plain", "}", "{", "{}", "{ date}", "{Date}", "{date2", "{\"key\": {\"a\": 1}}", "{cursor}",
          "{nosuchthing}", "{nosuch x=1}", "a } b { c", "\xff{cursor}", "{date", "é{cursor}🎉{"}) {
        const auto shown = std::string(text) == "\xff{cursor}" ? "\uFFFD{cursor}" : text;
        EXPECT_EQ(expand(text), shown);
    }
    EXPECT_EQ(expand("{date2}"), expand("{date 2}")) << "what follows the letters reads as an attribute";
}

TEST_F(PlaceholderTest, TellsDatesInTheUsersLocale) {
    for (const auto& [text, expected] : {
             Case{"today: {date format=\"yyyy\"}", "today: 2024"},
             Case{"{date}", "Jan 31, 2024"},
             Case{"{time}", "3:04\u202FPM"},
             Case{"{datetime}", "Jan 31, 2024, 3:04\u202FPM"},
             Case{"{date format=yyyy-MM-dd}T{time format=HH:mm:ss}", "2024-01-31T15:04:05"},
             Case{"{date format=\"EEEE d. MMMM\"}", "Wednesday 31. January"},
             Case{"{date format=\"MMM\" | uppercase | trim}", "JAN"},
             Case{"{date format=\"\"}", ""},
             Case{"{date format=\"'unfinished\"}", "unfinished"},
             Case{"{date format=\"yyyy|MM\"}", "\"2024"},
             Case{"{date\n format=yyyy\n}", "2024"},
         }) {
        EXPECT_EQ(expand(text), expected) << text;
    }
    setLocale("de_DE");
    EXPECT_EQ(expand("{date} {time} {date format=MMMM}"), "31.01.2024 15:04 Januar");
    setLocale("th_TH@calendar=buddhist");
    EXPECT_EQ(expand("{date format=yyyy}"), "2567");
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Tokyo"));
    setLocale("ja_JP");
    EXPECT_EQ(expand("{date format=\"dd HH\"}"), "01 00");
}

TEST_F(PlaceholderTest, FollowsTheLocaleOfTimesWhereItIsSetApart) {
    unsetenv("LC_ALL");
    setenv("LC_TIME", "fr_FR.UTF-8", 1);
    EXPECT_EQ(expand("{date format=MMMM}"), "janvier");
    unsetenv("LC_TIME");
    EXPECT_EQ(expand("{date format=MMMM}"), "January");
}

TEST_F(PlaceholderTest, MovesDatesByTheirOffset) {
    for (const auto& [offset, expected] : {
             Case{"+1y", "2025-01-31 15:04"},
             Case{"-2d", "2024-01-29 15:04"},
             Case{"1M", "2024-02-29 15:04"},
             Case{"1M2d", "2024-03-02 15:04"},
             Case{"2d1M", "2024-03-02 15:04"},
             Case{"1d2d", "2024-02-03 15:04"},
             Case{"-1h-5m", "2024-01-31 13:59"},
             Case{"9h", "2024-02-01 00:04"},
             Case{"1d and then, 1h", "2024-02-01 16:04"},
             Case{"3-1d", "2024-01-30 15:04"},
             Case{"1D", "2024-01-31 15:04"},
             Case{"", "2024-01-31 15:04"},
             Case{"tomorrow", "2024-01-31 15:04"},
             Case{"99999999999999999999d1h", "2024-01-31 16:04"},
             Case{"9000000000000000000y", "2024-01-31 15:04"},
             Case{"-3000000000m", "-3680-03-11 07:04"},
         }) {
        const auto result = expand("{date format=\"u-MM-dd HH:mm\" offset=\"" + offset + "\"}");
        EXPECT_TRUE(result.starts_with(expected)) << offset << ": " << result;
    }
    EXPECT_EQ(expand("{date format=\"d\" offset=\"1d\" offset=\"2d\"}"), "2");
    EXPECT_THROW(expand("{date offset=\"9223372036854775807d1d\"}"), std::overflow_error);
}

TEST_F(PlaceholderTest, AsksItsProvidersOncePerPlaceholder) {
    int asked = 0;
    EXPECT_EQ(expand("[{clipboard}]"), "[]");
    Placeholders::clipboardProvider = [&asked] {
        ++asked;
        return std::string(" {uuid} ä/&|");
    };
    for (const auto& [text, expected] : {
             Case{"<{clipboard}>", "< {uuid} ä/&|>"},
             Case{"{clipboard|trim}{clipboard | uppercase}", "{uuid} ä/&| {UUID} Ä/&|"},
             Case{"{clipboard | percent-encode}", "%20%7Buuid%7D%20%C3%A4/&%7C"},
             Case{"{hoard}{hoard offset=+1}{hoard offset=abc}{hoard offset=}", "clip 0clip 1clip 0clip 0"},
             Case{"{hoard offset=\"\"} {hoard offset=12x} {hoard offset=+-1}", "clip 0 clip 0 clip 0"},
             Case{"{hoard offset=\"7\" | uppercase}", "CLIP 7"},
             Case{"{hoard offset = 7}", "clip 0"},
         }) {
        EXPECT_EQ(expand(text), expected) << text;
    }
    EXPECT_EQ(asked, 4);
}

TEST_F(PlaceholderTest, RunsPipesFromLeftToRight) {
    for (const auto& [text, expected] : {
             Case{"{nosuchthing | uppercase}", "{NOSUCHTHING | UPPERCASE}"},
             Case{"{hoard | uppercase | lowercase}", "clip 0"},
             Case{"{hoard |\t uppercase \t|||}", "CLIP 0"},
             Case{"{hoard | nosuch | Uppercase}", "clip 0"},
             Case{"{hoard |\nuppercase}", "clip 0"},
         }) {
        EXPECT_EQ(expand(text), expected) << text;
    }
}

TEST_F(PlaceholderTest, GivesEachUuidAfresh) {
    const auto two = expand("{uuid}{uuid}");
    ASSERT_EQ(two.size(), 72u);
    EXPECT_TRUE(isUuid(two.substr(0, 36)));
    EXPECT_NE(two.substr(0, 36), two.substr(36));
    EXPECT_EQ(two.find_first_of("abcdef"), std::string::npos);
}

TEST_F(PlaceholderTest, StaysLinearOnHostileTemplates) {
    const auto repeated = [](const std::string& piece, int times) {
        std::string result;
        for (int i = 0; i < times; ++i)
            result += piece;
        return result;
    };
    constexpr int many = 200'000;
    for (const auto& text : {repeated("{a", many), repeated("{", many) + "a", "}" + repeated("{a|", many)}) {
        EXPECT_TRUE(expand(text) == text) << text.substr(0, 20);
    }
    const auto letters = std::string(many, 'a'), digits = std::string(many, '1');
    EXPECT_TRUE(expand("{" + letters + "}") == "{" + letters + "}");
    for (const auto& attributes : {letters, repeated("a=\"", many), repeated("=", many), "offset=" + letters}) {
        EXPECT_EQ(expand("{hoard " + attributes + "}").substr(0, 100), "clip 0") << attributes.substr(0, 20);
    }
    for (const auto& offset : {digits, repeated("+1", many), repeated("1d-1d", many)}) {
        EXPECT_EQ(expand("{date format=d offset=" + offset + "}").substr(0, 100), "31") << offset.substr(0, 20);
    }
    for (const char* calendar :
         {"en@calendar=chinese", "en@calendar=hebrew", "ar@calendar=islamic", "en@calendar=ethiopic"}) {
        setLocale(calendar);
        EXPECT_FALSE(expand("{date offset=-99000y} {datetime offset=99000y}").empty());
    }
    EXPECT_EQ(expand("{hoard " + repeated("|", 1000) + "trim}"), "clip 0");
}

TEST(HoardProvider, CountsFromTheNewestClip) {
    static const TemporaryDirectory directory;
    setenv("BRIMQUILL_DATA_DIR", directory.path().c_str(), 1);
    auto& store = ClipStore::shared();
    for (const char* text : {"oldest", "middle", "newest"})
        store.insert(text, ClipKind::text);
    EXPECT_EQ(Placeholders::expand("{hoard},{hoard offset=2},{hoard offset=3},{hoard offset=9223372036854775807}"),
              "newest,oldest,,");
    EXPECT_THROW(Placeholders::expand("{hoard offset=-1}"), std::out_of_range);
}

}  // namespace
}  // namespace brimquill::test

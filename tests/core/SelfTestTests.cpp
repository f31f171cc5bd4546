#include "BrimquillCore/SecretDetector.h"
#include "BrimquillCore/SelfTest.h"
#include "tests/core/StoreFixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace brimquill::test {
namespace {

using ::testing::HasSubstr;

constexpr const char* everythingPasses =
    "PASS placeholder {date format}\n"
    "PASS placeholder pipes\n"
    "PASS placeholder {uuid}\n"
    "PASS unknown placeholder passthrough\n"
    "PASS placeholder date offset\n"
    "PASS OTP detected\n"
    "PASS Visa test number detected (Luhn)\n"
    "PASS Luhn-invalid number ignored\n"
    "PASS normal text ignored\n"
    "PASS phone-ish long digits ignored\n"
    "PASS store insert\n"
    "PASS FTS prefix search finds it\n"
    "PASS snippet promotion + keyword lookup\n"
    "PASS delete\n"
    "PASS expired secret swept\n"
    "\n"
    "All self-tests passed.\n";

class SelfTestTest : public StoreTest {
protected:
    /// Runs the self-test; its output stands in `output` afterwards.
    int run() {
        advance(1);
        std::ostringstream stream;
        const int failures = runSelfTest(store, stream, [this] { return now; });
        output = stream.str();
        return failures;
    }

    std::string output;
};

TEST_F(SelfTestTest, PassesOnAnEmptyStoreAndLeavesTwoDeletedClips) {
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(output, everythingPasses);
    EXPECT_EQ(database.value("SELECT count(*), sum(deleted) FROM clips"), "2|2");
    EXPECT_EQ(database.value("SELECT name, keyword, source_app FROM clips WHERE name IS NOT NULL"),
              "Self Test|:st|SelfTest");
}

TEST_F(SelfTestTest, PassesAgainAndAgain) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(run(), 0) << output;
    }
    EXPECT_EQ(database.value("SELECT count(*), sum(deleted) FROM clips"), "6|6");
}

TEST_F(SelfTestTest, PassesOnAFullStoreAndTouchesNothingInIt) {
    store.retentionLimit = 0;
    database.run(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000)\n"
        "INSERT INTO clips (text, created_at, uuid, modified_at)\n"
        "SELECT 'selftest of an earlier day ' || i, 1600000000 + i, 'old-' || i, 1600000000 + i FROM n");
    const auto before = database.rows("SELECT * FROM clips");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(output, everythingPasses);
    EXPECT_EQ(database.rows("SELECT * FROM clips WHERE uuid LIKE 'old-%'"), before);
}

TEST_F(SelfTestTest, FailsBothDetectionsWhenDetectionIsOff) {
    SecretDetector::autoExpiryEnabled = false;
    EXPECT_EQ(run(), 2);
    SecretDetector::autoExpiryEnabled = true;
    EXPECT_THAT(output, HasSubstr("\nFAIL OTP detected\nFAIL Visa test number detected (Luhn)\nPASS Luhn-invalid"));
    EXPECT_THAT(output, HasSubstr("\nPASS expired secret swept\n\n2 self-test(s) FAILED.\n"));
}

TEST_F(SelfTestTest, ReportsAKeywordThatIsTakenAndGoesOn) {
    store.createSnippet("A", "somebody's own", ":st");
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(output, HasSubstr("\nFAIL snippet promotion + keyword lookup\nPASS delete\n"));
    EXPECT_THAT(output, HasSubstr("\n\n1 self-test(s) FAILED.\n"));
}

}  // namespace
}  // namespace brimquill::test

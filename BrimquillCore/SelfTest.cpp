#include "BrimquillCore/SelfTest.h"

#include "BrimquillCore/ClipStore.h"
#include "BrimquillCore/Foundation/Text.h"
#include "BrimquillCore/Foundation/Uuid.h"
#include "BrimquillCore/PlaceholderDate.h"
#include "BrimquillCore/Placeholders.h"
#include "BrimquillCore/SecretDetector.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace brimquill {
namespace {

constexpr int searchLimit = 200, historyLimit = 50;
constexpr std::size_t prefixLength = 12;
const ClipStore::Source source{"SelfTest", {}};

bool hasId(const std::vector<ClipItem>& clips, std::int64_t id) {
    return std::any_of(clips.begin(), clips.end(), [id](const ClipItem& clip) { return clip.id == id; });
}

bool hasText(const std::vector<ClipItem>& clips, std::string_view text) {
    return std::any_of(clips.begin(), clips.end(), [text](const ClipItem& clip) { return clip.text == text; });
}

class SelfTest final {
public:
    SelfTest(ClipStore& store, std::ostream& output, const Clock& clock)
        : store_(store), output_(output), clock_(clock) {}

    int run() {
        checkPlaceholders();
        checkSecrets();
        checkStore();
        checkExpiry();
        if (failures_ > 0) {
            output_ << '\n' << failures_ << " self-test(s) FAILED." << std::endl;
        } else {
            output_ << "\nAll self-tests passed." << std::endl;
        }
        return failures_;
    }

private:
    void check(std::string_view label, bool ok, std::string_view detail = {}) {
        output_ << (ok ? "PASS " : "FAIL ") << label;
        if (!ok && !detail.empty()) output_ << " — " << detail;
        output_ << '\n';
        if (!ok) ++failures_;
    }

    std::string expanded(const std::string& templateText) { return Placeholders::expand(templateText, clock_); }
    bool isSecret(std::string_view text) { return SecretDetector::expiryDate(text, clock_()).has_value(); }

    void checkPlaceholders() {
        const int year = PlaceholderDate::year(clock_());
        const auto today = expanded("today: {date format=\"yyyy\"}");
        check("placeholder {date format}", today == "today: " + std::to_string(year), today);
        const auto month = expanded("{date format=\"MMM\" | uppercase | trim}");
        const bool isPiped = month == text::uppercased(month) && month.find('{') == std::string::npos;
        check("placeholder pipes", isPiped, month);
        const auto uuid = expanded("{uuid}");
        check("placeholder {uuid}", isUuid(uuid), uuid);
        const auto unknown = expanded("{nosuchthing}");
        check("unknown placeholder passthrough", unknown == "{nosuchthing}", unknown);
        const auto next = expanded("{date format=\"yyyy\" offset=\"+1y\"}");
        check("placeholder date offset", next == std::to_string(year + 1), next);
    }

    void checkSecrets() {
        check("OTP detected", isSecret("482913"));
        check("Visa test number detected (Luhn)", isSecret("4111 1111 1111 1111"));
        check("Luhn-invalid number ignored", !isSecret("4111 1111 1111 1112"));
        check("normal text ignored", !isSecret("meet at 4pm tomorrow"));
        check("phone-ish long digits ignored", !isSecret("call me maybe"));
    }

    void checkStore() {
        const auto marker = "selftest-" + makeUuid();
        const auto clip = store_.insert(marker, ClipKind::text, source);
        check("store insert", clip.has_value());
        // Shorter than the marker's words, so that only a search by prefix finds it.
        const auto found = store_.search(marker.substr(0, prefixLength), searchLimit);
        check("FTS prefix search finds it", hasText(found, marker));
        if (!clip) return;
        store_.promoteToSnippet(clip->id, "Self Test", ":st");
        const auto snippet = store_.snippetForKeyword(":st");
        check("snippet promotion + keyword lookup", snippet && snippet->id == clip->id);
        store_.deleteClip(clip->id);
        check("delete", !hasId(store_.search(marker, searchLimit), clip->id));
    }

    void checkExpiry() {
        const auto clip = store_.insert("expiring-" + makeUuid(), ClipKind::text, source, {}, clock_() + -1);
        store_.sweepExpired();
        if (clip) check("expired secret swept", !hasId(store_.fetchHistory(historyLimit), clip->id));
    }

    ClipStore& store_;
    std::ostream& output_;
    const Clock& clock_;
    int failures_ = 0;
};

}  // namespace

int runSelfTest(ClipStore& store, std::ostream& output, const Clock& clock) {
    return SelfTest(store, output, clock).run();
}

}  // namespace brimquill

#include "BrimquillCore/Foundation/RegularExpression.h"

#include <cstdlib>

namespace brimquill {
namespace {

/// In steps of ICU's engine, each about a millisecond.
constexpr int32_t longestSearch = 500;

}  // namespace

RegularExpression::RegularExpression(const char* pattern) {
    UErrorCode status = U_ZERO_ERROR;
    pattern_.reset(icu::RegexPattern::compile(unicodeString(pattern), 0, status));
    if (U_FAILURE(status)) std::abort();
}

RegularExpression::Matches RegularExpression::matches(const icu::UnicodeString& text) const {
    return {*pattern_, text};
}

RegularExpression::Matches::Matches(const icu::RegexPattern& pattern, const icu::UnicodeString& text)
    : text_(text), matcher_(pattern.matcher(text, status_)) {
    if (matcher_) matcher_->setTimeLimit(longestSearch, status_);
}

bool RegularExpression::Matches::next() {
    return U_SUCCESS(status_) && matcher_->find(status_) && U_SUCCESS(status_);
}

int32_t RegularExpression::Matches::start() const {
    return matcher_->start(status_);
}

int32_t RegularExpression::Matches::end() const {
    return matcher_->end(status_);
}

std::optional<std::string> RegularExpression::Matches::group(int32_t number) const {
    const auto from = matcher_->start(number, status_);
    if (U_FAILURE(status_) || from < 0) return {};
    return utf8String(text_.tempSubStringBetween(from, matcher_->end(number, status_)));
}

}  // namespace brimquill

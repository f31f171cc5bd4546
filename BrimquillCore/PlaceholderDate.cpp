#include "BrimquillCore/PlaceholderDate.h"

#include "BrimquillCore/Foundation/RegularExpression.h"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <tuple>

namespace brimquill::PlaceholderDate {
namespace {

constexpr double millisecondsPerSecond = 1000, secondsPerMinute = 60, secondsPerHour = 3600;
/// Calendars that follow the moon compute for very long, or for ever, at the ends of what ICU can tell.
constexpr double furthestYears = 100'000;

struct Components {
    std::int64_t years = 0, months = 0, days = 0, hours = 0, minutes = 0;

    std::int64_t& ofUnit(char unit) {
        switch (unit) {
            case 'y':
                return years;
            case 'M':
                return months;
            case 'd':
                return days;
            case 'h':
                return hours;
            default:
                return minutes;
        }
    }
    bool tooFar() const {
        const double reach = std::abs(static_cast<double>(years)) + std::abs(static_cast<double>(months)) / 12 +
                             std::abs(static_cast<double>(days)) / 365 + std::abs(static_cast<double>(hours)) / 8760 +
                             std::abs(static_cast<double>(minutes)) / 525'600;
        return reach > furthestYears;
    }
};

/// Dates follow LC_TIME where the user has set it apart from the language of the messages, which ICU goes by.
icu::Locale userLocale() {
    const char* all = std::getenv("LC_ALL");
    const char* time = std::getenv("LC_TIME");
    if ((all == nullptr || *all == '\0') && time != nullptr && *time != '\0') {
        return icu::Locale::createCanonical(time);
    }
    return icu::Locale::getDefault();
}

std::unique_ptr<icu::DateFormat> newFormatter(const icu::Locale& locale, Style style,
                                              const std::optional<std::string>& format) {
    using icu::DateFormat;
    if (format) {
        UErrorCode status = U_ZERO_ERROR;
        auto made = std::make_unique<icu::SimpleDateFormat>(unicodeString(*format), locale, status);
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }
    const auto dateStyle = style == Style::time ? DateFormat::kNone : DateFormat::kMedium;
    const auto timeStyle = style == Style::date ? DateFormat::kNone : DateFormat::kShort;
    if (style == Style::date) return std::unique_ptr<DateFormat>(DateFormat::createDateInstance(dateStyle, locale));
    if (style == Style::time) return std::unique_ptr<DateFormat>(DateFormat::createTimeInstance(timeStyle, locale));
    return std::unique_ptr<DateFormat>(DateFormat::createDateTimeInstance(dateStyle, timeStyle, locale));
}

/// A formatter of this thread, in the time zone of this moment; null for a pattern that is none. Kept, since making
/// one costs far more than using it, and a template asks for the same few again and again.
icu::DateFormat* formatter(Style style, const std::optional<std::string>& format) {
    constexpr std::size_t mostKept = 16;
    using Key = std::tuple<std::string, Style, std::optional<std::string>>;
    thread_local std::map<Key, std::unique_ptr<icu::DateFormat>> kept;
    const auto locale = userLocale();
    const Key key(locale.getName(), style, format);
    auto found = kept.find(key);
    if (found == kept.end()) {
        if (kept.size() == mostKept) kept.clear();
        found = kept.emplace(key, newFormatter(locale, style, format)).first;
    }
    if (found->second) found->second->adoptTimeZone(icu::TimeZone::createDefault());
    return found->second.get();
}

/// The signed amount of a term; 0 when it is too large to be told.
std::int64_t amount(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

Components components(std::string_view offset) {
    // A term cannot begin within a row of digits: without saying so, a long row would be tried from each digit on.
    static const RegularExpression term(R"(([+-]?(?<![\d])[\d]+)([dhmMy]))");
    Components result;
    const auto text = unicodeString(offset);
    for (auto matches = term.matches(text); matches.next();) {
        auto& sum = result.ofUnit(matches.group(2)->front());
        if (__builtin_add_overflow(sum, amount(*matches.group(1)), &sum)) {
            throw std::overflow_error("The amounts of a date's offset add up to too much");
        }
    }
    return result;
}

}  // namespace

std::string formatted(Date date, Style style, const std::optional<std::string>& format) {
    const auto* made = formatter(style, format);
    if (made == nullptr) return {};
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString result;
    made->format(date.seconds * millisecondsPerSecond, result, nullptr, status);
    return U_SUCCESS(status) ? utf8String(result) : std::string();
}

Date offsetDate(std::string_view offset, Date now) {
    const auto way = components(offset);
    if (way.tooFar()) return now;
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(userLocale(), status));
    if (U_FAILURE(status)) return now;
    // 1. The units whose length depends on where they begin, the largest first.
    calendar->setTime(now.seconds * millisecondsPerSecond, status);
    calendar->add(UCAL_YEAR, static_cast<int32_t>(way.years), status);
    calendar->add(UCAL_MONTH, static_cast<int32_t>(way.months), status);
    calendar->add(UCAL_DAY_OF_MONTH, static_cast<int32_t>(way.days), status);
    const double there = calendar->getTime(status) / millisecondsPerSecond;
    if (U_FAILURE(status)) return now;
    // 2. The units that are always equally long.
    return {there + static_cast<double>(way.hours) * secondsPerHour +
            static_cast<double>(way.minutes) * secondsPerMinute};
}

int year(Date date) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(userLocale(), status));
    if (U_FAILURE(status)) return 0;
    calendar->setTime(date.seconds * millisecondsPerSecond, status);
    return calendar->get(UCAL_YEAR, status);
}

}  // namespace brimquill::PlaceholderDate

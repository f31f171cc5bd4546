#pragma once

#include "BrimquillCore/Foundation/Date.h"

#include <optional>
#include <string>
#include <string_view>

/// Dates as the placeholders tell them: the user's locale, calendar and time zone. Any thread.
namespace brimquill::PlaceholderDate {

/// How a date is told when its placeholder gives no pattern: the date in medium length, the time in short.
enum class Style { date, time, dateTime };

/// `date` by the Unicode date pattern `format` when there is one, else by `style`. "" for a pattern that is none.
std::string formatted(Date date, Style style, const std::optional<std::string>& format);

/// The moment that lies `offset` after `now` in the user's calendar. An offset holds any number of terms, each a whole
/// number and a unit out of d, h, m (minutes), M (months) and y; terms of one unit add up, and what stands between
/// terms is ignored. `now` itself when there is no term, or when the way leads further than 100,000 years.
/// Throws `std::overflow_error` when the sum of a unit's amounts does not fit 64 bits.
Date offsetDate(std::string_view offset, Date now);

/// The year in which `date` lies, as the user's calendar counts them.
int year(Date date);

}  // namespace brimquill::PlaceholderDate

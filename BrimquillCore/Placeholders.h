#pragma once

#include "BrimquillCore/Foundation/Date.h"

#include <cstdint>
#include <functional>
#include <string>

/// Turns the stored text of a snippet into the text that is pasted. A placeholder is a lower-case name in braces, which
/// may carry attributes and pipes: {uuid}, {hoard offset=1}, {date format="MMM" | uppercase | trim}.
namespace brimquill::Placeholders {

/// Where {clipboard} comes from; gives "" until the program sets it, once, at its start. Called on the thread of
/// `expand`.
extern std::function<std::string()> clipboardProvider;

/// Where {hoard} comes from: the text of the clip so many places behind the newest one, "" when there are fewer.
/// Reads the running program's store on the thread of `expand`. A negative offset is outside the contract; it throws
/// `std::out_of_range`, which nobody catches.
extern std::function<std::string(std::int64_t offset)> hoardProvider;

/// `templateText` with every known placeholder replaced by its value, once, from left to right. What is no placeholder
/// stays as it stands, {cursor} as well; a malformed attribute falls back to its default. Dates are told in the user's
/// locale, calendar and time zone, each placeholder reading `clock` for itself. Takes time in proportion to the
/// template. Throws `std::overflow_error`, which nobody catches, when the amounts of one unit of a date's offset add up
/// to more than 64 bits hold. Any thread that the providers allow.
std::string expand(const std::string& templateText, const Clock& clock = Date::now);

}  // namespace brimquill::Placeholders

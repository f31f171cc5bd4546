#pragma once

#include <compare>
#include <functional>
#include <limits>

namespace brimquill {

/// A moment as seconds since 1970 (UTC), with the precision of a double. A plain value.
struct Date {
    double seconds = 0;

    /// Sorts before every real date; the value of a time that was never set.
    static constexpr Date distantPast() { return {-62135769600.0}; }

    /// The system's wall clock. Any thread.
    static Date now();

    friend auto operator<=>(const Date&, const Date&) = default;
    friend Date operator+(Date date, double interval) { return {date.seconds + interval}; }
    friend double operator-(Date later, Date earlier) { return later.seconds - earlier.seconds; }
};

/// Where a class reads the time, so that a test can hold it. `Date::now` in the running program.
using Clock = std::function<Date()>;

}  // namespace brimquill

#include "BrimquillCore/Foundation/Calendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <memory>

namespace brimquill {

Date startOfDay(Date date) {
    // Asked anew each time: a travelling machine changes its zone while the program runs.
    auto zone = std::unique_ptr<icu::TimeZone>(icu::TimeZone::detectHostTimeZone());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(zone.release(), status));
    if (U_FAILURE(status)) return date;
    // Where the clocks go back over midnight the day begins at the first of the two.
    calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar->setTime(date.seconds * U_MILLIS_PER_SECOND, status);
    for (const auto field : {UCAL_HOUR_OF_DAY, UCAL_MINUTE, UCAL_SECOND, UCAL_MILLISECOND})
        calendar->set(field, 0);
    const UDate start = calendar->getTime(status);
    return U_SUCCESS(status) ? Date{start / U_MILLIS_PER_SECOND} : date;
}

}  // namespace brimquill

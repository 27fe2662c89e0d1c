#pragma once

#include <cstdint>

#include "corefacade/datetime.h"
#include "corefacade/timezone.h"
#include "webbedrock/export.h"

namespace tov {

// Arithmetic on calendar values, in the Gregorian calendar carried on in both directions for ever.
//
// Fields outside the calendar carry over, as a mechanical counter does: 31 April counts as 1 May, month 13 as January
// of the next year, hour 24 as the next midnight. Results past the years of a `DateTime` (32 bits) stop at its first or
// last moment. Nothing allocates or locks; any thread.
class WEBFORMAT_EXPORT DateUtils
{
public:
    // The civil time in a zone of a value that is stored with an offset of minutes east of UTC:
    //     (2024-07-01 12:00:00.5, 0, America/New_York) -> 2024-07-01 08:00:00.5
    //     (2024-07-01 12:00:00, 120, Asia/Kathmandu)   -> 2024-07-01 15:45:00
    // Offsets of old rules are exact to the second; the fraction stays. An offset that is not valid, or an unknown
    // zone, leaves the value as it is.
    static DateTime convertTimeZoneTime(const DateTime& tValue, int nDataOffset, const TimeZone& tZone);

    // The value rounded to 0 to 8 digits of the second's fraction, halves up, carried as far as it goes:
    //     (2024-12-31 23:59:59.9996, 3) -> 2025-01-01 00:00:00
    // Any other number of digits leaves the value as it is.
    static DateTime roundSeconds(const DateTime& tValue, int nFractionDigits);

    // Seconds since 1970-01-01 00:00:00, the value read as UTC, without its fraction (rounded down):
    //     1969-12-31 23:59:59.5 -> -1
    static std::int64_t DateTimeToCRTtime(const DateTime& tValue);

    // 0 for Monday to 6 for Sunday: 2024-03-05 -> 1.
    static int dayOfWeek(const DateTime& tValue);

    // Whether the calendar has the date: a month from 1 to 12 and a day from 1 to the month's last, in any year.
    static bool isValidDate(int nYear, unsigned nMonth, unsigned nDay);
};

}  // namespace tov

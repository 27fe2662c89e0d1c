#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "corefacade/datetime.h"

namespace tov {

// The proleptic Gregorian calendar as whole numbers: days and seconds since 1970-01-01. Years, months and days here are
// those of `DateTime`; fields past their ends carry over. No division by anything but constants, no allocation.

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kDaysPer400Years = 146097;
constexpr std::int64_t kSecondsPer400Years = kDaysPer400Years * kSecondsPerDay;

constexpr std::int64_t floorDivide(std::int64_t nValue, std::int64_t nDivisor)
{
    return nValue / nDivisor - (nValue % nDivisor < 0 ? 1 : 0);
}

// Years begin in March here, so that the day that leap years add is a year's last.
constexpr std::int64_t daysFromCivil(std::int64_t nYear, unsigned nMonth, unsigned nDay)
{
    if (nMonth - 1 >= 12) [[unlikely]]
    {
        const std::int64_t nMonths = static_cast<std::int64_t>(nMonth) - 1;
        nYear += floorDivide(nMonths, 12);
        nMonth = static_cast<unsigned>(nMonths - 12 * floorDivide(nMonths, 12)) + 1;
    }
    const bool bEarly = nMonth <= 2;
    const std::int64_t nMarchYear = nYear - (bEarly ? 1 : 0);
    const std::int64_t nEra = floorDivide(nMarchYear, 400);
    const auto nYearOfEra = static_cast<std::uint32_t>(nMarchYear - nEra * 400);
    const std::uint32_t nMarchMonth = nMonth + (bEarly ? 9 : 0) - (bEarly ? 0 : 3);
    const std::uint32_t nDayOfEra = nYearOfEra * 365 + nYearOfEra / 4 - nYearOfEra / 100 + (nMarchMonth * 153 + 2) / 5;
    return nEra * kDaysPer400Years + nDayOfEra + nDay - 719469;
}

constexpr std::int64_t secondsFromCivil(const DateTime& tValue)
{
    return daysFromCivil(tValue.year(), tValue.month(), tValue.day()) * kSecondsPerDay +
           static_cast<std::int64_t>(tValue.hour() * 3600 + tValue.minute() * 60 + tValue.second());
}

// The date of a day of an era: 0 is 1 March of its first year. `nYear` counts from there.
struct DateOfEra
{
    std::uint32_t nYear;
    unsigned nMonth;
    unsigned nDay;
};

// Multiplications and shifts in place of divisions, after Neri and Schneider's "Euclidean affine functions and their
// application to calendar algorithms". `nDay` is below 2^30 / 4.
constexpr DateOfEra dateOfEra(std::uint32_t nDay)
{
    const std::uint32_t nCenturyQuarters = 4 * nDay + 3;
    const std::uint32_t nCentury = nCenturyQuarters / 146097;
    const std::uint32_t nYearQuarters = nCenturyQuarters % 146097 | 3;
    const std::uint64_t nProduct = std::uint64_t{2939745} * nYearQuarters;
    const auto nYearOfCentury = static_cast<std::uint32_t>(nProduct >> 32);
    const std::uint32_t nDayOfYear = static_cast<std::uint32_t>(nProduct) / 2939745 / 4;
    const std::uint32_t nMonthAndDay = 2141 * nDayOfYear + 197913;
    const std::uint32_t nMarchMonth = nMonthAndDay >> 16;
    const bool bNextYear = nDayOfYear >= 306;
    return {100 * nCentury + nYearOfCentury + (bNextYear ? 1 : 0), nMarchMonth - (bNextYear ? 12 : 0),
            (nMonthAndDay & 0xFFFF) / 2141 + 1};
}

// The civil time `nSeconds` after 1970-01-01 00:00:00, with a fraction; past the years of a `DateTime` its first or
// last moment.
constexpr DateTime civilFromSeconds(std::int64_t nSeconds, unsigned nNanoseconds)
{
    constexpr std::int64_t kDaysTo1970 = 719468;  // from 0000-03-01
    // The years from 0 to 32,399 are one run of days that fits 32 bits; any other year goes by its distance in eras.
    constexpr std::uint64_t kDirectDays = 81 * kDaysPer400Years;
    const std::int64_t nDays = floorDivide(nSeconds, kSecondsPerDay);
    const auto nSecondOfDay = static_cast<std::uint32_t>(nSeconds - nDays * kSecondsPerDay);
    std::int64_t nDay = nDays + kDaysTo1970;
    std::int64_t nFirstYear = 0;
    if (static_cast<std::uint64_t>(nDay) >= kDirectDays) [[unlikely]]
    {
        const std::int64_t nEra = floorDivide(nDay, kDaysPer400Years);
        nFirstYear = nEra * 400;
        nDay -= nEra * kDaysPer400Years;
    }
    const DateOfEra tDate = dateOfEra(static_cast<std::uint32_t>(nDay));
    const std::int64_t nYear = nFirstYear + tDate.nYear;
    if (nYear != static_cast<std::int32_t>(nYear)) [[unlikely]]
        return nYear < 0 ? DateTime(std::numeric_limits<std::int32_t>::min(), 1, 1)
                         : DateTime(std::numeric_limits<std::int32_t>::max(), 12, 31, 23, 59, 59, 999999999);
    const std::uint32_t nMinuteOfDay = nSecondOfDay / 60;
    return DateTime(static_cast<std::int32_t>(nYear), tDate.nMonth, tDate.nDay, nMinuteOfDay / 60, nMinuteOfDay % 60,
                    nSecondOfDay % 60, nNanoseconds);
}

}  // namespace tov

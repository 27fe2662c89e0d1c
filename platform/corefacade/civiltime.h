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
constexpr std::int64_t kDaysTo1970 = 719468;  // from 0000-03-01
constexpr std::int64_t kSecondsPer400Years = kDaysPer400Years * kSecondsPerDay;

constexpr std::int64_t floorDivide(std::int64_t nValue, std::int64_t nDivisor)
{
    return nValue / nDivisor - (nValue % nDivisor < 0 ? 1 : 0);
}

// Eras of 400 years are alike. The first 81 of them, the years from 0 to 32,399, are one run of days that 32 bits hold;
// any other year goes by its place in its era.
constexpr std::int64_t kDirectEras = 81;

// From 0000-03-01, for a year from 0 and a month from 1 to 12. Years begin in March here, so that the day that leap
// years add is a year's last; `nYear` of January and February is at least 1.
constexpr std::uint32_t daysFromMarch(std::uint32_t nYear, std::uint32_t nMonth, std::uint32_t nDay)
{
    // Numbers in place of conditions: a branch on the month is often mispredicted.
    const std::uint32_t nEarly = nMonth <= 2;
    const std::uint32_t nMarchYear = nYear - nEarly;
    const std::uint32_t nMarchMonth = nMonth + 12 * nEarly - 3;
    const std::uint32_t nCentury = nMarchYear / 100;
    return nMarchYear * 365 + nMarchYear / 4 - nCentury + nCentury / 4 + (nMarchMonth * 153 + 2) / 5 + nDay - 1;
}

constexpr std::int64_t daysFromAnyCivil(std::int64_t nYear, unsigned nMonth, unsigned nDay)
{
    const std::int64_t nMonths = static_cast<std::int64_t>(nMonth) - 1;
    const std::int64_t nCarried = nYear + floorDivide(nMonths, 12);
    const std::int64_t nEra = floorDivide(nCarried, 400) - 1;
    return nEra * kDaysPer400Years - kDaysTo1970 +
           daysFromMarch(static_cast<std::uint32_t>(nCarried - nEra * 400),
                         static_cast<std::uint32_t>(nMonths - floorDivide(nMonths, 12) * 12 + 1), nDay);
}

constexpr std::int64_t daysFromCivil(std::int64_t nYear, unsigned nMonth, unsigned nDay)
{
    if (static_cast<std::uint64_t>(nYear - 1) >= kDirectEras * 400 - 1 || nMonth - 1 >= 12) [[unlikely]]
        return daysFromAnyCivil(nYear, nMonth, nDay);
    return daysFromMarch(static_cast<std::uint32_t>(nYear), nMonth, nDay) - kDaysTo1970;
}

constexpr std::uint32_t secondOfDay(const DateTime& tValue)
{
    return tValue.hour() * 3600 + tValue.minute() * 60 + tValue.second();
}

constexpr std::int64_t secondsFromCivil(const DateTime& tValue)
{
    return daysFromCivil(tValue.year(), tValue.month(), tValue.day()) * kSecondsPerDay + secondOfDay(tValue);
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
    const std::uint32_t nNextYear = nDayOfYear >= 306;
    return {100 * nCentury + nYearOfCentury + nNextYear, nMarchMonth - 12 * nNextYear,
            (nMonthAndDay & 0xFFFF) / 2141 + 1};
}

// The civil time of a second after 0000-03-01 00:00:00, in a year that counts from `nFirstYear`.
constexpr DateTime civilFromMarch(std::uint64_t nSecond, std::int64_t nFirstYear, unsigned nNanoseconds)
{
    const auto nDay = static_cast<std::uint32_t>(nSecond / kSecondsPerDay);
    const auto nSecondOfDay = static_cast<std::uint32_t>(nSecond) - nDay * std::uint32_t{kSecondsPerDay};
    const std::uint32_t nMinuteOfDay = nSecondOfDay / 60;
    const std::uint32_t nHour = nSecondOfDay / 3600;
    const DateOfEra tDate = dateOfEra(nDay);
    return DateTime(static_cast<std::int32_t>(nFirstYear + tDate.nYear), tDate.nMonth, tDate.nDay, nHour,
                    nMinuteOfDay - nHour * 60, nSecondOfDay - nMinuteOfDay * 60, nNanoseconds);
}

constexpr DateTime civilFromAnySeconds(std::int64_t nSeconds, unsigned nNanoseconds)
{
    constexpr std::int32_t kLastYear = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kFirstYear = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t kEnd = daysFromAnyCivil(std::int64_t{kLastYear} + 1, 1, 1) * kSecondsPerDay;
    constexpr std::int64_t kBegin = daysFromAnyCivil(kFirstYear, 1, 1) * kSecondsPerDay;
    if (nSeconds < kBegin)
        return DateTime(kFirstYear, 1, 1);
    if (nSeconds >= kEnd)
        return DateTime(kLastYear, 12, 31, 23, 59, 59, 999999999);
    const std::int64_t nFromMarch = nSeconds + kDaysTo1970 * kSecondsPerDay;
    const std::int64_t nEra = floorDivide(nFromMarch, kSecondsPer400Years);
    return civilFromMarch(static_cast<std::uint64_t>(nFromMarch - nEra * kSecondsPer400Years), nEra * 400,
                          nNanoseconds);
}

// The civil time `nSeconds` after 1970-01-01 00:00:00, with a fraction; past the years of a `DateTime` its first or
// last moment.
constexpr DateTime civilFromSeconds(std::int64_t nSeconds, unsigned nNanoseconds)
{
    const auto nFromMarch = static_cast<std::uint64_t>(nSeconds) + std::uint64_t{kDaysTo1970 * kSecondsPerDay};
    if (nFromMarch >= std::uint64_t{kDirectEras * kSecondsPer400Years}) [[unlikely]]
        return civilFromAnySeconds(nSeconds, nNanoseconds);
    return civilFromMarch(nFromMarch, 0, nNanoseconds);
}

}  // namespace tov

#include "corefacade/dateutils.h"

#include "corefacade/civiltime.h"

namespace tov {

namespace {

constexpr std::uint32_t kNanosecondsPerSecond = 1'000'000'000;

// Nanoseconds in the last digit of a fraction of so many.
constexpr std::uint32_t kUnits[] = {1'000'000'000, 100'000'000, 10'000'000, 1'000'000, 100'000, 10'000, 1'000, 100, 10};
constexpr int kMaxDigits = 8;

constexpr bool isLeapYear(int nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

}  // namespace

DateTime DateUtils::convertTimeZoneTime(const DateTime& tValue, int nDataOffset, const TimeZone& tZone)
{
    if (!TimeZone::isValidOffset(nDataOffset) || tZone.isUnknown())
        return tValue;
    const std::int64_t nMoment = secondsFromCivil(tValue) - std::int64_t{nDataOffset} * 60;
    return civilFromSeconds(nMoment + tZone.offsetSecondsAt(nMoment), tValue.nanoseconds());
}

DateTime DateUtils::roundSeconds(const DateTime& tValue, int nFractionDigits)
{
    if (nFractionDigits < 0 || nFractionDigits > kMaxDigits)
        return tValue;
    const std::uint32_t nUnit = kUnits[nFractionDigits];
    const std::uint64_t nRounded = (std::uint64_t{tValue.nanoseconds()} + nUnit / 2) / nUnit * nUnit;
    const auto nSeconds = static_cast<std::int64_t>(nRounded / kNanosecondsPerSecond);
    return civilFromSeconds(secondsFromCivil(tValue) + nSeconds,
                            static_cast<unsigned>(nRounded % kNanosecondsPerSecond));
}

std::int64_t DateUtils::DateTimeToCRTtime(const DateTime& tValue)
{
    return secondsFromCivil(tValue);
}

int DateUtils::dayOfWeek(const DateTime& tValue)
{
    const std::int64_t nDays = daysFromCivil(tValue.year(), tValue.month(), tValue.day()) + 3;  // day 0: a Thursday
    return static_cast<int>(nDays - floorDivide(nDays, 7) * 7);
}

bool DateUtils::isValidDate(int nYear, unsigned nMonth, unsigned nDay)
{
    constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (nMonth < 1 || nMonth > 12 || nDay < 1)
        return false;
    return nDay <= kDays[nMonth - 1] + (nMonth == 2 && isLeapYear(nYear) ? 1 : 0);
}

}  // namespace tov

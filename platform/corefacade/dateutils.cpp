#include "corefacade/dateutils.h"

#include "corefacade/civiltime.h"
#include "corefacade/zonerecords.h"

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

// Days that a month has in every year; none where there is no such month.
constexpr std::uint32_t surelyIn(unsigned nMonth)
{
    constexpr std::uint8_t kDays[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return nMonth <= 12 ? kDays[nMonth] : 0;
}

// The value `nSeconds` later, from two days before to a month after, with another fraction. Where the month stays, as
// it nearly always does, the day is moved by itself: half the work of a way over the number of the day.
DateTime shifted(const DateTime& tValue, std::int32_t nSeconds, unsigned nNanoseconds)
{
    constexpr std::uint32_t kDay = 86400;
    const std::uint32_t nSecond = 2 * kDay + static_cast<std::uint32_t>(nSeconds) + secondOfDay(tValue);
    const std::uint32_t nDay = tValue.day() + nSecond / kDay - 2;
    if (nDay - 1 >= surelyIn(tValue.month()))
        return civilFromSeconds(secondsFromCivil(tValue) + nSeconds, nNanoseconds);
    const std::uint32_t nSecondOfDay = nSecond % kDay;
    const std::uint32_t nMinuteOfDay = nSecondOfDay / 60;
    const std::uint32_t nHour = nSecondOfDay / 3600;
    return DateTime(tValue.year(), tValue.month(), nDay, nHour, nMinuteOfDay - nHour * 60,
                    nSecondOfDay - nMinuteOfDay * 60, nNanoseconds);
}

}  // namespace

DateTime DateUtils::convertTimeZoneTime(const DateTime& tValue, int nDataOffset, const TimeZone& tZone)
{
    const ZoneRecord* const pRecord = tZone.record();
    if (!pRecord || !TimeZone::isValidOffset(nDataOffset))
        return tValue;
    const std::int32_t nDataSeconds = nDataOffset * 60;
    const std::int32_t nZoneSeconds = pRecord->pRules->offsetAt(secondsFromCivil(tValue) - nDataSeconds);
    return shifted(tValue, nZoneSeconds - nDataSeconds, tValue.nanoseconds());
}

DateTime DateUtils::roundSeconds(const DateTime& tValue, int nFractionDigits)
{
    if (nFractionDigits < 0 || nFractionDigits > kMaxDigits)
        return tValue;
    const std::uint32_t nUnit = kUnits[nFractionDigits];
    const std::uint64_t nRounded = (std::uint64_t{tValue.nanoseconds()} + nUnit / 2) / nUnit * nUnit;
    return shifted(tValue, static_cast<std::int32_t>(nRounded / kNanosecondsPerSecond),
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

#include "corefacade/dateutils.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <ostream>
#include <random>

#include "corefacade/civiltime.h"
#include "corefacade/timezoneregistry.h"
#include "support/allocationcounter.h"

namespace tov {

static void PrintTo(const DateTime& tValue, std::ostream* pOut)
{
    *pOut << tValue.year() << '-' << tValue.month() << '-' << tValue.day() << ' ' << tValue.hour() << ':'
          << tValue.minute() << ':' << tValue.second() << " + " << tValue.nanoseconds() << " ns";
}

namespace {

constexpr int kFirstYear = std::numeric_limits<std::int32_t>::min();
constexpr int kLastYear = std::numeric_limits<std::int32_t>::max();
constexpr unsigned kLastNanosecond = 999'999'999;

TimeZone zone(const wchar_t* pName)
{
    return TimeZoneRegistry::getInstance().findTimeZone(pName, TimeZoneRegistry::kIdentifier);
}

// The oracle: the calendar of the standard library.
std::int64_t oracleSeconds(const DateTime& tValue)
{
    const std::chrono::year_month_day tDate(std::chrono::year(tValue.year()), std::chrono::month(tValue.month()),
                                            std::chrono::day(tValue.day()));
    return std::chrono::sys_days(tDate).time_since_epoch().count() * std::int64_t{86400} + tValue.hour() * 3600 +
           tValue.minute() * 60 + tValue.second();
}

DateTime oracleCivil(std::int64_t nSeconds, unsigned nNanoseconds)
{
    const std::chrono::sys_seconds tMoment{std::chrono::seconds(nSeconds)};
    const auto tDay = std::chrono::floor<std::chrono::days>(tMoment);
    const std::chrono::year_month_day tDate(tDay);
    const std::chrono::hh_mm_ss tTime(tMoment - tDay);
    return DateTime(static_cast<int>(tDate.year()), static_cast<unsigned>(tDate.month()),
                    static_cast<unsigned>(tDate.day()), static_cast<unsigned>(tTime.hours().count()),
                    static_cast<unsigned>(tTime.minutes().count()), static_cast<unsigned>(tTime.seconds().count()),
                    nNanoseconds);
}

DateTime randomValue(std::mt19937_64& tRandom, int nFrom, int nTo)
{
    const auto nBelow = [&](unsigned n) { return static_cast<unsigned>(tRandom() % n); };
    const int nYear = nFrom + static_cast<int>(nBelow(static_cast<unsigned>(nTo - nFrom)));
    return DateTime(nYear, 1 + nBelow(12), 1 + nBelow(28), nBelow(24), nBelow(60), nBelow(60), nBelow(1'000'000'000));
}

TEST(CivilTime, CountsEveryDayOf800YearsAsTheStandardLibraryDoes)
{
    std::int64_t nDay = oracleSeconds(DateTime(1599, 12, 31)) / 86400;
    const std::int64_t nEnd = oracleSeconds(DateTime(2401, 1, 1)) / 86400;
    for (; nDay < nEnd; ++nDay)
    {
        const DateTime tExpected = oracleCivil(nDay * 86400, 0);
        ASSERT_EQ(civilFromSeconds(nDay * 86400, 0), tExpected);
        ASSERT_EQ(daysFromCivil(tExpected.year(), tExpected.month(), tExpected.day()), nDay);
    }
}

TEST(CivilTime, AgreesWithTheStandardLibraryInEveryYearThatThatHas)
{
    for (int nYear = -32767; nYear <= 32767; ++nYear)
    {
        for (const DateTime& tValue : {DateTime(nYear, 1, 1), DateTime(nYear, 2, 28, 23, 59, 59), DateTime(nYear, 3, 1),
                                       DateTime(nYear, 12, 31, 12, 30, 15)})
        {
            ASSERT_EQ(secondsFromCivil(tValue), oracleSeconds(tValue)) << nYear;
            ASSERT_EQ(civilFromSeconds(oracleSeconds(tValue), 0), tValue);
        }
    }
}

// Two ways to the same day, 400 years apart: where no oracle reaches.
TEST(CivilTime, RepeatsItselfEvery400YearsToTheEndsOfTheYears)
{
    std::mt19937_64 tRandom(1);
    for (int n = 0; n < 20000; ++n)
    {
        const DateTime tNear = randomValue(tRandom, 1600, 2000);
        const int nEras = static_cast<int>(tRandom() % 10'000'000) - 5'000'000;
        DateTime tFar = tNear;
        tFar.setYear(tNear.year() + nEras * 400);
        const std::int64_t nExpected = oracleSeconds(tNear) + std::int64_t{nEras} * 146097 * 86400;
        ASSERT_EQ(secondsFromCivil(tFar), nExpected);
        ASSERT_EQ(civilFromSeconds(nExpected, tNear.nanoseconds()), tFar);
    }
}

TEST(CivilTime, StopsAtTheFirstAndTheLastMomentThatThereAre)
{
    const DateTime tFirst(kFirstYear, 1, 1);
    const DateTime tLast(kLastYear, 12, 31, 23, 59, 59, kLastNanosecond);
    EXPECT_EQ(civilFromSeconds(secondsFromCivil(tFirst), 0), tFirst);
    EXPECT_EQ(civilFromSeconds(secondsFromCivil(tFirst) - 1, 7), tFirst);
    EXPECT_EQ(civilFromSeconds(std::numeric_limits<std::int64_t>::min(), 7), tFirst);
    EXPECT_EQ(civilFromSeconds(secondsFromCivil(tLast), kLastNanosecond), tLast);
    EXPECT_EQ(civilFromSeconds(secondsFromCivil(tLast) + 1, 7), tLast);
    EXPECT_EQ(civilFromSeconds(std::numeric_limits<std::int64_t>::max(), 7), tLast);
}

TEST(DateUtils, CountsSecondsSince1970)
{
    struct Row
    {
        int nLine;
        DateTime tValue;
        std::int64_t nExpected;
    };
    const Row kRows[] = {
        {__LINE__, DateTime(1970, 1, 1), 0},
        {__LINE__, DateTime(1970, 1, 1, 0, 0, 0, kLastNanosecond), 0},  // the fraction is dropped
        {__LINE__, DateTime(1969, 12, 31, 23, 59, 59), -1},
        {__LINE__, DateTime(1969, 12, 31, 23, 59, 59, 500'000'000), -1},  // downwards
        {__LINE__, DateTime(2001, 9, 9, 1, 46, 40), 1'000'000'000},
        {__LINE__, DateTime(2038, 1, 19, 3, 14, 8), 2'147'483'648},
        {__LINE__, DateTime(2024, 2, 29), 1'709'164'800},
        {__LINE__, DateTime(1900, 3, 1), -2'203'891'200},
        {__LINE__, DateTime(1, 1, 1), -62'135'596'800},
        {__LINE__, DateTime(0, 1, 1), -62'167'219'200},
        {__LINE__, DateTime(9999, 12, 31, 23, 59, 59), 253'402'300'799},
        // Fields outside the calendar carry over.
        {__LINE__, DateTime(2023, 2, 29), 1'677'628'800},      // 1 March
        {__LINE__, DateTime(2023, 13, 1), 1'704'067'200},      // 2024-01-01
        {__LINE__, DateTime(2024, 0, 31), 1'703'980'800},      // 2023-12-31
        {__LINE__, DateTime(2024, 1, 0), 1'703'980'800},       // the same day
        {__LINE__, DateTime(1970, 1, 1, 24, 60, 60), 90'060},  // 1970-01-02 01:01:00
        {__LINE__, DateTime(1970, 255, 1), 667'785'600},       // 1991-03-01
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(DateUtils::DateTimeToCRTtime(tRow.tValue), tRow.nExpected) << "row at line " << tRow.nLine;
}

TEST(DateUtils, RoundsHalvesUpAndCarriesAsFarAsItGoes)
{
    struct Row
    {
        int nLine;
        DateTime tValue;
        int nDigits;
        DateTime tExpected;
    };
    const Row kRows[] = {
        {__LINE__, DateTime(2024, 3, 5, 7, 8, 59, 499'999'999), 0, DateTime(2024, 3, 5, 7, 8, 59)},
        {__LINE__, DateTime(2024, 3, 5, 7, 8, 59, 500'000'000), 0, DateTime(2024, 3, 5, 7, 9, 0)},
        {__LINE__, DateTime(2024, 3, 5, 7, 8, 58, 500'000'000), 0, DateTime(2024, 3, 5, 7, 8, 59)},
        {__LINE__, DateTime(2024, 3, 5, 7, 59, 59, 500'000'000), 0, DateTime(2024, 3, 5, 8, 0, 0)},
        {__LINE__, DateTime(2024, 3, 5, 23, 59, 59, 500'000'000), 0, DateTime(2024, 3, 6)},
        {__LINE__, DateTime(2024, 2, 28, 23, 59, 59, 500'000'000), 0, DateTime(2024, 2, 29)},
        {__LINE__, DateTime(2023, 2, 28, 23, 59, 59, 500'000'000), 0, DateTime(2023, 3, 1)},
        {__LINE__, DateTime(2024, 2, 29, 23, 59, 59, 500'000'000), 0, DateTime(2024, 3, 1)},
        {__LINE__, DateTime(2024, 2, 29, 23, 59, 58, 500'000'000), 0, DateTime(2024, 2, 29, 23, 59, 59)},
        {__LINE__, DateTime(2024, 4, 30, 23, 59, 59, 999'500'000), 3, DateTime(2024, 5, 1)},
        {__LINE__, DateTime(2024, 12, 31, 23, 59, 59, 999'600'000), 3, DateTime(2025, 1, 1)},
        {__LINE__, DateTime(2024, 12, 31, 23, 59, 59, 999'499'999), 3, DateTime(2024, 12, 31, 23, 59, 59, 999'000'000)},
        {__LINE__, DateTime(-1, 12, 31, 23, 59, 59, 950'000'000), 1, DateTime(0, 1, 1)},
        {__LINE__, DateTime(9999, 12, 31, 23, 59, 59, 999'999'995), 8, DateTime(10000, 1, 1)},
        {__LINE__, DateTime(2024, 1, 1, 0, 0, 59, 123'456'784), 8, DateTime(2024, 1, 1, 0, 0, 59, 123'456'780)},
        {__LINE__, DateTime(2024, 1, 1, 0, 0, 59, 123'456'785), 8, DateTime(2024, 1, 1, 0, 0, 59, 123'456'790)},
        // Nanoseconds are all there is.
        {__LINE__, DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond), 9, DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond)},
        {__LINE__, DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond), 255,
         DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond)},
        {__LINE__, DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond), -1,
         DateTime(2024, 1, 1, 0, 0, 59, kLastNanosecond)},
        // A fraction of several seconds carries too, as other fields outside the calendar do.
        {__LINE__, DateTime(2024, 1, 31, 23, 59, 57, 3'600'000'000), 0, DateTime(2024, 2, 1, 0, 0, 1)},
        {__LINE__, DateTime(kLastYear, 12, 31, 23, 59, 59, 600'000'000), 0,
         DateTime(kLastYear, 12, 31, 23, 59, 59, kLastNanosecond)},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(DateUtils::roundSeconds(tRow.tValue, tRow.nDigits), tRow.tExpected) << "row at line " << tRow.nLine;
}

TEST(DateUtils, RoundsAnyValueAsWholeNumbersDo)
{
    std::mt19937_64 tRandom(2);
    for (int n = 0; n < 50000; ++n)
    {
        const DateTime tValue = randomValue(tRandom, -3000, 12000);
        const int nDigits = static_cast<int>(tRandom() % 9);
        std::int64_t nUnit = 1'000'000'000;
        for (int nDigit = 0; nDigit < nDigits; ++nDigit)
            nUnit /= 10;
        const std::int64_t nFraction = (tValue.nanoseconds() + nUnit / 2) / nUnit * nUnit;
        const DateTime tExpected = oracleCivil(oracleSeconds(tValue) + nFraction / 1'000'000'000,
                                               static_cast<unsigned>(nFraction % 1'000'000'000));
        ASSERT_EQ(DateUtils::roundSeconds(tValue, nDigits), tExpected) << nDigits;
    }
}

TEST(DateUtils, TellsTheDayOfTheWeekFromMonday)
{
    struct Row
    {
        int nLine;
        DateTime tValue;
        int nExpected;
    };
    const Row kRows[] = {
        {__LINE__, DateTime(1970, 1, 1), 3},
        {__LINE__, DateTime(2024, 3, 4), 0},
        {__LINE__, DateTime(2024, 3, 5, 23, 59, 59), 1},
        {__LINE__, DateTime(2024, 3, 10), 6},
        {__LINE__, DateTime(1969, 12, 31), 2},
        {__LINE__, DateTime(1, 1, 1), 0},
        {__LINE__, DateTime(0, 12, 31), 6},
        {__LINE__, DateTime(9999, 12, 31), 4},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(DateUtils::dayOfWeek(tRow.tValue), tRow.nExpected) << "row at line " << tRow.nLine;
    for (int nDay = -100000; nDay < 100000; nDay += 37)
    {
        const std::chrono::sys_days tDay{std::chrono::days(nDay)};
        const auto nExpected = static_cast<int>(std::chrono::weekday(tDay).iso_encoding()) - 1;
        ASSERT_EQ(DateUtils::dayOfWeek(oracleCivil(std::int64_t{nDay} * 86400, 0)), nExpected) << nDay;
    }
}

TEST(DateUtils, KnowsWhichDatesTheCalendarHas)
{
    for (int nYear : {-400, -1, 0, 1, 1600, 1700, 1900, 2000, 2023, 2024, 2100, 9999})
    {
        for (unsigned nMonth = 0; nMonth <= 14; ++nMonth)
        {
            for (unsigned nDay = 0; nDay <= 33; ++nDay)
            {
                const bool bExpected = std::chrono::year_month_day(std::chrono::year(nYear), std::chrono::month(nMonth),
                                                                   std::chrono::day(nDay))
                                           .ok();
                ASSERT_EQ(DateUtils::isValidDate(nYear, nMonth, nDay), bExpected)
                    << nYear << '-' << nMonth << '-' << nDay;
            }
        }
    }
    EXPECT_FALSE(DateUtils::isValidDate(2024, 4'000'000'000U, 1));
    EXPECT_FALSE(DateUtils::isValidDate(2024, 1, 4'000'000'000U));
    EXPECT_TRUE(DateUtils::isValidDate(kFirstYear, 2, 29));
}

TEST(DateUtils, ConvertsFromTheDataOffsetToTheZone)
{
    struct Row
    {
        int nLine;
        DateTime tValue;
        int nDataOffset;
        const wchar_t* pZone;
        DateTime tExpected;
    };
    const Row kRows[] = {
        {__LINE__, DateTime(2024, 7, 1, 12, 0, 0, 500'000'000), 0, L"America/New_York",
         DateTime(2024, 7, 1, 8, 0, 0, 500'000'000)},
        {__LINE__, DateTime(2024, 7, 1, 12), 120, L"Asia/Kathmandu", DateTime(2024, 7, 1, 15, 45)},
        {__LINE__, DateTime(2024, 1, 1, 2), 0, L"America/New_York", DateTime(2023, 12, 31, 21)},
        {__LINE__, DateTime(2024, 12, 31, 20), 0, L"Asia/Tokyo", DateTime(2025, 1, 1, 5)},
        {__LINE__, DateTime(2024, 2, 28, 20), 0, L"Asia/Tokyo", DateTime(2024, 2, 29, 5)},
        {__LINE__, DateTime(2023, 2, 28, 20), 0, L"Asia/Tokyo", DateTime(2023, 3, 1, 5)},
        {__LINE__, DateTime(2024, 3, 1, 2), 0, L"America/New_York", DateTime(2024, 2, 29, 21)},
        {__LINE__, DateTime(2024, 3, 5, 12), -1080, L"GMT+18:00", DateTime(2024, 3, 7, 0)},
        {__LINE__, DateTime(2024, 3, 5, 12), 1080, L"GMT-18:00", DateTime(2024, 3, 4, 0)},
        {__LINE__, DateTime(2024, 3, 1, 12), 1080, L"GMT-18:00", DateTime(2024, 2, 29, 0)},
        {__LINE__, DateTime(2024, 3, 5, 12, 34, 56), 0, L"UTC", DateTime(2024, 3, 5, 12, 34, 56)},
        // The data offset decides on which side of a change the moment lies.
        {__LINE__, DateTime(2024, 3, 10, 1, 59, 59), -300, L"America/New_York", DateTime(2024, 3, 10, 1, 59, 59)},
        {__LINE__, DateTime(2024, 3, 10, 2, 0, 0), -300, L"America/New_York", DateTime(2024, 3, 10, 3, 0, 0)},
        {__LINE__, DateTime(2024, 11, 3, 1, 59, 59), -240, L"America/New_York", DateTime(2024, 11, 3, 1, 59, 59)},
        {__LINE__, DateTime(2024, 11, 3, 2, 0, 0), -240, L"America/New_York", DateTime(2024, 11, 3, 1, 0, 0)},
        // Before zones had whole minutes.
        {__LINE__, DateTime(1900, 1, 1, 12), 0, L"Africa/Monrovia", DateTime(1900, 1, 1, 11, 16, 52)},
        {__LINE__, DateTime(1930, 1, 1), 0, L"Europe/Amsterdam", DateTime(1930, 1, 1, 0, 19, 32)},
        {__LINE__, DateTime(1, 1, 1), 0, L"America/New_York", DateTime(0, 12, 31, 19, 3, 58)},
        {__LINE__, DateTime(9999, 12, 31, 23, 59, 59, kLastNanosecond), 0, L"Asia/Tokyo",
         DateTime(10000, 1, 1, 8, 59, 59, kLastNanosecond)},
        // Rules go on.
        {__LINE__, DateTime(9999, 7, 1, 12), 0, L"America/New_York", DateTime(9999, 7, 1, 8)},
        {__LINE__, DateTime(9999, 12, 31, 12), 0, L"America/New_York", DateTime(9999, 12, 31, 7)},
        // Fields outside the calendar carry over.
        {__LINE__, DateTime(2024, 4, 31), 0, L"UTC", DateTime(2024, 5, 1)},
        {__LINE__, DateTime(2024, 4, 31), 0, L"GMT-1", DateTime(2024, 4, 30, 23)},
        {__LINE__, DateTime(2024, 3, 0), 0, L"GMT+1", DateTime(2024, 2, 29, 1)},
        {__LINE__, DateTime(2024, 3, 0, 23), 0, L"GMT+1", DateTime(2024, 3, 1)},
        {__LINE__, DateTime(2024, 13, 1), 0, L"UTC", DateTime(2025, 1, 1)},
        {__LINE__, DateTime(2024, 0, 1), 0, L"UTC", DateTime(2023, 12, 1)},
        {__LINE__, DateTime(2024, 1, 1, 255, 255, 255), 0, L"UTC", DateTime(2024, 1, 11, 19, 19, 15)},
        {__LINE__, DateTime(kLastYear, 12, 31, 23), 0, L"GMT+2",
         DateTime(kLastYear, 12, 31, 23, 59, 59, kLastNanosecond)},
        {__LINE__, DateTime(kFirstYear, 1, 1, 1), 0, L"GMT-2", DateTime(kFirstYear, 1, 1)},
        // Nothing to convert with.
        {__LINE__, DateTime(2024, 4, 31, 99), 0, L"Unknown", DateTime(2024, 4, 31, 99)},
        {__LINE__, DateTime(2024, 7, 1, 12), 1081, L"Asia/Tokyo", DateTime(2024, 7, 1, 12)},
        {__LINE__, DateTime(2024, 7, 1, 12), -1081, L"Asia/Tokyo", DateTime(2024, 7, 1, 12)},
        {__LINE__, DateTime(2024, 7, 1, 12), TimeZone::knUTCOffsetUnknown, L"Asia/Tokyo", DateTime(2024, 7, 1, 12)},
        {__LINE__, DateTime(2024, 7, 1, 12), TimeZone::knUTCOffsetUseDefault, L"Asia/Tokyo", DateTime(2024, 7, 1, 12)},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(DateUtils::convertTimeZoneTime(tRow.tValue, tRow.nDataOffset, zone(tRow.pZone)), tRow.tExpected)
            << "row at line " << tRow.nLine;
}

TEST(DateUtils, ConvertsAsSecondsAreAdded)
{
    const TimeZone tZones[] = {zone(L"Africa/Casablanca"), zone(L"Pacific/Apia"), zone(L"Africa/Monrovia"),
                               zone(L"America/St_Johns"),  zone(L"GMT-17:59"),    TimeZone::kServerOS};
    std::mt19937_64 tRandom(3);
    for (int n = 0; n < 60000; ++n)
    {
        const DateTime tValue = randomValue(tRandom, -200, 10200);
        const int nDataOffset = static_cast<int>(tRandom() % 2161) - 1080;
        const TimeZone& tZone = tZones[n % std::size(tZones)];
        const std::int64_t nMoment = oracleSeconds(tValue) - nDataOffset * 60;
        ASSERT_EQ(DateUtils::convertTimeZoneTime(tValue, nDataOffset, tZone),
                  oracleCivil(nMoment + tZone.offsetSecondsAt(nMoment), tValue.nanoseconds()))
            << nDataOffset;
    }
}

TEST(DateUtils, AllocatesNothing)
{
    const TimeZone tZone = zone(L"Europe/Berlin");
    const DateTime tValue(2024, 12, 31, 23, 59, 59, kLastNanosecond);
    TimeZone::kServerOS.getId();  // found out on first use
    const AllocationCounter tCounter;
    DateTime tResult = DateUtils::convertTimeZoneTime(tValue, 330, tZone);
    tResult = DateUtils::convertTimeZoneTime(tResult, -60, TimeZone::kServerOS);
    tResult = DateUtils::roundSeconds(tResult, 3);
    EXPECT_GT(DateUtils::DateTimeToCRTtime(tResult) + DateUtils::dayOfWeek(tResult), 0);
    EXPECT_EQ(tCounter.count(), 0U);
}

}  // namespace

}  // namespace tov

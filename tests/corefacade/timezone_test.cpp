#include "corefacade/timezone.h"

#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "corefacade/dateutils.h"
#include "corefacade/serverzone.h"
#include "corefacade/timezoneregistry.h"
#include "corefacade/zonelist.h"
#include "support/allocationcounter.h"
#include "support/newprocess.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

// Used before anything of this program is initialised in order.
const String s_sIdAtLoad = TimeZone::kUnknown.getId();
const TimeZone s_tServerAtLoad = TimeZone::kServerOS;

TimeZone zone(std::wstring_view sName)
{
    return TimeZoneRegistry::getInstance().findTimeZone(sName, TimeZoneRegistry::kIdentifier);
}

std::int64_t utc(const DateTime& tValue)
{
    return DateUtils::DateTimeToCRTtime(tValue);
}

DateTime shown(const TimeZone& tZone, std::int64_t nMoment)
{
    const auto nDays = static_cast<int>(nMoment / 86400 - (nMoment % 86400 < 0 ? 1 : 0));
    const auto nSecond = static_cast<unsigned>(nMoment - std::int64_t{nDays} * 86400);
    const std::chrono::year_month_day tDate{std::chrono::sys_days(std::chrono::days(nDays))};
    return DateUtils::convertTimeZoneTime(
        DateTime(static_cast<int>(tDate.year()), static_cast<unsigned>(tDate.month()),
                 static_cast<unsigned>(tDate.day()), nSecond / 3600, nSecond / 60 % 60, nSecond % 60),
        0, tZone);
}

cctz::time_zone oracle(const String& sId)
{
    cctz::time_zone tZone;
    EXPECT_TRUE(cctz::load_time_zone(toUtf8(sId), &tZone)) << toUtf8(sId);
    return tZone;
}

cctz::time_point<cctz::seconds> momentOf(std::int64_t nSeconds)
{
    return cctz::time_point<cctz::seconds>(cctz::seconds(nSeconds));
}

std::int64_t now()
{
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
}

TEST(TimeZone, IsReadyBeforeStaticObjectsAre)
{
    EXPECT_EQ(s_sIdAtLoad, TimeZone::kIDUnknown);
    EXPECT_FALSE(s_tServerAtLoad.isUnknown());
    EXPECT_EQ(s_tServerAtLoad, TimeZone::kServerOS);
    static_assert(TimeZone().isUnknown());
}

TEST(TimeZone, TellsOffsetsFromSpecialValues)
{
    struct Row
    {
        int nLine;
        int nOffset;
        bool bExpected;
    };
    const Row kRows[] = {
        {__LINE__, 0, true},
        {__LINE__, -1080, true},
        {__LINE__, 1080, true},
        {__LINE__, -1081, false},
        {__LINE__, 1081, false},
        {__LINE__, TimeZone::knUTCOffsetUnknown, false},
        {__LINE__, TimeZone::knUTCOffsetUseDefault, false},
        {__LINE__, std::numeric_limits<int>::max(), false},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(TimeZone::isValidOffset(tRow.nOffset), tRow.bExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(TimeZone::knUTCOffsetUnknown, std::numeric_limits<int>::min());
    EXPECT_EQ(TimeZone::knUTCOffsetUseDefault, std::numeric_limits<int>::min() + 1);
    EXPECT_EQ(String(TimeZone::kIDUnknown), L"Unknown");
}

TEST(TimeZone, OfNoZoneKnowsNothing)
{
    const TimeZone tZone;
    EXPECT_TRUE(tZone.isUnknown());
    EXPECT_EQ(tZone, TimeZone::kUnknown);
    EXPECT_EQ(tZone.getId(), L"Unknown");
    EXPECT_EQ(tZone.getUtcOffset(TimeZone::kStandardTime), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tZone.getUtcOffset(TimeZone::kDaylightTime), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tZone.getUtcOffset(DateTime(2024, 1, 1)), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tZone.getShortName(L"en"), L"Unknown");
    EXPECT_EQ(tZone.offsetSecondsAt(0), 0);
}

TEST(TimeZone, IsComparedByItsIdentifier)
{
    EXPECT_EQ(zone(L"europe/paris"), zone(L"Europe/Paris"));
    EXPECT_NE(zone(L"US/Pacific"), zone(L"America/Los_Angeles"));  // a link is a name of its own
    EXPECT_NE(zone(L"Europe/Paris"), TimeZone::kUnknown);
    EXPECT_EQ(zone(TimeZone::kServerOS.getId()), TimeZone::kServerOS);
}

TEST(TimeZone, ChangesItsClocksWhereHistoryDid)
{
    struct Row
    {
        int nLine;
        const wchar_t* pZone;
        DateTime tChange;  // UTC
        DateTime tBefore;  // what clocks show a second earlier
        DateTime tAfter;   // and then
    };
    const Row kRows[] = {
        {__LINE__, L"America/New_York", DateTime(2024, 3, 10, 7), DateTime(2024, 3, 10, 1, 59, 59),
         DateTime(2024, 3, 10, 3)},
        {__LINE__, L"America/New_York", DateTime(2024, 11, 3, 6), DateTime(2024, 11, 3, 1, 59, 59),
         DateTime(2024, 11, 3, 1)},
        {__LINE__, L"America/New_York", DateTime(1883, 11, 18, 17), DateTime(1883, 11, 18, 12, 3, 57),
         DateTime(1883, 11, 18, 12)},
        // Half an hour of summer time.
        {__LINE__, L"Australia/Lord_Howe", DateTime(2024, 4, 6, 15), DateTime(2024, 4, 7, 1, 59, 59),
         DateTime(2024, 4, 7, 1, 30)},
        {__LINE__, L"Australia/Lord_Howe", DateTime(2024, 10, 5, 15, 30), DateTime(2024, 10, 6, 1, 59, 59),
         DateTime(2024, 10, 6, 2, 30)},
        // Days that were not.
        {__LINE__, L"Pacific/Apia", DateTime(2011, 12, 30, 10), DateTime(2011, 12, 29, 23, 59, 59),
         DateTime(2011, 12, 31)},
        {__LINE__, L"Pacific/Kwajalein", DateTime(1993, 8, 21, 12), DateTime(1993, 8, 20, 23, 59, 59),
         DateTime(1993, 8, 22)},
        // Winter time is the exception there.
        {__LINE__, L"Europe/Dublin", DateTime(2024, 3, 31, 1), DateTime(2024, 3, 31, 0, 59, 59),
         DateTime(2024, 3, 31, 2)},
        {__LINE__, L"Europe/Dublin", DateTime(2024, 10, 27, 1), DateTime(2024, 10, 27, 1, 59, 59),
         DateTime(2024, 10, 27, 1)},
        // Quarters of an hour.
        {__LINE__, L"Asia/Kathmandu", DateTime(1985, 12, 31, 18, 30), DateTime(1985, 12, 31, 23, 59, 59),
         DateTime(1986, 1, 1, 0, 15)},
        {__LINE__, L"America/Caracas", DateTime(2016, 5, 1, 7), DateTime(2016, 5, 1, 2, 29, 59),
         DateTime(2016, 5, 1, 3)},
        {__LINE__, L"Asia/Pyongyang", DateTime(2018, 5, 4, 15), DateTime(2018, 5, 4, 23, 29, 59), DateTime(2018, 5, 5)},
        // Two changes within five weeks, around Ramadan.
        {__LINE__, L"Africa/Casablanca", DateTime(2024, 3, 10, 2), DateTime(2024, 3, 10, 2, 59, 59),
         DateTime(2024, 3, 10, 2)},
        {__LINE__, L"Africa/Casablanca", DateTime(2024, 4, 14, 2), DateTime(2024, 4, 14, 1, 59, 59),
         DateTime(2024, 4, 14, 3)},
        // Seconds in offsets, to the last.
        {__LINE__, L"Africa/Monrovia", DateTime(1972, 1, 7, 0, 44, 30), DateTime(1972, 1, 6, 23, 59, 59),
         DateTime(1972, 1, 7, 0, 44, 30)},
        {__LINE__, L"Africa/Juba", DateTime(2021, 1, 31, 21), DateTime(2021, 1, 31, 23, 59, 59),
         DateTime(2021, 1, 31, 23)},
        // By rule, further than any data are written out: the second Sunday of March, the first of November.
        {__LINE__, L"America/New_York", DateTime(2500, 3, 14, 7), DateTime(2500, 3, 14, 1, 59, 59),
         DateTime(2500, 3, 14, 3)},
        {__LINE__, L"America/New_York", DateTime(9999, 11, 7, 6), DateTime(9999, 11, 7, 1, 59, 59),
         DateTime(9999, 11, 7, 1)},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(shown(zone(tRow.pZone), utc(tRow.tChange) - 1), tRow.tBefore) << "row at line " << tRow.nLine;
        EXPECT_EQ(shown(zone(tRow.pZone), utc(tRow.tChange)), tRow.tAfter) << "row at line " << tRow.nLine;
    }
}

TEST(TimeZone, HasTheOffsetOfTheZoneDataAtRandomMoments)
{
    std::mt19937_64 tRandom(1);
    const std::int64_t nFrom = utc(DateTime(1800, 1, 1));
    const std::int64_t nNear = utc(DateTime(2100, 1, 1));
    const std::int64_t nFar = utc(DateTime(10000, 1, 1));
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const TimeZone tZone = zone(sId);
        const cctz::time_zone tOracle = oracle(sId);
        for (int n = 0; n < 400; ++n)
        {
            const auto nSpan = static_cast<std::uint64_t>((n % 2 ? nFar : nNear) - nFrom);
            const std::int64_t nMoment = nFrom + static_cast<std::int64_t>(tRandom() % nSpan);
            ASSERT_EQ(tZone.offsetSecondsAt(nMoment), tOracle.lookup(momentOf(nMoment)).offset)
                << toUtf8(sId) << " at " << nMoment;
        }
        for (const std::int64_t nMoment : {-nFar, utc(DateTime(-9999, 1, 1)), nFar + 1, 40 * nFar})
            ASSERT_EQ(tZone.offsetSecondsAt(nMoment), tOracle.lookup(momentOf(nMoment)).offset)
                << toUtf8(sId) << " at " << nMoment;
    }
}

TEST(TimeZone, ChangesToTheSecondWhereTheZoneDataDo)
{
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const TimeZone tZone = zone(sId);
        const cctz::time_zone tOracle = oracle(sId);
        auto tMoment = cctz::time_point<cctz::seconds>::min();
        cctz::time_zone::civil_transition tChange;
        while (tOracle.next_transition(tMoment, &tChange))
        {
            tMoment = tOracle.lookup(tChange.to).trans;
            const std::int64_t nMoment = tMoment.time_since_epoch().count();
            for (const std::int64_t n : {nMoment - 1, nMoment, nMoment + 1})
                ASSERT_EQ(tZone.offsetSecondsAt(n), tOracle.lookup(momentOf(n)).offset) << toUtf8(sId) << " at " << n;
        }
    }
}

TEST(TimeZone, HasAnOffsetAtAnyMomentWhatever)
{
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const TimeZone tZone = zone(sId);
        for (const std::int64_t nMoment :
             {std::numeric_limits<std::int64_t>::min(), std::int64_t{0}, std::numeric_limits<std::int64_t>::max()})
            EXPECT_LT(std::abs(tZone.offsetSecondsAt(nMoment)), 16 * 3600) << toUtf8(sId);
        for (const int nYear : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
            EXPECT_LT(std::abs(tZone.getUtcOffset(DateTime(nYear, 7, 1))), 16 * 60) << toUtf8(sId);
    }
}

// The names' library has rules of its own, some years older: most zones must agree where history was settled by then.
TEST(TimeZone, AgreesWithAnotherSourceAboutSettledHistory)
{
    const std::int64_t nSettled = utc(DateTime(1998, 1, 1));
    const std::int64_t nSpan = utc(DateTime(2021, 1, 1)) - nSettled;
    std::mt19937_64 tRandom(5);
    int nCompared = 0;
    std::vector<std::string> vDiffering;
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const std::unique_ptr<icu::TimeZone> pOracle(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(toUtf8(sId))));
        if (*pOracle == icu::TimeZone::getUnknown())
            continue;
        ++nCompared;
        const TimeZone tZone = zone(sId);
        for (int n = 0; n < 300; ++n)
        {
            const std::int64_t nMoment =
                nSettled + static_cast<std::int64_t>(tRandom() % static_cast<std::uint64_t>(nSpan));
            std::int32_t nRaw = 0;
            std::int32_t nSavings = 0;
            UErrorCode eStatus = U_ZERO_ERROR;
            pOracle->getOffset(static_cast<double>(nMoment) * 1000, false, nRaw, nSavings, eStatus);
            if (tZone.offsetSecondsAt(nMoment) * 1000 != nRaw + nSavings)
            {
                vDiffering.push_back(toUtf8(sId));
                break;
            }
        }
    }
    EXPECT_GT(nCompared, 500);
    EXPECT_LE(vDiffering.size(), static_cast<std::size_t>(nCompared) / 50) << ::testing::PrintToString(vDiffering);
}

TEST(TimeZone, ReadsSkippedAndRepeatedCivilTimesWithTheEarlierOffset)
{
    struct Row
    {
        int nLine;
        const wchar_t* pZone;
        DateTime tCivil;
        int nExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"America/New_York", DateTime(2024, 3, 10, 1, 59, 59), -300},
        {__LINE__, L"America/New_York", DateTime(2024, 3, 10, 2), -300},  // skipped from here
        {__LINE__, L"America/New_York", DateTime(2024, 3, 10, 2, 59, 59), -300},
        {__LINE__, L"America/New_York", DateTime(2024, 3, 10, 3), -240},
        {__LINE__, L"America/New_York", DateTime(2024, 11, 3, 0, 59, 59), -240},
        {__LINE__, L"America/New_York", DateTime(2024, 11, 3, 1), -240},  // shown twice from here
        {__LINE__, L"America/New_York", DateTime(2024, 11, 3, 1, 59, 59), -240},
        {__LINE__, L"America/New_York", DateTime(2024, 11, 3, 2), -300},
        {__LINE__, L"Europe/Dublin", DateTime(2024, 10, 27, 1, 30), 60},
        {__LINE__, L"Europe/Dublin", DateTime(2024, 3, 31, 1, 30), 0},
        {__LINE__, L"Australia/Lord_Howe", DateTime(2024, 4, 7, 1, 45), 660},
        {__LINE__, L"Australia/Lord_Howe", DateTime(2024, 10, 6, 2, 15), 630},
        {__LINE__, L"Pacific/Apia", DateTime(2011, 12, 29, 23, 59, 59), -600},
        {__LINE__, L"Pacific/Apia", DateTime(2011, 12, 30, 12), -600},  // a day that was not
        {__LINE__, L"Pacific/Apia", DateTime(2011, 12, 31), 840},
        {__LINE__, L"America/New_York", DateTime(2500, 3, 14, 2, 30), -300},
        {__LINE__, L"America/New_York", DateTime(2500, 3, 14, 3, 0), -240},
        {__LINE__, L"America/New_York", DateTime(9999, 7, 1), -240},
        {__LINE__, L"GMT+05:30", DateTime(2024, 7, 1), 330},
        {__LINE__, L"GMT-18", DateTime(2024, 7, 1), -1080},
        // Seconds are rounded to the nearest minute.
        {__LINE__, L"Europe/Amsterdam", DateTime(1930, 1, 1), 20},  // +00:19:32
        {__LINE__, L"Africa/Monrovia", DateTime(1900, 1, 1), -43},  // -00:43:08
        {__LINE__, L"Africa/Monrovia", DateTime(1950, 1, 1), -45},  // -00:44:30
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(zone(tRow.pZone).getUtcOffset(tRow.tCivil), tRow.nExpected) << "row at line " << tRow.nLine;
}

TEST(TimeZone, ReadsAnyCivilTimeWithTheOffsetBeforeTheChange)
{
    std::mt19937_64 tRandom(6);
    const cctz::civil_second tEpoch(1970, 1, 1);
    const std::int64_t nFrom = utc(DateTime(1850, 1, 1));
    const auto nSpan = static_cast<std::uint64_t>(utc(DateTime(3000, 1, 1)) - nFrom);
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const TimeZone tZone = zone(sId);
        const cctz::time_zone tOracle = oracle(sId);
        for (int n = 0; n < 100; ++n)
        {
            // Half of them close to a change.
            auto tMoment = momentOf(nFrom + static_cast<std::int64_t>(tRandom() % nSpan));
            cctz::time_zone::civil_transition tChange;
            if (n % 2 && tOracle.prev_transition(tMoment, &tChange))
                tMoment = tOracle.lookup(tChange.to).trans + cctz::seconds(tRandom() % 14400) - cctz::seconds(7200);
            const cctz::civil_second tCivil = tOracle.lookup(tMoment).cs;
            const cctz::time_point<cctz::seconds> tRead = tOracle.lookup(tCivil).pre;
            const auto nOffset = (tCivil - tEpoch) - tRead.time_since_epoch().count();
            const DateTime tValue(static_cast<int>(tCivil.year()), static_cast<unsigned>(tCivil.month()),
                                  static_cast<unsigned>(tCivil.day()), static_cast<unsigned>(tCivil.hour()),
                                  static_cast<unsigned>(tCivil.minute()), static_cast<unsigned>(tCivil.second()));
            ASSERT_EQ(tZone.getUtcOffset(tValue), std::lround(static_cast<double>(nOffset) / 60))
                << toUtf8(sId) << " " << tCivil;
        }
    }
}

TEST(TimeZone, KnowsStandardAndDaylightTimeOfThePresentRules)
{
    struct Row
    {
        int nLine;
        const wchar_t* pZone;
        int nStandard;
        int nDaylight;
    };
    const Row kRows[] = {
        {__LINE__, L"America/New_York", -300, -240},  {__LINE__, L"Europe/Berlin", 60, 120},
        {__LINE__, L"Europe/Dublin", 0, 60},  // the further east, though its data say otherwise
        {__LINE__, L"Australia/Lord_Howe", 630, 660}, {__LINE__, L"America/Santiago", -240, -180},
        {__LINE__, L"Asia/Kolkata", 330, 330},        {__LINE__, L"Asia/Tokyo", 540, 540},
        {__LINE__, L"Europe/Moscow", 180, 180},  // had summer time once
        {__LINE__, L"GMT-05:30", -330, -330},         {__LINE__, L"UTC", 0, 0},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(zone(tRow.pZone).getUtcOffset(TimeZone::kStandardTime), tRow.nStandard) << "line " << tRow.nLine;
        EXPECT_EQ(zone(tRow.pZone).getUtcOffset(TimeZone::kDaylightTime), tRow.nDaylight) << "line " << tRow.nLine;
    }
}

TEST(TimeZone, GivesNoOffsetAtTheCostOfTheHeap)
{
    const TimeZone tZone = zone(L"America/Los_Angeles");
    TimeZone::kServerOS.getId();
    const AllocationCounter tCounter;
    EXPECT_EQ(tZone.getUtcOffset(DateTime(2024, 7, 1)), -420);
    EXPECT_EQ(tZone.getUtcOffset(TimeZone::kStandardTime), -480);
    EXPECT_EQ(TimeZone::kServerOS.getId().empty(), false);
    EXPECT_EQ(tCounter.count(), 0U);
}

TEST(TimeZone, HasAShortNameInTheLanguage)
{
    struct Row
    {
        int nLine;
        const wchar_t* pZone;
        const wchar_t* pLanguage;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        // The generic name, whatever the season.
        {__LINE__, L"America/Los_Angeles", L"en-US", L"PT"},
        {__LINE__, L"US/Pacific", L"en-US", L"PT"},
        {__LINE__, L"America/New_York", L"en-us", L"ET"},
        {__LINE__, L"America/New_York", L"EN_us", L"ET"},
        {__LINE__, L"America/New_York", L"en", L"ET"},
        {__LINE__, L"Pacific/Honolulu", L"en-US", L"HST"},
        // A zone that keeps its clocks has the name of standard time.
        {__LINE__, L"America/Phoenix", L"en-US", L"MST"},
        {__LINE__, L"UTC", L"en-US", L"UTC"},
        {__LINE__, L"Etc/UTC", L"de-DE", L"UTC"},
        {__LINE__, L"Asia/Tokyo", L"ja-JP", L"JST"},
        {__LINE__, L"Asia/Kolkata", L"en-IN", L"IST"},
        // No name in the language: the present offset, as the language writes it.
        {__LINE__, L"Asia/Tokyo", L"en-US", L"GMT+9"},
        {__LINE__, L"Asia/Kolkata", L"en-US", L"GMT+5:30"},
        {__LINE__, L"Asia/Kolkata", L"fr-FR", L"UTC+5:30"},
        {__LINE__, L"Asia/Kathmandu", L"de", L"GMT+5:45"},
        {__LINE__, L"America/Bogota", L"en-US", L"GMT-5"},
        {__LINE__, L"GMT-05:00", L"en-US", L"GMT-5"},
        {__LINE__, L"GMT+05:30", L"en-US", L"GMT+5:30"},
        {__LINE__, L"GMT-00:30", L"en-US", L"GMT-0:30"},
        // ASCII digits where the language has its own.
        {__LINE__, L"Asia/Kolkata", L"fa", L"\x200E+5:30 گرینویچ"},
        // Languages that there are not, and tags that are none: English.
        {__LINE__, L"America/New_York", L"", L"ET"},
        {__LINE__, L"America/New_York", L"xx", L"ET"},
        {__LINE__, L"America/New_York", L"xx-US", L"ET"},
        {__LINE__, L"America/New_York", L"no language", L"ET"},
        {__LINE__, L"America/New_York", L"en-US-", L"ET"},
        {__LINE__, L"America/New_York", L"en-US\x100", L"ET"},
        {__LINE__, L"America/New_York", L"../../etc", L"ET"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(toUtf8(zone(tRow.pZone).getShortName(tRow.pLanguage)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine;
    EXPECT_EQ(zone(L"America/New_York").getShortName(String(100000, L'e')), L"ET");
}

// Where names change with the season, they are those of the present offset.
TEST(TimeZone, ShowsThePresentOffsetWhereThereIsNoName)
{
    const TimeZone tParis = zone(L"Europe/Paris");
    const int nHours = tParis.offsetSecondsAt(now()) / 3600;
    EXPECT_EQ(tParis.getShortName(L"en-US"), L"GMT+" + std::to_wstring(nHours));
    EXPECT_EQ(tParis.getShortName(L"fr-FR"), L"UTC+" + std::to_wstring(nHours));
    EXPECT_EQ(tParis.getShortName(L"de-DE"), L"MEZ");  // the generic name
}

// Names may come from rules older than the zone's: they are used where both agree about the present.
TEST(TimeZone, TakesNoNameFromRulesThatDisagree)
{
    int nDisagreeing = 0;
    for (const String& sId : TimeZoneRegistry::getInstance().allIds())
    {
        const TimeZone tZone = zone(sId);
        const std::unique_ptr<icu::TimeZone> pOther(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(toUtf8(sId))));
        std::int32_t nRaw = 0;
        std::int32_t nSavings = 0;
        UErrorCode eStatus = U_ZERO_ERROR;
        pOther->getOffset(static_cast<double>(now()) * 1000, false, nRaw, nSavings, eStatus);
        if (*pOther != icu::TimeZone::getUnknown() && (nRaw + nSavings) / 1000 == tZone.offsetSecondsAt(now()))
            continue;
        ++nDisagreeing;
        const String sName = tZone.getShortName(L"en-US");
        const int nMinutes = tZone.offsetSecondsAt(now()) / 60;
        if (nMinutes == 0)
            EXPECT_EQ(sName, L"GMT") << toUtf8(sId);
        else
            EXPECT_EQ(sName.substr(0, 4), nMinutes < 0 ? L"GMT-" : L"GMT+") << toUtf8(sId);
    }
    RecordProperty("zones that disagree", nDisagreeing);
}

TEST(TimeZone, NeverTakesNamesOfTheProcessesOwnLanguage)
{
    expectInNewProcess(
        []
        {
            UErrorCode eStatus = U_ZERO_ERROR;
            icu::Locale::setDefault(icu::Locale("de_DE"), eStatus);
            const TimeZone tParis = zone(L"Europe/Paris");
            return zone(L"America/New_York").getShortName(L"xx") == L"ET" &&
                   tParis.getShortName(L"xx").substr(0, 3) == L"GMT" &&
                   tParis.getShortName(L"und").substr(0, 3) == L"GMT" && tParis.getShortName(L"de") == L"MEZ";
        });
}

bool serverIs(const char* pTz, const wchar_t* pExpected)
{
    if (pTz)
        setenv("TZ", pTz, 1);
    else
        unsetenv("TZ");
    return TimeZone::kServerOS.getId() == pExpected && !TimeZone::kServerOS.isUnknown() &&
           TimeZone::kServerOS.getUtcOffset(DateTime(2024, 1, 1)) == zone(pExpected).getUtcOffset(DateTime(2024, 1, 1));
}

TEST(ServerTimeZone, IsThatOfTheEnvironment)
{
    expectInNewProcess([] { return serverIs("America/New_York", L"America/New_York"); });
    expectInNewProcess([] { return serverIs(":Asia/Tokyo", L"Asia/Tokyo"); });
    expectInNewProcess([] { return serverIs("asia/tokyo", L"Asia/Tokyo"); });
    expectInNewProcess([] { return serverIs("EST5EDT", L"EST5EDT"); });
    expectInNewProcess([] { return serverIs("/usr/share/zoneinfo/Europe/Paris", L"Europe/Paris"); });
    expectInNewProcess([] { return serverIs(":/usr/share/zoneinfo/Europe/Paris", L"Europe/Paris"); });
}

TEST(ServerTimeZone, IsUtcWhereTheEnvironmentNamesNoListedZone)
{
    expectInNewProcess([] { return serverIs("", L"UTC"); });
    expectInNewProcess([] { return serverIs(":", L"UTC"); });
    expectInNewProcess([] { return serverIs("Nowhere/Land", L"UTC"); });
    expectInNewProcess([] { return serverIs("<+03>-3", L"UTC"); });
    expectInNewProcess([] { return serverIs("/etc/passwd", L"UTC"); });
    expectInNewProcess([] { return serverIs("../../../etc/passwd", L"UTC"); });
    expectInNewProcess([] { return serverIs("/usr/share/zoneinfo/../../../etc/passwd", L"UTC"); });
    expectInNewProcess([] { return serverIs("libc:localtime", L"UTC"); });
    expectInNewProcess([] { return serverIs("\xff\xfe", L"UTC"); });
    expectInNewProcess([] { return serverIs(std::string(100000, 'A').c_str(), L"UTC"); });
}

// What the system's own conversion says of the same moments.
TEST(ServerTimeZone, IsThatOfTheSystemWhereTheEnvironmentIsSilent)
{
    const auto tCheck = [](const char* pTz)
    {
        return [pTz]
        {
            if (pTz)
                setenv("TZ", pTz, 1);
            else
                unsetenv("TZ");
            tzset();
            bool bSame = !TimeZone::kServerOS.isUnknown();
            for (std::time_t nMoment = 0; nMoment < 2'000'000'000; nMoment += 5'000'000)
            {
                std::tm tLocal{};
                localtime_r(&nMoment, &tLocal);
                bSame = bSame && tLocal.tm_gmtoff == TimeZone::kServerOS.offsetSecondsAt(nMoment);
            }
            return bSame;
        };
    };
    expectInNewProcess(tCheck(nullptr));
    expectInNewProcess(tCheck(":/etc/localtime"));
    expectInNewProcess(tCheck("Australia/Lord_Howe"));
}

// What a machine may have in place of /etc/localtime.
struct LocalTimeFile
{
    std::filesystem::path tFolder;
    std::string sPath;

    LocalTimeFile()
        : tFolder(std::filesystem::path(::testing::TempDir()) / ("localtime" + std::to_string(std::random_device()()))),
          sPath((tFolder / "localtime").string())
    {
        std::filesystem::create_directories(tFolder);
    }
    ~LocalTimeFile() { std::filesystem::remove_all(tFolder); }
    LocalTimeFile(const LocalTimeFile&) = delete;
    LocalTimeFile& operator=(const LocalTimeFile&) = delete;

    String zoneId() const
    {
        const std::string sZones = "/usr/share/zoneinfo";
        const ZoneList tList = ZoneList::fromText(readSmallFile(sZones + "/tzdata.zi", 4'000'000));
        const std::size_t nIndex = findServerZone(tList, sZones, sPath);
        return nIndex < tList.all().size() ? tList.all()[nIndex].sId : L"none";
    }
};

String zoneOfLink(const char* pTarget)
{
    const LocalTimeFile tFile;
    std::filesystem::create_symlink(pTarget, tFile.sPath);
    return tFile.zoneId();
}

String zoneOfContents(const std::string& sContents)
{
    const LocalTimeFile tFile;
    std::ofstream(tFile.sPath, std::ios::binary) << sContents;
    return tFile.zoneId();
}

TEST(ServerTimeZone, IsThatOfTheLocalTimeFile)
{
    expectInNewProcess(
        []
        {
            unsetenv("TZ");
            const std::string sTokyo = readSmallFile("/usr/share/zoneinfo/Asia/Tokyo", 100'000);
            return zoneOfLink("/usr/share/zoneinfo/Europe/Paris") == L"Europe/Paris" &&
                   zoneOfLink("../usr/share/zoneinfo/US/Pacific") == L"US/Pacific" &&
                   zoneOfLink("/var/db/timezone/zoneinfo/America/Lima") == L"America/Lima" &&
                   // The name does not tell, the contents do.
                   zoneOfLink("/usr/share/zoneinfo/posix/Asia/Tokyo") == L"Asia/Tokyo" &&
                   zoneOfContents(sTokyo) == L"Asia/Tokyo";
        });
    expectInNewProcess(
        []
        {
            const LocalTimeFile tFile;
            std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Paris", tFile.sPath);
            setenv("TZ", (":" + tFile.sPath).c_str(), 1);
            return tFile.zoneId() == L"Europe/Paris";
        });
}

TEST(ServerTimeZone, IsNoneWhereTheLocalTimeFileTellsNothing)
{
    expectInNewProcess(
        []
        {
            unsetenv("TZ");
            return LocalTimeFile().zoneId() == L"none" && zoneOfContents("") == L"none" &&
                   zoneOfContents("TZif2") == L"none" && zoneOfContents(std::string(300'000, 'T')) == L"none" &&
                   zoneOfLink("/usr/share/zoneinfo/../../../etc/passwd") == L"none" &&
                   zoneOfLink("/dev/zero") == L"none" && zoneOfLink("localtime") == L"none" &&
                   zoneOfLink("/usr/share/zoneinfo/Nowhere/Land") == L"none";
        });
}

TEST(ServerTimeZone, StaysWhatItWasFirst)
{
    expectInNewProcess([] { return serverIs("Asia/Tokyo", L"Asia/Tokyo") && serverIs("Europe/Paris", L"Asia/Tokyo"); });
}

}  // namespace

}  // namespace tov

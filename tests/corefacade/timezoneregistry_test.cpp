#include "corefacade/timezoneregistry.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "corefacade/dateutils.h"
#include "corefacade/zonelist.h"
#include "corefacade/zonerules.h"
#include "support/collected.h"
#include "support/newprocess.h"
#include "utilities/stringutils.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

const TimeZoneRegistry& registry()
{
    return TimeZoneRegistry::getInstance();
}

TEST(TimeZoneRegistry, FindsIdentifiersWhateverTheirCase)
{
    struct Row
    {
        int nLine;
        const wchar_t* pName;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"Europe/Berlin", L"Europe/Berlin"},
        {__LINE__, L"europe/berlin", L"Europe/Berlin"},
        {__LINE__, L"EUROPE/BERLIN", L"Europe/Berlin"},
        {__LINE__, L"america/argentina/comodrivadavia", L"America/Argentina/ComodRivadavia"},
        {__LINE__, L"america/port-au-prince", L"America/Port-au-Prince"},
        {__LINE__, L"EST", L"EST"},
        {__LINE__, L"est5edt", L"EST5EDT"},
        {__LINE__, L"us/pacific", L"US/Pacific"},  // a link keeps its name
        {__LINE__, L"utc", L"UTC"},
        {__LINE__, L"Zulu", L"Zulu"},
        {__LINE__, L"gmt", L"GMT"},
        {__LINE__, L"GMT+0", L"GMT+0"},  // a listed name goes before a fixed offset
        {__LINE__, L"gmt0", L"GMT0"},
        {__LINE__, L"etc/gmt+5", L"Etc/GMT+5"},
    };
    for (const Row& tRow : kRows)
    {
        TimeZone tZone;
        EXPECT_TRUE(registry().findTimeZone(tRow.pName, TimeZoneRegistry::kIdentifier, tZone)) << tRow.nLine;
        EXPECT_EQ(tZone.getId(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(TimeZoneRegistry, FindsFixedOffsets)
{
    struct Row
    {
        int nLine;
        const wchar_t* pName;
        const wchar_t* pExpected;
        int nMinutes;
    };
    const Row kRows[] = {
        {__LINE__, L"GMT+05:30", L"GMT+05:30", 330},  {__LINE__, L"GMT-05:30", L"GMT-05:30", -330},
        {__LINE__, L"GMT-5", L"GMT-05:00", -300},     {__LINE__, L"GMT+5", L"GMT+05:00", 300},
        {__LINE__, L"gmt+5:45", L"GMT+05:45", 345},   {__LINE__, L"UTC+5:30", L"GMT+05:30", 330},
        {__LINE__, L"utc-11", L"GMT-11:00", -660},    {__LINE__, L"GMT-00:30", L"GMT-00:30", -30},
        {__LINE__, L"GMT+18:00", L"GMT+18:00", 1080}, {__LINE__, L"GMT-18", L"GMT-18:00", -1080},
        {__LINE__, L"GMT+17:59", L"GMT+17:59", 1079}, {__LINE__, L"GMT+00:00", L"GMT", 0},
        {__LINE__, L"UTC-0:00", L"GMT", 0},           {__LINE__, L"Etc/GMT+5", L"Etc/GMT+5", -300},
    };
    for (const Row& tRow : kRows)
    {
        TimeZone tZone;
        EXPECT_TRUE(registry().findTimeZone(tRow.pName, TimeZoneRegistry::kIdentifier, tZone)) << tRow.nLine;
        EXPECT_EQ(tZone.getId(), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tZone.getUtcOffset(DateTime(2024, 1, 1)), tRow.nMinutes) << "row at line " << tRow.nLine;
        EXPECT_EQ(registry().findTimeZone(tZone.getId(), TimeZoneRegistry::kIdentifier), tZone) << tRow.nLine;
    }
}

TEST(TimeZoneRegistry, FindsNothingUnderHostileNames)
{
    struct Row
    {
        int nLine;
        std::wstring_view sName;
    };
    const String sLong(1'000'000, L'A');
    const String sLongOffset = L"GMT+" + String(1'000'000, L'9');
    const Row kRows[] = {
        {__LINE__, L""},
        {__LINE__, L"Unknown"},
        {__LINE__, L"default"},
        {__LINE__, L"Etc/Unknown"},
        {__LINE__, L" Europe/Berlin"},
        {__LINE__, L"Europe/Berlin "},
        {__LINE__, L"Europe"},
        {__LINE__, L"Europe/"},
        {__LINE__, L"/Europe/Berlin"},
        {__LINE__, L"Europe//Berlin"},
        {__LINE__, L"./Europe/Berlin"},
        {__LINE__, L"Europe/../Europe/Berlin"},
        {__LINE__, L"../../../etc/passwd"},
        {__LINE__, L"/etc/passwd"},
        {__LINE__, L"/usr/share/zoneinfo/Europe/Berlin"},
        {__LINE__, L"posix/Europe/Berlin"},
        {__LINE__, L"right/Europe/Berlin"},
        {__LINE__, L"file:Europe/Berlin"},
        {__LINE__, L"file:/etc/passwd"},
        {__LINE__, L"libc:localtime"},
        {__LINE__, L"libc:UTC"},
        {__LINE__, L"localtime"},
        {__LINE__, L"tzdata.zi"},
        {__LINE__, L"zone.tab"},
        {__LINE__, L"Fixed/UTC+05:30:00"},
        {__LINE__, std::wstring_view(L"UTC\0", 4)},
        {__LINE__, std::wstring_view(L"UTC\0/../../etc/passwd", 21)},
        {__LINE__, L"\x212Aiev"},  // KELVIN SIGN, which some lower-case to k
        {__LINE__, L"Europe/Berl\x0130n"},
        {__LINE__, L"\xFF55\xFF54\xFF43"},  // full-width letters
        {__LINE__, L"GMT+"},
        {__LINE__, L"GMT5"},
        {__LINE__, L"GMT +5"},
        {__LINE__, L"GMT+5 "},
        {__LINE__, L"GMT+5:"},
        {__LINE__, L"GMT+5:3"},
        {__LINE__, L"GMT+5:300"},
        {__LINE__, L"GMT+05:60"},
        {__LINE__, L"GMT+18:01"},
        {__LINE__, L"GMT-18:01"},
        {__LINE__, L"GMT+19"},
        {__LINE__, L"GMT+99:59"},
        {__LINE__, L"GMT+005"},
        {__LINE__, L"GMT+0530"},
        {__LINE__, L"GMT+:30"},
        {__LINE__, L"GMT+-5"},
        {__LINE__, L"GMT+05:30:00"},
        {__LINE__, L"GMT+\x0665"},  // ARABIC-INDIC DIGIT FIVE
        {__LINE__, L"UTC5"},
        {__LINE__, sLong},
        {__LINE__, sLongOffset},
        {__LINE__, L"Pacific Standard Time"},  // of the other kind
    };
    for (const Row& tRow : kRows)
    {
        TimeZone tZone = TimeZone::kServerOS;
        EXPECT_FALSE(registry().findTimeZone(tRow.sName, TimeZoneRegistry::kIdentifier, tZone)) << tRow.nLine;
        EXPECT_EQ(tZone, TimeZone::kServerOS) << "row at line " << tRow.nLine;  // unchanged
        EXPECT_TRUE(registry().findTimeZone(tRow.sName, TimeZoneRegistry::kIdentifier).isUnknown()) << tRow.nLine;
    }
}

TEST(TimeZoneRegistry, FindsWindowsNames)
{
    struct Row
    {
        int nLine;
        const wchar_t* pName;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"Pacific Standard Time", L"America/Los_Angeles"},
        {__LINE__, L"Tokyo Standard Time", L"Asia/Tokyo"},
        {__LINE__, L"W. Europe Standard Time", L"Europe/Berlin"},
        {__LINE__, L"Lord Howe Standard Time", L"Australia/Lord_Howe"},
        {__LINE__, L"UTC", L"Etc/UTC"},
        {__LINE__, L"", L"Unknown"},
        {__LINE__, L"Europe/Berlin", L"Unknown"},
        {__LINE__, L"pacific standard time", L"Unknown"},
        {__LINE__, L"Pacific Standard Time ", L"Unknown"},
        {__LINE__, L"Pacific Standard Time\x100", L"Unknown"},
        {__LINE__, L"Pacific/Standard Time", L"Unknown"},
        {__LINE__, L"../../etc", L"Unknown"},
        {__LINE__, L"GMT+5", L"Unknown"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(registry().findTimeZone(tRow.pName, TimeZoneRegistry::kWindowsName).getId(), tRow.pExpected)
            << "row at line " << tRow.nLine;
    EXPECT_TRUE(registry().findTimeZone(String(1'000'000, L'P'), TimeZoneRegistry::kWindowsName).isUnknown());
}

TEST(TimeZoneRegistry, KnowsAZoneForEveryWindowsName)
{
    std::set<std::string> tNames;
    for (const String& sId : registry().allIds())
    {
        icu::UnicodeString sName;
        UErrorCode eStatus = U_ZERO_ERROR;
        icu::TimeZone::getWindowsID(icu::UnicodeString::fromUTF8(toUtf8(sId)), sName, eStatus);
        std::string sBytes;
        if (!sName.isEmpty())
            tNames.insert(sName.toUTF8String(sBytes));
    }
    EXPECT_GT(tNames.size(), 100U);
    for (const std::string& sName : tNames)
        EXPECT_FALSE(registry().findTimeZone(*fromUtf8(sName), TimeZoneRegistry::kWindowsName).isUnknown()) << sName;
}

TEST(TimeZoneRegistry, ListsEveryIdentifierOnceAndInOrder)
{
    const std::vector<String>& vIds = registry().allIds();
    EXPECT_GT(vIds.size(), 500U);
    for (const wchar_t* pId : {L"Europe/Berlin", L"US/Pacific", L"EST", L"Etc/GMT+12", L"UTC"})
        EXPECT_EQ(std::count(vIds.begin(), vIds.end(), pId), 1) << toUtf8(pId);
    const auto tBefore = [](const String& sLeft, const String& sRight)
    { return StringUtils::compareIgnoreCase(sLeft, sRight) < 0; };
    EXPECT_EQ(std::adjacent_find(vIds.begin(), vIds.end(),
                                 [&](const String& sLeft, const String& sRight) { return !tBefore(sLeft, sRight); }),
              vIds.end());
    for (const String& sId : vIds)
        EXPECT_EQ(registry().findTimeZone(sId, TimeZoneRegistry::kIdentifier).getId(), sId) << toUtf8(sId);
}

TEST(TimeZoneRegistry, GivesALinkTheRulesOfItsZone)
{
    const TimeZone tLink = registry().findTimeZone(L"Arctic/Longyearbyen", TimeZoneRegistry::kIdentifier);
    const TimeZone tZone = registry().findTimeZone(L"Europe/Berlin", TimeZoneRegistry::kIdentifier);
    for (std::int64_t nMoment = 946'684'800; nMoment < 4'000'000'000; nMoment += 1'000'000)
        ASSERT_EQ(tLink.offsetSecondsAt(nMoment), tZone.offsetSecondsAt(nMoment));
}

// Each thread meets zones that others are reading at the same time, in another order.
TEST(TimeZoneRegistry, AnswersManyThreadsAlike)
{
    expectInNewProcess(
        []
        {
            constexpr int kThreads = 8;
            std::atomic<std::int64_t> aSums[kThreads] = {};
            std::vector<std::thread> vThreads;
            for (int nThread = 0; nThread < kThreads; ++nThread)
            {
                vThreads.emplace_back(
                    [nThread, &aSums]
                    {
                        std::vector<String> vNames = registry().allIds();
                        vNames.insert(vNames.end(), {L"GMT+5", L"GMT-05:30", L"utc+1", L"Nowhere"});
                        std::shuffle(vNames.begin(), vNames.end(), std::mt19937(static_cast<unsigned>(nThread)));
                        std::int64_t nSum = TimeZone::kServerOS.getUtcOffset(DateTime(2024, 7, 1));
                        for (const String& sName : vNames)
                        {
                            TimeZone tZone;
                            registry().findTimeZone(sName, TimeZoneRegistry::kIdentifier, tZone);
                            nSum += tZone.getUtcOffset(DateTime(2024, 7, 1)) + tZone.offsetSecondsAt(0);
                        }
                        nSum += static_cast<int>(registry()
                                                     .findTimeZone(L"UTC-11", TimeZoneRegistry::kWindowsName)
                                                     .getShortName(L"de")
                                                     .size());
                        aSums[nThread] = nSum;
                    });
            }
            for (std::thread& tThread : vThreads)
                tThread.join();
            return std::all_of(std::begin(aSums), std::end(aSums),
                               [&](const auto& nSum) { return nSum != 0 && nSum == aSums[0]; });
        });
}

bool knowsFixedOffsetsOnly()
{
    const CollectedLog tLog;
    const bool bEmpty = registry().allIds().empty();
    const bool bUtc =
        registry().findTimeZone(L"utc", TimeZoneRegistry::kIdentifier).getUtcOffset(DateTime(2024, 1, 1)) == 0;
    const bool bGmt = registry().findTimeZone(L"GMT", TimeZoneRegistry::kIdentifier).getId() == L"GMT";
    const bool bFixed =
        registry().findTimeZone(L"GMT-5", TimeZoneRegistry::kIdentifier).getUtcOffset(DateTime(2024, 1, 1)) == -300;
    const bool bListed = registry().findTimeZone(L"Europe/Berlin", TimeZoneRegistry::kIdentifier).isUnknown();
    const bool bWindows = registry().findTimeZone(L"Tokyo Standard Time", TimeZoneRegistry::kWindowsName).isUnknown();
    const bool bServer = TimeZone::kServerOS.getId() == L"UTC";
    const bool bLogged = tLog.count() == 1 && tLog.all()[0].eSeverity == Logger::kWarning;
    return bEmpty && bUtc && bGmt && bFixed && bListed && bWindows && bServer && bLogged;
}

TEST(TimeZoneRegistry, KnowsUtcAndFixedOffsetsWithoutZoneData)
{
    expectInNewProcess(
        []
        {
            setenv("TZDIR", "/nowhere/at/all", 1);
            return knowsFixedOffsetsOnly();
        });
    // A file where a folder should be, and a device without end.
    expectInNewProcess(
        []
        {
            setenv("TZDIR", "/dev/zero", 1);
            return knowsFixedOffsetsOnly();
        });
}

// A list that promises more than the folder holds, and files that are no zone data.
TEST(TimeZoneRegistry, FindsNoZoneWhoseDataCannotBeRead)
{
    expectInNewProcess(
        []
        {
            const std::filesystem::path tFolder =
                std::filesystem::path(::testing::TempDir()) / ("zones" + std::to_string(std::random_device()()));
            std::filesystem::create_directories(tFolder / "Broken");
            std::ofstream(tFolder / "tzdata.zi") << "Z Broken/Empty 0 - X\nZ Broken/Text 0 - X\nZ Missing 0 - X\n"
                                                    "Z Broken/Cut 0 - X\nL Broken/Text Link\n";
            std::ofstream(tFolder / "Broken" / "Empty");
            std::ofstream(tFolder / "Broken" / "Text") << "no zone data";
            std::ofstream(tFolder / "Broken" / "Cut") << "TZif2" << std::string(39, '\x7f');
            setenv("TZDIR", tFolder.c_str(), 1);
            setenv("TZ", "Broken/Text", 1);
            bool bNone = registry().allIds().size() == 5;
            for (int nTime = 0; nTime < 2; ++nTime)
            {
                for (const String& sId : registry().allIds())
                    bNone = bNone && registry().findTimeZone(sId, TimeZoneRegistry::kIdentifier).isUnknown();
            }
            bNone = bNone && TimeZone::kServerOS.getId() == L"UTC";
            std::filesystem::remove_all(tFolder);
            return bNone;
        });
}

TEST(ZoneList, TakesNamesThatCannotLeadOutOfTheFolder)
{
    const ZoneList tList = ZoneList::fromText(
        "# version 2024a\n"
        "R d 1916 o - Jun 14 23s 1 S\n"
        "Z Africa/Abidjan -0:16:8 - LMT 1912\n"
        "0 - GMT\n"
        "Z ../evil 0 - X\n"
        "Z /etc/passwd 0 - X\n"
        "Z a//b 0 - X\n"
        "Z a/ 0 - X\n"
        "Z . 0 - X\n"
        "Z libc:localtime 0 - X\n"
        "Z caf\xC3\xA9 0 - X\n"
        "Z  0 - X\n"
        "Zone Long/Keyword 0 - X\n"
        "Z africa/abidjan 0 - X\n"  // again, in another case
        "L Africa/Abidjan Iceland\n"
        "L Iceland Atlantic/Reykjavik\n"  // a link to a link
        "L africa/Abidjan WrongCase\n"
        "L Nowhere Lost\n"
        "L A B\nL B A\n"  // links in a circle
        "L Africa/Abidjan\n"
        "L\nZ\n\n"
        "Z UTC");
    std::vector<std::string> vIds;
    for (const ZoneList::Zone& tZone : tList.all())
        vIds.push_back(toUtf8(tZone.sId) + " -> " + toUtf8(tList.all()[tZone.nTarget].sId));
    EXPECT_EQ(vIds,
              (std::vector<std::string>{"Africa/Abidjan -> Africa/Abidjan", "Atlantic/Reykjavik -> Africa/Abidjan",
                                        "Iceland -> Africa/Abidjan", "UTC -> UTC"}));
    EXPECT_EQ(tList.find(L"ICELAND"), 2U);
    EXPECT_EQ(tList.find(L"Ireland"), tList.all().size());
    EXPECT_TRUE(ZoneList::fromText("").all().empty());
    EXPECT_TRUE(ZoneList::fromText("Z " + std::string(64, 'a')).all().empty());
    EXPECT_EQ(ZoneList::fromText("Z " + std::string(63, 'a')).all().size(), 1U);
}

// Every name that the data's own programs list, by another way through the same text.
TEST(ZoneList, TakesEveryNameOfTheSystemsData)
{
    std::ifstream tFile("/usr/share/zoneinfo/tzdata.zi");
    std::set<String> tExpected;
    for (std::string sLine; std::getline(tFile, sLine);)
    {
        std::istringstream tWords(sLine);
        std::string sKeyword;
        std::string sFirst;
        std::string sSecond;
        tWords >> sKeyword >> sFirst >> sSecond;
        if (sKeyword == "Z" || sKeyword == "L")
            tExpected.insert(*fromUtf8(sKeyword == "Z" ? sFirst : sSecond));
    }
    const std::vector<String>& vIds = registry().allIds();
    EXPECT_EQ(std::set<String>(vIds.begin(), vIds.end()), tExpected);
}

std::int32_t offsetBySearch(const std::vector<ZoneRange>& vRanges, std::int64_t nSeconds)
{
    std::size_t nIndex = 0;
    while (nIndex + 1 < vRanges.size() && vRanges[nIndex + 1].nStart <= nSeconds)
        ++nIndex;
    return vRanges[nIndex].nOffset;
}

TEST(ZoneRules, FindsTheRangeThatASearchFinds)
{
    std::mt19937_64 tRandom(9);
    for (int nRound = 0; nRound < 300; ++nRound)
    {
        std::vector<ZoneRange> vRanges{{0, 7, false}};
        // Changes from seconds to decades apart.
        std::int64_t nMoment = -static_cast<std::int64_t>(tRandom() % 5'000'000'000);
        for (std::uint64_t n = tRandom() % 40; n > 0; --n)
        {
            nMoment += 1 + static_cast<std::int64_t>(tRandom() % (std::uint64_t{1} << (tRandom() % 30)));
            vRanges.push_back({nMoment, static_cast<std::int32_t>(tRandom() % 86400) - 43200, false});
        }
        const ZoneRules tRules(vRanges, false);
        for (const ZoneRange& tRange : vRanges)
        {
            for (const std::int64_t nShift : {-1, 0, 1})
                ASSERT_EQ(tRules.offsetAt(tRange.nStart + nShift), offsetBySearch(vRanges, tRange.nStart + nShift));
        }
        for (int n = 0; n < 100; ++n)
        {
            const auto nAny = static_cast<std::int64_t>(tRandom()) >> (tRandom() % 40);
            ASSERT_EQ(tRules.offsetAt(nAny), offsetBySearch(vRanges, nAny)) << nAny;
        }
    }
}

TEST(ZoneRules, BeginAgainAfter400Years)
{
    constexpr std::int64_t kCycle = std::int64_t{146097} * 86400;
    const ZoneRules tRules({{0, 1, false}, {1000, 2, false}, {5000, 3, false}, {1000 + kCycle, 2, false}}, true);
    EXPECT_EQ(tRules.offsetAt(999), 1);
    for (const std::int64_t nEra : {0, 1, 2, 1000, 700'000'000})
    {
        EXPECT_EQ(tRules.offsetAt(1000 + nEra * kCycle), 2) << nEra;
        EXPECT_EQ(tRules.offsetAt(4999 + nEra * kCycle), 2) << nEra;
        EXPECT_EQ(tRules.offsetAt(5000 + nEra * kCycle), 3) << nEra;
        EXPECT_EQ(tRules.offsetAt(999 + (nEra + 1) * kCycle), 3) << nEra;
    }
}

TEST(ZoneRules, TellStandardFromDaylightTime)
{
    constexpr std::int64_t kMonth = 30 * 86400;
    const auto tOffsets = [](bool bFirst, bool bSecond, std::int64_t nNext)
    {
        const ZoneRules tRules({{0, 0, false}, {0, 3600, bFirst}, {nNext, 7200, bSecond}}, false);
        const ZoneRules::Offsets tResult = tRules.offsetsAround(kMonth);
        return std::pair(tResult.nStandard, tResult.nDaylight);
    };
    EXPECT_EQ(tOffsets(false, true, 5 * kMonth), std::pair(3600, 7200));
    EXPECT_EQ(tOffsets(true, false, 5 * kMonth), std::pair(3600, 7200));   // negative daylight time
    EXPECT_EQ(tOffsets(false, false, 5 * kMonth), std::pair(3600, 3600));  // a zone that moves for good
    EXPECT_EQ(tOffsets(false, true, 15 * kMonth), std::pair(3600, 3600));  // not within a year
    EXPECT_EQ(tOffsets(false, true, kMonth / 2), std::pair(7200, 7200));   // the last range, for ever
}

}  // namespace

}  // namespace tov

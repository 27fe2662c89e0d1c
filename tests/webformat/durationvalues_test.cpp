// Durations of values: how seconds are split, rounded, left out and written.

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cwchar>
#include <limits>
#include <string>

#include "durationtesting.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
struct Row
{
    int nLine;
    const wchar_t* pPattern;
    T tValue;
    const wchar_t* pExpected;
};

template <class T, std::size_t nRows>
void expectRows(const Row<T> (&aRows)[nRows])
{
    for (const Row<T>& tRow : aRows)
        EXPECT_EQ(toUtf8(formatDuration<T>(tRow.pPattern, tRow.tValue)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine << ", " << toUtf8(tRow.pPattern);
}

constexpr Row<double> kSplittingRows[] = {
    {__LINE__, kDefaultDuration, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, 0, L" 00d:00h:00m:00s"},
    {__LINE__, kDefaultDuration, 59, L" 00d:00h:00m:59s"},
    {__LINE__, kDefaultDuration, 60, L" 00d:00h:01m:00s"},
    {__LINE__, kDefaultDuration, 3599, L" 00d:00h:59m:59s"},
    {__LINE__, kDefaultDuration, 3600, L" 00d:01h:00m:00s"},
    {__LINE__, kDefaultDuration, 86399, L" 00d:23h:59m:59s"},
    {__LINE__, kDefaultDuration, 86400, L" 01d:00h:00m:00s"},
    {__LINE__, kDefaultDuration, 86400e6, L" 1000000d:00h:00m:00s"},
    // The order of the pattern is free; the larger units are taken first.
    {__LINE__, L"ss mm hh dd", 93784, L"04 03 02 01"},
    {__LINE__, L"hh hh:mm:ss", 3723, L"01 01:02:03"},
    // What a missing unit would hold goes to the next smaller one.
    {__LINE__, L"hh:mm", 90000, L"25:00"},
    {__LINE__, L"dd ss", 93784, L"01 7384"},
    {__LINE__, L"dd mm", 93780, L"01 123"},
    {__LINE__, L"hh ss", 93784, L"26 184"},
    {__LINE__, L"mm:ss", 93784, L"1563:04"},
    {__LINE__, L"ss", 123456, L"123456"},
    // Every unit has at least two digits, whatever the number of letters.
    {__LINE__, L"d h m s", 93784, L"01 02 03 04"},
    {__LINE__, L"dddd hhhh mmmm ssss", 93784, L"01 02 03 04"},
    // Seconds keep their fraction until they are written, so that they may come to 60.
    {__LINE__, L"ss", 4.4, L"04"},
    {__LINE__, L"ss", 4.5, L"05"},
    {__LINE__, L"mm:ss", 59.7, L"00:60"},
    {__LINE__, L"mm:ss", 119.5, L"01:60"},
    {__LINE__, L"hh:mm:ss", 3599.4, L"00:59:59"},
    // Whole units are rounded down even where the binary quotient is the next whole number.
    {__LINE__, L"dd:ss", 863999999999999.9, L"9999999999:86400"},
    // Patterns without units.
    {__LINE__, L"", 93784, L""},
    {__LINE__, L"x \"days\"\\d", 93784, L"x daysd"},
    {__LINE__, L"DD:HH:MM:SS", 93784, L"DD:HH:MM:SS"},
    {__LINE__, L"[duration(sec)]", 93784, L""},
};

TEST(DurationValues, SplitsSecondsIntoTheUnitsOfThePattern)
{
    expectRows(kSplittingRows);
}

constexpr Row<double> kRoundingRows[] = {
    // Kept: without a rule the smallest unit keeps its fraction, and the number is rounded when it is written.
    {__LINE__, L"hh:mm", 5430, L"01:31"},
    {__LINE__, L"hh:mm", 5429, L"01:30"},
    {__LINE__, L"hh:mm", 5401, L"01:30"},
    {__LINE__, L"hh:mm", 3601, L"01:00"},
    {__LINE__, L"hh:mm", 3599, L"00:60"},
    {__LINE__, L"dd", 43199, L"00"},
    {__LINE__, L"dd", 43200, L"01"},
    {__LINE__, L"dd", 129600, L"02"},
    {__LINE__, L"dd:hh", 5399, L"00:01"},
    {__LINE__, L"dd:hh", 5400, L"00:02"},
    {__LINE__, L"mm", 89.99, L"01"},
    {__LINE__, L"mm", 90, L"02"},
    // The decimal that a double reads as is divided, not its binary value: they part in the fifteenth digit.
    {__LINE__, L"mm", 89.9999999999997, L"01"},
    {__LINE__, L"mm", 149.9999999999997, L"03"},
    {__LINE__, L"hh", 264599.9999999998, L"73"},
    {__LINE__, L"dd", 11102399.999999957, L"128"},
    // To nearest, halves up.
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmr", 5429.99, L"01:30"},
    {__LINE__, L"hh:mmr", 5401, L"01:30"},
    {__LINE__, L"hh:mmr", 3601, L"01:00"},
    {__LINE__, L"r hh", 5399, L" 01"},
    {__LINE__, L"r hh", 5400, L" 02"},
    {__LINE__, L"ddr", 43199, L"00"},
    {__LINE__, L"ddr", 43200, L"01"},
    {__LINE__, L"ddr", 0.1, L"00"},
    // Up.
    {__LINE__, L"hh:mmc", 5430, L"01:31"},
    {__LINE__, L"hh:mmc", 5401, L"01:31"},
    {__LINE__, L"hh:mmc", 5400, L"01:30"},
    {__LINE__, L"hh:mmc", 3601, L"01:01"},
    {__LINE__, L"ddc", 0, L"00"},
    {__LINE__, L"ddc", 1e-9, L"01"},
    {__LINE__, L"ddc", 86400, L"01"},
    {__LINE__, L"ddc", 86401, L"02"},
    {__LINE__, L"c hh", 3600.5, L" 02"},
    // Rounding may come to a whole larger unit, which is not carried.
    {__LINE__, L"hh:mmc", 3599, L"00:60"},
    {__LINE__, L"dd hhr", 86399, L"00 24"},
    // The last rule counts.
    {__LINE__, L"crhh", 3601, L"01"},
    {__LINE__, L"rhhc", 3601, L"02"},
    {__LINE__, L"[opt:hhc]", 3601, L"02"},
    // Only the smallest unit is rounded, seconds never.
    {__LINE__, L"c hh:mm:ss", 3601.2, L" 01:00:01"},
    {__LINE__, L"c dd:ss", 86401.2, L" 01:01"},
    {__LINE__, L"r dd:hh", 86400 + 82800 + 1800, L" 01:24"},
};

TEST(DurationValues, RoundsTheSmallestUnitByTheRuleOfThePattern)
{
    expectRows(kRoundingRows);
}

constexpr Row<double> kOptionalRows[] = {
    {__LINE__, L"[opt:dd\"d\"]hh:mm", 3600, L"01:00"},
    {__LINE__, L"[opt:dd\"d\"]hh:mm", 86399, L"23:60"},
    {__LINE__, L"[opt:dd\"d\"]hh:mm", 86400, L"01d00:00"},
    {__LINE__, L"[opt:dd\"d\" ]hh:mm", 93784, L"01d 02:03"},
    {__LINE__, L"[opt:dd:][opt:hh:][opt:mm:]ss", 7, L"07"},
    {__LINE__, L"[opt:dd:][opt:hh:][opt:mm:]ss", 67, L"01:07"},
    {__LINE__, L"[opt:dd:][opt:hh:][opt:mm:]ss", 3607, L"01:07"},
    {__LINE__, L"[opt:dd:][opt:hh:][opt:mm:]ss", 93784, L"01:02:03:04"},
    {__LINE__, L"hh[opt::mm][opt::ss]", 3600, L"01"},
    {__LINE__, L"hh[opt::mm][opt::ss]", 3607, L"01:07"},
    {__LINE__, L"hh[opt::mm][opt::ss]", 3661, L"01:01:01"},
    // A section in a section: the outer one holds the letters of the inner one, too.
    {__LINE__, L"hh[opt::mm[opt::ss]", 3607, L"01:00:07"},
    {__LINE__, L"hh[opt::mm[opt::ss]", 3660, L"01"},
    {__LINE__, L"[opt:ss\"s\"]", 60, L"60s"},
    {__LINE__, L"mm[opt: ss\"s\"]", 60, L"01"},
    {__LINE__, L"mm[opt: ss\"s\"]", 61, L"01 01s"},
    // The smallest doubled unit of the section decides for all of it.
    {__LINE__, L"[opt:dd hh]", 86400, L""},
    {__LINE__, L"[opt:dd hh]", 3600, L"00 01"},
    {__LINE__, L"[opt:dd h]", 3600, L""},
    {__LINE__, L"[opt:dd h]", 86400, L"01 00"},
    // Single letters make no section optional.
    {__LINE__, L"[opt:d]", 0, L"00"},
    {__LINE__, L"[opt:s]x", 0, L"00x"},
    {__LINE__, L"[opt:dd\\d]", 0, L""},
    // A unit that the pattern does not show is zero.
    {__LINE__, L"[opt:\"dd\"]hh", 90000, L"25"},
    {__LINE__, L"[opt:\"hh\"]hh", 3600, L"hh01"},
    {__LINE__, L"[opt:\"hh\"]hh", 0, L"00"},
    // Kept: a fraction is not zero, even where it shows none.
    {__LINE__, L"[opt:dd]x", 0.4, L"00x"},
    {__LINE__, L"[opt:ddr]x", 0.4, L"x"},
    {__LINE__, L"[opt:ss]x", -0.0, L"x"},
    {__LINE__, L"[OPT:dd\"d\"]hh", 90000, L"25"},
};

TEST(DurationValues, LeavesOutOptionalSectionsWhoseUnitIsZero)
{
    expectRows(kOptionalRows);
}

// Quotients are rounded down, remainders have the value's sign.
constexpr Row<double> kNegativeRows[] = {
    {__LINE__, kDefaultDuration, -93784, L" -02d:-03h:-04m:-04s"},
    {__LINE__, L"mm:ss", -61, L"-02:-01"},
    {__LINE__, L"mm:ss", -60, L"-01:00"},
    {__LINE__, L"hh:mm", -5430, L"-02:-31"},
    {__LINE__, L"hh:mmr", -5430, L"-02:-30"},
    {__LINE__, L"hh:mmr", -5431, L"-02:-31"},
    {__LINE__, L"hh:mmc", -5430, L"-02:-30"},
    {__LINE__, L"hh:mmc", -5459, L"-02:-30"},
    {__LINE__, L"hhr", -1800, L"00"},
    {__LINE__, L"hhr", -1801, L"-01"},
    {__LINE__, L"hhc", -3599, L"00"},
    {__LINE__, L"hh", -1, L"-00"},
    {__LINE__, L"hh", -0.0, L"00"},
    {__LINE__, L"ss", -0.25, L"-00"},
    {__LINE__, L"[opt:dd]hh", -3600, L"-01-01"},
};

TEST(DurationValues, TakesNegativeValuesThroughTheSameSteps)
{
    expectRows(kNegativeRows);
}

constexpr Row<double> kSpecialRows[] = {
    {__LINE__, L"ss", kNaN, L"NAN"},
    {__LINE__, L"hh:mm", kNaN, L"NAN:NAN"},
    {__LINE__, L"hhc", kNaN, L"NAN"},
    {__LINE__, L"hhr", kNaN, L"NAN"},
    {__LINE__, L"x", kNaN, L"x"},
    {__LINE__, L"[opt:dd\"d\"]", kNaN, L"NANd"},
    {__LINE__, L"ss", kInfinity, L"INF"},
    {__LINE__, L"ddr", kInfinity, L"INF"},
    {__LINE__, L"hh:mm", kInfinity, L"INF:NAN"},
    {__LINE__, L"ss", -kInfinity, L""},
    {__LINE__, L"hh:mm", -kInfinity, L":NAN"},
    // Numbers show 15 significant digits.
    {__LINE__, L"dd:hh:mm:ss", DBL_TRUE_MIN, L"00:00:00:00"},
    {__LINE__, L"ddc", DBL_TRUE_MIN, L"01"},
    {__LINE__, L"ddc", -DBL_TRUE_MIN, L"00"},
    {__LINE__, L"ddr", -DBL_TRUE_MIN, L"00"},
    {__LINE__, L"dd", 86400e15, L"1000000000000000"},
    {__LINE__, L"dd:hh", 86400e15, L"1000000000000000:00"},
    {__LINE__, L"ddc", 86400e15, L"1000000000000000"},
    {__LINE__, L"hhr", 9007199254740992.0 * 3600, L"9007199254740990"},
};

// The leading digits of a huge quotient, as the C library has them.
String hugeDays(double fSeconds)
{
    wchar_t aText[400];
    std::swprintf(aText, std::size(aText), L"%.14e", fSeconds / 86400);
    String sDigits(1, aText[fSeconds < 0 ? 1 : 0]);
    sDigits += String(aText + (fSeconds < 0 ? 3 : 2), 14);
    return (fSeconds < 0 ? L"-" : L"") + sDigits;
}

TEST(DurationValues, WritesSpecialAndHugeUnitsAsNumbersDo)
{
    expectRows(kSpecialRows);
    EXPECT_EQ(formatDuration(L"hh", 3.6e300), L"1" + String(297, L'0'));
    for (const double fSeconds : {DBL_MAX, -DBL_MAX, 1.5e200})
    {
        for (const wchar_t* pPattern : {L"dd", L"ddr", L"ddc", L"dd:hh:mm:ss"})
            EXPECT_EQ(formatDuration(pPattern, fSeconds).substr(0, hugeDays(fSeconds).size()), hugeDays(fSeconds));
    }
}

constexpr Row<int> kIntRows[] = {
    {__LINE__, kDefaultDuration, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, INT_MAX, L" 24855d:03h:14m:07s"},
    {__LINE__, kDefaultDuration, INT_MIN, L" -24856d:-04h:-15m:-08s"},
    // Without a rule the smallest unit is cut off, toward zero.
    {__LINE__, L"hh:mm", 5430, L"01:30"},
    {__LINE__, L"hh:mm", 5459, L"01:30"},
    {__LINE__, L"hh:mm", -5459, L"-02:-30"},
    {__LINE__, L"hh:mm", -59, L"-01:00"},
    {__LINE__, L"dd", 86399, L"00"},
    {__LINE__, L"dd", -86399, L"00"},
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmr", 5429, L"01:30"},
    {__LINE__, L"hh:mmr", -5430, L"-02:-30"},
    {__LINE__, L"hh:mmr", -5431, L"-02:-31"},
    {__LINE__, L"hh:mmc", 5401, L"01:31"},
    {__LINE__, L"hh:mmc", 3601, L"01:01"},
    {__LINE__, L"hh:mmc", -5459, L"-02:-30"},
    {__LINE__, L"ddc", INT_MAX, L"24856"},
    {__LINE__, L"ddc", INT_MIN, L"-24855"},
    {__LINE__, L"mmr", INT_MIN, L"-35791394"},
    {__LINE__, L"ss", INT_MIN, L"-2147483648"},
    {__LINE__, L"[opt:dd]hh", 0, L"00"},
    {__LINE__, L"[opt:dd]x", 86399, L"x"},
};

constexpr Row<unsigned int> kUnsignedRows[] = {
    {__LINE__, kDefaultDuration, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, UINT_MAX, L" 49710d:06h:28m:15s"},
    {__LINE__, L"hh:mm", 5459, L"01:30"},
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmc", 3601, L"01:01"},
    {__LINE__, L"ddc", UINT_MAX, L"49711"},
    {__LINE__, L"ss", UINT_MAX, L"4294967295"},
};

constexpr Row<long> kLongRows[] = {
    {__LINE__, kDefaultDuration, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, LONG_MAX, L" 106751991167300d:15h:30m:07s"},
    {__LINE__, kDefaultDuration, LONG_MIN, L" -106751991167301d:-16h:-31m:-08s"},
    {__LINE__, L"hh:mm", 5459, L"01:30"},
    {__LINE__, L"hh:mm", -5459, L"-02:-30"},
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmc", 5401, L"01:31"},
    {__LINE__, L"ss", LONG_MIN, L"-9223372036854775808"},
    // The quotient of the smallest unit is a double.
    {__LINE__, L"mm", LONG_MAX, L"153722867280912928"},
    {__LINE__, L"mmr", LONG_MAX, L"153722867280912928"},
    {__LINE__, L"mmc", LONG_MIN, L"-153722867280912928"},
};

constexpr Row<unsigned long> kUnsignedLongRows[] = {
    {__LINE__, kDefaultDuration, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, ULONG_MAX, L" 213503982334601d:07h:00m:15s"},
    {__LINE__, L"hh:mm", 5459, L"01:30"},
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmc", 5401, L"01:31"},
    {__LINE__, L"ss", ULONG_MAX, L"18446744073709551615"},
    // The top bit counts.
    {__LINE__, L"mm", ULONG_MAX, L"307445734561825856"},
    {__LINE__, L"mmc", ULONG_MAX, L"307445734561825856"},
    {__LINE__, L"dd", 1UL << 63, L"106751991167300"},
    {__LINE__, L"ddc", 1UL << 63, L"106751991167301"},
};

TEST(DurationValues, TruncatesTheSmallestUnitOfWholeNumbers)
{
    expectRows(kIntRows);
    expectRows(kUnsignedRows);
    expectRows(kLongRows);
    expectRows(kUnsignedLongRows);
}

struct DecimalRow
{
    int nLine;
    const wchar_t* pPattern;
    const char* pValue;
    const char* pExpected;
};

constexpr DecimalRow kDecimalRows[] = {
    {__LINE__, kDefaultDuration, "93784", " 01d:02h:03m:04s"},
    {__LINE__, kDefaultDuration, "-93784", " -02d:-03h:-04m:-04s"},
    {__LINE__, L"hh:mm", "5430", "01:31"},
    {__LINE__, L"hh:mm", "5429.9999999999999999999999", "01:30"},
    {__LINE__, L"hh:mmr", "5430", "01:31"},
    {__LINE__, L"hh:mmr", "5429.9999999999999999999999", "01:30"},
    {__LINE__, L"hh:mmc", "5400.0000000000000000000001", "01:31"},
    {__LINE__, L"hh:mmc", "3601", "01:01"},
    {__LINE__, L"hh:mm", "-5430", "-02:-31"},
    {__LINE__, L"hh:mmr", "-5430", "-02:-30"},
    {__LINE__, L"mm:ss", "59.5", "00:60"},
    {__LINE__, L"ss", "0.4999999999999999999999999", "00"},
    {__LINE__, L"dd ss", "86400000000000000000000000000000000000001.2", "1000000000000000000000000000000000000 01"},
    {__LINE__, L"dd:hh:mm:ss", "123456789012345678901234567890", "1428898020976223135430955:15:31:30"},
    {__LINE__, L"[opt:dd]hh", "86399", "24"},
    {__LINE__, L"[opt:ss]x", "0.0", "x"},
    {__LINE__, L"[opt:ss]x", "0.001", "00x"},
    {__LINE__, L"ss", "INF", "INF"},
    {__LINE__, L"hhr", "INF", "INF"},
    {__LINE__, L"hh:mm", "INF", "INF:00"},
    {__LINE__, L"hh:mm", "-INF", ":00"},
};

TEST(DurationValues, SplitsDecimalsExactly)
{
    for (const DecimalRow& tRow : kDecimalRows)
        EXPECT_EQ(toUtf8(formatDuration(tRow.pPattern, *CorvidNumber::fromString(std::string_view(tRow.pValue)))),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
}

}  // namespace

}  // namespace tov

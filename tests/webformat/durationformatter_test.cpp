#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "intl/localetaglookup.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "webformat/durationformatters.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
WebValueFormatterHandle formatterFor(const String& sPattern, OutputType eOutput = kText,
                                     const wchar_t* pLanguage = L"en-us")
{
    return DurationFormatter<T>::ParseCustomFormat(sPattern, Locale::kUSA, eOutput, KTWUILanguage(pLanguage));
}

template <class T>
String format(const String& sPattern, const T& tValue)
{
    return formatterFor<T>(sPattern)->formatAsString(&tValue);
}

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
        EXPECT_EQ(toUtf8(format<T>(tRow.pPattern, tRow.tValue)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine << ", " << toUtf8(tRow.pPattern);
}

constexpr const wchar_t* kDefault = L"[duration(sec)] dd\"d\":hh\"h\":mm\"m\":ss\"s\"";

constexpr Row<double> kSplittingRows[] = {
    {__LINE__, kDefault, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefault, 0, L" 00d:00h:00m:00s"},
    {__LINE__, kDefault, 59, L" 00d:00h:00m:59s"},
    {__LINE__, kDefault, 60, L" 00d:00h:01m:00s"},
    {__LINE__, kDefault, 3599, L" 00d:00h:59m:59s"},
    {__LINE__, kDefault, 3600, L" 00d:01h:00m:00s"},
    {__LINE__, kDefault, 86399, L" 00d:23h:59m:59s"},
    {__LINE__, kDefault, 86400, L" 01d:00h:00m:00s"},
    {__LINE__, kDefault, 86400e6, L" 1000000d:00h:00m:00s"},
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

TEST(DurationFormatter, SplitsSecondsIntoTheUnitsOfThePattern)
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

TEST(DurationFormatter, RoundsTheSmallestUnitByTheRuleOfThePattern)
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

TEST(DurationFormatter, LeavesOutOptionalSectionsWhoseUnitIsZero)
{
    expectRows(kOptionalRows);
}

// Quotients are rounded down, remainders have the value's sign.
constexpr Row<double> kNegativeRows[] = {
    {__LINE__, kDefault, -93784, L" -02d:-03h:-04m:-04s"},
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

TEST(DurationFormatter, TakesNegativeValuesThroughTheSameSteps)
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

TEST(DurationFormatter, WritesSpecialAndHugeUnitsAsNumbersDo)
{
    expectRows(kSpecialRows);
    EXPECT_EQ(format(L"hh", 3.6e300), L"1" + String(297, L'0'));
    for (const double fSeconds : {DBL_MAX, -DBL_MAX, 1.5e200})
    {
        for (const wchar_t* pPattern : {L"dd", L"ddr", L"ddc", L"dd:hh:mm:ss"})
            EXPECT_EQ(format(pPattern, fSeconds).substr(0, hugeDays(fSeconds).size()), hugeDays(fSeconds));
    }
}

constexpr Row<int> kIntRows[] = {
    {__LINE__, kDefault, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefault, INT_MAX, L" 24855d:03h:14m:07s"},
    {__LINE__, kDefault, INT_MIN, L" -24856d:-04h:-15m:-08s"},
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
    {__LINE__, kDefault, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefault, UINT_MAX, L" 49710d:06h:28m:15s"},
    {__LINE__, L"hh:mm", 5459, L"01:30"},
    {__LINE__, L"hh:mmr", 5430, L"01:31"},
    {__LINE__, L"hh:mmc", 3601, L"01:01"},
    {__LINE__, L"ddc", UINT_MAX, L"49711"},
    {__LINE__, L"ss", UINT_MAX, L"4294967295"},
};

constexpr Row<long> kLongRows[] = {
    {__LINE__, kDefault, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefault, LONG_MAX, L" 106751991167300d:15h:30m:07s"},
    {__LINE__, kDefault, LONG_MIN, L" -106751991167301d:-16h:-31m:-08s"},
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
    {__LINE__, kDefault, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, kDefault, ULONG_MAX, L" 213503982334601d:07h:00m:15s"},
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

TEST(DurationFormatter, TruncatesTheSmallestUnitOfWholeNumbers)
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
    {__LINE__, kDefault, "93784", " 01d:02h:03m:04s"},
    {__LINE__, kDefault, "-93784", " -02d:-03h:-04m:-04s"},
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

TEST(DurationFormatter, SplitsDecimalsExactly)
{
    for (const DecimalRow& tRow : kDecimalRows)
        EXPECT_EQ(toUtf8(format(tRow.pPattern, *CorvidNumber::fromString(std::string_view(tRow.pValue)))),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
}

struct OutputRow
{
    int nLine;
    const wchar_t* pPattern;
    OutputType eOutput;
    const wchar_t* pLanguage;
    double fValue;
    const wchar_t* pExpected;
};

constexpr OutputRow kOutputRows[] = {
    {__LINE__, L"hh<mm\">\"", kText, L"en-us", 3660, L"01<01>"},
    {__LINE__, L"hh<mm\">\"", kHTML, L"en-us", 3660, L"01&lt;01&gt;"},
    {__LINE__, L"hh<mm\">\"", kXLSX, L"en-us", 3660, L"01&lt;01&gt;"},
    {__LINE__, L"hh'\\'", kSQLLiteral, L"en-us", 3660, L"01''''"},
    {__LINE__, L"hh[html]<b>hh</b>", kHTML, L"en-us", 3600, L"<b>01</b>"},
    {__LINE__, L"hh[html]<b>hh</b>", kText, L"en-us", 3600, L"01"},
    {__LINE__, L"hh", kHTML, L"he-IL", -3600, L"&#x200e;-01"},
    {__LINE__, L"hh", kText, L"he-IL", -3600, L"-01"},
};

TEST(DurationFormatter, WritesForItsOutputAndLanguage)
{
    for (const OutputRow& tRow : kOutputRows)
    {
        const WebValueFormatterHandle hFormatter = formatterFor<double>(tRow.pPattern, tRow.eOutput, tRow.pLanguage);
        EXPECT_EQ(toUtf8(hFormatter->formatAsString(&tRow.fValue)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->outputType(), tRow.eOutput);
    }
}

template <class T>
void expectNulls()
{
    for (const OutputType eOutput : {kText, kXML, kJavaScript, kPDF, kSQL, kSQLLiteral, kXLSX})
        EXPECT_EQ(formatterFor<T>(L"x hh", eOutput)->formatAsString(nullptr), L"");
    EXPECT_EQ(formatterFor<T>(L"x hh", kHTML)->formatAsString(nullptr), L"&nbsp;");
}

TEST(DurationFormatter, ShowsANullAsABlankInHtmlAndAsNothingElsewhere)
{
    expectNulls<double>();
    expectNulls<int>();
    expectNulls<unsigned int>();
    expectNulls<long>();
    expectNulls<unsigned long>();
    expectNulls<CorvidNumber>();
}

TEST(DurationFormatter, AcceptsValuesOfItsType)
{
    EXPECT_EQ(formatterFor<double>(L"")->valueStorageType(), SQLDataType::kStorageDouble);
    EXPECT_EQ(formatterFor<int>(L"")->valueStorageType(), SQLDataType::kStorageInt32);
    EXPECT_EQ(formatterFor<unsigned int>(L"")->valueStorageType(), SQLDataType::kStorageUInt32);
    EXPECT_EQ(formatterFor<long>(L"")->valueStorageType(), SQLDataType::kStorageInt64);
    EXPECT_EQ(formatterFor<unsigned long>(L"")->valueStorageType(), SQLDataType::kStorageUInt64);
    EXPECT_EQ(formatterFor<CorvidNumber>(L"")->valueStorageType(), SQLDataType::kStorageCorvidNumber);
}

TEST(DurationFormatter, RemembersTheSectionForItsOutput)
{
    EXPECT_EQ(formatterFor<double>(L"hh[html]mm", kHTML)->GetCustomFormatString(), L"mm");
    EXPECT_EQ(formatterFor<double>(L"hh[html]mm")->GetCustomFormatString(), L"hh");
    EXPECT_EQ(formatterFor<int>(L"[opt:dd]hh")->GetCustomFormatString(), L"[opt:dd]hh");
}

template <class T>
void expectFactoryOfDefinitions(const T& tValue)
{
    const KTWUILanguage tHebrew(L"he-IL");
    const WebValueFormatDefinitionHandle hCustom(new WebCustomFormatDefinition(L"hh\"h\""));
    const WebValueFormatDefinitionHandle hNumber(
        new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0));
    const auto textOf = [&](const WebValueFormatDefinitionHandle& hDefinition) {
        return DurationFormatter<T>::CreateFormatter(hDefinition, Locale::kUSA, kHTML, tHebrew)
            ->formatAsString(&tValue);
    };
    EXPECT_EQ(textOf(hCustom), L"26h");
    EXPECT_EQ(textOf(hNumber), L" 01d:02h:03m:04s");
    EXPECT_EQ(textOf(WebValueFormatDefinitionHandle()), L" 01d:02h:03m:04s");
    EXPECT_EQ(DurationFormatter<T>::CreateFormatter(hNumber, Locale::kUSA, kHTML, tHebrew)->GetCustomFormatString(),
              kDefault);
}

TEST(DurationFormatter, IsMadeOfACustomDefinitionAndElseOfTheDefaultPattern)
{
    expectFactoryOfDefinitions<double>(93784);
    expectFactoryOfDefinitions<int>(93784);
    expectFactoryOfDefinitions<unsigned int>(93784);
    expectFactoryOfDefinitions<long>(93784);
    expectFactoryOfDefinitions<unsigned long>(93784);
    expectFactoryOfDefinitions(CorvidNumber(93784));
}

// Kept: the default pattern comes in the default language, whatever the caller's.
TEST(DurationFormatter, MarksTheDirectionOfACustomPatternOnly)
{
    const KTWUILanguage tHebrew(L"he-IL");
    const int nValue = -86400;
    const WebValueFormatDefinitionHandle hCustom(new WebCustomFormatDefinition(L"dd"));
    EXPECT_EQ(DurationFormatter<int>::CreateFormatter(hCustom, Locale::kUSA, kHTML, tHebrew)->formatAsString(&nValue),
              L"&#x200e;-01");
    EXPECT_EQ(DurationFormatter<int>::CreateFormatter(nullptr, Locale::kUSA, kHTML, tHebrew)->formatAsString(&nValue),
              L" -01d:00h:00m:00s");
}

TEST(DurationFormatter, IsBuiltElementByElement)
{
    const Handle<DurationFormatter<double>> hFormatter(
        new DurationFormatter<double>(Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage));
    DurationFormatter<double>& tFormatter = *hFormatter.getPointer();
    const double fValue = 93784;
    EXPECT_EQ(tFormatter.formatAsString(&fValue), L"");
    tFormatter.addDayDuration(0, DurationFormat::kDayOpt);
    EXPECT_TRUE(tFormatter.getDurationFormatList().m_bHasDay);
    tFormatter.addSeparator(L"d ", DurationFormat::kDayOpt);
    tFormatter.addHourDuration(2, DurationFormat::kRequired);
    EXPECT_TRUE(tFormatter.getDurationFormatList().m_bHasHour);
    tFormatter.addChar(L':', DurationFormat::kRequired);
    EXPECT_FALSE(tFormatter.getDurationFormatList().m_bHasMinute);
    tFormatter.addMinuteDuration(7, DurationFormat::kRequired);
    EXPECT_TRUE(tFormatter.getDurationFormatList().m_bHasMinute);
    EXPECT_FALSE(tFormatter.getDurationFormatList().m_bHasSecond);
    tFormatter.addSecondDuration(0, DurationFormat::kSecondOpt);
    EXPECT_TRUE(tFormatter.getDurationFormatList().m_bHasSecond);
    DurationFormat tText;
    tText.sText = L"s";
    tFormatter.addFormat(tText);
    EXPECT_EQ(tFormatter.formatAsString(&fValue), L"01d 02:0304s");
    const std::vector<DurationFormat>& vFormats = tFormatter.getDurationFormatList().m_vDurationFormats;
    ASSERT_EQ(vFormats.size(), 7u);
    EXPECT_EQ(vFormats[1].eType, DurationFormat::kSeparator);
    EXPECT_EQ(vFormats[1].eOptionalBasedOn, DurationFormat::kDayOpt);
    EXPECT_EQ(vFormats[3].eType, DurationFormat::kText);
    EXPECT_EQ(vFormats[3].sText, L":");
    EXPECT_EQ(vFormats[4].nPad, 7u);
}

TEST(DurationFormatter, TakesElementsOfUnknownKindsAsTextThatIsAlwaysWritten)
{
    DurationFormat tFormat;
    tFormat.eType = static_cast<DurationFormat::EDurationType>(99);
    tFormat.eOptionalBasedOn = static_cast<DurationFormat::EOptionalBasedOn>(-1);
    tFormat.sText = L"x";
    const Handle<DurationFormatter<int>> hFormatter(
        new DurationFormatter<int>(Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage));
    hFormatter.getPointer()->addFormat(tFormat);
    const int nValue = 0;
    EXPECT_EQ(hFormatter->formatAsString(&nValue), L"x");
}

TEST(Duration, StartsAtZero)
{
    const Duration<CorvidNumber> tDuration;
    EXPECT_TRUE(tDuration.m_tDays.isZero() && tDuration.m_tHours.isZero() && tDuration.m_tMinutes.isZero() &&
                tDuration.m_tSeconds.isZero());
    const Duration<int> tWhole;
    EXPECT_TRUE(tWhole.m_tDays == 0 && tWhole.m_tHours == 0 && tWhole.m_tMinutes == 0 && tWhole.m_tSeconds == 0);
}

TEST(DurationFormatter, WritesADurationThatIsSplitAlready)
{
    Duration<long> tDuration;
    tDuration.m_tHours = 100;
    tDuration.m_tSeconds = 7;
    const WebValueFormatterHandle hFormatter = formatterFor<long>(L"[opt:dd\"d\"]hh[opt::mm][opt::ss]");
    StringBufferTemplate<wchar_t, 64> tBuffer;
    dynamic_cast<const DurationFormatter<long>&>(*hFormatter).FormatValue(tBuffer, tDuration);
    EXPECT_EQ(tBuffer.view(), L"100:07");
}

// A formatter whose numbers have no formatter.
class NumberlessFormatter final : public DurationFormatter<double>
{
public:
    NumberlessFormatter() : DurationFormatter(kText, WebValueFormatterHandle()) {}
};

TEST(DurationFormatter, ReportsAMissingNumberFormatterAndThrowsWhereAUnitIsWritten)
{
    const CollectedAssertions tAssertions;
    const Handle<NumberlessFormatter> hFormatter(new NumberlessFormatter);
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all().front().sExpression, "!m_hDurationNumberFormatter.isNull()");
    EXPECT_EQ(tAssertions.all().front().sSource, "webformat/durationformatters");
    hFormatter.getPointer()->addSeparator(L"x", DurationFormat::kRequired);
    const double fValue = 1;
    StringBufferTemplate<wchar_t, 64> tBuffer;
    tBuffer.append(L"before");
    hFormatter->formatToBuffer(tBuffer, &fValue);
    EXPECT_EQ(tBuffer.view(), L"beforex");
    hFormatter.getPointer()->addHourDuration(2, DurationFormat::kRequired);
    EXPECT_THROW(hFormatter->formatToBuffer(tBuffer, &fValue), InvalidHandleException);
    EXPECT_EQ(tBuffer.view(), L"beforex");
}

TEST(DurationFormatter, RaisesNoAssertionOtherwise)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(format(kDefault, 93784.0), L" 01d:02h:03m:04s");
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(DurationFormatter, AllocatesNothingForAValue)
{
    const double kValues[] = {0, 93784, -93784, 5430, 93784.25, 0.1, 1e12, 59.999, 1e17, kNaN};
    for (const wchar_t* pPattern : {kDefault, L"hh:mm", L"hh:mmr", L"hh:mmc", L"[opt:dd\"days\"]hh"})
    {
        const WebValueFormatterHandle hDouble = formatterFor<double>(pPattern, kHTML);
        const WebValueFormatterHandle hLong = formatterFor<long>(pPattern, kHTML);
        const WebValueFormatterHandle hUnsigned = formatterFor<unsigned int>(pPattern, kHTML);
        const WebValueFormatterHandle hDecimal = formatterFor<CorvidNumber>(pPattern, kHTML);
        StringBufferTemplate<wchar_t, 256> tBuffer;
        for (const double fValue : kValues)
        {
            const long nValue = std::isnan(fValue) ? 0 : static_cast<long>(fValue);
            const unsigned nUnsigned = static_cast<unsigned>(nValue);
            const CorvidNumber tDecimal(fValue);
            const AllocationCounter tCounter;
            hDouble->formatToBuffer(tBuffer, &fValue);
            hLong->formatToBuffer(tBuffer, &nValue);
            hUnsigned->formatToBuffer(tBuffer, &nUnsigned);
            hDecimal->formatToBuffer(tBuffer, &tDecimal);
            hDouble->formatToBuffer(tBuffer, nullptr);
            EXPECT_EQ(tCounter.count(), 0u) << toUtf8(pPattern) << " " << fValue;
            tBuffer.clear();
        }
    }
}

TEST(DurationFormatter, ServesManyThreadsAtOnce)
{
    const WebValueFormatterHandle hFormatter = formatterFor<double>(L"[opt:dd\"d\" ]hh:mm:ss");
    std::vector<int> vWrong(8);
    std::vector<std::thread> vThreads;
    for (std::size_t nThread = 0; nThread < vWrong.size(); ++nThread)
    {
        vThreads.emplace_back(
            [&, nThread]
            {
                const WebValueFormatterHandle hShared = hFormatter;
                for (int n = 0; n < 2000; ++n)
                {
                    const double fLong = 93784;
                    const double fShort = 59;
                    vWrong[nThread] += hShared->formatAsString(&fLong) != L"01d 02:03:04";
                    vWrong[nThread] += hShared->formatAsString(&fShort) != L"00:00:59";
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<int>(8));
}

// The six types through the door that reports use: a numeric pattern with a duration bracket.

struct NumericRow
{
    int nLine;
    const wchar_t* pPattern;
    OutputType eOutput;
    double fValue;
    const wchar_t* pExpected;
};

// The same text for all types that hold the value.
constexpr NumericRow kNumericRows[] = {
    {__LINE__, L"[duration(sec)] dd\"d\":hh\"h\"", kText, 93784, L" 01d:02h"},
    {__LINE__, L"[duration(sec)] dd\"d\":hh\"h\":mm\"m\":ss\"s\"", kText, 93784, L" 01d:02h:03m:04s"},
    {__LINE__, L"[duration]hh:mm", kText, 5400, L"01:30"},
    {__LINE__, L"[DURATION(SEC)]hh:mm", kText, 5400, L"01:30"},
    {__LINE__, L"[duration(min)]hh:mm", kText, 90, L"01:30"},
    {__LINE__, L"[duration(hour)]dd:hh", kText, 25, L"01:01"},
    {__LINE__, L"[duration(day)]hh", kText, 2, L"48"},
    {__LINE__, L"[duration]hh:mmc", kText, 5401, L"01:31"},
    {__LINE__, L"[duration]hh:mmr", kText, 5401, L"01:30"},
    {__LINE__, L"[duration][opt:dd\"d\" ]hh", kText, 3600, L"01"},
    {__LINE__, L"[duration][opt:dd\"d\" ]hh", kText, 90000, L"01d 01"},
    // The whole pattern is the duration's: what stands before the bracket, too, and what looks like a section.
    {__LINE__, L"0\"#\"[duration]hh", kText, 3600, L"0#01"},
    {__LINE__, L"[duration]hh;x", kText, 3600, L"01;x"},
    {__LINE__, L"[duration]hh<mm", kHTML, 3600, L"01&lt;00"},
    {__LINE__, L"[duration]hh[html]<b>[duration]hh</b>", kHTML, 3600, L"<b>01</b>"},
    {__LINE__, L"[duration]hh[html]<b>[duration]hh</b>", kText, 3600, L"01"},
    {__LINE__, L"0;[duration]hh", kText, 3600, L"3600"},
    // A negative value: the sign, or the literals of the second section, around the duration of the magnitude.
    {__LINE__, L"[duration]hh:mm", kText, -5400, L"-01:30"},
    {__LINE__, L"[duration(min)]hh:mm", kText, -90, L"-01:30"},
    {__LINE__, L"[duration]hh;x", kText, -3600, L"-01;x"},
    {__LINE__, L"0;([duration]hh:mm)", kText, -5400, L"(01:30)"},
    {__LINE__, L"0;neg [duration]hh;0", kText, -3600, L"neg 01;0"},
    {__LINE__, L"0;<[duration]hh", kHTML, -3600, L"&lt;01"},
    {__LINE__, L"0[html]0;<b>[duration]hh</b>", kHTML, -3600, L"<b>01</b>"},
};

WebValueFormatterHandle numericFormatterFor(SQLDataType::DataType eType, const String& sPattern, OutputType eOutput)
{
    return WebValueFormatter::GetCustomFormatter(SQLDataType(eType), sPattern, Locale::kUSA, eOutput,
                                                 KTWUILanguage::kDefaultLanguage);
}

template <class T>
void expectNumericRows(SQLDataType::DataType eType)
{
    for (const NumericRow& tRow : kNumericRows)
    {
        if (tRow.fValue < 0 && std::is_unsigned_v<T>)
            continue;
        const WebValueFormatterHandle hFormatter = numericFormatterFor(eType, tRow.pPattern, tRow.eOutput);
        const T tValue = T(tRow.fValue);
        EXPECT_EQ(toUtf8(hFormatter->formatAsString(&tValue)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine << ", type " << eType;
        EXPECT_FALSE(hFormatter->IsValidExcelPattern()) << "row at line " << tRow.nLine;
    }
    EXPECT_EQ(numericFormatterFor(eType, L"[duration]hh", kHTML)->formatAsString(nullptr), L"&nbsp;");
    EXPECT_EQ(numericFormatterFor(eType, L"[duration]hh", kText)->formatAsString(nullptr), L"");
    EXPECT_EQ(numericFormatterFor(eType, L"0;0;[duration]hh:mm", kText)->formatAsString(nullptr), L"00:00");
}

TEST(DurationFormatter, StandsInNumericPatternsOfEveryType)
{
    expectNumericRows<double>(SQLDataType::kDouble);
    expectNumericRows<int>(SQLDataType::kInteger);
    expectNumericRows<unsigned int>(SQLDataType::kUnsignedInteger);
    expectNumericRows<long>(SQLDataType::kBigInt);
    expectNumericRows<unsigned long>(SQLDataType::kUnsignedBigInt);
    expectNumericRows<CorvidNumber>(SQLDataType::kNumeric);
}

template <class T>
String formatNumber(const String& sPattern, const T& tValue)
{
    return NumericFormatter<T>::ParseCustomFormat(sPattern, Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage)
        ->formatAsString(&tValue);
}

// The formatter in the bracket is that of the pattern's own type.
TEST(DurationFormatter, RoundsInNumericPatternsAsItsTypeDoes)
{
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", 5430.0), L"01:31");
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", 5430), L"01:30");
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", 5430u), L"01:30");
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", 5430L), L"01:30");
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", 5430UL), L"01:30");
    EXPECT_EQ(formatNumber(L"[duration]hh:mm", CorvidNumber(5430)), L"01:31");
}

// The bracket's unit is applied first, and what is left of a second is dropped.
TEST(DurationFormatter, ShowsWholeSecondsInNumericPatterns)
{
    EXPECT_EQ(formatNumber(L"[duration(hour)]hh:mm", 1.5), L"01:30");
    EXPECT_EQ(formatNumber(L"[duration(day)]hh", 0.5), L"12");
    EXPECT_EQ(formatNumber(L"[duration(min)]mm:ss", 0.33), L"00:19");
    EXPECT_EQ(formatNumber(L"[duration]ss", 59.9), L"59");
    EXPECT_EQ(formatNumber(L"[duration]ss", -59.9), L"-59");
    EXPECT_EQ(formatNumber(L"[duration]ss", kNaN), L"NAN");
    EXPECT_EQ(formatNumber(L"[duration]ss", kInfinity), L"INF");
    EXPECT_EQ(formatNumber(L"[duration]ss", -kInfinity), L"");
    EXPECT_EQ(formatNumber(L"0;[duration]ss", -kInfinity), L"INF");
    EXPECT_EQ(formatNumber(L"[duration(min)]ss", *CorvidNumber::fromString("0.1")), L"06");
    EXPECT_EQ(formatNumber(L"[duration]ss", INT_MIN), L"-2147483647");  // the longest that an int can say
}

}  // namespace

}  // namespace tov

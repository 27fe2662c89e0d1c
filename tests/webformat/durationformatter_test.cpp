#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "durationtesting.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

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
        const WebValueFormatterHandle hFormatter =
            durationFormatterFor<double>(tRow.pPattern, tRow.eOutput, tRow.pLanguage);
        EXPECT_EQ(toUtf8(hFormatter->formatAsString(&tRow.fValue)), toUtf8(tRow.pExpected))
            << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->outputType(), tRow.eOutput);
    }
}

template <class T>
void expectNulls()
{
    for (const OutputType eOutput : {kText, kXML, kJavaScript, kPDF, kSQL, kSQLLiteral, kXLSX})
        EXPECT_EQ(durationFormatterFor<T>(L"x hh", eOutput)->formatAsString(nullptr), L"");
    EXPECT_EQ(durationFormatterFor<T>(L"x hh", kHTML)->formatAsString(nullptr), L"&nbsp;");
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
    EXPECT_EQ(durationFormatterFor<double>(L"")->valueStorageType(), SQLDataType::kStorageDouble);
    EXPECT_EQ(durationFormatterFor<int>(L"")->valueStorageType(), SQLDataType::kStorageInt32);
    EXPECT_EQ(durationFormatterFor<unsigned int>(L"")->valueStorageType(), SQLDataType::kStorageUInt32);
    EXPECT_EQ(durationFormatterFor<long>(L"")->valueStorageType(), SQLDataType::kStorageInt64);
    EXPECT_EQ(durationFormatterFor<unsigned long>(L"")->valueStorageType(), SQLDataType::kStorageUInt64);
    EXPECT_EQ(durationFormatterFor<CorvidNumber>(L"")->valueStorageType(), SQLDataType::kStorageCorvidNumber);
}

TEST(DurationFormatter, RemembersTheSectionForItsOutput)
{
    EXPECT_EQ(durationFormatterFor<double>(L"hh[html]mm", kHTML)->GetCustomFormatString(), L"mm");
    EXPECT_EQ(durationFormatterFor<double>(L"hh[html]mm")->GetCustomFormatString(), L"hh");
    EXPECT_EQ(durationFormatterFor<int>(L"[opt:dd]hh")->GetCustomFormatString(), L"[opt:dd]hh");
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
              kDefaultDuration);
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
    const WebValueFormatterHandle hFormatter = durationFormatterFor<long>(L"[opt:dd\"d\"]hh[opt::mm][opt::ss]");
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
    EXPECT_EQ(formatDuration(kDefaultDuration, 93784.0), L" 01d:02h:03m:04s");
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(DurationFormatter, AllocatesNothingForAValue)
{
    const double kValues[] = {0, 93784, -93784, 5430, 93784.25, 0.1, 1e12, 59.999, 1e17, kNaN};
    for (const wchar_t* pPattern : {kDefaultDuration, L"hh:mm", L"hh:mmr", L"hh:mmc", L"[opt:dd\"days\"]hh"})
    {
        const WebValueFormatterHandle hDouble = durationFormatterFor<double>(pPattern, kHTML);
        const WebValueFormatterHandle hLong = durationFormatterFor<long>(pPattern, kHTML);
        const WebValueFormatterHandle hUnsigned = durationFormatterFor<unsigned int>(pPattern, kHTML);
        const WebValueFormatterHandle hDecimal = durationFormatterFor<CorvidNumber>(pPattern, kHTML);
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

TEST(DurationFormatter, AllocatesNothingForADecimalOfThirtyDigits)
{
    const CorvidNumber tValue = *CorvidNumber::fromString("1234567890123456789012345.67891");
    for (const wchar_t* pPattern : {kDefaultDuration, L"hh:mm", L"hh:mmr", L"hh:mmc"})
    {
        const WebValueFormatterHandle hFormatter = durationFormatterFor<CorvidNumber>(pPattern);
        StringBufferTemplate<wchar_t, 256> tBuffer;
        const AllocationCounter tCounter;
        hFormatter->formatToBuffer(tBuffer, &tValue);
        EXPECT_EQ(tCounter.count(), 0u) << toUtf8(pPattern);
        EXPECT_GT(tBuffer.length(), 20u);
    }
}

TEST(DurationFormatter, ServesManyThreadsAtOnce)
{
    const WebValueFormatterHandle hFormatter = durationFormatterFor<double>(L"[opt:dd\"d\" ]hh:mm:ss");
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

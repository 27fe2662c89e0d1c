#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "corefacade/datetime.h"
#include "intl/localetaglookup.h"
#include "support/allocationcounter.h"
#include "webbedrock/utf8.h"
#include "webformat/formatterconfig.h"
#include "webformat/numericformatterimpl.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Setting
{
    const wchar_t* pLocale = L"en-US";
    const wchar_t* pLanguage = L"en-us";
    OutputType eOutput = kText;
};

template <class T>
WebValueFormatterHandle formatterFor(const String& sPattern, const Setting& tSetting = {})
{
    return NumericFormatter<T>::ParseCustomFormat(sPattern, LocaleTagLookup::lookupOrDefault(tSetting.pLocale),
                                                  tSetting.eOutput, KTWUILanguage(tSetting.pLanguage));
}

template <class T>
String format(const String& sPattern, const T& tValue, const Setting& tSetting = {})
{
    return formatterFor<T>(sPattern, tSetting)->formatAsString(&tValue);
}

String formatNull(const String& sPattern, OutputType eOutput)
{
    return formatterFor<double>(sPattern, {L"en-US", L"en-us", eOutput})->formatAsString(nullptr);
}

struct DoubleRow
{
    int nLine;
    const wchar_t* pPattern;
    double fValue;
    const wchar_t* pExpected;
};

constexpr DoubleRow kDoubleRows[] = {
    // The walk over digits.
    {__LINE__, L"#,##0.00", 1234.5, L"1,234.50"},
    {__LINE__, L"#,##0.00", 0.5, L"0.50"},
    {__LINE__, L"#,##0.##", 1234.5, L"1,234.5"},
    {__LINE__, L"#,##0", 1234567890, L"1,234,567,890"},
    {__LINE__, L"#,##0", 999, L"999"},
    {__LINE__, L"#,##0", 1000, L"1,000"},
    {__LINE__, L"#.##", 3, L"3"},
    {__LINE__, L"0.00", 3, L"3.00"},
    {__LINE__, L"#", 0, L""},
    {__LINE__, L"#,##0", 0, L"0"},
    // Groups count from the point, whatever stands between the digits.
    {__LINE__, L"#,##0-0", 1234567, L"1,234,56-7"},
    {__LINE__, L"#,##0-000", 1234567, L"1,234-,567"},
    {__LINE__, L"#,##0-0", 1, L"0-1"},
    {__LINE__, L"0.0#", 0.05, L"0.05"},
    {__LINE__, L".##", 0.05, L".05"},
    {__LINE__, L"00000", 42, L"00042"},
    {__LINE__, L"00000", 1234567, L"1234567"},
    {__LINE__, L"0,000", 1, L"0001"},  // zeros before the value's first digit are not grouped
    {__LINE__, L"0,000", 1234, L"1,234"},
    {__LINE__, L"???", 7, L"007"},
    {__LINE__, L"#.0#0", 1.5, L"1.500"},
    {__LINE__, L"(000) 000-0000", 2025550123, L"(202) 555-0123"},
    {__LINE__, L"0 per 100", 7, L"0 per 107"},
    {__LINE__, L"0.0.0", 1.25, L"1.30"},  // one decimal point; the last "0" is literal
    {__LINE__, L"0.0,0", 1234.56, L"1,234.56"},
    {__LINE__, L"", 5, L""},
    {__LINE__, L"\"none\"", 5, L"none"},
    {__LINE__, L"[nonsense]0", 5, L"5"},
    // Rounding: to 15 significant digits first, then halves away from zero.
    {__LINE__, L"0.00", 1.005, L"1.01"},
    {__LINE__, L"0.00", 2.675, L"2.68"},
    {__LINE__, L"0.00", 0.125, L"0.13"},
    {__LINE__, L"0", 2.5, L"3"},
    {__LINE__, L"0", 0.5, L"1"},
    {__LINE__, L"0.00", 0.004999, L"0.00"},
    {__LINE__, L"#,##0.00", 999.995, L"1,000.00"},
    {__LINE__, L"0", 123456789012345678.0, L"123456789012346000"},
    {__LINE__, L"#,##0", 1e21, L"1,000,000,000,000,000,000,000"},
    {__LINE__, L"0.################", 1e-9, L"0.000000001"},
    {__LINE__, L"0.00", 1e-300, L"0.00"},
    // Scaling.
    {__LINE__, L"#,##0,,", 1234567890, L"1,235"},
    {__LINE__, L"0,00,", 123456, L"123"},
    {__LINE__, L"0,.0", 12345, L"12.3"},
    {__LINE__, L"0%", 45, L"45%"},
    {__LINE__, L"0%%", 45, L"4500%"},
    {__LINE__, L"0%%%", 45, L"450000%"},
    {__LINE__, L"0%0%", 45, L"4%5%"},
    {__LINE__, L"0.00[scale-decimal:-3]", 1234.5, L"1.23"},
    {__LINE__, L"0[scale-decimal:3]", 1.5, L"1500"},
    {__LINE__, L"0.0[scale-name:million]", 2500000, L"2.5M"},
    {__LINE__, L"0[scale-name:nonsense]", 2500000, L"2500000"},
    {__LINE__, L"0.0[scale-name:auto]", 2500000, L"2.5M"},
    {__LINE__, L"0.0[scale-name:auto]", 999, L"999.0"},
    {__LINE__, L"0.0[scale-name:auto]", 1000, L"1.0K"},
    {__LINE__, L"0.0[scale-name:auto]", 999999, L"1000.0K"},
    {__LINE__, L"0.0[scale-name:auto]", 1000000, L"1.0M"},
    {__LINE__, L"0.0[scale-name:auto]", 1e9, L"1.0B"},
    {__LINE__, L"0.0[scale-name:auto]", 5e15, L"5000.0T"},
    {__LINE__, L"0.0[scale-name:auto]", -2500, L"-2.5K"},
    {__LINE__, L"0.0[scale-name:auto]", 0, L"0.0"},
    {__LINE__, L"0[scale-name:auto] is [scale-name:auto]", 1000, L"1K is K"},
    // Negative values.
    {__LINE__, L"0", -5, L"-5"},
    {__LINE__, L"0;(0)", -5, L"(5)"},
    {__LINE__, L"0;(0)", 5, L"5"},
    {__LINE__, L"0;(0)", 0, L"0"},
    {__LINE__, L"0;(0);zero", 0, L"0"},  // the third section is for nulls only
    {__LINE__, L"0;(0)", -0.0, L"0"},
    {__LINE__, L"0.00", -0.001, L"-0.00"},
    {__LINE__, L"0;[red]0", -5, L"5"},
    {__LINE__, L"0;", -5, L""},
    {__LINE__, L"0;(0.00,)", -1500, L"(1.50)"},
    // Special values.
    {__LINE__, L"#,##0.00 x", std::numeric_limits<double>::quiet_NaN(), L"NAN"},
    {__LINE__, L"#,##0.00 x", kInfinity, L"INF"},
    {__LINE__, L"0;(0)", kInfinity, L"INF"},
    {__LINE__, L"0", -kInfinity, L""},
    {__LINE__, L"0;(#,##0.00)", -kInfinity, L"(INF)"},
    {__LINE__, L"0;(#.0)[MMM]", -kInfinity, L"(INF)"},
    {__LINE__, L"0;minus", -kInfinity, L"minus"},
    // Days and months see the value; 1 is the Sunday.
    {__LINE__, L"[DDD]", 1, L"Sun"},
    {__LINE__, L"[DDDD]", 2, L"Monday"},
    {__LINE__, L"[DDDD]", 7, L"Saturday"},
    {__LINE__, L"[DDD]", 8, L""},
    {__LINE__, L"[DDD]", 0, L""},
    {__LINE__, L"[DDD]", 6.9, L"Fri"},
    {__LINE__, L"[DDD]", 7.1, L""},
    {__LINE__, L"[MMM]", 1, L"Jan"},
    {__LINE__, L"[MMMM]", 12, L"December"},
    {__LINE__, L"[MMMM]", 13, L""},
    {__LINE__, L"[MMMM]", 0.5, L""},
    {__LINE__, L"[MMM] 0", 3, L"Mar 3"},
    {__LINE__, L"[MMM]0", -3, L"-3"},  // items other than digits see the signed value
    // Mixed radix.
    {__LINE__, L"0\\:00[%60]", 125, L"2:05"},
    {__LINE__, L"0\\:00\\:00[%60][%60]", 3725, L"1:02:05"},
    {__LINE__, L"0\\:00[%60]", -125, L"-2:05"},
    {__LINE__, L"0\\:00[%60]", 59.6, L"1:00"},
    {__LINE__, L"0\\:00.0[%60]", 125.25, L"2:05.3"},
    {__LINE__, L"0\\:00.00[%60]", 59.999, L"1:00.00"},
};

TEST(NumericRendering, WritesDoubles)
{
    for (const DoubleRow& tRow : kDoubleRows)
        EXPECT_EQ(format(tRow.pPattern, tRow.fValue), tRow.pExpected) << "row at line " << tRow.nLine;
}

struct SettingRow
{
    int nLine;
    const wchar_t* pPattern;
    double fValue;
    Setting tSetting;
    const wchar_t* pExpected;
};

const SettingRow kSettingRows[] = {
    // The locale's separators, the monetary ones where the pattern shows a currency.
    {__LINE__, L"#,##0.00", 1234.5, {L"de-DE"}, L"1.234,50"},
    {__LINE__, L"#,##0.00", 1234.5, {L"fr-FR"}, L"1\u202f234,50"},
    {__LINE__, L"$#,##0.00", 1234.5, {L"de-AT"}, L"$1.234,50"},
    {__LINE__, L"#,##0.00", 1234.5, {L"de-AT"}, L"1\u00a0234,50"},
    {__LINE__, L"$#,##0.00", 1234.5, {L"de-CH"}, L"$1\u2019234.50"},
    {__LINE__,
     L"[$]0",
     5,
     {L"de-DE"},
     L"\u20ac"
     L"5"},
    {__LINE__, L"[$:EUR]0", 5, {L"en-US"}, L"EUR5"},
    {__LINE__, L"[DDDD]", 1, {L"de-DE"}, L"Sonntag"},
    {__LINE__, L"0[scale-name:ten-million]", 30000000, {L"en-IN"}, L"3Cr"},
    {__LINE__, L"0[scale-name:auto]", 150000, {L"en-IN"}, L"2L"},
    // Colours are markup for HTML and for pages, nothing elsewhere; every open one is closed at the end.
    {__LINE__, L"0;[red]0", -5, {L"en-US", L"en-us", kHTML}, L"<font style=\"color:red\">5</font>"},
    {__LINE__, L"0;[red]0", -5, {L"en-US", L"en-us", kPDF}, L"<fo:inline color=\"red\">5</fo:inline>"},
    {__LINE__, L"0;[red]0", -5, {L"en-US", L"en-us", kXML}, L"5"},
    {__LINE__, L"0;[red]0", -5, {L"en-US", L"en-us", kXLSX}, L"5"},
    {__LINE__, L"0;[red]0", -5, {L"en-US", L"en-us", kJavaScript}, L"5"},
    {__LINE__,
     L"a[red]0[red]b",
     5,
     {L"en-US", L"en-us", kHTML},
     L"a<font style=\"color:red\">5<font style=\"color:red\">b</font></font>"},
    // Hebrew pages mark the minus sign.
    {__LINE__, L"0", -5, {L"en-US", L"he", kHTML}, L"&#x200e;-5"},
    {__LINE__, L"0", -5, {L"en-US", L"HE-il", kHTML}, L"&#x200e;-5"},
    {__LINE__, L"0", -5, {L"en-US", L"he", kText}, L"-5"},
    {__LINE__, L"0", -5, {L"he-IL", L"en-us", kHTML}, L"-5"},
    {__LINE__, L"0;(0)", -5, {L"en-US", L"he", kHTML}, L"(5)"},
    {__LINE__, L"0", 5, {L"en-US", L"he", kHTML}, L"5"},
    // Sections by output.
    {__LINE__, L"0[html]<b>0</b>", 5, {L"en-US", L"en-us", kHTML}, L"<b>5</b>"},
    {__LINE__, L"0[html]<b>0</b>", 5, {L"en-US", L"en-us", kText}, L"5"},
    {__LINE__, L"0 < 1", 5, {L"en-US", L"en-us", kHTML}, L"5 &lt; 1"},
};

TEST(NumericRendering, FollowsLocaleLanguageAndOutput)
{
    for (const SettingRow& tRow : kSettingRows)
        EXPECT_EQ(format(tRow.pPattern, tRow.fValue, tRow.tSetting), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(NumericRendering, ShowsNullsThroughTheThirdSection)
{
    struct Row
    {
        int nLine;
        const wchar_t* pPattern;
        OutputType eOutput;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"0", kText, L""},
        {__LINE__, L"0", kHTML, L"&nbsp;"},
        {__LINE__, L"0", kXML, L""},
        {__LINE__, L"0", kPDF, L""},
        {__LINE__, L"0;(0)", kHTML, L"&nbsp;"},
        {__LINE__, L"0;(0)", kText, L""},
        {__LINE__, L"0;(0);-", kText, L"-"},
        {__LINE__, L"0;(0);\"n/a\"", kText, L"n/a"},
        {__LINE__, L"0;(0);n/a", kHTML, L"n/a"},
        {__LINE__, L"0;(0);0.0", kText, L"0.0"},  // the null's section renders the value 0
        {__LINE__, L"0;(0);", kHTML, L""},
        {__LINE__, L"0;(0);a;b", kText, L"a"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(formatNull(tRow.pPattern, tRow.eOutput), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(NumericRendering, WritesEveryValueTypeAlike)
{
    EXPECT_EQ(format<int>(L"#,##0.00", 1234), L"1,234.00");
    EXPECT_EQ(format<int>(L"#,##0", std::numeric_limits<int>::min()), L"-2,147,483,648");
    EXPECT_EQ(format<long>(L"0", std::numeric_limits<long>::min()), L"-9223372036854775808");
    EXPECT_EQ(format<long>(L"0", std::numeric_limits<long>::max()), L"9223372036854775807");
    EXPECT_EQ(format<unsigned>(L"#,##0;(0)", 4294967295u), L"4,294,967,295");
    EXPECT_EQ(format<unsigned long>(L"0", std::numeric_limits<unsigned long>::max()), L"18446744073709551615");
    EXPECT_EQ(format<int>(L"0;(0)", -5), L"(5)");
    EXPECT_EQ(format<int>(L"#.0#", 5), L"5.0");
    EXPECT_EQ(format<int>(L"0.0,", 1250), L"1.3");
    EXPECT_EQ(format<int>(L"0%%", 45), L"4500%");
    EXPECT_EQ(format<long>(L"0.0[scale-name:auto]", 2500000), L"2.5M");
    EXPECT_EQ(format<long>(L"0[scale-name:auto]", std::numeric_limits<long>::min()), L"-9223372T");
    EXPECT_EQ(format<int>(L"0\\:00[%60]", 125), L"2:05");
    EXPECT_EQ(format<unsigned>(L"0\\:00[%60]", 125), L"2:05");
    EXPECT_EQ(format<long>(L"0[%10]", std::numeric_limits<long>::max()), L"92233720368547758007");
    EXPECT_EQ(format<int>(L"[DDDD]", 1), L"Sunday");
    EXPECT_EQ(format<unsigned long>(L"[MMM]", 12), L"Dec");
    EXPECT_EQ(format<int>(L"#", 0), L"");
    EXPECT_EQ(format<int>(L"0", -5, {L"en-US", L"he", kHTML}), L"&#x200e;-5");
}

TEST(NumericRendering, WritesDecimalsExactly)
{
    struct Row
    {
        int nLine;
        const wchar_t* pPattern;
        const char* pValue;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"#,##0.00", "123456789012345678901234567890.125", L"123,456,789,012,345,678,901,234,567,890.13"},
        {__LINE__, L"0.0", "-0.25", L"-0.3"},
        {__LINE__, L"0;(0.00)", "-1.005", L"(1.01)"},
        {__LINE__, L"0", "INF", L"INF"},
        {__LINE__, L"0", "-INF", L""},
        {__LINE__, L"0;(0)", "-INF", L"(INF)"},
        {__LINE__, L"0.0[scale-name:auto]", "2500000", L"2.5M"},
        {__LINE__, L"0.0[scale-name:auto]", "999.9999999999999999999999", L"1000.0"},
        {__LINE__, L"0.0[scale-name:auto]", "0", L"0.0"},
        {__LINE__, L"0.00,,", "1234567.89", L"1.23"},
        {__LINE__, L"0\\:00[%60]", "125", L"2:05"},
        {__LINE__, L"0\\:00.00[%60]", "125.255", L"2:05.26"},
        {__LINE__, L"0[%10]", "123456789012345678901234567890123456789012345678901",
         L"1234567890123456789012345678901234567890123456789001"},
        {__LINE__, L"[DDD]", "7.0", L"Sat"},
        {__LINE__, L"[DDD]", "7.000000000000000000000000001", L""},
        {__LINE__, L"[MMMM]", "1.5", L"January"},
        {__LINE__, L"0.##", "0.1", L"0.1"},
    };
    for (const Row& tRow : kRows)
    {
        const CorvidNumber tValue = *CorvidNumber::fromString(std::string_view(tRow.pValue));
        EXPECT_EQ(format(tRow.pPattern, tValue), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(NumericRendering, FollowsTheConfiguredSignificantDigitsForDoublesAlone)
{
    FormatterConfig& tConfig = FormatterConfig::getInstance();
    const WebValueFormatterHandle hDouble = formatterFor<double>(L"0.###");
    const double fValue = 1234.5678;
    tConfig.setMaxSignificantDigitsForTestsOnly(5);
    EXPECT_EQ(hDouble->formatAsString(&fValue), L"1234.6") << "a formatter that is there already follows too";
    EXPECT_EQ(format<int>(L"0", 1234567), L"1234567");
    EXPECT_EQ(format(L"0.####", *CorvidNumber::fromString("1234.5678")), L"1234.5678");
    tConfig.setMaxSignificantDigitsForTestsOnly(15);
    EXPECT_EQ(hDouble->formatAsString(&fValue), L"1234.568");
}

struct CellRow
{
    int nLine;
    const wchar_t* pPattern;
    double fValue;
    const wchar_t* pExpected;
};

constexpr CellRow kCellRows[] = {
    {__LINE__, L"#,##0.00", 1234.5, L"1234.5"},
    {__LINE__, L"0.00", 1.0 / 3, L"0.333333333333333"},
    {__LINE__, L"0%", 45, L"0.45"},  // the spreadsheet's percent format multiplies
    {__LINE__, L"0%%", 0.45, L"0.45"},
    {__LINE__, L"0,", 1234567, L"1234567"},  // its own scaling comma divides
    {__LINE__, L"0,%", 45000, L"0.45"},      // but a percent sign asks for both
    {__LINE__, L"0[scale-name:million]", 2500000, L"2.5"},
    {__LINE__, L"0[scale-decimal:3]", 1.5, L"1500"},
    {__LINE__, L"0;(0)", -5, L"-5"},
    {__LINE__, L"0", 1e300, L"1e+300"},
};

TEST(NumericRendering, WritesTheNumberOfASpreadsheetCell)
{
    for (const CellRow& tRow : kCellRows)
    {
        StringBufferTemplate<wchar_t, 64> tBuffer;
        formatterFor<double>(tRow.pPattern)->formatExcelValueToBuffer(tBuffer, &tRow.fValue);
        EXPECT_EQ(tBuffer.toString(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
    StringBufferTemplate<wchar_t, 64> tBuffer;
    formatterFor<double>(L"0;0;n/a")->formatExcelValueToBuffer(tBuffer, nullptr);
    EXPECT_EQ(tBuffer.toString(), L"n/a") << "a null goes the way of nulls";
}

TEST(NumericRendering, ReplacesTheExcelMaskOnlyRowByRow)
{
    String sMask = L"General";
    EXPECT_FALSE(formatterFor<double>(L"[$:EUR]0")->checkAndReplaceFormatMaskForExcel(sMask));
    EXPECT_EQ(sMask, L"General");
    const WebValueFormatterHandle hRowWise = NumericFormatter<double>::ParseCustomFormat(
        L"[$:EUR]0;[$:EUR](0)", Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage,
        ValueFormatterTypes::kEvaluateFormatRowWiseCondCurr);
    EXPECT_TRUE(hRowWise->checkAndReplaceFormatMaskForExcel(sMask));
    EXPECT_EQ(sMask, L"[$EUR]0;[$EUR](0)");
}

TEST(NumericRendering, TellsItsPatternAndItsOutput)
{
    const WebValueFormatterHandle hFormatter = formatterFor<double>(L"0[html]<b>0</b>", {L"en-US", L"en-us", kHTML});
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"0[html]<b>0</b>");
    EXPECT_EQ(hFormatter->outputType(), kHTML);
    EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageDouble);
    EXPECT_TRUE(hFormatter->IsValidExcelPattern());
    EXPECT_FALSE(formatterFor<double>(L"0;[MMM]")->IsValidExcelPattern());
}

// Writes the hour, minute and second that it is handed; stands in for the date family.
class StandInTime final : public WebValueFormatter
{
public:
    StandInTime() : WebValueFormatter(SQLDataType::kStorageTimeStamp) {}
    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return String(); }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        const DateTime& tTime = *static_cast<const DateTime*>(pValue);
        tBuffer.append(std::to_wstring(tTime.hour()) + L"." + std::to_wstring(tTime.minute()) + L"." +
                       std::to_wstring(tTime.second()));
    }
};

// Writes the number of seconds that it is handed; stands in for the duration family.
class StandInDuration final : public WebValueFormatter
{
public:
    StandInDuration() : WebValueFormatter(SQLDataType::kStorageDouble) {}
    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return String(); }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        tBuffer.append(L"s" + std::to_wstring(static_cast<long>(*static_cast<const double*>(pValue))));
    }
};

class StandInFamilies final : public NumericSubFormatterSource
{
public:
    WebValueFormatterHandle timeFormatter(int, const Locale&, const KTWUILanguage&, OutputType) const override
    {
        return new StandInTime;
    }
    WebValueFormatterHandle durationFormatter(const String&, const Locale&, const KTWUILanguage&, OutputType,
                                              OutputType) const override
    {
        return new StandInDuration;
    }
};

template <class T>
String formatWithStandIns(const String& sPattern, const T& tValue)
{
    const StandInFamilies tFamilies;
    const WebValueFormatterHandle hFormatter =
        new NumericFormatterImpl<T>(sPattern, Locale::kUSA, kText, kLastType, KTWUILanguage::kDefaultLanguage,
                                    ValueFormatterTypes::kEvaluateFormatGlobal, &tFamilies);
    return hFormatter->formatAsString(&tValue);
}

constexpr DoubleRow kTimeRows[] = {
    {__LINE__, L"[FMT:timeHour]", 7.9, L"7.0.0"},
    {__LINE__, L"[FMT:timeHour]", 24, L"24.0.0"},
    {__LINE__, L"[FMT:timeHour]", 24.5, L""},
    {__LINE__, L"(0)[FMT:timeHour]", -1, L"-(1)"},  // a negative number is no time of day
    {__LINE__, L"[FMT:timeHour(min)]", 90, L"1.0.0"},
    {__LINE__, L"[FMT:timeHour(sec)]", 7200, L"2.0.0"},
    {__LINE__, L"[FMT:timeHourMin]", 125, L"2.5.0"},
    {__LINE__, L"[FMT:timeHourMin]", 1440, L"24.0.0"},
    {__LINE__, L"[FMT:timeHourMin]", 1441, L""},
    {__LINE__, L"[FMT:timeHourMin(hour)]", 1.5, L"1.30.0"},
    {__LINE__, L"[FMT:timeHourMin(sec)]", 150, L"0.2.0"},
    {__LINE__, L"[FMT:time]", 3725.9, L"1.2.5"},
    {__LINE__, L"[FMT:time]", 86400, L"24.0.0"},
    {__LINE__, L"[FMT:time]", 86401, L""},
    {__LINE__, L"[FMT:time(min)]", 90, L"1.30.0"},
    {__LINE__, L"[FMT:time(hour)]", 1.5, L"1.30.0"},
    {__LINE__, L"at [FMT:time] h", 0, L"at 0.0.0 h"},
    {__LINE__, L"x[duration]y", 90, L"s90"},
    {__LINE__, L"[duration(min)]", 1.5, L"s90"},
    {__LINE__, L"[duration(hour)]", 2, L"s7200"},
    {__LINE__, L"[duration(day)]", 0.5, L"s43200"},
    {__LINE__, L"[duration]", 90.9, L"s90"},
    {__LINE__, L"[duration]", -90, L"-s90"},  // the sign stands before the duration of the magnitude
    {__LINE__, L"0;[duration]", -90, L"s90"},
};

TEST(NumericRendering, HandsTimesAndDurationsToTheirFormatters)
{
    for (const DoubleRow& tRow : kTimeRows)
        EXPECT_EQ(formatWithStandIns(tRow.pPattern, tRow.fValue), tRow.pExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(formatWithStandIns<int>(L"[FMT:time]", 3725), L"1.2.5");
    EXPECT_EQ(formatWithStandIns<unsigned long>(L"[FMT:timeHour(sec)]", 7200), L"2.0.0");
    EXPECT_EQ(formatWithStandIns(L"[FMT:timeHourMin(sec)]", *CorvidNumber::fromString("150.5")), L"0.2.0");
}

TEST(NumericRendering, ThrowsWhereATimeHasNoFormatter)
{
    const double fValue = 1;
    StringBufferTemplate<wchar_t, 64> tBuffer;
    const StandInFamilies tFamilies;
    for (const wchar_t* pPattern : {L"[FMT:time]", L"[FMT:timeHour]", L"[FMT:timeHourMin]", L"[duration]"})
    {
        class NoFamilies final : public NumericSubFormatterSource
        {
            WebValueFormatterHandle timeFormatter(int, const Locale&, const KTWUILanguage&, OutputType) const override
            {
                return nullptr;
            }
            WebValueFormatterHandle durationFormatter(const String&, const Locale&, const KTWUILanguage&, OutputType,
                                                      OutputType) const override
            {
                return nullptr;
            }
        };
        const NoFamilies tNone;
        const WebValueFormatterHandle hFormatter =
            new NumericFormatterImpl<double>(pPattern, Locale::kUSA, kText, kLastType, KTWUILanguage::kDefaultLanguage,
                                             ValueFormatterTypes::kEvaluateFormatGlobal, &tNone);
        EXPECT_THROW(hFormatter->formatToBuffer(tBuffer, &fValue), InvalidHandleException);
    }
}

TEST(NumericRendering, AllocatesNothingForAValue)
{
    const wchar_t* const kPatterns[] = {
        L"#,##0.00;[red](#,##0.00)", L"0.0[scale-name:auto]", L"0%", L"0\\:00[%60]", L"[DDD] 0",
        L"#,##0.################"};
    const double kValues[] = {0, 1234567.891, -1234567.891, 1e15, 1e-9, -0.5};
    for (const wchar_t* pPattern : kPatterns)
    {
        const WebValueFormatterHandle hDouble = formatterFor<double>(pPattern, {L"en-US", L"en-us", kHTML});
        const WebValueFormatterHandle hLong = formatterFor<long>(pPattern);
        const WebValueFormatterHandle hDecimal = formatterFor<CorvidNumber>(pPattern);
        StringBufferTemplate<wchar_t, 256> tBuffer;
        for (const double fValue : kValues)
        {
            const long nValue = static_cast<long>(fValue);
            const CorvidNumber tDecimal = CorvidNumber(fValue) * CorvidNumber(123456789012345678L);
            const AllocationCounter tCounter;
            tBuffer.clear();
            hDouble->formatToBuffer(tBuffer, &fValue);
            hLong->formatToBuffer(tBuffer, &nValue);
            hDecimal->formatToBuffer(tBuffer, &tDecimal);
            hDouble->formatToBuffer(tBuffer, nullptr);
            EXPECT_EQ(tCounter.count(), 0u) << toUtf8(pPattern) << " " << fValue;
        }
    }
}

// The digits of a pattern with one optional group, against the C library's own rounding of the exact value.
TEST(NumericRendering, AgreesWithTheCLibraryWhereNoHalfIsNear)
{
    std::mt19937_64 tRandom(20240305);
    std::uniform_int_distribution<long> tCents(-99999999999, 99999999999);
    const WebValueFormatterHandle hFormatter = formatterFor<double>(L"0.00");
    for (int i = 0; i < 20000; ++i)
    {
        const double fValue = static_cast<double>(tCents(tRandom)) / 100;
        char aExpected[64];
        std::snprintf(aExpected, sizeof aExpected, "%.2f", fValue);
        EXPECT_EQ(toUtf8(hFormatter->formatAsString(&fValue)), aExpected);
    }
}

TEST(NumericRendering, ShowsLongNumbersWhole)
{
    const CorvidNumber tValue = math::shiftPower10(CorvidNumber(7), 3000);
    const String sText = format(L"#,##0", tValue);
    EXPECT_EQ(sText.size(), 3001u + 1000u);
    EXPECT_EQ(sText.substr(0, 6), L"7,000,");
    const String sWide(2000, L'0');
    EXPECT_EQ(format<int>(sWide, 5), String(1999, L'0') + L"5");
}

}  // namespace

}  // namespace tov

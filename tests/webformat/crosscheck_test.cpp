// Values whose texts were worked out by hand from the rules of numeric patterns, before anything was run: the rules
// met in combination, where each alone has its rows elsewhere.

#include <gtest/gtest.h>

#include <span>

#include "definitiontesting.h"
#include "intl/localetaglookup.h"
#include "valuetesting.h"
#include "webformat/timezoneresolver.h"
#include "webformat/valueformatter.h"

namespace tov {
namespace {

using enum ValueFormatterTypes::OutputType;

struct Setting
{
    SQLDataType::DataType eType = SQLDataType::kDouble;
    ValueFormatterTypes::OutputType eOutput = kText;
    const wchar_t* pLocale = L"en-US";
    const wchar_t* pLanguage = L"en-us";
};

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const char* pValue;  // null for a null value
    const wchar_t* pExpected;
    Setting tSetting = {};
};

struct DefinitionRow
{
    int nLine;
    const char* pDefinition;
    const char* pValue;
    const wchar_t* pExpected;
    Setting tSetting = {};
};

WebValueFormatterHandle patternFormatter(const wchar_t* pPattern, const Setting& tSetting)
{
    return WebValueFormatter::GetCustomFormatter(SQLDataType(tSetting.eType), pPattern,
                                                 LocaleTagLookup::lookupOrDefault(tSetting.pLocale), tSetting.eOutput,
                                                 KTWUILanguage(tSetting.pLanguage));
}

WebValueFormatterHandle definitionFormatter(const DefinitionRow& tRow)
{
    return WebValueFormatter::GetFormatter(SQLDataType(tRow.tSetting.eType), definitionOf(tRow.pDefinition),
                                           LocaleTagLookup::lookupOrDefault(tRow.tSetting.pLocale), TimeZoneResolver(),
                                           tRow.tSetting.eOutput, 0, 0, KTWUILanguage(tRow.tSetting.pLanguage),
                                           String());
}

String shown(const WebValueFormatterHandle& hFormatter, const char* pValue, const Setting& tSetting)
{
    String sText;
    withValue(tSetting.eType, pValue, [&](const void* p) { sText = hFormatter->formatAsString(p); });
    return sText;
}

String cellValue(const Row& tRow)
{
    StringBufferBaseTemplate<wchar_t> tBuffer;
    withValue(tRow.tSetting.eType, tRow.pValue,
              [&](const void* p)
              {
                  const auto hFormatter = patternFormatter(tRow.pPattern, tRow.tSetting);
                  hFormatter->formatExcelValueToBuffer(tBuffer, p);
              });
    return tBuffer.toString();
}

void expectRows(std::span<const Row> tRows)
{
    for (const Row& tRow : tRows)
        EXPECT_EQ(shown(patternFormatter(tRow.pPattern, tRow.tSetting), tRow.pValue, tRow.tSetting), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

constexpr Row kTexts[] = {
    {__LINE__, L"0 per 100", "1234", L"12 per 134"},  // zeros are placeholders in bare text
    {__LINE__, L"0 per 100", "-1234", L"-12 per 134"},
    {__LINE__, L"a$0", "5", L"a$5"},  // a text goes on over a dollar sign
    {__LINE__, L"a$#,##0.00", "1234.5", L"a$1,234.50"},
    {__LINE__, L"0.0 a.b0", "1.26", L"1.2 a.b6"},
    {__LINE__, L"0.0 .5 x\"#\"", "1.0", L"1.0 .5 x#"},  // after the point a text goes on over points
    {__LINE__, L"\"a\"0", "1", L"a1"},
    {__LINE__, L"0\"abc", "1", L"1abc"},
    {__LINE__, L"0\\", "1", L"1"},
    {__LINE__, L"\\0 0", "5", L"0 5"},
    {__LINE__, L"0\\#\\0", "5", L"5#0"},
    {__LINE__, L"\"", "5", L""},  // an unclosed quote runs to the end
    {__LINE__, L"\"\"", "-5", L"-"},
    {__LINE__, L"", "-5", L"-"},
    {__LINE__, L"9 0 9", "5", L"9 5 9"},
    {__LINE__, L"0]", "5", L"5]"},
    {__LINE__, L"?.?", "5", L"5.0"},
    {__LINE__, L"0?", "5", L"05"},
    {__LINE__, L"00#", "5", L"005"},
    {__LINE__, L"00#", "0", L"00"},
    {__LINE__, L"#0#", "5", L"05"},
    {__LINE__, L"##0", "5", L"5"},
    {__LINE__, L"#", "-0.4", L"-"},
    {__LINE__, L"0-0", "12345", L"1234-5"},
    {__LINE__, L"000-0000", "5551234", L"555-1234"},
    {__LINE__, L"(000) 000-0000", "15551234567", L"(1555) 123-4567"},
};

TEST(NumericPatternsAsWritten, LiteralTextStandsAmongPlaceholdersThatCountFromTheUnits)
{
    expectRows(kTexts);
}

constexpr Row kFractions[] = {
    {__LINE__, L".00", "0.5", L".50"},
    {__LINE__, L".00", "12.5", L".50"},
    {__LINE__, L"..", "5", L""},
    {__LINE__, L"0.##", "0.05", L"0.05"},
    {__LINE__, L"0.##", "0.004", L"0"},
    {__LINE__, L"0.##", "-0.004", L"-0"},
    {__LINE__, L"#.##", "0.5", L".5"},
    {__LINE__, L"0.#0#", "1.5", L"1.50"},
    {__LINE__, L"0.0.0", "5", L"5.00"},
    {__LINE__, L"0.0.x\"0", "5.25", L"5.2x5"},  // kept: the second point is a quote
    {__LINE__, L"0.0.[red]\"", "5", L"5.0[red]"},
    {__LINE__, L"#.##.", "3", L"3"},
    {__LINE__, L"0.0;.5", "-1", L"5"},  // no digit is left for the point
    {__LINE__, L"0.00", "-0.125", L"-0.13"},
    {__LINE__, L"0", "1e+21", L"1000000000000000000000"},
    {__LINE__, L"0.000", "1234567890123.4568", L"1234567890123.460"},  // fifteen significant digits
};

TEST(NumericPatternsAsWritten, FractionsShowRequiredPlacesAndASecondPointQuotes)
{
    expectRows(kFractions);
}

constexpr Row kCommas[] = {
    {__LINE__, L",0", "1234567", L"1,234,567"},
    {__LINE__, L"0,000", "5", L"0005"},
    {__LINE__, L"0,000", "12345", L"12,345"},
    {__LINE__, L"0.0,0", "1234.5", L"1,234.50"},
    {__LINE__, L"#,", "1234567", L"1235"},
    {__LINE__, L"0, 0", "12345", L"1 2"},
    {__LINE__, L"0,.0", "1234", L"1.2"},
    {__LINE__, L"0.0,,", "2500000", L"2.5"},
    {__LINE__, L"0,00,", "1234567", L"1,235"},
    {__LINE__, L"0,\"k\"", "4500", L"5k"},
    {__LINE__, L"#,##0,,%", "1234567890", L"1,235%"},
    {__LINE__, L"0,\\k", "1499", L"1k"},
    {__LINE__, L"#,?", "1234", L"1,234"},
    {__LINE__, L"0,;(0,)", "-1500", L"(2)"},
};

TEST(NumericPatternsAsWritten, CommasGroupBeforePlaceholdersAndScaleElsewhere)
{
    expectRows(kCommas);
}

constexpr Row kPercents[] = {
    {__LINE__, L"0%%%", "0.1234", L"1234%"},           {__LINE__, L"%0", "45", L"%45"},
    {__LINE__, L"0%\" \"%", "45", L"45% %"},           {__LINE__, L"0,%", "45000", L"45%"},
    {__LINE__, L"0.0%;(0.0%)", "-12.345", L"(12.3%)"},
};

TEST(NumericPatternsAsWritten, PercentSignsStandAsWrittenAndScaleFromTheSecondOfARun)
{
    expectRows(kPercents);
}

constexpr Row kBrackets[] = {
    {__LINE__, L"[]0", "5", L"5"},
    {__LINE__, L"0[", "5", L"5["},
    {__LINE__, L"0[$", "5", L"5[$"},
    {__LINE__, L"0[$ <", "5", L"5[$ &lt;", {.eOutput = kHTML}},
    {__LINE__, L"0[abc", "5", L"5[abc"},
    {__LINE__, L"[ red]0", "5", L"5", {.eOutput = kHTML}},
    {__LINE__, L"[Red]0", "5", L"5", {.eOutput = kHTML}},
    {__LINE__, L"[red]0", "5", L"<fo:inline color=\"red\">5</fo:inline>", {.eOutput = kPDF}},
    {__LINE__, L"[red]0", "5", L"5", {.eOutput = kXML}},
    {__LINE__,
     L"[red]0[red]",
     "5",
     L"<font style=\"color:red\">5<font style=\"color:red\"></font></font>",
     {.eOutput = kHTML}},  // each bracket opens, all are closed at the end
    {__LINE__, L"0;[red](0)", "-5", L"<font style=\"color:red\">(5)</font>", {.eOutput = kHTML}},
    {__LINE__, L"[red]0;0", "-5", L"5", {.eOutput = kHTML}},
    {__LINE__, L"[blue]0", "5", L"5", {.eOutput = kHTML}},
    {__LINE__, L"[$EUR]0.00", "5", L"$5.00"},
    {__LINE__, L"[$]0", "5", L"$5"},
    {__LINE__, L"[$:EUR ]0", "5", L"EUR 5"},
    {__LINE__, L"[$:]0", "5", L"5"},
    {__LINE__, L"[$:<i>]0", "5", L"<i>5", {.eOutput = kHTML}},
    {__LINE__, L"[scale]0", "5", L"5"},
    {__LINE__, L"[scale-decimal:-3]0.0", "2500", L"2.5"},
    {__LINE__, L"[SCALE-DECIMAL:-3]0.0", "2500", L"2.5"},
    {__LINE__, L"0,,[scale-decimal:-3]", "2500", L"3"},    // replaces the power of the commas before it
    {__LINE__, L"[scale-decimal:-3]0,", "2500000", L"3"},  // and those behind it add to it
    {__LINE__, L"[scale-decimal:2]0", "1.5", L"150"},
    {__LINE__, L"[scale-decimal:]0,", "1234", L"1"},
    {__LINE__, L"0,[scale-decimal:x]", "1234", L"1234"},
    {__LINE__, L"[scale-decimal:99999999999999999999]0", "5", L"5"},
    {__LINE__, L"[scale-decimal:500]0", "5", L"5"},
    {__LINE__, L"[scale-name:million]0.0", "2500000", L"M2.5"},
    {__LINE__, L"0[scale-name:auto]", "2500", L"3K"},
    {__LINE__, L"0[scale-name:auto]", "999", L"999"},
    {__LINE__, L"0[scale-name:auto]", "999999", L"1000K"},  // chosen before the value is rounded
    {__LINE__, L"0.0[scale-name:auto]", "-2500000", L"-2.5M"},
    {__LINE__, L"#,##0[scale-name:auto]", "1e+18", L"1,000,000T"},
    {__LINE__, L"0[scale-name:auto]", "1000", L"1K"},
    {__LINE__, L"0[scale-name:first]", "2500", L"3K"},
    {__LINE__, L"0[scale-name:second]", "2500000", L"3M"},
    {__LINE__, L"0[scale-name:none]", "2500", L"2500"},
    {__LINE__, L"0[scale-name:auto][scale-name:none]", "2500", L"2500"},
    {__LINE__, L"0[scale-name:million][scale-name:none]", "2500000",
     L"3MM"},  // none takes back the kind of scale, not the power
    {__LINE__, L"0[scale-name:bogus]", "2500", L"2500"},
    {__LINE__, L"0[scale-name:quadrillion]", "2000000000000000.0",
     L"2000000000000000"},  // not in the list of the locale
    {__LINE__, L"0[scale-name:Million]", "2500", L"2500"},
    {__LINE__, L"0[Scale-Name:million]", "2500000", L"3M"},
    {__LINE__, L"0.0,[scale-name:million]", "2500000", L"2.5M"},
    {__LINE__, L"0.0[scale-name:million],", "2500000000", L"2.5M"},
    {__LINE__, L"0.0,[scale-name:auto]", "2500000", L"2.5M"},  // an automatic scale replaces the power of commas
};

TEST(NumericPatternsAsWritten, BracketsColourNameCurrenciesScaleOrAreIgnored)
{
    expectRows(kBrackets);
}

constexpr Row kModuli[] = {
    {__LINE__, L"0\\:00\\:00[%60][%60]", "59.6", L"0:01:00"},
    {__LINE__, L"0\\:00.0[%60]", "125.46", L"2:05.5"},
    {__LINE__, L"[%0]0", "7", L"7"},
    {__LINE__, L"[%]0", "7", L"7"},
    {__LINE__, L"[%7]0", "10", L"13"},
    {__LINE__, L"[%10]0", "25", L"205"},
    {__LINE__, L"[%12x]0", "30", L"206"},
    {__LINE__, L"[%99999999999999999999]0", "30", L"30"},
    {__LINE__, L"0\\:00.00[%60]", "125.456", L"2:05.46", {.eType = SQLDataType::kNumeric}},
};

TEST(NumericPatternsAsWritten, ModulusBracketsSplitTheMagnitudeIntoMixedUnits)
{
    expectRows(kModuli);
}

constexpr Row kSections[] = {
    {__LINE__, L"0;(0);-", "0", L"0"},
    {__LINE__, L"0;(0);x;y", nullptr, L"x"},
    {__LINE__, L"0;(0);#", nullptr, L""},
    {__LINE__, L"0;(0);[red]n/a", nullptr, L"<font style=\"color:red\">n/a</font>", {.eOutput = kHTML}},
    {__LINE__, L";;null", nullptr, L"null"},
    {__LINE__, L";;null", "5", L""},  // the first section is empty
    {__LINE__, L";;null", "-5", L""},
    {__LINE__, L"0;(0);n/a", "-7", L"(7)"},
    {__LINE__, L"0;(0)", "NaN", L"NAN"},
    {__LINE__, L"(0)", "INF", L"INF"},
    {__LINE__, L"[red]0", "INF", L"INF", {.eOutput = kHTML}},
    {__LINE__, L"0", "-2147483648", L"-2147483648", {.eType = SQLDataType::kInteger}},
    {__LINE__, L"#,##0", "-9223372036854775808", L"-9,223,372,036,854,775,808", {.eType = SQLDataType::kBigInt}},
    {__LINE__,
     L"#,##0.0#",
     "18446744073709551615",
     L"18,446,744,073,709,551,615.0",
     {.eType = SQLDataType::kUnsignedBigInt}},
    {__LINE__, L"0.00,", "1005", L"1.01", {.eType = SQLDataType::kBigInt}},
    {__LINE__,
     L"#,##0.0##",
     "12345678901234567890.12345",
     L"12,345,678,901,234,567,890.123",
     {.eType = SQLDataType::kNumeric}},
    {__LINE__, L"0", "-0.5", L"-1", {.eType = SQLDataType::kNumeric}},
};

TEST(NumericPatternsAsWritten, SectionsServeNegativesNullsAndInfinities)
{
    expectRows(kSections);
}

constexpr Row kOutputs[] = {
    {__LINE__, L"[red]0", "-5", L"&#x200e;-<font style=\"color:red\">5</font>", {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__, L"0 <b>", "1", L"1 &lt;b&gt;", {.eOutput = kHTML}},
    {__LINE__, L"0[html]0 <b>", "1", L"1 <b>", {.eOutput = kHTML}},
    {__LINE__, L"0[html]0 <b>", "1", L"1", {.eOutput = kXML}},
    {__LINE__, L"0\"<b>\"", "1", L"1<b>", {.eOutput = kHTML}},
    {__LINE__, L"0\\<", "1", L"1<", {.eOutput = kHTML}},
    {__LINE__,
     L"0[html]<b>0</b>",
     "1",
     L"&lt;b&gt;1&lt;/b&gt;",
     {.eOutput = kPDF}},  // markup of one output is text in another
    {__LINE__, L"0[pdf]<b>0</b>", "1", L"<b>1</b>", {.eOutput = kPDF}},
    {__LINE__, L"0;-0[html]<b>0</b>;<i>0</i>", "-1", L"<i>1</i>", {.eOutput = kHTML}},
    {__LINE__, L"'[html]0", "1", L"&#39;1", {.eOutput = kHTML}},
    {__LINE__, L"'[html]0", "1", L"'1"},
    {__LINE__, L"0[html'[text]0.0", "1", L"01.0"},      // no tag is spelled html'[text
    {__LINE__, L"0[text]0.0[html]0.00", "5", L"05.0"},  // sections of one output are joined
    {__LINE__, L"0[html", "5", L"5"},
    {__LINE__, L"0[html", "5", L"", {.eOutput = kHTML}},
    {__LINE__,
     L"\"[html]\"0.0",
     "5",
     L"0.0",
     {.eOutput = kHTML}},  // quotes do not hide a tag: the section is a quote and its text
    {__LINE__, L"0 it's", "1", L"1 it\\u0027s", {.eOutput = kJavaScript}},
    {__LINE__, L"0 o'clock", "5", L"5 o''clock", {.eOutput = kSQLLiteral}},
    {__LINE__, L"0 o'clock", "5", L"5 o'clock", {.eOutput = kSQL}},
    {__LINE__, L"0 \"it's\"", "1", L"1 it's", {.eOutput = kJavaScript}},
    {__LINE__, L"0[java]0!", "1", L"1!", {.eOutput = kJavaScript}},
    {__LINE__, L"0[JAVA]0!", "1", L"1!", {.eOutput = kJavaScript}},
    {__LINE__, L"0 &", "1", L"1 &amp;", {.eOutput = kXLSX}},
};

TEST(NumericPatternsAsWritten, OutputsChooseTheirSectionsAndEncodeBareTextOnly)
{
    expectRows(kOutputs);
}

constexpr Row kLocales[] = {
    {__LINE__, L"#,##0.00", "-1234.5", L"-1.234,50", {.pLocale = L"de-DE"}},
    {__LINE__, L"#,##0.00", "1234.5", L"1\u202F234,50", {.pLocale = L"fr-FR"}},
    {__LINE__, L"0.0[scale-name:million]", "2500000", L"2,5Mio.", {.pLocale = L"de-DE"}},
    {__LINE__, L"$0.00", "1.5", L"$1.50", {.pLocale = L"fr-CH"}},
    {__LINE__, L"0.00", "1.5", L"1,50", {.pLocale = L"fr-CH"}},
    {__LINE__,
     L"a$0.00",
     "1.5",
     L"a$1,50",
     {.pLocale = L"fr-CH"}},  // no currency: the dollar sign stands inside a text
    {__LINE__, L"[$]0", "5", L"€5", {.pLocale = L"de-DE"}},
};

TEST(NumericPatternsAsWritten, LocalesGiveSeparatorsAndSymbols)
{
    expectRows(kLocales);
}

constexpr Row kNames[] = {
    {__LINE__, L"[MMM]", "3", L"Mar"},       {__LINE__, L"[DDD]", "2", L"Mon"},
    {__LINE__, L"[MMM]", "0.5", L""},        {__LINE__, L"[mmm]0", "3", L"3"},
    {__LINE__, L"[MMM]", "-3", L"-"},  // names see the sign
    {__LINE__, L"[MMM];[MMM]x", "-3", L"x"}, {__LINE__, L"[MMMM]", "3", L"März", {.pLocale = L"de-DE"}},
    {__LINE__, L"[MMM]", "12.5", L""},
};

TEST(NumericPatternsAsWritten, DaysAndMonthsShowInsideTheirRangeOnly)
{
    expectRows(kNames);
}

constexpr Row kCells[] = {
    {__LINE__, L"0.00", "1234.5678", L"1234.5678"},
    {__LINE__, L"0%%%", "0.1234", L"12.34"},
    {__LINE__, L"0.0,,", "2500000", L"2500000"},
    {__LINE__, L"0[scale-name:auto]", "2500000", L"2500000"},
    {__LINE__, L"0", "1e+20", L"1e+20"},
    {__LINE__, L"[scale-decimal:3]0", "2", L"2000"},
    {__LINE__, L"0%", "12.5", L"0.125", {.eType = SQLDataType::kNumeric}},
    {__LINE__, L"0,[scale-decimal:-6]", "2500000", L"2500000"},
};

TEST(NumericPatternsAsWritten, CellValuesFollowPercentAndPowersButNotScalingCommas)
{
    for (const Row& tRow : kCells)
        EXPECT_EQ(cellValue(tRow), tRow.pExpected) << "row at line " << tRow.nLine;
}

constexpr DefinitionRow kDefinitions[] = {
    {__LINE__, "xsi:type='tov:number' commas='true' minDigits='2' maxDigits='2' negativeType='minus'/>", "-1234.5",
     L"-1,234.50"},
    {__LINE__, "xsi:type='tov:number' minDigits='2' maxDigits='2' negativeType='red'/>", "-5", L"5.00"},
    {__LINE__,
     "xsi:type='tov:number' minDigits='2' maxDigits='2' negativeType='red'/>",
     "-5",
     L"<font style=\"color:red\">5.00</font>",
     {.eOutput = kHTML}},
    {__LINE__,
     "xsi:type='tov:number' negativeType='redMinus'/>",
     "-5",
     L"<font style=\"color:red\">-5.00</font>",
     {.eOutput = kHTML}},
    {__LINE__,
     "xsi:type='tov:number' negativeType='redParen'/>",
     "-5",
     L"<fo:inline color=\"red\">(5.00)</fo:inline>",
     {.eOutput = kPDF}},
    {__LINE__, "xsi:type='tov:number' negativeType='paren' minDigits='0' maxDigits='0'/>", "-4.5", L"(5)"},
    {__LINE__, "xsi:type='tov:number' />", "-5", L"&#x200e;-5.00", {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__,
     "xsi:type='tov:number' negativeType='red'/>",
     "-5",
     L"<font style=\"color:red\">5.00</font>",
     {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__,
     "xsi:type='tov:number' negativeType='redMinus'/>",
     "-5",
     L"<font style=\"color:red\">&#x200e;-5.00</font>",
     {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__, "xsi:type='tov:number' negativeType='paren'/>", "-5", L"(5.00)", {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__, "xsi:type='tov:number' scale='-3'/>", "-1234567", L"-1234.57"},
    {__LINE__, "xsi:type='tov:number' scaleFactor='million'/>", "1234567", L"1.23M"},
    {__LINE__, "xsi:type='tov:number' scaleFactor='million' scale='-3'/>", "1234567", L"1.23M"},
    {__LINE__, "xsi:type='tov:number' scaleFactor='auto' negativeType='paren'/>", "-1234567", L"(1.23M)"},
    {__LINE__, "xsi:type='tov:number' minDigits='3' maxDigits='1'/>", "1.5", L"1.500"},
    {__LINE__, "xsi:type='tov:number' minDigits='3' maxDigits='0'/>", "1.4", L"1"},
    {__LINE__, "xsi:type='tov:number' minDigits='20' maxDigits='25'/>", "1.5", L"1.5000000000000000"},
    {__LINE__, "xsi:type='tov:number' minDigits='0' maxDigits='25'/>", "0.1", L"0.1"},
    {__LINE__, "xsi:type='tov:number' />", "-INF", L"-INF"},
    {__LINE__, "xsi:type='tov:number' />", nullptr, L"&nbsp;", {.eOutput = kHTML}},
    {__LINE__, "xsi:type='tov:number' />", "-0.001", L"-0.00"},
    {__LINE__, "xsi:type='tov:percent' />", "45.678", L"45.68%"},
    {__LINE__, "xsi:type='tov:percent' minDigits='0' maxDigits='1' commas='true'/>", "-1234.56", L"-1,234.6%"},
    {__LINE__, "xsi:type='tov:percent' negativeType='paren'/>", "-45", L"(45.00%)"},
    {__LINE__, "xsi:type='tov:percent' />", "45.678", L"% 45,68", {.pLocale = L"tr-TR"}},
    {__LINE__, "xsi:type='tov:percent' />", "-45.678", L"-% 45,68", {.pLocale = L"tr-TR"}},
    {__LINE__, "xsi:type='tov:percent' negativeType='redParen'/>", "-45.678", L"(% 45,68)", {.pLocale = L"tr-TR"}},
    {__LINE__, "xsi:type='tov:percent' />", "45.678", L"45,68%", {.pLocale = L"de-DE"}},
    {__LINE__, "xsi:type='tov:percent' scale='2'/>", "0.45", L"45.00%"},
    {__LINE__, "xsi:type='tov:custom' customFormat='0.0' displayTimeZone='EST'/>", "5", L"5.0"},
};

TEST(NumericPatternsAsWritten, DefinitionsBecomePatternsInTheLocaleAndLanguage)
{
    for (const DefinitionRow& tRow : kDefinitions)
        EXPECT_EQ(shown(definitionFormatter(tRow), tRow.pValue, tRow.tSetting), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

constexpr Row kTimes[] = {
    {__LINE__, L"[FMT:timeHour]", "13", L"1  PM"},
    {__LINE__, L"[fmt:timeHour]", "25", L""},
    {__LINE__, L"[FMT:timeHour(min)]", "780", L"1  PM"},
    {__LINE__, L"[FMT:timeHour(sec)]", "46800", L"1  PM"},
    {__LINE__, L"[FMT:timeHourMin]", "90", L"1:30 AM"},
    {__LINE__, L"[FMT:timeHourMin(hour)]", "1.5", L"1:30 AM"},
    {__LINE__, L"[FMT:timeHourMin(sec)]", "5400", L"1:30 AM"},
    {__LINE__, L"[FMT:time]", "3661", L"1:01:01 AM"},
    {__LINE__, L"[FMT:time(min)]", "61.5", L"1:01:30 AM"},
    {__LINE__, L"[FMT:time(hour)]", "1.5", L"1:30:00 AM"},
    {__LINE__, L"at [FMT:time]!", "3661", L"at 1:01:01 AM!"},
    {__LINE__, L"[FMT:time]", "47109", L"13:05:09", {.pLocale = L"de-DE"}},
};

TEST(NumericPatternsAsWritten, TimesAndDurationsShowNumbersOfTheirUnits)
{
    expectRows(kTimes);
}

struct WrittenRow
{
    int nLine;
    const char* pDefinition;
    const wchar_t* pAttributes;
    const wchar_t* pExcelPattern;
};

constexpr WrittenRow kWritten[] = {
    {__LINE__, "xsi:type='tov:number' negativeType='Paren'/>",
     L"minDigits=2 maxDigits=2 commas=false negativeType=minus", L"0.00"},  // names are told apart by case
    {__LINE__, "xsi:type='tov:number' negativeType='[red]()'/>",
     L"minDigits=2 maxDigits=2 commas=false negativeType=redParen", L"0.00_);[red](0.00)"},
    {__LINE__, "xsi:type='tov:number' minDigits='3' maxDigits='0'/>",
     L"minDigits=3 maxDigits=0 commas=false negativeType=minus", L"0.000"},
    {__LINE__, "xsi:type='tov:number' maxDigits='5' scale='0'/>",
     L"minDigits=2 maxDigits=5 commas=false negativeType=minus", L"0.00###"},
    {__LINE__, "xsi:type='tov:number' scale='-3' scaleFactor='million'/>",
     L"minDigits=2 maxDigits=2 commas=false negativeType=minus scale=-3", L"0.00"},
    {__LINE__, "xsi:type='tov:percent' commas='true' negativeType='redMinus'/>",
     L"minDigits=2 maxDigits=2 commas=true negativeType=redMinus", L"0.00%;[red]-0.00%"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='nope'/>",
     L"minDigits=2 maxDigits=2 commas=false negativeType=minus currencyTag=nope", L""},
    {__LINE__, "xsi:type='tov:text' textFormat='mailto'/>", L"textFormat=plain", L""},  // "mailTo" is the name
    {__LINE__, "xsi:type='tov:whistler'/>", L"whistlerFormat=", L""},
    {__LINE__, "xsi:type='tov:custom'/>", L"customFormat=", L""},
};

TEST(DefinitionsAsWritten, SettingsReadAreWrittenUnderTheirCurrentNames)
{
    for (const WrittenRow& tRow : kWritten)
    {
        const Definition hDefinition = definitionOf(tRow.pDefinition);
        EXPECT_EQ(attributesOf(hDefinition), tRow.pAttributes) << "row at line " << tRow.nLine;
        EXPECT_EQ(hDefinition->getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                WebValueFormatDefinition::kFormatPatternNormal),
                  tRow.pExcelPattern)
            << "row at line " << tRow.nLine;
    }
}

}  // namespace
}  // namespace tov

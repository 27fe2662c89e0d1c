#include "project/webformat/excelpattern.h"

#include <gtest/gtest.h>

#include <random>
#include <span>

#include "excelinterpreter.h"
#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

String excelPattern(const String& sPattern)
{
    return excelPatternOf(sPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage);
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pExcel;
};

void expectRows(std::span<const Row> vRows)
{
    for (const Row& tRow : vRows)
        EXPECT_EQ(toUtf8(excelPattern(tRow.pPattern)), toUtf8(tRow.pExcel)) << "row at line " << tRow.nLine;
}

constexpr Row kDigitRows[] = {
    {__LINE__, L"0", L"0"},
    {__LINE__, L"#", L"#"},
    {__LINE__, L"??0", L"000"},
    {__LINE__, L"##00", L"##00"},
    {__LINE__, L"0.00", L"0.00"},
    {__LINE__, L"0.??", L"0.00"},
    {__LINE__, L"#.##", L"#.##"},    // Excel keeps the point of 3
    {__LINE__, L"0.0#0", L"0.000"},  // a required digit makes those before it required
    {__LINE__, L"0.#0#", L"0.00#"},
    {__LINE__, L"0.", L"0"},  // the formatter never shows the point
    {__LINE__, L"0.\"x\"", L"0\"x\""},
    {__LINE__, L"00-00", L"00-00"},
    {__LINE__, L"0.0.0", L"0.0\"0\""},  // a second point opens a quoted text
};

TEST(ExcelPattern, TakesDigitsOver)
{
    expectRows(kDigitRows);
}

constexpr Row kGroupingRows[] = {
    {__LINE__, L"#,##0", L"#,##0"},
    {__LINE__, L"#,##0.00", L"#,##0.00"},
    {__LINE__, L"#,0", L"#,##0"},
    {__LINE__, L",0", L"#,##0"},
    {__LINE__, L",#", L"#,###"},
    {__LINE__, L"#,###,##0", L"####,##0"},
    {__LINE__, L"##,##0", L"##,##0"},
    {__LINE__, L"0.0,0", L"#,##0.00"},  // a comma in the fraction groups the integer part too
    {__LINE__, L"#,000", L"#,000"},
    {__LINE__, L"#\"x\",##0", L"#,###\"x\"##0"},  // a literal stands where the comma should
    {__LINE__, L"0,000", L""},                    // Excel would group the zeros that fill
    {__LINE__, L"#0,000", L""},
};

TEST(ExcelPattern, SpellsGroupingAsExcelDoes)
{
    expectRows(kGroupingRows);
}

constexpr Row kLiteralRows[] = {
    {__LINE__, L"0 kg", L"0\" kg\""},
    {__LINE__, L"(0) + 1", L"(0\") + 1\""},
    {__LINE__, L"(0): -", L"(0): -"},
    {__LINE__, L"0/0", L"0\"/\"0"},          // bare it would be a fraction
    {__LINE__, L"0\"a\"b\\c", L"0\"abc\""},  // adjacent literals become one
    {__LINE__, L"0\\\"", L"0\\\""},
    {__LINE__, L"0\\\\", L"0\\\\"},
    {__LINE__, L"0a\\\"b\\\\c", L"0\"a\"\\\"\"b\"\\\\\"c\""},
    {__LINE__, L"0\"#0.,;[]@%_*?E+\"", L"0\"#0.,;[]@%_*?E+\""},
    {__LINE__, L"0\"\"", L"0"},
    {__LINE__, L"0€é😀", L"0\"€é😀\""},
    {__LINE__, L"0E+00", L"0\"E+\"00"},  // no scientific notation
    {__LINE__, L"0'", L"0\"'\""},
    {__LINE__, L"0[", L"0\"[\""},
    {__LINE__, L"0[unknown]", L"0"},
    {__LINE__, L"0\"\n\"", L""},  // no control characters
    {__LINE__, L"0\x7F", L""},
    {__LINE__, L"0\"unclosed", L"0\"unclosed\""},
    {__LINE__, L"\"n/a\"", L"\"n/a\""},
};

TEST(ExcelPattern, QuotesLiteralsWhereExcelNeedsIt)
{
    expectRows(kLiteralRows);
}

constexpr Row kCurrencyRows[] = {
    {__LINE__, L"[$:EUR]0", L"[$EUR]0"},
    {__LINE__, L"[$]0", L"[$$]0"},
    {__LINE__, L"[$EUR]0", L"[$$]0"},  // the locale's symbol, as the formatter shows it
    {__LINE__, L"$#,##0", L"[$$]#,##0"},
    {__LINE__, L"0 [$:kr.]", L"0 [$kr.]"},
    {__LINE__, L"[$:]0", L"0"},
    {__LINE__, L"[$:A-1]0", L"\"A-1\"0"},  // in the bracket a minus sign starts a language number
    {__LINE__, L"[$:a;b]0", L"\"a;b\"0"},
    {__LINE__, L"-$0", L"-$0"},  // inside a literal the sign is text
    {__LINE__, L"[$:a\"b]0", L"\"a\"\\\"\"b\"0"},
};

TEST(ExcelPattern, WritesCurrencySymbolsInExcelsBracket)
{
    expectRows(kCurrencyRows);
    EXPECT_EQ(excelPatternOf(L"[$]0", LocaleTagLookup::lookupOrDefault(L"de-DE"), KTWUILanguage::kDefaultLanguage),
              L"[$€]0");
}

constexpr Row kScaleRows[] = {
    {__LINE__, L"0%", L"0%"},
    {__LINE__, L"0%%", L"0%"},
    {__LINE__, L"%0", L"%0"},
    {__LINE__, L"0 %", L"0 %"},
    {__LINE__, L"0%0%", L"0%0\"%\""},  // two signs show, one takes effect
    {__LINE__, L"0\"%\"", L"0\"%\""},  // a quoted sign has no effect
    {__LINE__, L"#,##0,", L"#,##0,"},
    {__LINE__, L"0,,", L"0,,"},
    {__LINE__, L"0,.0", L"0.0,"},
    {__LINE__, L"0.0,,\"M\"", L"0.0,,\"M\""},
    {__LINE__, L"0,%", L"0%"},  // the cell is scaled
    {__LINE__, L"0%,", L"0%"},
    {__LINE__, L"0[scale-name:million]", L"0\"M\""},
    {__LINE__, L"0[scale-name:first]", L"0\"K\""},
    {__LINE__, L"0[scale-name:unheard]", L"0"},
    {__LINE__, L"0[scale-name:none]", L"0"},
    {__LINE__, L"0[scale-decimal:-6]", L"0"},
    {__LINE__, L"0[scale-decimal:2]%", L"0%"},
    {__LINE__, L"0,[scale-decimal:-6]", L"0,,"},
    {__LINE__, L"0,[scale-decimal:-2]", L""},  // the cell is not scaled and no comma stands for two places
    {__LINE__, L"0[scale-decimal:-400],", L""},
    {__LINE__, L"0[scale-decimal:-9],", L"0,,,,"},  // a comma adds to the power that is there
    {__LINE__, L"0[scale-name:auto]", L""},
    {__LINE__, L"0\\:00[%60]", L""},
};

TEST(ExcelPattern, ScalesAsTheCellValueIsScaled)
{
    expectRows(kScaleRows);
}

constexpr Row kSectionRows[] = {
    {__LINE__, L"0;(0)", L"0;(0)"},
    {__LINE__, L"0;[red](0)", L"0;[red](0)"},
    {__LINE__, L"0;(0)[red]", L"0;[red](0)"},  // Excel's colours stand first
    {__LINE__, L"[red]0[red]", L"[red]0"},
    {__LINE__, L"0[Red]", L"0"},            // no colour to the formatter
    {__LINE__, L"0;-0;\"null\"", L"0;-0"},  // the third section is for nulls
    {__LINE__, L"0;-0;-;x", L"0;-0"},
    {__LINE__, L"0;", L"0;\"\""},
    {__LINE__, L";0", L"\"\";0"},
    {__LINE__, L"\"yes\";\"no\"", L"\"yes\";\"no\""},
    {__LINE__, L"0%;0%", L"0%;0%"},
    {__LINE__, L"0%;(0)", L""},        // the cell is a fraction of one: the second section needs a sign
    {__LINE__, L"0;0%", L"0;0\"%\""},  // the cell is not divided: the sign only shows
    {__LINE__, L"0,;0", L"0,;0"},
    {__LINE__, L"0;0,", L"0;0,"},
    {__LINE__, L"0[scale-decimal:-3];0", L""},
    {__LINE__, L"0[scale-decimal:-3];0,", L"0;0"},
    {__LINE__, L"0;0[scale-name:auto]", L""},
    {__LINE__, L"0;[MMM]", L""},
};

TEST(ExcelPattern, TakesTheFirstTwoSections)
{
    expectRows(kSectionRows);
}

constexpr Row kOtherRows[] = {
    {__LINE__, L"", L""},
    {__LINE__, L"#,##0[TZ:EST]", L"#,##0"},
    {__LINE__, L"#,##0[html]\"<b>\"0", L"#,##0"},  // the section for plain text
    {__LINE__, L"[html]0[text]0.0", L"0.0"},
    {__LINE__, L"[MMM] 0", L""},
    {__LINE__, L"[DDDD]", L""},
    {__LINE__, L"[FMT:timeHourMin]", L""},
    {__LINE__, L"[duration]", L""},
    {__LINE__, L".00", L""},  // Excel would show the integer part
    {__LINE__, L"\"on \" [L:de-DE]", L""},
    {__LINE__, L"\"x\"[TZ:EST]", L""},
    {__LINE__, L"@", L""},
    {__LINE__, L"@[html]@H", L""},
    {__LINE__, L"\"http://\"@[html]@H", L""},
    {__LINE__, L"0 days", L"0\" days\""},  // digits: a number
};

TEST(ExcelPattern, IsEmptyForPatternsThatAreNotOfNumbers)
{
    expectRows(kOtherRows);
}

TEST(ExcelPattern, HasAtMost255Utf16Units)
{
    EXPECT_EQ(excelPattern(String(255, L'0')), String(255, L'0'));
    EXPECT_EQ(excelPattern(String(256, L'0')), L"");
    EXPECT_EQ(excelPattern(L"0" + String(252, L'x')), L"0\"" + String(252, L'x') + L"\"");
    EXPECT_EQ(excelPattern(L"0" + String(253, L'x')), L"");
    EXPECT_EQ(excelPattern(L"0" + String(126, L'😀')), L"0\"" + String(126, L'😀') + L"\"");
    EXPECT_EQ(excelPattern(L"0" + String(127, L'😀')), L"");
    EXPECT_EQ(excelPattern(String(1000000, L'0')), L"");
    EXPECT_EQ(excelPattern(L"0" + String(1000000, L',')), L"");
    EXPECT_EQ(excelPattern(L"0" + String(1000000, L'%')), L"0%");
    EXPECT_EQ(excelPattern(L"0.00" + String(200000, L';')), L"0.00;\"\"");
}

TEST(ExcelPattern, IsEscapedForAStyle)
{
    EXPECT_EQ(escapedForStyle(L"#,##0.00;[red](0)"), L"#,##0.00;[red](0)");
    EXPECT_EQ(escapedForStyle(L"0\"'s <x> & y\""), L"0&quot;\\&#39;s &lt;x&gt; &amp; y&quot;");
    EXPECT_EQ(escapedForStyle(L"\\\""), L"\\\\&quot;");
}

// What a browser and a style sheet's reader make of the style gives the Excel pattern back.
String readStyle(String sStyle)
{
    for (const auto& [pEntity, pCharacter] :
         {std::pair{L"&lt;", L"<"}, std::pair{L"&gt;", L">"}, std::pair{L"&quot;", L"\""}, std::pair{L"&#39;", L"'"},
          std::pair{L"&amp;", L"&"}})
    {
        for (std::size_t nAt = 0; (nAt = sStyle.find(pEntity, nAt)) != String::npos; ++nAt)
            sStyle.replace(nAt, wcslen(pEntity), pCharacter);
    }
    String sPattern;
    for (std::size_t nAt = 0; nAt < sStyle.size(); ++nAt)
    {
        EXPECT_NE(sStyle[nAt], L'\'') << "the string would end here";
        nAt += sStyle[nAt] == L'\\' ? 1 : 0;
        sPattern += sStyle[nAt];
    }
    return sPattern;
}

TEST(ExcelPattern, ComesBackOutOfAStyle)
{
    std::mt19937 tRandom(11);
    constexpr wchar_t aCharacters[] = L"\"'\\&<>;0#,%[]@ax é";
    for (int i = 0; i < 5000; ++i)
    {
        String sPattern = L"0";
        for (unsigned n = tRandom() % 12; n > 0; --n)
            sPattern += aCharacters[tRandom() % (std::size(aCharacters) - 1)];
        const String sExcel = excelPattern(sPattern);
        EXPECT_EQ(readStyle(escapedForStyle(sExcel)), sExcel) << toUtf8(sPattern);
    }
}

class PatternMaker
{
public:
    explicit PatternMaker(unsigned nSeed) : m_tRandom(nSeed) {}

    String pattern()
    {
        String sPattern = section();
        for (unsigned n = m_tRandom() % 3; n > 0; --n)
            sPattern += L";" + section();
        return sPattern;
    }

private:
    String section()
    {
        return pick({L"", L"", L"$", L"[$:EUR] ", L"(", L"[red]", L"\"x;0\"", L"a", L"\\\"", L"\\\\", L"%"}) +
               pick({L"0", L"#", L"#,##0", L"00", L"##0", L"#,###", L"0-00", L"#,0", L"?0", L"#\"'\"00"}) +
               pick({L"", L"", L".0", L".00", L".0##", L".00\"y\"0", L".#0", L"."}) +
               pick({L"", L"", L"%", L"%%", L",", L",,", L",%", L" kg", L")", L"[scale-decimal:-3]",
                     L"[scale-name:million]", L"[scale-decimal:3]", L"%\"%\"", L"\\%", L"&<>'"});
    }

    String pick(std::initializer_list<const wchar_t*> vChoices)
    {
        return vChoices.begin()[m_tRandom() % vChoices.size()];
    }

    std::mt19937 m_tRandom;
};

// None of the values is a tie in any pattern: how ties round is not what is asked here.
constexpr double kValues[] = {0,      1,        -1,        7.03,    -7.03,       0.4,        -0.3,   12.34,
                              999.97, 1234.567, -98765.43, 1234567, -12345678.9, 2345678901, 0.0123, -0.0456};

TEST(ExcelPattern, ShowsTheCellValueAsTheFormatterShowsTheValue)
{
    PatternMaker tMaker(99);
    int nCompared = 0;
    for (int i = 0; i < 4000; ++i)
    {
        const String sPattern = tMaker.pattern();
        const String sExcel = excelPattern(sPattern);
        if (sExcel.empty())
            continue;
        const ExcelInterpreter tExcel(sExcel);
        const WebValueFormatterHandle hFormatter = NumericFormatter<double>::ParseCustomFormat(
            sPattern, Locale::kUSA, ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage);
        for (const double fValue : kValues)
        {
            StringBufferTemplate<wchar_t, 64> tCell;
            hFormatter->formatExcelValueToBuffer(tCell, &fValue);
            EXPECT_EQ(toUtf8(tExcel.show(std::wcstod(tCell.terminated(), nullptr))),
                      toUtf8(hFormatter->formatAsString(&fValue)))
                << toUtf8(sPattern) << " -> " << toUtf8(sExcel) << " with " << fValue;
            ++nCompared;
        }
    }
    EXPECT_GT(nCompared, 20000);
}

}  // namespace

}  // namespace tov

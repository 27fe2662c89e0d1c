#include <gtest/gtest.h>

#include <climits>

#include "webformat/valueformatter.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

struct Row
{
    int nLine;
    const wchar_t* pFormat;
    int nWanted;
    const wchar_t* pExpected;
    Types::OutputType eFound;
};

constexpr Row kRows[] = {
    {__LINE__, L"abc[html]b", Types::kHTML, L"b", Types::kHTML},
    {__LINE__, L"abc[html]b", Types::kXLSX, L"b", Types::kHTML},
    {__LINE__, L"abc[html]b", Types::kPDF, L"b", Types::kHTML},
    {__LINE__, L"abc[html]b", Types::kSQL, L"abc", Types::kText},
    {__LINE__, L"abc[html]b", Types::kSQLLiteral, L"abc", Types::kText},
    {__LINE__, L"abc[html]b", Types::kText, L"abc", Types::kText},
    {__LINE__, L"abc[html]b", Types::kXML, L"abc", Types::kText},
    // Without tags the whole is a [text] section.
    {__LINE__, L"abc", Types::kText, L"abc", Types::kText},
    {__LINE__, L"abc", Types::kHTML, L"abc", Types::kText},
    {__LINE__, L"abc", Types::kXLSX, L"abc", Types::kText},
    {__LINE__, L"", Types::kText, L"", Types::kText},
    {__LINE__, L"", Types::kPDF, L"", Types::kText},
    // Every tag word, in any case.
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kText, L"ab", Types::kText},
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kHTML, L"c", Types::kHTML},
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kXML, L"d", Types::kXML},
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kJavaScript, L"e", Types::kJavaScript},
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kPDF, L"f", Types::kPDF},
    {__LINE__, L"a[text]b[html]c[xml]d[java]e[pdf]f", Types::kXLSX, L"ab", Types::kText},
    {__LINE__, L"a[HTML]b", Types::kHTML, L"b", Types::kHTML},
    {__LINE__, L"a[HtMl]b[jAVA]c", Types::kJavaScript, L"c", Types::kJavaScript},
    // Sections of one type are joined, wherever they stand.
    {__LINE__, L"a[html]b[text]c[html]d", Types::kHTML, L"bd", Types::kHTML},
    {__LINE__, L"a[html]b[text]c[html]d", Types::kText, L"ac", Types::kText},
    {__LINE__, L"a[html]b[text]c", Types::kHTML, L"b", Types::kHTML},
    {__LINE__, L"[html]b", Types::kText, L"", Types::kText},
    {__LINE__, L"[html]b", Types::kXML, L"", Types::kText},
    {__LINE__, L"a[html]", Types::kHTML, L"", Types::kHTML},
    {__LINE__, L"a[html][xml]b", Types::kHTML, L"", Types::kHTML},
    // Only a last [html] section serves PDF and Excel.
    {__LINE__, L"a[html]b[xml]c", Types::kPDF, L"a", Types::kText},
    {__LINE__, L"a[html]b[xml]c", Types::kXLSX, L"a", Types::kText},
    {__LINE__, L"a[html]b[xml]c[html]d", Types::kXLSX, L"d", Types::kHTML},
    {__LINE__, L"a[html]", Types::kXLSX, L"", Types::kHTML},
    // Kept: it joins the [pdf] sections before it.
    {__LINE__, L"a[pdf]b[html]c", Types::kPDF, L"bc", Types::kHTML},
    {__LINE__, L"a[html]b[pdf]c", Types::kPDF, L"c", Types::kPDF},
    // Other words in brackets are text.
    {__LINE__, L"[red]#0[html]b", Types::kText, L"[red]#0", Types::kText},
    {__LINE__, L"a[ html ]b", Types::kHTML, L"a[ html ]b", Types::kText},
    {__LINE__, L"a[]b", Types::kHTML, L"a[]b", Types::kText},
    {__LINE__, L"a[htm]b[htmls]c", Types::kHTML, L"a[htm]b[htmls]c", Types::kText},
    {__LINE__, L"a[[html]b", Types::kHTML, L"a[[html]b", Types::kText},  // the word is "[html"
    {__LINE__, L"a[x'html]b", Types::kText, L"a[x'html]b", Types::kText},
    {__LINE__, L"a[x'][html]b", Types::kHTML, L"b", Types::kHTML},  // no apostrophe counts inside brackets
    {__LINE__, L"a]b[html]c]d", Types::kHTML, L"c]d", Types::kHTML},
    // A bracket that is not closed ends with the string.
    {__LINE__, L"abc[html", Types::kHTML, L"", Types::kHTML},
    {__LINE__, L"abc[html", Types::kText, L"abc", Types::kText},
    {__LINE__, L"abc[foo", Types::kHTML, L"abc[foo", Types::kText},
    {__LINE__, L"abc[", Types::kHTML, L"abc[", Types::kText},
    // An apostrophe makes the next character ordinary; both stay in the text. A double quote means nothing.
    {__LINE__, L"a'[html]b", Types::kHTML, L"a'[html]b", Types::kText},
    {__LINE__, L"a''[html]b", Types::kHTML, L"b", Types::kHTML},
    {__LINE__, L"a''[html]b", Types::kText, L"a''", Types::kText},
    {__LINE__, L"a'", Types::kHTML, L"a'", Types::kText},
    {__LINE__, L"\"a[html]b\"", Types::kHTML, L"b\"", Types::kHTML},
    {__LINE__, L"\"a[html]b\"", Types::kText, L"\"a", Types::kText},
    // What is no output type gets the [text] sections.
    {__LINE__, L"abc[html]b", Types::kLastType, L"abc", Types::kText},
    {__LINE__, L"abc[html]b", -1, L"abc", Types::kText},
    {__LINE__, L"abc[html]b", INT_MAX, L"abc", Types::kText},
};

TEST(OutputSections, PicksTheSectionsOfTheWantedOutput)
{
    for (const Row& tRow : kRows)
    {
        Types::OutputType eFound = Types::kLastType;
        EXPECT_EQ(WebValueFormatter::GetOutputFormatString(tRow.pFormat, static_cast<Types::OutputType>(tRow.nWanted),
                                                           eFound),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(eFound, tRow.eFound) << "row at line " << tRow.nLine;
    }
}

TEST(OutputSections, TakesEmbeddedTerminatorsAsText)
{
    Types::OutputType eFound = Types::kLastType;
    const String sFormat(L"a\0b[html]c\0d", 12);
    EXPECT_EQ(WebValueFormatter::GetOutputFormatString(sFormat, Types::kHTML, eFound), String(L"c\0d", 3));
}

TEST(OutputSections, ReadsAMillionBracketsOnce)
{
    Types::OutputType eFound = Types::kLastType;
    const String sOpen(1000000, L'[');
    EXPECT_EQ(WebValueFormatter::GetOutputFormatString(sOpen, Types::kHTML, eFound), sOpen);
    String sTags;
    for (int i = 0; i < 100000; ++i)
        sTags += L"[html]x";
    EXPECT_EQ(WebValueFormatter::GetOutputFormatString(sTags, Types::kHTML, eFound), String(100000, L'x'));
}

}  // namespace
}  // namespace tov

#include "webformat/truncateformatter.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "support/allocationcounter.h"
#include "support/htmlreference.h"
#include "support/limitedallocator.h"
#include "support/markuptext.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

constexpr wchar_t kExpander[] =
    L"<span class=\"ZoomInEnable\"><span onclick=\"rudex.FormFields.CommentField.clickButton(event);\" fullText=\"";
constexpr wchar_t kExpanderEnd[] = L"\">&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;</span></span>";
constexpr unsigned long kNoLimit = std::numeric_limits<unsigned long>::max();

String format(unsigned long nLimit, Types::OutputType eOutput, const String& sText)
{
    StringBufferTemplate<wchar_t, 64> tBuffer;
    TruncateFormatter(nLimit, eOutput).formatValue(tBuffer, sText.c_str());
    return tBuffer.toString();
}

struct Row
{
    int nLine;
    unsigned long nLimit;
    const wchar_t* pText;
    const wchar_t* pExpected;
};

TEST(TruncateFormatter, CutsTextBehindTheLimit)
{
    constexpr Row kRows[] = {
        {__LINE__, 5, L"abcdefgh", L"abcde..."},
        {__LINE__, 5, L"abcde", L"abcde..."},  // kept: the dots although nothing was cut
        {__LINE__, 6, L"abcde", L"abcde"},
        {__LINE__, 5, L"", L""},
        {__LINE__, 1, L"abc", L"a..."},
        {__LINE__, 0, L"abc", L"..."},
        {__LINE__, 0, L"", L"..."},
        {__LINE__, 0, L"<b></b>", L"..."},
        {__LINE__, kNoLimit, L"abc", L"abc"},
        {__LINE__, 9, L"<b>abc</b>", L"abc"},  // long with its markup, short without
        {__LINE__, 3, L"<b>abc</b>", L"abc..."},
        {__LINE__, 3, L"<b>ab</b>cd", L"abc..."},
        {__LINE__, 4, L"a&amp;b", L"a&b"},
        {__LINE__, 3, L"a&amp;b", L"a&b..."},
        {__LINE__, 20, L"a<script>b</script>c", L"ac"},
        {__LINE__, 30, L"a<script>b</script>c", L"ac"},
        {__LINE__, 2, L"\x4E2D\x1F600xy", L"\x4E2D\x1F600..."},
        {__LINE__, 3, L"ab<never closed", L"ab"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(format(tRow.nLimit, Types::kText, tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(TruncateFormatter, WritesShortValuesInHtmlWholeWithTheirTextAsTitle)
{
    constexpr Row kRows[] = {
        {__LINE__, 10, L"abc", L"<span title=\"abc\">abc</span>"},
        {__LINE__, 10, L"", L"<span title=\"\"></span>"},
        {__LINE__, 4, L"abc", L"<span title=\"abc\">abc</span>"},
        {__LINE__, 50, L"<b>a</b>&amp;\"", L"<span title=\"a&amp;&quot;\"><b>a</b>&amp;\"</span>"},
        {__LINE__, 50, L"it's<script>x</script>", L"<span title=\"it&#39;s\">it's<script>x</script></span>"},
        {__LINE__, 50, L"\x1", L"<span title=\"\xFFFD\">\x1</span>"},
        {__LINE__, kNoLimit, L"abc", L"<span title=\"abc\">abc</span>"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(format(tRow.nLimit, Types::kHTML, tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(TruncateFormatter, WritesLongValuesInHtmlCutWithAnExpanderThatHoldsAllTheirText)
{
    EXPECT_EQ(format(3, Types::kHTML, L"<b>abcdef</b>"),
              String(L"<span><b>abc</b>...</span>") + kExpander + L"abcdef" + kExpanderEnd);
    EXPECT_EQ(format(3, Types::kHTML, L"abc"), String(L"<span>abc...</span>") + kExpander + L"abc" + kExpanderEnd);
    EXPECT_EQ(format(2, Types::kHTML, L"<i>\"x\"</i> & <y>z"),
              String(L"<span><i>&quot;x</i>...</span>") + kExpander + L"&quot;x&quot; &amp; z" + kExpanderEnd);
    EXPECT_EQ(format(0, Types::kHTML, L""), String(L"<span>...</span>") + kExpander + kExpanderEnd);
    EXPECT_EQ(format(0, Types::kHTML, L"<b>x</b>"), String(L"<span>...</span>") + kExpander + L"x" + kExpanderEnd);
}

// The part before the expander.
String visiblePart(unsigned long nLimit, const String& sText)
{
    const String sWhole = format(nLimit, Types::kHTML, sText);
    const std::size_t nEnd = sWhole.find(String(L"</span>") + kExpander);
    return sWhole.substr(0, 6) == L"<span>" && nEnd != String::npos ? sWhole.substr(6, nEnd - 6)
                                                                    : L"not cut: " + sWhole;
}

void expectVisibleParts(const Row& tRow)
{
    EXPECT_EQ(visiblePart(tRow.nLimit, tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(HtmlReference::visiblePart(tRow.pText, tRow.nLimit).first, tRow.pExpected)
        << "reference, row at line " << tRow.nLine;
}

TEST(TruncateFormatter, CountsAnEntityAsOneCharacter)
{
    constexpr Row kRows[] = {
        {__LINE__, 3, L"a&nbsp;bcd", L"a&nbsp;b..."},
        {__LINE__, 3, L"a&b", L"a&amp;b..."},
        {__LINE__, 2, L"a&b", L"a&amp;..."},
        {__LINE__, 1, L"&quot;x", L"&quot;..."},         // six characters, both ends included
        {__LINE__, 8, L"&eacut;x", L"&amp;eacut;x..."},  // seven are too many
        {__LINE__, 1, L"&x1;", L"&x1;..."},              // kept: the name is not looked at
        {__LINE__, 2, L"&;xy", L"&;x..."},
        {__LINE__, 3, L"&&lt;", L"&&lt;..."},  // kept: the second "&" lies within the six characters
        {__LINE__, 2, L"a&", L"a&amp;..."},
        {__LINE__, 2, L"&amp", L"&amp;a..."},
    };
    for (const Row& tRow : kRows)
        expectVisibleParts(tRow);
}

TEST(TruncateFormatter, CopiesTagsUncountedAndClosesWhatIsOpen)
{
    constexpr Row kRows[] = {
        {__LINE__, 3, L"<b>abcdef</b>", L"<b>abc</b>..."},
        {__LINE__, 3, L"<b>abc</b>", L"<b>abc</b>..."},  // closed, not counted on
        {__LINE__, 3, L"<b>ab</b>cd", L"<b>ab</b>c..."},
        {__LINE__, 2, L"<b><i><u>abc</u></i></b>", L"<b><i><u>ab</u></i></b>..."},
        {__LINE__, 1, L"<B>ab</B>", L"<B>a</B>..."},
        {__LINE__, 2, L"a<br/>bc", L"a<br/>b..."},
        {__LINE__, 2, L"a<img src='x'/>bc", L"a<img src='x'/>b..."},
        {__LINE__, 2, L"a<br>bc", L"a<br>b</br>..."},  // kept: an opening tag like any other
        {__LINE__, 5, L"<b>ab</b>", L"<b>ab</b>..."},  // kept: the dots at the end of the text too
        {__LINE__, 3, L"a<!-- b -->cd", L"a<!-- b -->cd..."},
        {__LINE__, 2, L"a<!-- b -->cd", L"a<!-- b -->c..."},
        {__LINE__, 1, L"<!-->ab", L"<!-->a..."},
        {__LINE__, 1, L"<!x-->ab", L"<!x-->a..."},
        {__LINE__, 1, L"<b><!-- > --></b>a", L"<b><!-- > --></b>a..."},
    };
    for (const Row& tRow : kRows)
        expectVisibleParts(tRow);
}

TEST(TruncateFormatter, WritesWhatIsNoMarkupAsCountedText)
{
    constexpr Row kRows[] = {
        {__LINE__, 2, L"<b", L"&lt;b..."},
        {__LINE__, 1, L"<b", L"&lt;..."},
        {__LINE__, 3, L"<1>x", L"&lt;1&gt;..."},
        {__LINE__, 2, L"< b>", L"&lt; ..."},
        {__LINE__, 1, L"<", L"&lt;..."},
        {__LINE__, 3, L"<>x", L"&lt;&gt;x..."},
        {__LINE__, 3, L"<!x", L"&lt;!x..."},
        {__LINE__, 3, L"<!--", L"&lt;!-..."},
        {__LINE__, 4, L"<!-- > x", L"&lt;!--..."},
        {__LINE__, 4, L"</b>", L"&lt;/b&gt;..."},              // nothing is open
        {__LINE__, 5, L"<b></i>x", L"<b>&lt;/i&gt;x</b>..."},  // something else is open
        {__LINE__, 5, L"<b></B>x", L"<b>&lt;/B&gt;x</b>..."},
        {__LINE__, 3, L"<b></", L"<b>&lt;/</b>..."},
        {__LINE__, 4, L"</></>", L"&lt;/&gt;&lt;..."},
        {__LINE__, 5, L"\"'><x", L"&quot;&#39;&gt;&lt;x..."},
        {__LINE__, 1, L"\x1x", L"\xFFFD..."},
        {__LINE__, 1, L"\x1F600\x4E2D", L"\x1F600..."},
        {__LINE__, 3, L"<\x41E>", L"&lt;\x41E&gt;..."},  // no ASCII letter
    };
    for (const Row& tRow : kRows)
        expectVisibleParts(tRow);
}

TEST(TruncateFormatter, KeepsATagWithAttributesOpenUntilTheEnd)
{
    constexpr Row kRows[] = {
        // The closing tag is written as text and counts.
        {__LINE__, 3, L"<a href='x'>y</a>z", L"<a href='x'>y&lt;/</a href='x'>..."},
        {__LINE__, 9, L"<a href='x'>y</a>z", L"<a href='x'>y&lt;/a&gt;z</a href='x'>..."},
        {__LINE__, 2, L"<a href='x'>y</a href='x'>z", L"<a href='x'>y</a href='x'>z..."},
    };
    for (const Row& tRow : kRows)
        expectVisibleParts(tRow);
}

TEST(TruncateFormatter, WritesNothingForOtherOutputs)
{
    for (const int nOutput : {Types::kXML + 0, Types::kJavaScript + 0, Types::kPDF + 0, Types::kSQL + 0,
                              Types::kSQLLiteral + 0, Types::kXLSX + 0, Types::kLastType + 0, -1})
    {
        for (const wchar_t* pText : {L"abc", L"<b>abcdef</b>", L""})
            EXPECT_EQ(format(4, static_cast<Types::OutputType>(nOutput), pText), L"") << nOutput;
    }
}

TEST(TruncateFormatter, TakesNullForEmpty)
{
    StringBufferTemplate<wchar_t, 16> tBuffer;
    tBuffer.append(L"before ");
    TruncateFormatter(5, Types::kHTML).formatValue(tBuffer, nullptr);
    TruncateFormatter(5, Types::kText).formatValue(tBuffer, nullptr);
    EXPECT_EQ(tBuffer.view(), L"before <span title=\"\"></span>");
}

TEST(TruncateFormatter, ClosesAnyNumberOfTags)
{
    for (const std::size_t nTags : {31U, 32U, 33U, 34U, 100U, 2000U})
    {
        String sOpen;
        String sClosing;
        for (std::size_t nTag = 0; nTag < nTags; ++nTag)
        {
            const String sName = L"t" + std::to_wstring(nTag);
            sOpen += L"<" + sName + L">";
            sClosing = L"</" + sName + L">" + sClosing;
        }
        EXPECT_EQ(visiblePart(1, sOpen + L"xy"), sOpen + L"x" + sClosing + L"...") << nTags;
        EXPECT_EQ(visiblePart(2, sOpen + L"x" + sClosing + L"yz"), sOpen + L"x" + sClosing + L"y...") << nTags;
    }
}

TEST(TruncateFormatter, OpensAndClosesTagsAgainAndAgainWhereTheFirst32End)
{
    String sHtml;
    for (int n = 0; n < 30; ++n)
        sHtml += L"<b>";
    for (int n = 0; n < 1000; ++n)
        sHtml += L"<i><u><s><q>x</q></s></u></i>";
    EXPECT_EQ(visiblePart(1000, sHtml), HtmlReference::visiblePart(sHtml, 1000).first);
}

TEST(TruncateFormatter, AllocatesNothingForUpTo32OpenTags)
{
    String sHtml;
    for (int n = 0; n < 32; ++n)
        sHtml += L"<b>a &amp; b ";
    for (const Types::OutputType eOutput : {Types::kText, Types::kHTML})
    {
        StringBufferTemplate<wchar_t, 4096> tBuffer;
        const AllocationCounter tCounter;
        TruncateFormatter(150, eOutput).formatValue(tBuffer, sHtml.c_str());
        TruncateFormatter(10000, eOutput).formatValue(tBuffer, sHtml.c_str());
        EXPECT_EQ(tCounter.count(), 0u);
    }
}

TEST(TruncateFormatter, LeavesTheBufferAsItWasWhereMemoryRunsOut)
{
    for (const Types::OutputType eOutput : {Types::kText, Types::kHTML})
    {
        for (const unsigned long nLimit : {70UL, 200UL})
        {
            StringBufferTemplate<wchar_t, 16> tBuffer;
            tBuffer.append(L"kept");
            LimitedAllocator tAllocator(64 * sizeof(wchar_t));  // one growth is granted
            EXPECT_THROW(TruncateFormatter(nLimit, eOutput)
                             .formatValue(tBuffer,
                                          L"<b>a text &amp; more</b> that is <i>longer</i> than what fits into "
                                          L"the buffer, in any of its forms and sizes"),
                         std::bad_alloc);
            EXPECT_EQ(tBuffer.view(), L"kept");
        }
    }
}

TEST(TruncateFormatter, AgreesWithThePlainWalkOnRandomMarkup)
{
    std::mt19937 tRandom(20260523);
    for (int nRound = 0; nRound < 8000; ++nRound)
    {
        const String sHtml = randomMarkup(tRandom, 16);
        const unsigned long nLimit = tRandom() % 60;
        ASSERT_EQ(format(nLimit, Types::kHTML, sHtml), HtmlReference::cutHtml(sHtml, nLimit)) << "round " << nRound;
        ASSERT_EQ(format(nLimit, Types::kText, sHtml), HtmlReference::cutText(sHtml, nLimit)) << "round " << nRound;
        ASSERT_LE(HtmlReference::visiblePart(sHtml, nLimit).second, nLimit) << "round " << nRound;
    }
}

}  // namespace
}  // namespace tov

#include <gtest/gtest.h>

#include <new>

#include "project/webformat/htmlfilter.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/htmlreference.h"
#include "support/limitedallocator.h"
#include "support/markuptext.h"
#include "webformat/textformatter.h"

namespace tov {
namespace {

struct Row
{
    int nLine;
    const wchar_t* pInput;
    const wchar_t* pExpected;
};

String withoutHtml(const String& sHtml)
{
    StringBufferTemplate<wchar_t, 64> tBuffer;
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, sHtml.c_str());
    return tBuffer.toString();
}

void expectTexts(const Row& tRow)
{
    EXPECT_EQ(withoutHtml(tRow.pInput), tRow.pExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(HtmlReference::text(tRow.pInput), tRow.pExpected) << "reference, row at line " << tRow.nLine;
}

TEST(HtmlRemoval, DropsTagsAndKeepsTheTextBetweenThem)
{
    constexpr Row kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"plain text of more than eight characters", L"plain text of more than eight characters"},
        {__LINE__, L"<b>x</b>", L"x"},
        {__LINE__, L"a<br>b<br/>c", L"abc"},
        {__LINE__, L"<a href=\"x\" class='y'>link</a>!", L"link!"},
        {__LINE__, L"1 < 2 > 3", L"1  3"},  // whatever follows a "<" is a tag
        {__LINE__, L"<>x", L"x"},
        {__LINE__, L"a > b", L"a > b"},
        {__LINE__, L"<!-- a > b -->", L" b -->"},  // kept: a comment ends at its first ">" as all tags do
        {__LINE__, L"<a title='>'>x", L"'>x"},     // kept: quotes do not hide a ">"
        {__LINE__, L"<<b>x", L"x"},
        {__LINE__, L"\x4E2D<b>\x1F600</b>\n", L"\x4E2D\x1F600\n"},
    };
    for (const Row& tRow : kRows)
        expectTexts(tRow);
}

TEST(HtmlRemoval, DropsTheRestBehindATagThatNothingCloses)
{
    constexpr Row kRows[] = {
        {__LINE__, L"x<b", L"x"},   {__LINE__, L"x<", L"x"},       {__LINE__, L"x</", L"x"},
        {__LINE__, L"<a<a<a", L""}, {__LINE__, L"x<script", L"x"}, {__LINE__, L"x<b &amp; y", L"x"},
    };
    for (const Row& tRow : kRows)
        expectTexts(tRow);
}

TEST(HtmlRemoval, DropsHiddenElementsWithAllThatTheyHold)
{
    constexpr Row kRows[] = {
        {__LINE__, L"x<script>y</script>z", L"xz"},
        {__LINE__, L"x<object>y</object>z", L"xz"},
        {__LINE__, L"x<style>y</style>z", L"xz"},
        {__LINE__, L"x<embed>y</embed>z", L"xz"},
        {__LINE__, L"x<SCRIPT>y</Script>z", L"xz"},
        {__LINE__, L"x<script></script>z", L"xz"},
        {__LINE__, L"x<script type=\"a\">y</script\n x>z", L"xz"},
        {__LINE__, L"x<script\ty>y</script/>z", L"xz"},
        {__LINE__, L"x<script>a &amp; b</script>&amp;", L"x&"},
        {__LINE__, L"x<script>if (a<b) s = '</b>';</script>z", L"xz"},
        {__LINE__, L"x<script><</script>z", L"xz"},  // a "<" inside hides no closing tag
        {__LINE__, L"x<script>'<b </script>z", L"xz"},
        {__LINE__, L"x<style></script></style>z", L"xz"},              // only the own name closes
        {__LINE__, L"x<object><object></object>y</object>z", L"xyz"},  // the first closing tag, not the matching one
        {__LINE__, L"x<object><script></object>y", L"xy"},
        {__LINE__, L"x<script>y", L"x"},
        {__LINE__, L"x<script>y</script", L"x"},
        {__LINE__, L"x<script>y</scripts>z", L"x"},
        {__LINE__, L"x<script>y</ script>z", L"x"},  // the name follows directly
    };
    for (const Row& tRow : kRows)
        expectTexts(tRow);
}

TEST(HtmlRemoval, HidesNothingBehindOtherNamesClosingTagsAndSelfClosingTags)
{
    constexpr Row kRows[] = {
        {__LINE__, L"x<SCRIPT/>y", L"xy"},     {__LINE__, L"x<script />y", L"xy"},
        {__LINE__, L"x<script / \n>y", L"xy"}, {__LINE__, L"x<script a=b/>y", L"xy"},
        {__LINE__, L"x<script/ a>y", L"x"},  // a "/" elsewhere closes nothing
        {__LINE__, L"x</script>y", L"xy"},     {__LINE__, L"x<scripts>y", L"xy"},
        {__LINE__, L"x<scrip>y", L"xy"},       {__LINE__, L"x< script>y", L"xy"},
        {__LINE__, L"x<//script>y", L"xy"},    {__LINE__, L"x<script<b>y", L"xy"},
        {__LINE__, L"x<iframe>y", L"xy"},
    };
    for (const Row& tRow : kRows)
        expectTexts(tRow);
}

TEST(HtmlRemoval, DecodesTheSixEntitiesOnce)
{
    constexpr Row kRows[] = {
        {__LINE__, L"a&nbsp;b", L"a b"},  // kept: an ordinary blank
        {__LINE__, L"&lt;&gt;&apos;&quot;&amp;", L"<>'\"&"},
        {__LINE__, L"&LT;&Gt;&aPOS;&QUOT;&AMP;&NBSP;", L"<>'\"& "},
        {__LINE__, L"&amp;lt;", L"&lt;"},
        {__LINE__, L"&lt;b&gt;x", L"<b>x"},  // a decoded "<" starts no tag
        {__LINE__, L"&&amp;", L"&&"},
        {__LINE__, L"a & b", L"a & b"},
        {__LINE__, L"&amp", L"&amp"},
        {__LINE__, L"&am;&ampx;", L"&am;&ampx;"},
        {__LINE__, L"&;", L"&;"},
        {__LINE__, L"&", L"&"},
        {__LINE__, L"&#39;&eacute;", L"&#39;&eacute;"},
        {__LINE__, L"& amp;", L"& amp;"},
        {__LINE__, L"&lt", L"&lt"},
        {__LINE__, L"&<b>lt;", L"&lt;"},
    };
    for (const Row& tRow : kRows)
        expectTexts(tRow);
}

TEST(HtmlRemoval, FindsMarkupAtEveryPlaceOfABlock)
{
    for (std::size_t nBefore = 0; nBefore < 40; ++nBefore)
    {
        for (const wchar_t* pMarkup : {L"<b>", L"&amp;"})
        {
            const String sBefore(nBefore, L'x');
            const String sBehind(17, L'y');
            const String sShown = pMarkup[0] == L'&' ? L"&" : L"";
            EXPECT_EQ(withoutHtml(sBefore + pMarkup + sBehind), sBefore + sShown + sBehind) << nBefore;
        }
    }
}

TEST(HtmlRemoval, AppendsToWhatStandsInTheBufferAndTakesNullForEmpty)
{
    StringBufferTemplate<wchar_t, 16> tBuffer;
    tBuffer.append(L"before ");
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, nullptr);
    EXPECT_EQ(tBuffer.view(), L"before ");
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, L"<b>x</b>");
    EXPECT_EQ(tBuffer.view(), L"before x");
}

TEST(HtmlRemoval, AllocatesNothing)
{
    const String sHtml = L"<p>a &amp; b</p><script>x</script>and more text of some length</p>";
    StringBufferTemplate<wchar_t, 128> tBuffer;
    const AllocationCounter tCounter;
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, sHtml.c_str());
    EXPECT_EQ(tCounter.count(), 0u);
    EXPECT_EQ(tBuffer.view(), L"a & band more text of some length");
}

TEST(HtmlRemoval, LeavesTheBufferAsItWasWhereMemoryRunsOut)
{
    StringBufferTemplate<wchar_t, 16> tBuffer;
    tBuffer.append(L"kept");
    LimitedAllocator tAllocator(0);
    EXPECT_THROW(WebTextFormatter::writeToBufferRemoveHtml(tBuffer, L"fits<b>does not fit any more</b>"),
                 std::bad_alloc);
    EXPECT_EQ(tBuffer.view(), L"kept");
}

TEST(HtmlRemoval, AgreesWithThePlainWalkOnRandomMarkup)
{
    std::mt19937 tRandom(20260521);
    for (int nRound = 0; nRound < 8000; ++nRound)
    {
        const String sHtml = randomMarkup(tRandom, 24);
        ASSERT_EQ(withoutHtml(sHtml), HtmlReference::text(sHtml)) << "round " << nRound;
    }
}

struct TagRow
{
    int nLine;
    const wchar_t* pInput;
    const wchar_t* pExpected;
    bool bConverted;
};

constexpr TagRow kTagRows[] = {
    {__LINE__, L"", L"", false},
    {__LINE__, L"no tag", L"no tag", false},
    {__LINE__, L"[b]x[/b]", L"<b>x</b>", true},
    {__LINE__, L"[i]x[/i][u]y[/u]", L"<i>x</i><u>y</u>", true},
    {__LINE__, L"x[br/]y", L"x<br/>y", true},
    {__LINE__, L"[B][/B][I][/I][U][/U][BR/][bR/]", L"<B></B><I></I><U></U><BR/><bR/>", true},
    {__LINE__, L"[b]", L"<b>", true},  // nothing has to be closed
    {__LINE__, L"[/i]", L"</i>", true},
    {__LINE__, L"[br]", L"[br]", false},
    {__LINE__, L"[/br]", L"[/br]", false},
    {__LINE__, L"[/br/]", L"[/br/]", false},
    {__LINE__, L"[b/]", L"[b/]", false},
    {__LINE__, L"[s][bb][][ b][b ]", L"[s][bb][][ b][b ]", false},
    {__LINE__, L"[b", L"[b", false},
    {__LINE__, L"[", L"[", false},
    {__LINE__, L"[b[b[b", L"[b[b[b", false},
    {__LINE__, L"[[b]]", L"[<b>]", true},
    {__LINE__, L"[x][u]", L"[x]<u>", true},
    {__LINE__, L"<b>x</b>", L"<b>x</b>", false},  // a tag that is one already does not count
    {__LINE__, L"<b>[i]", L"<b><i>", true},
};

TEST(BracketTags, BecomeHtmlTagsAndEverythingElseStays)
{
    for (const TagRow& tRow : kTagRows)
    {
        String sText = tRow.pInput;
        EXPECT_EQ(WebTextFormatter::ConvertAnswersTagsToHTMLTags(sText), tRow.bConverted)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(sText, tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

String readInRuns(const String& sText, bool& bConverted)
{
    String sResult;
    BracketTagReader tReader(sText);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        sResult += sRun;
    bConverted = tReader.hasConverted();
    return sResult;
}

TEST(BracketTags, ReadInRunsAreTheConvertedText)
{
    for (const TagRow& tRow : kTagRows)
    {
        bool bConverted = false;
        EXPECT_EQ(readInRuns(tRow.pInput, bConverted), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(bConverted, tRow.bConverted) << "row at line " << tRow.nLine;
    }
}

TEST(BracketTags, AgreeWithThePlainWalkOnRandomMarkup)
{
    std::mt19937 tRandom(20260522);
    for (int nRound = 0; nRound < 5000; ++nRound)
    {
        const String sText = randomMarkup(tRandom, 24);
        String sConverted = sText;
        bool bReader = false;
        const bool bConverted = WebTextFormatter::ConvertAnswersTagsToHTMLTags(sConverted);
        ASSERT_EQ(std::make_pair(bConverted, sConverted), HtmlReference::withHtmlTags(sText)) << "round " << nRound;
        ASSERT_EQ(readInRuns(sText, bReader), sConverted) << "round " << nRound;
        ASSERT_EQ(bReader, bConverted) << "round " << nRound;
    }
}

TEST(BracketTags, AreReplacedInPlaceWithoutAllocations)
{
    String sText = L"[b]a text that is longer than what a string holds inline[/b]";
    const AllocationCounter tCounter;
    EXPECT_TRUE(WebTextFormatter::ConvertAnswersTagsToHTMLTags(sText));
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(WholeTextWriter, TakesAllBackWhereAPieceDoesNotFit)
{
    const CollectedAssertions tAssertions;
    const volatile std::size_t nTooMany = std::size_t{1} << 31;  // refused before they are read, which g++ cannot know
    StringBufferTemplate<wchar_t, 16> tBuffer;
    tBuffer.append(L"kept");
    {
        WholeTextWriter tWriter(tBuffer);
        tWriter.write(L"a");
        EXPECT_TRUE(tWriter.fits());
        tWriter.write(std::wstring_view(L"", nTooMany));
        EXPECT_FALSE(tWriter.fits());
        tWriter.write(L"b");
        tWriter.write(L"c", W2WEncodingSGML(W2WEncodingSGML::kHTML));
        tWriter.finish();
    }
    EXPECT_EQ(tBuffer.view(), L"kept");
    EXPECT_EQ(tAssertions.count(), 1u);
}

}  // namespace
}  // namespace tov

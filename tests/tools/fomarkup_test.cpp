#include "tools/webformat/fomarkup.h"

#include <gtest/gtest.h>

#include "webformat/valueformatter.h"

namespace tov {

namespace {

// What a reader hands over, in a form that a row can hold: the letters of a run's style in front of "{text}", "/" for a
// line break, "[source 16x8 alternative]" for an image.
class Recorder final : public FoContentSink
{
public:
    void text(std::wstring_view sText, const FoStyle& tStyle) override
    {
        m_sResult += lettersOf(tStyle);
        m_sResult.append(L"{").append(sText).append(L"}");
    }
    void image(const FoImage& tImage, const FoStyle& tStyle) override
    {
        m_sResult += lettersOf(tStyle);
        m_sResult += L"[" + tImage.sSource + L" " + std::to_wstring(tImage.nWidth) + L"x" +
                     std::to_wstring(tImage.nHeight) + L" " + tImage.sAlternative + L"]";
    }
    void lineBreak() override { m_sResult += L"/"; }

    const String& result() const { return m_sResult; }

private:
    static String lettersOf(const FoStyle& tStyle)
    {
        String sLetters;
        sLetters += tStyle.bBold ? L"b" : L"";
        sLetters += tStyle.bItalic ? L"i" : L"";
        sLetters += tStyle.bUnderline ? L"u" : L"";
        sLetters += tStyle.bRed ? L"r" : L"";
        sLetters += tStyle.bPreformatted ? L"p" : L"";
        return tStyle.sTarget.empty() ? sLetters : sLetters + L"@" + tStyle.sTarget + L"@";
    }

    String m_sResult;
};

String fragment(std::wstring_view sHtml)
{
    Recorder tRecorder;
    readHtmlFragment(sHtml, tRecorder);
    return tRecorder.result();
}

String cell(std::wstring_view sCell)
{
    Recorder tRecorder;
    readFoCell(sCell, tRecorder);
    return tRecorder.result();
}

// A value through a text pattern for the PDF, and what becomes of it.
String formatted(const wchar_t* pPattern, const wchar_t* pValue)
{
    const WebValueFormatterHandle hFormatter =
        WebValueFormatter::GetCustomFormatter(SQLDataType(SQLDataType::kVarChar), pPattern, Locale::kUSA,
                                              ValueFormatterTypes::kPDF, KTWUILanguage::kDefaultLanguage);
    return cell(hFormatter->formatAsString(pValue));
}

struct Row
{
    int nLine;
    const wchar_t* pText;
    const wchar_t* pExpected;
};

struct PatternRow
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pValue;
    const wchar_t* pExpected;
};

}  // namespace

TEST(FoMarkup, TurnsElementsIntoTheStyleOfTheirText)
{
    constexpr Row kRows[] = {
        {__LINE__, L"plain", L"{plain}"},
        {__LINE__, L"a<b>c</b>d", L"{a}b{c}{d}"},
        {__LINE__, L"<strong>a</strong><em>b</em><u>c</u>", L"b{a}i{b}u{c}"},
        {__LINE__, L"<b>a<i>b<u>c</u></i></b>", L"b{a}bi{b}biu{c}"},
        {__LINE__, L"<b><b>a</b>b</b>c", L"b{ab}{c}"},
        {__LINE__, L"<B>a</B>", L"b{a}"},
        {__LINE__, L"a<br>b<br/>c", L"{a}/{b}/{c}"},
        {__LINE__, L"<span class=\"x\">a</span><font color=red>b</font>", L"{ab}"},
        {__LINE__, L"a \n\t b", L"{a b}"},
        {__LINE__, L"&lt;b&gt;&amp;lt;", L"{<b>&lt;}"},
        {__LINE__, L"a&nbsp;b", L"{a\u00A0b}"},
        {__LINE__, L"<fo:inline color=\"red\">a</fo:inline>", L"{a}"},  // FO is the formatters' own, never a value's
        {__LINE__, L"<lumfo:html2fo src=\"a\"/>b", L"{b}"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(fragment(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, ReadsWhatIsBrokenAsFarAsItGoes)
{
    constexpr Row kRows[] = {
        {__LINE__, L"<b>a<i>b</b>c</i>d", L"b{a}bi{b}i{c}{d}"},
        {__LINE__, L"</b></i></u></a></pre>a", L"{a}"},
        {__LINE__, L"<b>a", L"b{a}"},
        {__LINE__, L"a<b", L"{a}"},
        {__LINE__, L"a<b c=\"d>e</b>", L"{a}"},
        {__LINE__, L"1 < 2 > 0", L"{1 < 2 > 0}"},
        {__LINE__, L"a<!-- <b> -->c", L"{ac}"},
        {__LINE__, L"a<script>alert('<b>')</script>b", L"{ab}"},
        {__LINE__, L"a<STYLE>b</style >c<object><embed>d</embed></object>e", L"{ace}"},
        {__LINE__, L"a<script>if (b<c) d('</scripts>');</SCRIPT>e", L"{ae}"},
        {__LINE__, L"a<style>b<!-- c </style>d<script>e</script", L"{ad}"},
        {__LINE__, L"a<script/>b", L"{ab}"},
        {__LINE__, L"a<script>b</b>c", L"{a}"},
        {__LINE__, L"</script>a", L"{a}"},
        {__LINE__, L"", L""},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(fragment(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, LetsLinksLeadToTheWebAndToMailOnly)
{
    constexpr Row kRows[] = {
        {__LINE__, L"<a href=\"http://a.b/c\">d</a>e", L"@http://a.b/c@{d}{e}"},
        {__LINE__, L"<a href='HTTPS://a.b/?c=d&amp;e=f'>g</a>", L"@HTTPS://a.b/?c=d&e=f@{g}"},
        {__LINE__, L"<a href=mailto:a@b.c>d</a>", L"@mailto:a@b.c@{d}"},
        {__LINE__, L"<a href=\" \nhttp://a\t.b\r\n \">c</a>", L"@http://a.b@{c}"},
        {__LINE__, L"<b><a href=\"http://a\">b</a></b>", L"b@http://a@{b}"},
        {__LINE__, L"<a href=\"http://a\">b", L"@http://a@{b}"},
        {__LINE__, L"<a href=\"javascript:alert(1)\">a</a>", L"{a}"},
        {__LINE__, L"<a href=\"java\nscript:alert(1)\">a</a>", L"{a}"},
        {__LINE__, L"<a href=\"file:///etc/passwd\">a</a>", L"{a}"},
        {__LINE__, L"<a href=\"data:text/html,a\">a</a>", L"{a}"},
        {__LINE__, L"<a href=\"/relative\">a</a>", L"{a}"},
        {__LINE__, L"<a href=\"http://\">a</a><a>b</a><a href=\"\">c</a>", L"{a}{b}{c}"},
        {__LINE__, L"<a name=\"x\" href=\"http://a\" href=\"http://b\">c</a>", L"@http://a@{c}"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(fragment(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, DropsLinksThatAreTooLongToBeRepeated)
{
    const String sLongest = L"https://a/" + String(2038, L'b');
    EXPECT_EQ(fragment(L"<a href=\"" + sLongest + L"\">c</a>"), L"@" + sLongest + L"@{c}");
    EXPECT_EQ(fragment(L"<a href=\"" + sLongest + L"b\">c</a>"), L"{c}");
}

TEST(FoMarkup, TakesImagesFromTheWebAndFromDataOnly)
{
    constexpr Row kRows[] = {
        {__LINE__, L"a<img src=\"http://a/b.png\" width=16 height=\"8\" alt=\"c\">d", L"{a}[http://a/b.png 16x8 c]{d}"},
        {__LINE__, L"<img width=16 src=\"data:image/png;base64,AAAA\">", L"[data:image/png;base64,AAAA 16x0 ]"},
        {__LINE__, L"<img src=\"http://a\" width=0 height=99999>", L"[http://a 0x0 ]"},
        {__LINE__, L"<img src=\"http://a\" width=12px height=-5>", L"[http://a 12x0 ]"},
        {__LINE__, L"<a href=\"http://a\"><img src=\"http://b\"></a>", L"@http://a@[http://b 0x0 ]"},
        {__LINE__, L"<img src=\"file:///etc/passwd\" alt=\"a picture\">", L"{a picture}"},
        {__LINE__, L"<img src=\"data:text/html,a\">b", L"{b}"},
        {__LINE__, L"<img src=\"x.png\" alt=\"&lt;b&gt;\">", L"{<b>}"},
        {__LINE__, L"</img>", L""},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(fragment(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, StartsBlocksOnALineOfTheirOwnAndKeepsPreformattedText)
{
    constexpr Row kRows[] = {
        {__LINE__, L"<p>a</p><p>b</p>", L"{a}/{b}"},
        {__LINE__, L"a<div>b</div>c", L"{a}/{b}/{c}"},
        {__LINE__, L"<ul>\n <li>a</li>\n <li>b</li>\n</ul>", L"{a}/{b}"},
        {__LINE__, L"<p>a<br></p><p>b</p>", L"{a}/{b}"},
        {__LINE__, L"<pre>a  b\n c</pre>d", L"p{a  b}/p{ c}/{d}"},
        {__LINE__, L"<pre>a", L"p{a}"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(fragment(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, ReadsTheFormattersOwnElementsAroundTheWrapper)
{
    constexpr Row kRows[] = {
        {__LINE__, L"a &lt; b &amp;amp; c", L"{a < b &amp; c}"},
        {__LINE__, L"<fo:inline color=\"red\">(5.00)</fo:inline>", L"r{(5.00)}"},
        {__LINE__, L"a<fo:inline color=\"red\">b<fo:inline>c</fo:inline>d</fo:inline>e", L"{a}r{b}r{c}r{d}{e}"},
        {__LINE__, L"</fo:inline>a", L"{a}"},
        {__LINE__, L"a\nb\r\nc", L"{a}/{b}/{c}"},
        {__LINE__, L"<lumfo:html2fo src=\"a &lt;b&gt;c&lt;/b&gt;\"/>", L"{a }b{c}"},
        {__LINE__, L"a<lumfo:html2fo src=\"b\"/>c", L"{a}{b}{c}"},
        {__LINE__, L"<lumfo:html2fo src=\"", L""},
        {__LINE__, L"<lumfo:html2fo src=\"a &lt;i&gt;b", L"{a }i{b}"},
        {__LINE__, L"<lumfo:html2fo src=\"&amp;lt;b&amp;gt;\"/>", L"{<b>}"},
        {__LINE__, L"<fo:external-graphic src=\"url('http://a/b')\" width=\"16\"  height=\"8\" />",
         L"[http://a/b 16x8 ]"},
        {__LINE__, L"<fo:external-graphic src=\"url('file:///a')\"/>", L""},
        {__LINE__, L"<fo:external-graphic src=\"url('\"/><fo:external-graphic/>a", L"{a}"},
        {__LINE__, L"<lumfo:html2fo src=\"a<fo:external-graphic src=\"url('http://b')\"/>c\"/>",
         L"{a}[http://b 0x0 ]{c}"},
        {__LINE__, L"<lumfo:html2fo src=\"<fo:external-graphic src=\"url('http://b')\"/>", L"[http://b 0x0 ]"},
        {__LINE__, L"5<i>&", L"{5}i{&}"},  // what a numeric pattern quotes is its author's own
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(cell(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, ResolvesWhatTextPatternsWriteForThePdf)
{
    constexpr PatternRow kRows[] = {
        {__LINE__, L"@", L"a<b>c</b>", L"{a<b>c</b>}"},
        {__LINE__, L"@[html]@H", L"a<b>c</b>&amp;d", L"{a}b{c}{&d}"},
        {__LINE__, L"@[html]@H", L"[b]a[/b]c[br/]d", L"b{a}{c}/{d}"},
        {__LINE__, L"@[html]@H", L"\"/></fo:block><script>a</script>b", L"{\"/>b}"},
        {__LINE__, L"@[html]@N", L"a  b", L"p{a  b}"},
        {__LINE__, L"@[html]\"<a href=\\\"\"@H\"\\\">\"@\"</a>\"", L"http://a/?b&c", L"@http://a/?b&c@{http://a/?b&c}"},
        {__LINE__, L"@[html]\"<a href=\\\"mailto:\"@H\"\\\">\"@\"</a>\"", L"a@b.c", L"@mailto:a@b.c@{a@b.c}"},
        {__LINE__, L"@[html]\"<a href=\\\"\"@H\"\\\">\"@\"</a>\"", L"javascript:a", L"{javascript:a}"},
        {__LINE__, L"@[html]\"<img src=\\\"\"@H\"\\\">\"", L"http://a", L"[http://a 0x0 ]"},
        {__LINE__, L"[pdf]@I(16,8)", L"http://a/'b", L"[http://a/'b 16x8 ]"},
        {__LINE__, L"[html]@I(16)", L"http://a", L"[http://a 16x0 ]"},
        {__LINE__, L"[html]@T(5)", L"abcdefgh", L""},  // truncated text has no form for paper
        {__LINE__, L"[html]\"a \"@T(5)\" b\"", L"abcdefgh", L"{a}"},
        {__LINE__, L"@T(5)[html]@T(5)[pdf]@", L"abc<defgh", L"{abc<defgh}"},
    };
    for (const PatternRow& tRow : kRows)
        EXPECT_EQ(formatted(tRow.pPattern, tRow.pValue), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoMarkup, ReadsAnyDepth)
{
    String sOpen;
    String sInlines;
    for (int nDepth = 0; nDepth < 100000; ++nDepth)
    {
        sOpen += L"<b><i><div>";
        sInlines += L"<fo:inline>";
    }
    EXPECT_EQ(fragment(sOpen + L"a"), L"bi{a}");
    EXPECT_EQ(cell(L"<fo:inline color=\"red\">" + sInlines + L"a"), L"r{a}");
}

}  // namespace tov

// Texts worked out by hand from the rules of text templates, cuts, compound formats, SQL literals, currencies and older
// formats, before anything was run: the rules met in combination, where each alone has its rows elsewhere.

#include <gtest/gtest.h>

#include <span>

#include "definitiontesting.h"
#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "valuetesting.h"
#include "webformat/compoundformatter.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/drillvalueformatters.h"
#include "webformat/textformatter.h"
#include "webformat/timezoneresolver.h"
#include "webformat/truncateformatter.h"

namespace tov {
namespace {

using enum ValueFormatterTypes::OutputType;
using OutputType = ValueFormatterTypes::OutputType;

struct TextRow
{
    int nLine;
    const wchar_t* pTemplate;
    const wchar_t* pValue;  // null for a null value
    const wchar_t* pExpected;
    OutputType eOutput = kText;
};

WebValueFormatterHandle templateFormatter(const wchar_t* pTemplate, OutputType eOutput)
{
    return WebTextFormatter::ParseCustomFormat(pTemplate, Locale::kUSA, eOutput);
}

void expectTexts(std::span<const TextRow> tRows)
{
    for (const TextRow& tRow : tRows)
        EXPECT_EQ(templateFormatter(tRow.pTemplate, tRow.eOutput)->formatAsString(tRow.pValue), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

constexpr TextRow kSections[] = {
    {__LINE__, L"\"a[html]b\"@", L"v", L"a"},  // quotes do not hide a tag: a quote that runs to the section's end
    {__LINE__, L"\"a[html]b\"@", L"v", L"b@", kHTML},
    {__LINE__, L"a[html]b[text]c@", L"x", L"acx"},  // sections of one output are joined
    {__LINE__, L"a[html]b[TEXT]c@", L"x", L"b", kHTML},
    {__LINE__, L"x[pdf]P@[html]H@", L"v", L"<lumfo:html2fo src=\"Pvv\"/>", kPDF},  // joined, too: "P@H@" has an "@H"
    {__LINE__, L"[html]H@[text]T@", L"<", L"T&lt;", kXLSX},  // only a last section of HTML serves documents
    {__LINE__, L"abc[html]", L"<", L"&lt;", kHTML},          // an empty section is the value as text
    {__LINE__, L"abc[html]", L"<", L"&lt;", kPDF},           // and has no wrapper
    {__LINE__, L"a[java]\"<\"@", L"v", L"<v", kJavaScript},  // its own text stays, in quotes as well
    {__LINE__, L"a<[java]@", L"v", L"a&lt;", kXML},
    {__LINE__, L"[xml]<i>@</i>", L"a<", L"<i>a&lt;</i>", kXML},
    {__LINE__, L"[foo", L"v", L""},
};

TEST(TextTemplatesAsWritten, SectionsAreChosenBeforeQuotesAreRead)
{
    expectTexts(kSections);
}

constexpr TextRow kTokens[] = {
    {__LINE__, L"\"a\\\"b\\\\c\" @", L"v", L"a\"b\\c v"},
    {__LINE__, L"\"a\\", L"v", L"a"},
    {__LINE__, L"@I (7,9)!", L"u", L"<fo:external-graphic src=\"url('u')\" width=\"7\"  height=\"9\" />!", kPDF},
    {__LINE__, L"@I(7", L"u", L"<fo:external-graphic src=\"url('u')\"/>(7", kPDF},
    {__LINE__, L"@I(0,0)@I(,5)", L"u",
     L"<fo:external-graphic src=\"url('u')\"/><fo:external-graphic src=\"url('u')\" height=\"5\" />", kXLSX},
    {__LINE__, L"@I(-5,1,2)", L"u", L"<fo:external-graphic src=\"url('u')\" height=\"1\" />", kPDF},  // no signs
    {__LINE__, L"@I(1,2)", L"a'b\"&<",
     L"<fo:external-graphic src=\"url('a&#39;b&quot;&amp;&lt;')\" width=\"1\"  height=\"2\" />", kPDF},
    {__LINE__, L"pre @T(3)post", L"abcdef", L"pre abc..."},
    {__LINE__, L"@T(3,0)", L"abcdef", L"abc..."},                                      // what was read before counts
    {__LINE__, L"@T (5)", L"abcdefghijklmnopqrstuvwxyz", L"abcdefghijklmnopqrst..."},  // a blank ends the reference
    {__LINE__, L"@THN(5)", L"abcdefghijklmnopqrstuvwxyz", L"abcdefghijklmnopqrst..."},
    {__LINE__, L"a<@T(9)", L"abc", L"a&lt;<span title=\"abc\">abc</span>", kHTML},
};

TEST(TextTemplatesAsWritten, QuotesBackslashesAndListsEndWhereTheRulesEndThem)
{
    expectTexts(kTokens);
}

constexpr TextRow kDocuments[] = {
    {__LINE__, L"@[html]@H;none", L"x", L"x;none", kHTML},
    {__LINE__, L"@[html]@H;<n>;third", L"", L"&lt;n&gt;", kXLSX},
    {__LINE__, L"@[html]@H;none;third", L"x", L"<lumfo:html2fo src=\"x\"/>", kPDF},
    {__LINE__, L"@[html]a&NBSP;b;c", L"x", L"<lumfo:html2fo src=\"a&amp;NBSP;b\"/>", kPDF},
    // "&nbsp " is no entity, and the semicolon of another one ends the section.
    {__LINE__, L"@[html]&nbsp &amp;@;z", L"x", L"<lumfo:html2fo src=\"&amp;nbsp &amp;amp\"/>", kPDF},
    {__LINE__, L"@[html]&nbsp;;\"n;\"\\;", nullptr, L"n;;", kPDF},
    {__LINE__, L"@[html]@N!", L"a b", L"<lumfo:html2fo src=\"a b!\"/>", kPDF},  // no "pre": another format
    {__LINE__, L"@[html]a@T(3)x", L"v", L"<lumfo:html2fo src=\"a", kPDF},       // kept: nothing follows a cut
    {__LINE__, L"@[html]@T(3)x;n", nullptr, L"n", kPDF},
};

TEST(TextTemplatesAsWritten, DocumentsWrapHtmlAndTakeNullsFromBehindTheSemicolon)
{
    expectTexts(kDocuments);
}

constexpr TextRow kBracketTags[] = {
    {__LINE__, L"@N", L"[b]a b[/b]", L"[b]a&nbsp;b[/b]", kHTML},
    {__LINE__, L"@J", L"[b]a[/b]", L"&lt;b&gt;a&lt;/b&gt;", kXLSX},
    {__LINE__, L"@I(5)", L"[b]a", L"&lt;b&gt;a", kPDF},  // a converted value is HTML and no address
    {__LINE__, L"@I(5)", L"[bx]", L"<fo:external-graphic src=\"url('[bx]')\" width=\"5\" />", kPDF},
    {__LINE__, L"@H", L"[b]a[/b]'", L"[b]a[/b]\\u0027", kJavaScript},
    {__LINE__, L"@", L"[b]a'", L"[b]a''", kSQLLiteral},
    {__LINE__, L"@H|@", L"[br/]<br/>", L"[br/]|[br/]<br/>"},
    {__LINE__, L"@", L"[[b]][U][b ][br][/br/]", L"[&lt;b&gt;]&lt;U&gt;[b ][br][/br/]", kPDF},
    {__LINE__, L"@[html]<i>@H", L"[i]", L"<lumfo:html2fo src=\"&lt;i&gt;&lt;i&gt;\"/>", kXLSX},
};

TEST(TextTemplatesAsWritten, BracketTagsBecomeTagsInDocumentsOnly)
{
    expectTexts(kBracketTags);
}

struct HtmlRow
{
    int nLine;
    const wchar_t* pHtml;
    const wchar_t* pExpected;
};

constexpr HtmlRow kHtml[] = {
    {__LINE__, L"<style><script></style>x</script>y", L"xy"},
    {__LINE__, L"<style>a<b>c</b></STYLE >d", L"d"},
    {__LINE__, L"<scripted>a</scripted>< script>b", L"ab"},  // the name follows the bracket and is whole
    {__LINE__, L"<script src=\"a\" / >b", L"b"},
    {__LINE__, L"<script>if(a<b)x</script>z", L"z"},  // the closing tag counts, whatever stands before it
    {__LINE__, L"a<object>&lt;</object >b", L"ab"},
    {__LINE__, L"&LT;b&Gt; &apos;&quot;", L"<b> '\""},
    {__LINE__, L"&&lt; &foo; &; &lt", L"&< &foo; &; &lt"},
    {__LINE__, L"&nb<b>sp;", L"&nbsp;"},  // a tag inside the name: it was no entity
    {__LINE__, L"&nbsp;&#39;&#160;", L" &#39;&#160;"},
};

TEST(HtmlAsText, TagsEntitiesAndHiddenElementsMeet)
{
    for (const HtmlRow& tRow : kHtml)
        EXPECT_EQ(templateFormatter(L"@H", kText)->formatAsString(tRow.pHtml), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

// An HTML value that reaches the limit: what is seen of it, and the whole text of the element that expands it.
struct CutRow
{
    int nLine;
    unsigned long nLimit;
    const wchar_t* pHtml;
    const wchar_t* pSeen;
    const wchar_t* pFullText;
};

constexpr CutRow kCuts[] = {
    {__LINE__, 0, L"", L"...", L""},
    {__LINE__, 4, L"<b>abc</b>", L"<b>abc</b>...", L"abc"},
    // A tag with attributes is closed by none of the value's own tags and with its attributes at the end.
    {__LINE__, 4, L"<a href=\"x\">ab</a>", L"<a href=\"x\">ab&lt;/</a href=\"x\">...", L"ab"},
    {__LINE__, 3, L"a&b;cd", L"a&b;c...", L"a&amp;b;cd"},  // six characters make an entity, whatever its name
    {__LINE__, 3, L"& b;c", L"& b;c...", L"&amp; b;c"},
    {__LINE__, 3, L"&acirc;x", L"&amp;ac...", L"&amp;acirc;x"},  // seven do not
    {__LINE__, 2, L"a&", L"a&amp;...", L"a&amp;"},
    {__LINE__, 3, L"a<br>bcd", L"a<br>bc</br>...", L"abcd"},
    {__LINE__, 3, L"a<br/>bcd", L"a<br/>bc...", L"abcd"},
    {__LINE__, 4, L"a<3<b", L"a&lt;3&lt;...", L"a"},  // the full text drops what looks like a tag
    {__LINE__, 3, L"<!-- <b> -->abcd", L"<!-- <b> -->abc...", L" --&gt;abcd"},
    {__LINE__, 4, L"<!doc>ab", L"&lt;!do...", L"ab"},
    {__LINE__, 6, L"</b>abc", L"&lt;/b&gt;ab...", L"abc"},
    {__LINE__, 5, L"<b><i>ab</b></i>", L"<b><i>ab&lt;/b</i></b>...", L"ab"},
    {__LINE__, 3, L"<B>x</b>y", L"<B>x&lt;/</B>...", L"xy"},
    {__LINE__, 4, L"<i>a</i", L"<i>a&lt;/i</i>...", L"a"},
    {__LINE__, 3, L"<script>a</script>bc", L"<script>a</script>bc...", L"bc"},
    {__LINE__, 2, L"a\"'b", L"a&quot;...", L"a&quot;&#39;b"},
};

TEST(CutHtmlAsWritten, KeepsItsMarkupAndCountsWhatIsSeen)
{
    for (const CutRow& tRow : kCuts)
    {
        const String sExpected = String(L"<span>") + tRow.pSeen +
                                 L"</span><span class=\"ZoomInEnable\"><span onclick=\"rudex.FormFields.CommentField."
                                 L"clickButton(event);\" fullText=\"" +
                                 tRow.pFullText + L"\">&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;</span></span>";
        StringBufferBaseTemplate<wchar_t> tBuffer;
        TruncateFormatter(tRow.nLimit, kHTML).formatValue(tBuffer, tRow.pHtml);
        EXPECT_EQ(tBuffer.toString(), sExpected) << "row at line " << tRow.nLine;
    }
}

constexpr TextRow kLiterals[] = {
    {__LINE__, L"", L"x' OR '1'='1", L"'x\\u0027\\u0027 OR \\u0027\\u00271\\u0027\\u0027=\\u0027\\u00271'"},
    {__LINE__, L"", L"\\'; --", L"'\\\\\\u0027\\u0027; --'"},
    {__LINE__, L"", L"&#39;", L"&#39;&amp;#39;&#39;", kHTML},
    {__LINE__, L"", L"\u2028\u2029\x7F", L"'\\u2028\\u2029\\u007F'"},
    {__LINE__, L"", L"'", L"'&#39;&#39;'", kXML},
    {__LINE__, L"", L"[b]x[/b]", L"&#39;[b]x[/b]&#39;", kHTML},
    {__LINE__, L"", L"x", L"''", kSQLLiteral},  // kept: these outputs show the quotes alone
    {__LINE__, L"a < @", L"y'", L"a &lt; &#39;y&#39;&#39;&#39;", kHTML},
    {__LINE__, L"it's @", L"z", L"it''s ''", kSQLLiteral},
    {__LINE__, L"v=@", nullptr, L"&nbsp;", kHTML},  // a null is the compound format's matter
};

// Literals alone, and those with a compound format around them.
TEST(SqlLiteralsAsWritten, AreEscapedForEveryLanguageTheyPass)
{
    for (const TextRow& tRow : kLiterals)
    {
        WebValueFormatterHandle hFormatter = WEBFORMAT_NEW("test") TextSQLLiteralFormatter(tRow.eOutput);
        if (*tRow.pTemplate != L'\0')
            hFormatter = WEBFORMAT_NEW("test") CompoundFormatter(tRow.pTemplate, hFormatter, tRow.eOutput);
        EXPECT_EQ(hFormatter->formatAsString(tRow.pValue), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

struct CompoundRow
{
    int nLine;
    const wchar_t* pFormat;
    const wchar_t* pTemplate;
    const wchar_t* pValue;
    const wchar_t* pExpected;
    OutputType eOutput = kText;
};

constexpr CompoundRow kCompounds[] = {
    {__LINE__, L"\\@", L"@", L"7", L"\\7"},  // a backslash is one outside quotes
    {__LINE__, L"@\"a\\", L"@", L"7", L"7a\\"},
    {__LINE__, L"\"\\\"@\\\"\"", L"@", L"7", L"\"@\""},
    {__LINE__, L"x\"y\\\\z\"w@", L"@", L"7", L"xy\\zw7"},
    {__LINE__, L"'@'", L"@", L"'", L"&#39;&#39;&#39;", kXML},
    {__LINE__, L"@ \"\\n\"\n", L"@", L"7", L"7 n\\n", kJavaScript},
    {__LINE__, L"\x1@", L"@", L"1", L"\uFFFD1", kXML},
    {__LINE__, L"@ &nbsp;", L"@H", L"&", L"& &amp;nbsp;", kHTML},
    {__LINE__, L"[@]", L"@", L"", L"[&nbsp;]", kHTML},
    {__LINE__, L"x@", L"[foo]", L"v", L"x", kHTML},  // a template that shows nothing fills an empty cell only
    {__LINE__, L"@x", L"[foo]", L"v", L"&nbsp;x", kHTML},
    // The second place stands behind the wrapper of the first and opens none of its own.
    {__LINE__, L"@-@", L"@[html]<i>@H", L"x", L"<lumfo:html2fo src=\"&lt;i&gt;x\"/>-&lt;i&gt;x", kPDF},
    {__LINE__, L"@@", L"@[html]@N", L"x", L"<lumfo:html2fo src=\"&lt;pre>x&lt;/pre>\"/>&lt;pre>x&lt;/pre>", kXLSX},
};

TEST(CompoundFormatsAsWritten, EncodeTheirTextAndNotTheValuesIn)
{
    for (const CompoundRow& tRow : kCompounds)
    {
        const WebValueFormatterHandle hFormatter = WEBFORMAT_NEW("test")
            CompoundFormatter(tRow.pFormat, templateFormatter(tRow.pTemplate, tRow.eOutput), tRow.eOutput);
        EXPECT_EQ(hFormatter->formatAsString(tRow.pValue), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

struct Setting
{
    OutputType eOutput = kText;
    SQLDataType::DataType eType = SQLDataType::kDouble;
    const wchar_t* pLocale = L"en-US";
    const wchar_t* pLanguage = L"en-us";
    const wchar_t* pCurrency = L"";  // the one that comes with the locale
};

struct NumberRow
{
    int nLine;
    const char* pDefinition;
    const char* pValue;
    const wchar_t* pExpected;
    Setting tSetting = {};
    const wchar_t* pLog = L"";
};

String shown(const NumberRow& tRow)
{
    const Setting& tSetting = tRow.tSetting;
    Locale tLocale = LocaleTagLookup::lookupOrDefault(tSetting.pLocale);
    tLocale.setOverridingCurrencyTag(tSetting.pCurrency);
    const WebValueFormatterHandle hFormatter = WebValueFormatter::GetFormatter(
        SQLDataType(tSetting.eType), definitionOf(tRow.pDefinition), tLocale, TimeZoneResolver(), tSetting.eOutput, 0,
        0, KTWUILanguage(tSetting.pLanguage), String());
    String sText;
    withValue(tSetting.eType, tRow.pValue, [&](const void* p) { sText = hFormatter->formatAsString(p); });
    return sText;
}

void expectNumbers(std::span<const NumberRow> tRows)
{
    for (const NumberRow& tRow : tRows)
    {
        const CollectedLog tLog;
        EXPECT_EQ(shown(tRow), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tLog.count() == 0 ? String() : tLog.all()[0].sText, tRow.pLog) << "row at line " << tRow.nLine;
    }
}

constexpr char kDollar[] = "xsi:type='tov:currency' currencyTag='loc:en-US'/>";

constexpr NumberRow kCurrencies[] = {
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' negativeType='[red]-'/>", "-5", L"-$5.00", {kXML}},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' negativeType='odd'/>", "-5", L"-$5.00"},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='int:EUR' negativeType='redParen'/>",
     "-5",
     L"<font style=\"color:red\">(EUR&nbsp;5.00)</font>",
     {kHTML}},
    {__LINE__, "xsi:type='tov:currency' currencyTag='int:EUR'/>", "-5", L"-EUR 5.00", {kPDF}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:de-DE' negativeType='redMinus'/>",
     "-5",
     L"<font style=\"color:red\">-5.00&nbsp;€</font>",
     {kHTML}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:de-CH' negativeType='paren'/>",
     "-5",
     L"(CHF&nbsp;5.00)",
     {kHTML}},  // parentheses stand around the positive layout
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:nl-NL'/>", "-5", L"€ -5.00"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:sv-SE'/>", "-5", L"-5.00 kr"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:pt-BR'/>", "-5", L"-R$&nbsp;5.00", {kHTML}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:fr-FR' commas='true'/>",
     "1234567.5",
     L"1\u202F234\u202F567,50 €",
     {.pLocale = L"fr-FR"}},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:de-DE' scaleFactor='million'/>", "2500000", L"2.50M €"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' scaleFactor='auto'/>", "999999.9", L"$1000.00K"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' scaleFactor='none' scale='-3'/>", "1500", L"$1500.00"},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' negativeType='paren'/>", "-INF", L"($INF)"},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:en-US' commas='true'/>",
     "12345678901234567890.125",
     L"$12,345,678,901,234,567,890.13",
     {.eType = SQLDataType::kNumeric}},
    {__LINE__, "xsi:type='tov:currency' currencyTag='loc:en-US' negativeType='red'/>", "-0.0", L"$0.00", {kHTML}},
    {__LINE__, "xsi:type='tov:currency' currencyTag='EUR' minDigits='20' maxDigits='25'/>", "-5",
     L"-€5.0000000000000000"},
};

TEST(CurrenciesAsWritten, LayoutsStylesAndScalesMeet)
{
    expectNumbers(kCurrencies);
}

// The mark stands in the layout, so that positive amounts carry it too; one section alone puts it before the sign.
constexpr NumberRow kHebrew[] = {
    {__LINE__, kDollar, "5", L"&#x200e;$5.00", {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__, kDollar, "-5", L"-$5.00", {.pLanguage = L"he"}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:en-US' negativeType='redMinus'/>",
     "-5",
     L"<font style=\"color:red\">&#x200e;-$5.00</font>",
     {.eOutput = kHTML, .pLanguage = L"he-il"}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:he-IL'/>",
     "-5",
     L"&#x200e;-5.00&nbsp;₪",
     {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='none'/>",
     "-5",
     L"&#x200e;-5",
     {.eOutput = kHTML, .pLanguage = L"he"},
     L"Unknown Currency Tag none"},
    {__LINE__,
     "xsi:type='tov:whistler' whistlerFormat='#,##0'/>",
     "-1234",
     L"&#x200e;-1,234",
     {.eOutput = kHTML, .pLanguage = L"he"}},
    {__LINE__,
     "xsi:type='tov:whistler' whistlerFormat='#,##0;(#,##0)'/>",
     "-1234",
     L"(1,234)",
     {.eOutput = kHTML, .pLanguage = L"he"}},
};

TEST(CurrenciesAsWritten, HebrewPagesMarkTheDirection)
{
    expectNumbers(kHebrew);
}

constexpr char kConditional[] =
    "xsi:type='tov:conditionalcurrency' currencyTag='loc:en-US' commas='true'><tov:currencyTagColumn>"
    "<tovx:expr xsi:type='tovx:sqlExpression'>X</tovx:expr></tov:currencyTagColumn></tov:dataFormat>";
constexpr char kCustom[] = "xsi:type='tov:custom' customFormat='[$:currencyTagColumn=X]'/>";

constexpr NumberRow kTags[] = {
    {__LINE__, "xsi:type='tov:currency' currencyTag='XXQ'/>", "-5", L"-€5.00", {.pCurrency = L"EUR"}},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='XXQ'/>",
     "5",
     L"5",
     {.pCurrency = L"nope"},
     L"Unknown Currency Tag XXQ"},  // the definition's own tag is the one that is told
    {__LINE__, "xsi:type='tov:currency' currencyTag=''/>", "5", L"$5.00", {.pCurrency = L"loc:en-US"}},
    {__LINE__, "xsi:type='tov:currency'/>", "5.5", L"6", {}, L"Unknown Currency Tag "},
    {__LINE__, "xsi:type='tov:currency' currencyTag='LOC:en-US'/>", "5", L"5", {}, L"Unknown Currency Tag LOC:en-US"},
    {__LINE__,
     "xsi:type='tov:currency' currencyTag='loc:zz-ZZ'/>",
     nullptr,
     L"&nbsp;",
     {kHTML},
     L"Unknown Currency Tag loc:zz-ZZ"},
    {__LINE__, kConditional, "-1234.5", L"-EUR&nbsp;1,234.50", {.eOutput = kHTML, .pCurrency = L"int:EUR"}},
    {__LINE__, kConditional, "5.5", L"6", {}, L"Unknown Currency Tag "},
    {__LINE__, kCustom, "1234.5", L"¥1,235", {.pCurrency = L"JPY"}},
    {__LINE__, kCustom, "-1234.5", L"-KWD1,234.500", {.pCurrency = L"KWD"}},
    {__LINE__, kCustom, "1234.5", L"1235", {}, L"Unknown Currency Tag "},
};

TEST(CurrenciesAsWritten, UnknownTagsTakeTheLocalesCurrencyOrShowIntegers)
{
    expectNumbers(kTags);
}

constexpr NumberRow kOlder[] = {
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='#'/>", "-5.25", L"-5.25"},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='##.##'/>", "7", L"7", {.eType = SQLDataType::kInteger}},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='#0%;[red](#0%)'/>", "-45.4", L"-45%", {kHTML}},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='#,##0%'/>", "12345", L"12345%"},  // kept: without its groups
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='$#,##0.00;($#,##0.00)'/>", "-1234.5", L"-$1,234.50"},  // kept
    {__LINE__,
     "xsi:type='tov:whistler' whistlerFormat='$#0;[red]($#0)'/>",
     "-5",
     L"<font style=\"color:red\">$5</font>",
     {kHTML}},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='$#'/>", "1.5", L"$1.5000000000000000"},  // all 16 digits
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='#,##0.00'/>", "-1234.5", L"-1.234,50", {.pLocale = L"de-DE"}},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='0.00;(0.00);n/a'/>", nullptr, L"n/a"},
    {__LINE__, "xsi:type='tov:whistler' whistlerFormat='#,##0;(#,##0)'/>", nullptr, L"&nbsp;", {kHTML}},
};

TEST(OlderFormatsAsWritten, NumbersShowAsTheirConversions)
{
    expectNumbers(kOlder);
}

struct ConversionRow
{
    int nLine;
    const wchar_t* pFormat;
    const wchar_t* pAttributes;
    const wchar_t* pExcelPattern;
};

constexpr ConversionRow kConversions[] = {
    {__LINE__, L"#,###;(#,###)", L"minDigits=0 maxDigits=16 commas=true negativeType=paren",
     L"#,##0.################_);(#,##0.################)"},
    {__LINE__, L"##.#;[red]-##.#", L"minDigits=0 maxDigits=1 commas=false negativeType=red", L"0.#;[red]0.#"},
    {__LINE__, L"$#,###.###;[red]($#,###.###)",
     L"minDigits=3 maxDigits=3 commas=true negativeType=red currencyTag=loc:en-US",
     L"[$$]#,##0.000;[red][$$]#,##0.000"},
    {__LINE__, L"#,##0.00%;(#,##0.00%)", L"minDigits=2 maxDigits=2 commas=false negativeType=minus", L"0.00%"},
    {__LINE__, L"#%", L"minDigits=0 maxDigits=16 commas=false negativeType=minus", L"0.################%"},
    {__LINE__, L"#,##0.0000000", L"customFormat=#,##0.0000000", L"#,##0.0000000"},  // seven digits are none of them
};

TEST(OlderFormatsAsWritten, ConversionsAreWrittenAndGoToTheSpreadsheet)
{
    for (const ConversionRow& tRow : kConversions)
    {
        const WebValueFormatDefinitionHandle hDefinition =
            WebConvertWhistlerFormat::ConvertNumericFormat(WebWhistlerFormatDefinition(tRow.pFormat));
        EXPECT_EQ(attributesOf(hDefinition), tRow.pAttributes) << "row at line " << tRow.nLine;
        EXPECT_EQ(hDefinition->getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                WebValueFormatDefinition::kFormatPatternNormal),
                  tRow.pExcelPattern)
            << "row at line " << tRow.nLine;
    }
}

constexpr TextRow kOlderTexts[] = {
    {__LINE__, L"<b>@</b>;;n/a", L"a&b", L"<b>a&amp;b</b>;", kHTML},  // kept: the first semicolon stays in the markup
    {__LINE__, L"<b>@</b>;;n/a", L"v", L"n/a"},
    {__LINE__, L"@;none", nullptr, L"none", kPDF},
    {__LINE__, L"@;none;;x;y", L"v", L";xy", kPDF},  // the text section stands last, so that documents take it
    {__LINE__, L"\"a;\\\";\"@;\\;@N", L"v", L"<lumfo:html2fo src=\"a;&quot;;v\"/>", kXLSX},
};

TEST(OlderFormatsAsWritten, TextsShowAsTheirConversions)
{
    for (const TextRow& tRow : kOlderTexts)
    {
        const WebValueFormatDefinitionHandle hDefinition =
            WEBFORMAT_NEW("test") WebWhistlerFormatDefinition(tRow.pTemplate);
        EXPECT_EQ(
            WebTextFormatter::CreateTextFormatter(hDefinition, Locale::kUSA, tRow.eOutput)->formatAsString(tRow.pValue),
            tRow.pExpected)
            << "row at line " << tRow.nLine;
    }
}

struct DrillRow
{
    int nLine;
    SQLDataType::DataType eType;
    const char* pValue;
    const wchar_t* pExpected;
    OutputType eOutput = kText;
};

constexpr DrillRow kDrills[] = {
    {__LINE__, SQLDataType::kDouble, "0.30000000000000004", L"0.3"},
    {__LINE__, SQLDataType::kDouble, "1e20", L"100000000000000000000"},
    {__LINE__, SQLDataType::kBigInt, "-9223372036854775808", L"-9223372036854775808"},
    {__LINE__, SQLDataType::kNumeric, "0.12345678901234567895", L"0.123456789012345679"},
    {__LINE__, SQLDataType::kInteger, nullptr, L"&nbsp;", kHTML},  // the null marker is a text's alone
};

TEST(DrillValuesAsWritten, NumbersArePlainAndNullTextsMarked)
{
    for (const DrillRow& tRow : kDrills)
        withValue(
            tRow.eType, tRow.pValue,
            [&](const void* p)
            {
                const SQLDataType tType(tRow.eType);
                EXPECT_EQ(WebDrillValueFormatter::GetFormatter(tType, tRow.eOutput)->formatAsString(p), tRow.pExpected)
                    << "row at line " << tRow.nLine;
            });
}

}  // namespace
}  // namespace tov

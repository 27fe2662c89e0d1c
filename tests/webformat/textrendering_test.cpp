// How the elements of a text template are written.

#include <gtest/gtest.h>

#include <random>

#include "support/allocationcounter.h"
#include "support/decoders.h"
#include "support/limitedallocator.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using OutputType = ValueFormatterTypes::OutputType;
using Buffer = StringBufferTemplate<wchar_t, 1024>;

constexpr OutputType kAllOutputs[] = {kText, kHTML, kXML, kJavaScript, kPDF, kSQL, kSQLLiteral, kXLSX};
constexpr OutputType kFoOutputs[] = {kPDF, kXLSX};
constexpr const wchar_t* kReferences[] = {L"@", L"@H", L"@N", L"@J", L"@I"};

String format(const String& sTemplate, OutputType eOutput, const wchar_t* pValue)
{
    return WebTextFormatter::ParseCustomFormat(sTemplate, Locale::kUSA, eOutput)->formatAsString(pValue);
}

constexpr wchar_t kValue[] = L"<i>R&amp;D 'x'</i>";
constexpr wchar_t kMarkup[] = L"&lt;i&gt;R&amp;amp;D &#39;x&#39;&lt;/i&gt;";
constexpr wchar_t kNoBreak[] = L"&lt;i&gt;R&amp;amp;D&nbsp;&#39;x&#39;&lt;/i&gt;";
constexpr wchar_t kScript[] = L"\\u003Ci\\u003ER&amp;D \\u0027x\\u0027\\u003C/i\\u003E";
constexpr wchar_t kScriptInMarkup[] = L"\\u003Ci\\u003ER\\u0026amp;D \\u0027x\\u0027\\u003C/i\\u003E";
constexpr wchar_t kLiteral[] = L"<i>R&amp;D ''x''</i>";
constexpr wchar_t kWithoutTags[] = L"R&D 'x'";
constexpr wchar_t kImage[] = L"<fo:external-graphic src=\"url('&lt;i&gt;R&amp;amp;D &#39;x&#39;&lt;/i&gt;')\"/>";

struct MatrixRow
{
    int nLine;
    OutputType eOutput;
    const wchar_t* aExpected[5];  // by reference
};

constexpr MatrixRow kMatrix[] = {
    {__LINE__, kHTML, {kMarkup, kValue, kNoBreak, kScriptInMarkup, kValue}},
    {__LINE__, kXML, {kMarkup, kValue, kMarkup, kMarkup, kValue}},
    {__LINE__, kJavaScript, {kScript, kScript, kScript, kScript, kScript}},
    {__LINE__, kPDF, {kMarkup, kMarkup, kMarkup, kMarkup, kImage}},
    {__LINE__, kXLSX, {kMarkup, kMarkup, kMarkup, kMarkup, kImage}},
    {__LINE__, kSQL, {kValue, kValue, kValue, kValue, kValue}},
    {__LINE__, kSQLLiteral, {kLiteral, kLiteral, kLiteral, kLiteral, kLiteral}},
    {__LINE__, kText, {kValue, kWithoutTags, kValue, kValue, kValue}},
    // What is no output type is written as text.
    {__LINE__, kLastType, {kValue, kWithoutTags, kValue, kValue, kValue}},
    {__LINE__, static_cast<OutputType>(-1), {kValue, kWithoutTags, kValue, kValue, kValue}},
};

struct Row
{
    int nLine;
    const wchar_t* pTemplate;
    OutputType eOutput;
    const wchar_t* pValue;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"@", kHTML, L"a<b", L"a&lt;b"},
    {__LINE__, L"a @ b", kText, L"x", L"a x b"},
    {__LINE__, L"@-@H", kText, L"<b>x</b>", L"<b>x</b>-x"},
    {__LINE__, L"@H", kText, L"&amp;lt;", L"&lt;"},
    {__LINE__, L"@H", kText, L"x<script>y</script>z", L"xz"},
    {__LINE__, L"@H", kText, L"a&nbsp;b", L"a b"},
    {__LINE__, L"@N", kHTML, L"a  b\u00a0c", L"a&nbsp;&nbsp;b\u00a0c"},
    // Safe between the quotes of an attribute, too.
    {__LINE__, L"[html]\"<a onclick=\\\"f('\"@J\"')\\\">\"", kHTML, L"'\"&quot;<\n",
     L"<a onclick=\"f('\\u0027\\u0022\\u0026quot;\\u003C\\n')\">"},
    // Semicolons are text outside FO mode.
    {__LINE__, L"[html]@;-", kHTML, L"x", L"x;-"},
    {__LINE__, L"a&nbsp;b", kText, L"x", L"a&nbsp;b"},
    {__LINE__, L"[html]a&nbsp;@", kHTML, L"x", L"a&nbsp;x"},
    // Bracket tags: in PDF and XLSX they become tags that are then encoded, whatever the kind.
    {__LINE__, L"@", kPDF, L"[b]x[/b]", L"&lt;b&gt;x&lt;/b&gt;"},
    {__LINE__, L"@H", kXLSX, L"[b]x[/b]", L"&lt;b&gt;x&lt;/b&gt;"},
    {__LINE__, L"@N", kPDF, L"a [I]x[BR/]", L"a &lt;I&gt;x&lt;BR/&gt;"},
    {__LINE__, L"@J", kXLSX, L"[u]'", L"&lt;u&gt;&#39;"},
    {__LINE__, L"@", kPDF, L"[p]&[b", L"[p]&amp;[b"},
    {__LINE__, L"@", kHTML, L"[b]x[/b]", L"[b]x[/b]"},
    {__LINE__, L"@H", kHTML, L"[b]x[/b]", L"[b]x[/b]"},
    {__LINE__, L"@", kXML, L"[b]", L"[b]"},
    // Kept: an address with one is text.
    {__LINE__, L"@I(5)", kPDF, L"a[b].png", L"a&lt;b&gt;.png"},
    {__LINE__, L"@I", kPDF, L"a[p].png", L"<fo:external-graphic src=\"url('a[p].png')\"/>"},
    // The size of images; the blanks are kept as they are.
    {__LINE__, L"@I(100)", kPDF, L"a.png", L"<fo:external-graphic src=\"url('a.png')\" width=\"100\" />"},
    {__LINE__, L"@I(,50)", kXLSX, L"a.png", L"<fo:external-graphic src=\"url('a.png')\" height=\"50\" />"},
    {__LINE__, L"@I(100,50)", kPDF, L"a.png",
     L"<fo:external-graphic src=\"url('a.png')\" width=\"100\"  height=\"50\" />"},
    {__LINE__, L"@I(100,50)", kHTML, L"a.png", L"a.png"},
    // No value closes the attribute.
    {__LINE__, L"@I", kPDF, L"')\"/><x", L"<fo:external-graphic src=\"url('&#39;)&quot;/&gt;&lt;x')\"/>"},
    // FO mode.
    {__LINE__, L"@[html]@H", kPDF, L"<b>x</b>", L"<lumfo:html2fo src=\"&lt;b&gt;x&lt;/b&gt;\"/>"},
    {__LINE__, L"@[html]@N", kXLSX, L"a b", L"<lumfo:html2fo src=\"&lt;pre>a b&lt;/pre>\"/>"},
    {__LINE__, L"[html]@;\"<none>\"", kPDF, L"x", L"<lumfo:html2fo src=\"x\"/>"},
    // Kept: an image element in an [html] section breaks out of the wrapper's attribute.
    {__LINE__, L"[html]@I", kPDF, L"a.png", L"<lumfo:html2fo src=\"<fo:external-graphic src=\"url('a.png')\"/>\"/>"},
    // Cuts: the rest of the template is lost, which is kept.
    {__LINE__, L"a@T(3)b", kText, L"<b>abcdef</b>", L"aabc..."},
    {__LINE__, L"@T(0)", kText, L"abcdefghijklmnopqrstuvwxyz", L"abcdefghijklmnopqrst..."},
    {__LINE__, L"@TH(3)@", kHTML, L"ab", L"<span title=\"ab\">ab</span>"},
    {__LINE__, L"a@T(3)b", kXML, L"abcdef", L"a"},
    {__LINE__, L"a@T(3)b", kLastType, L"abcdef", L"a"},
    // Kept: in FO mode the end of the wrapper is lost with it.
    {__LINE__, L"[html]a@T(3)b", kPDF, L"abcdef", L"<lumfo:html2fo src=\"a"},
    {__LINE__, L"[html]@T(3);-", kPDF, L"abcdef", L"<lumfo:html2fo src=\""},
};

}  // namespace

TEST(TextRendering, TreatsTheValueByOutputAndKind)
{
    for (const MatrixRow& tRow : kMatrix)
    {
        for (std::size_t n = 0; n < std::size(kReferences); ++n)
            EXPECT_EQ(format(kReferences[n], tRow.eOutput, kValue), tRow.aExpected[n])
                << "row at line " << tRow.nLine << ", reference " << n;
    }
}

TEST(TextRendering, WritesElementsInOrder)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(format(tRow.pTemplate, tRow.eOutput, tRow.pValue), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(TextRendering, DoesNotOpenAWrapperInsideAWrapper)
{
    const WebValueFormatterHandle hFormatter = WebTextFormatter::ParseCustomFormat(L"[html]<@", Locale::kUSA, kPDF);
    Buffer tBuffer;
    tBuffer.append(L"<lumfo:html2fo src=\"");
    hFormatter->formatToBuffer(tBuffer, L"x");
    EXPECT_EQ(tBuffer.toString(), L"<lumfo:html2fo src=\"&lt;x");
    // A wrapper anywhere before counts, one that is closed, too.
    tBuffer.append(L"\"/>");
    hFormatter->formatToBuffer(tBuffer, L"y");
    EXPECT_EQ(tBuffer.toString(), L"<lumfo:html2fo src=\"&lt;x\"/>&lt;y");
    tBuffer.clear();
    tBuffer.append(L"<lumfo:html2fo src=");
    hFormatter->formatToBuffer(tBuffer, L"z");
    EXPECT_EQ(tBuffer.toString(), L"<lumfo:html2fo src=<lumfo:html2fo src=\"&lt;z\"/>");
}

TEST(TextRendering, LeavesOutInAWrapperOnlyLiteralsThatAreExactlyItsTexts)
{
    const auto inWrapper = [](const wchar_t* pTemplate)
    {
        Buffer tBuffer;
        tBuffer.append(L"<lumfo:html2fo src=\"");
        const std::size_t nStart = tBuffer.length();
        WebTextFormatter::ParseCustomFormat(pTemplate, Locale::kUSA, kHTML)->formatToBuffer(tBuffer, L"x");
        return String(tBuffer.view().substr(nStart));
    };
    EXPECT_EQ(inWrapper(L"[html]a\"\\\"/>\"@"), L"ax");
    EXPECT_EQ(inWrapper(L"[html]\"<lumfo:html2fo src=\\\"\"@"), L"<lumfo:html2fo src=\"x");  // two literals
    EXPECT_EQ(inWrapper(L"[html]\\\"/>@"), L"\"/>x");                                        // three
    EXPECT_EQ(inWrapper(L"[html]\"\\\"/> \"@"), L"\"/> x");
    EXPECT_EQ(format(L"[html]a\"\\\"/>\"@", kHTML, L"x"), L"a\"/>x");
}

TEST(TextRendering, MayBeBuiltFromElements)
{
    SubTextFormatter tFormatter;
    tFormatter.AddLiteral(L"<b>");
    tFormatter.AddTextReference(SubTextFormatter::kText);
    tFormatter.AddChar(L'!');
    tFormatter.AddTextReference(static_cast<SubTextFormatter::TextType>(17));  // no kind: as kText
    tFormatter.AddLiteral(L"</b>");
    Buffer tBuffer;
    tFormatter.FormatValue(tBuffer, L"R&D", kHTML);
    EXPECT_EQ(tBuffer.toString(), L"<b>R&amp;D!R&amp;D</b>");
    tFormatter.FormatValue(tBuffer, nullptr, kText);
    EXPECT_EQ(tBuffer.toString(), L"<b>R&amp;D!R&amp;D</b><b>!</b>");
    EXPECT_EQ(tFormatter.formats().size(), 5u);
}

TEST(TextRendering, AllocatesNothing)
{
    for (const OutputType eOutput : kAllOutputs)
    {
        for (const wchar_t* pReference :
             {L"@", L"@H", L"@N", L"@J", L"@I(1,2)", L"@T(3)", L"@T(30)", L"[html]<@;-", L"@[html]@N"})
        {
            const WebValueFormatterHandle hFormatter =
                WebTextFormatter::ParseCustomFormat(String(L"<b>") + pReference, Locale::kUSA, eOutput);
            Buffer tBuffer;
            hFormatter->formatToBuffer(tBuffer, L"warm");
            const AllocationCounter tCounter;
            hFormatter->formatToBuffer(tBuffer, L"[b]<R&amp;D '\u2028'>[/b] \xD83D");
            hFormatter->formatToBuffer(tBuffer, L"");
            hFormatter->formatToBuffer(tBuffer, nullptr);
            EXPECT_EQ(tCounter.count(), 0u) << eOutput << " " << pReference;
        }
    }
}

TEST(TextRendering, LeavesTheBufferAsItWasWhereMemoryRunsOut)
{
    const String sValue(5000, L'&');
    for (const OutputType eOutput : kAllOutputs)
    {
        for (const wchar_t* pTemplate : {L"\"a literal\"@@", L"\"a literal\"@I(1)@", L"a@T(2000)", L"@[html]@N"})
        {
            const WebValueFormatterHandle hFormatter =
                WebTextFormatter::ParseCustomFormat(pTemplate, Locale::kUSA, eOutput);
            StringBufferTemplate<wchar_t, 63> tBuffer;
            tBuffer.append(L"kept");
            LimitedAllocator tAllocator(1000);
            try
            {
                hFormatter->formatToBuffer(tBuffer, sValue.c_str());
            }
            catch (const std::bad_alloc&)
            {
                EXPECT_EQ(tBuffer.toString(), L"kept") << eOutput;
            }
        }
    }
}

TEST(TextRendering, WritesLongValuesInTheTimeOfTheirLength)
{
    constexpr std::size_t kLength = 100000;
    for (const wchar_t nChar : {L'[', L'<', L'&', L'\'', L' ', L'a'})
    {
        const String sValue(kLength, nChar);
        for (const OutputType eOutput : kAllOutputs)
        {
            for (const wchar_t* pReference : kReferences)
            {
                const bool bMayDrop = eOutput == kText && std::wstring_view(pReference) == L"@H";
                EXPECT_GE(format(pReference, eOutput, sValue.c_str()).size(), bMayDrop ? 0 : kLength) << eOutput;
            }
        }
    }
}

// Random values of characters that mean something somewhere.
class RandomValues
{
public:
    String next()
    {
        static constexpr std::wstring_view kCharacters = L"ab <>&'\"\\[]/;@\n\u00e9\u2028\U0001F600";
        String sValue(1 + m_tRandom() % 40, L' ');
        for (wchar_t& nChar : sValue)
            nChar = kCharacters[m_tRandom() % kCharacters.size()];
        return sValue;
    }

private:
    std::mt19937 m_tRandom{20240305};
};

TEST(TextRendering, WritesWhatAReaderOfTheOutputReadsAsTheValue)
{
    RandomValues tValues;
    for (int n = 0; n < 2000; ++n)
    {
        const String sValue = tValues.next();
        const wchar_t* const pValue = sValue.c_str();
        String sTags = sValue;
        WebTextFormatter::ConvertAnswersTagsToHTMLTags(sTags);
        ASSERT_EQ(decodeMarkup(format(L"@", kHTML, pValue), true), sValue) << n;
        ASSERT_EQ(decodeMarkup(format(L"@N", kHTML, pValue), true), sValue) << n;
        ASSERT_EQ(decodeMarkup(format(L"@J", kXML, pValue), true), sValue) << n;
        ASSERT_EQ(decodeJavaLiteral(format(L"@H", kJavaScript, pValue)), sValue) << n;
        ASSERT_EQ(decodeJavaLiteral(*decodeMarkup(format(L"@J", kHTML, pValue), true)), sValue) << n;
        ASSERT_EQ(decodeSQLLiteral(format(L"@", kSQLLiteral, pValue)), sValue) << n;
        for (const OutputType eOutput : kFoOutputs)
            ASSERT_EQ(decodeMarkup(format(L"@", eOutput, pValue), true), sTags) << n;
    }
}

// Merging literals changes nothing: a template is the sum of its elements.
TEST(TextRendering, WritesATemplateAsItsElementsOneByOne)
{
    RandomValues tTemplates;
    for (int n = 0; n < 2000; ++n)
    {
        const String sTemplate = tTemplates.next();
        for (const OutputType eOutput : kAllOutputs)
        {
            const WebTextFormatterImpl tFormatter(sTemplate, eOutput);
            Buffer tSum;
            for (const SubTextFormatter::Format& tFormat : tFormatter.mainFormatter().formats())
            {
                SubTextFormatter tOne;
                tOne.AddFormat(tFormat);
                tOne.FormatValue(tSum, L"[b]R&D's <x>", eOutput);
            }
            if (tSum.empty() && eOutput == kHTML)
                tSum.append(L"&nbsp;");
            ASSERT_EQ(tFormatter.formatAsString(L"[b]R&D's <x>"), tSum.toString()) << n;
        }
    }
}

}  // namespace tov

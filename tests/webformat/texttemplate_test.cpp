// What the elements of a text template are, and where they stand.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "webbedrock/utf8.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using OutputType = ValueFormatterTypes::OutputType;
using Format = SubTextFormatter::Format;

std::string numberOf(std::int32_t nPixels)
{
    return nPixels == -1 ? "-" : std::to_string(nPixels);
}

std::string limitsOf(const SubTextFormatter::TruncateFormat& tLimits)
{
    const bool bToolTip = tLimits.nToolTip != SubTextFormatter::TruncateFormat::knNoToolTip;
    return std::to_string(tLimits.nChars) + (bToolTip ? "," + std::to_string(tLimits.nToolTip) : "");
}

// An element in short: a literal in guillemets, a reference as its letter, with the size of an image or the limits of a
// cut behind it.
std::string shortForm(const Format& tFormat)
{
    if (tFormat.bLiteral)
        return "«" + toUtf8(tFormat.sText) + "»";
    if (tFormat.truncateFormat.bTruncate)
        return std::string(tFormat.eTextType == SubTextFormatter::kText ? "T" : "?") + limitsOf(tFormat.truncateFormat);
    if (tFormat.eTextType == SubTextFormatter::kImage)
        return "I" + numberOf(tFormat.imageFormat.width) + "x" + numberOf(tFormat.imageFormat.height);
    return std::string(1, "@HNJ"[tFormat.eTextType]);
}

std::string elementsOf(const SubTextFormatter& tFormatter)
{
    std::string sAll;
    for (const Format& tFormat : tFormatter.formats())
        sAll += (sAll.empty() ? "" : " ") + shortForm(tFormat);
    return sAll;
}

// The elements of the main section and, behind a bar, those for null and empty values.
std::string elementsOf(const String& sTemplate, OutputType eOutput)
{
    const WebTextFormatterImpl tFormatter(sTemplate, eOutput);
    const Handle<const SubTextFormatter>& hEmpty = tFormatter.emptyFormatter();
    return elementsOf(tFormatter.mainFormatter()) + (hEmpty.isNull() ? "" : " | " + elementsOf(*hEmpty));
}

struct Row
{
    int nLine;
    const wchar_t* pTemplate;
    const char* pExpected;
};

void check(const Row& tRow, OutputType eOutput)
{
    EXPECT_EQ(elementsOf(tRow.pTemplate, eOutput), tRow.pExpected) << "row at line " << tRow.nLine;
}

constexpr Row kTextRows[] = {
    // A section without any text is the value.
    {__LINE__, L"", "@"},
    {__LINE__, L"[html]x", "@"},
    // References. Case counts; a letter that is no kind is read again.
    {__LINE__, L"@", "@"},
    {__LINE__, L"@H@N@J", "H N J"},
    {__LINE__, L"@h@n@j@i@t", "@ «h» @ «n» @ «j» @ «i» @ «t»"},
    {__LINE__, L"@@", "@ @"},
    {__LINE__, L"@@H", "@ H"},
    {__LINE__, L"@\"H\"", "@ «H»"},
    {__LINE__, L"@[x]H", "@ «H»"},
    {__LINE__, L"@HH", "H «H»"},
    // Bare characters are elements of their own.
    {__LINE__, L"ab@c", "«a» «b» @ «c»"},
    {__LINE__, L"a;b", "«a» «;» «b»"},
    {__LINE__, L"&nbsp;;", "«&» «n» «b» «s» «p» «;» «;»"},
    {__LINE__, L"]", "«]»"},
    {__LINE__, L"'[html]@", "«'» @"},  // the tag that an apostrophe keeps from starting a section shows nothing
    // Quoted text: a backslash ends a piece and takes the next character as it stands.
    {__LINE__, L"\"ab\"", "«ab»"},
    {__LINE__, L"\"\"", "«»"},
    {__LINE__, L"\"a\"\"b\"", "«a» «b»"},
    {__LINE__, L"\"@;[&\"", "«@;[&»"},
    {__LINE__, L"\"a\\\"b\"", "«a» «\"b»"},
    {__LINE__, L"\"a\\\\b\"", "«a» «\\b»"},
    {__LINE__, L"\"\\n\"@", "«» «n» @"},
    {__LINE__, L"\"ab", "«ab»"},
    {__LINE__, L"\"", "«»"},
    {__LINE__, L"\"a\\", "«a» «»"},
    // A backslash outside quotes.
    {__LINE__, L"\\@H", "«@» «H»"},
    {__LINE__, L"\\\"a", "«\"» «a»"},
    {__LINE__, L"\\\\", "«\\»"},
    {__LINE__, L"a\\", "«a»"},
    {__LINE__, L"\\", ""},
    // Brackets show nothing, whatever is in them.
    {__LINE__, L"[x]@[text]", "@"},
    {__LINE__, L"[\"]\"a\"", "«a»"},
    {__LINE__, L"[]a", "«a»"},
    {__LINE__, L"[[a]b]", "«b» «]»"},
    {__LINE__, L"@[x", "@"},
    {__LINE__, L"[", ""},
    {__LINE__, L"@[TZ:EST]", "@"},
};

constexpr Row kImageRows[] = {
    {__LINE__, L"@I", "I-x-"},
    {__LINE__, L"@I(100)", "I100x-"},
    {__LINE__, L"@I(100,50)x", "I100x50 «x»"},
    {__LINE__, L"@I(,50)", "I-x50"},
    {__LINE__, L"@I(100,)", "I100x-"},
    {__LINE__, L"@I(0,0)", "I-x-"},
    {__LINE__, L"@I()x", "I-x- «x»"},
    {__LINE__, L"@I(a,b)x", "I-x- «x»"},
    {__LINE__, L"@I(1,2,3)x", "I1x2 «x»"},
    {__LINE__, L"@I(-5)", "I-x-"},
    {__LINE__, L"@I(7px)", "I7x-"},
    {__LINE__, L"@I(007)", "I7x-"},
    {__LINE__, L"@I( 7 , 8 )", "I7x8"},
    {__LINE__, L"@I \t(5)x", "I5x- «x»"},
    // The comma behind the list is none of its.
    {__LINE__, L"@I(5),6", "I5x- «,» «6»"},
    // Without a list nothing behind the letter is read.
    {__LINE__, L"@I  x", "I-x- « » « » «x»"},
    {__LINE__, L"@I(5", "I-x- «(» «5»"},
    {__LINE__, L"@I)(5)", "I-x- «)» «(» «5» «)»"},
    {__LINE__, L"@I @I(5)", "I-x- « » I5x-"},
    // What does not fit is the largest number.
    {__LINE__, L"@I(2147483647,2147483648)", "I2147483647x2147483647"},
    {__LINE__, L"@I(99999999999999999999999,18446744073709551617)", "I2147483647x2147483647"},
};

constexpr Row kTruncateRows[] = {
    {__LINE__, L"@T", "T20"},
    {__LINE__, L"@T(5)x", "T5 «x»"},
    {__LINE__, L"@T(5,40)x", "T5,40 «x»"},
    // Kept: the letter of a kind means nothing.
    {__LINE__, L"@TH(5)", "T5"},
    {__LINE__, L"@TJ(5,6)", "T5,6"},
    {__LINE__, L"@TN(5)", "T5"},
    {__LINE__, L"@TX(5)", "T20 «X» «(» «5» «)»"},
    {__LINE__, L"@TH", "T20 «H»"},
    {__LINE__, L"@THH(5)", "T20 «H» «H» «(» «5» «)»"},
    {__LINE__, L"@T (5)", "T20 « » «(» «5» «)»"},
    // A number that is not given: what was read before counts, the list is text.
    {__LINE__, L"@T(0)", "T20 «(» «0» «)»"},
    {__LINE__, L"@T()", "T20 «(» «)»"},
    {__LINE__, L"@T(x)", "T20 «(» «x» «)»"},
    {__LINE__, L"@T(,40)", "T20 «(» «,» «4» «0» «)»"},
    {__LINE__, L"@T(0,40)", "T20 «(» «0» «,» «4» «0» «)»"},
    {__LINE__, L"@T(5,0)", "T5 «(» «5» «,» «0» «)»"},
    {__LINE__, L"@T(5,)", "T5 «(» «5» «,» «)»"},
    {__LINE__, L"@TH(0)", "T20 «H» «(» «0» «)»"},
    {__LINE__, L"@T(5", "T20 «(» «5»"},
    {__LINE__, L"@T(5,6", "T20 «(» «5» «,» «6»"},
    {__LINE__, L"@T( 5 , 6 )", "T5,6"},
    {__LINE__, L"@T(5 chars)x", "T5 «x»"},
    {__LINE__, L"@T(5,6,7)x", "T5,6 «x»"},
    {__LINE__, L"@T(5@,6)x", "T5 «x»"},
    {__LINE__, L"@T(4294967295)", "T4294967295"},
    {__LINE__, L"@T(4294967296,4294967295)", "T4294967295,4294967294"},
    {__LINE__, L"@T(5)@T(6)", "T5 T6"},
};

// [html] sections for kPDF.
constexpr Row kFoRows[] = {
    {__LINE__, L"[html]@", "«<lumfo:html2fo src=\"» @ «\"/>»"},
    {__LINE__, L"@[html]@N", "«<lumfo:html2fo src=\"» «&lt;pre>» N «&lt;/pre>» «\"/>»"},
    // Only the predefined format itself is preformatted.
    {__LINE__, L"@[HTML]@N", "«<lumfo:html2fo src=\"» N «\"/>»"},
    {__LINE__, L"[html]@N", "«<lumfo:html2fo src=\"» N «\"/>»"},
    // The HTML is encoded once more.
    {__LINE__, L"[html]\"<b>\"<@", "«<lumfo:html2fo src=\"» «&lt;b&gt;» «&lt;» @ «\"/>»"},
    // A semicolon starts the section for null and empty values, which stands outside the wrapper.
    {__LINE__, L"[html]@;-", "«<lumfo:html2fo src=\"» @ «\"/>» | «-»"},
    {__LINE__, L"[html]x;y", "«<lumfo:html2fo src=\"» «x» «\"/>» | «y»"},
    {__LINE__, L"[html];", "«<lumfo:html2fo src=\"» «\"/>» | "},
    {__LINE__, L"[html]@;<;c;@H", "«<lumfo:html2fo src=\"» @ «\"/>» | «&lt;»"},
    // ... but not that of an open "&nbsp;", in any case, nor one in quotes or behind a backslash.
    {__LINE__, L"[html]a&nbsp;b", "«<lumfo:html2fo src=\"» «a» «&amp;» «n» «b» «s» «p» «;» «b» «\"/>»"},
    {__LINE__, L"[html]&NbSp;;b", "«<lumfo:html2fo src=\"» «&amp;» «N» «b» «S» «p» «;» «\"/>» | «b»"},
    {__LINE__, L"[html]&amp;b", "«<lumfo:html2fo src=\"» «&amp;» «a» «m» «p» «\"/>» | «b»"},
    {__LINE__, L"[html]&nbsp", "«<lumfo:html2fo src=\"» «&amp;» «n» «b» «s» «p» «\"/>»"},
    {__LINE__, L"[html]\\&nbsp;b", "«<lumfo:html2fo src=\"» «&amp;» «n» «b» «s» «p» «\"/>» | «b»"},
    {__LINE__, L"[html]\\;\";\"", "«<lumfo:html2fo src=\"» «;» «;» «\"/>»"},
    {__LINE__, L"[html]@T(5", "«<lumfo:html2fo src=\"» T20 «(» «5» «\"/>»"},
    // A section without any text is the value, without a wrapper.
    {__LINE__, L"x[html]", "@"},
    // Other sections have no wrapper and no section for empty values.
    {__LINE__, L"@;-", "@ «;» «-»"},
    {__LINE__, L"x[html]y[pdf]<@;-", "«<» @ «;» «-»"},
    {__LINE__, L"<@;-", "«&lt;» @ «;» «-»"},
};

}  // namespace

TEST(TextTemplate, IsReadTokenByToken)
{
    for (const Row& tRow : kTextRows)
        check(tRow, kText);
}

TEST(TextTemplate, GivesImagesTheSizeThatTheListStates)
{
    for (const Row& tRow : kImageRows)
        check(tRow, kText);
}

TEST(TextTemplate, GivesCutsTheLimitsThatTheListStates)
{
    for (const Row& tRow : kTruncateRows)
        check(tRow, kText);
}

TEST(TextTemplate, WrapsHtmlSectionsInPdfAndXlsx)
{
    for (const Row& tRow : kFoRows)
    {
        check(tRow, kPDF);
        if (String(tRow.pTemplate).find(L"[pdf]") == String::npos)
            check(tRow, kXLSX);
    }
}

TEST(TextTemplate, HasNoSectionForEmptyValuesInOtherOutputs)
{
    for (const OutputType eOutput : {kText, kHTML, kXML, kJavaScript, kSQL, kSQLLiteral})
        EXPECT_TRUE(WebTextFormatterImpl(L"@;-[html]@;-", eOutput).emptyFormatter().isNull()) << eOutput;
}

TEST(TextTemplate, EncodesLiteralTextForTheOutputUnlessItsSectionWroteIt)
{
    const auto elements = [](const wchar_t* pTemplate, OutputType eOutput) { return elementsOf(pTemplate, eOutput); };
    EXPECT_EQ(elements(L"\"<b>\"'\\&&", kHTML), "«&lt;b&gt;» «&#39;» «&amp;» «&amp;»");
    EXPECT_EQ(elements(L"[html]\"<b>\"'\\&&", kHTML), "«<b>» «'» «&» «&»");
    EXPECT_EQ(elements(L"\"<b>\"", kJavaScript), "«\\u003Cb\\u003E»");
    EXPECT_EQ(elements(L"it's", kSQLLiteral), "«i» «t» «''» «s»");
    EXPECT_EQ(elements(L"\"<b>\"", kSQL), "«<b>»");
    EXPECT_EQ(elements(L"\"<b>\"", kText), "«<b>»");
    EXPECT_EQ(elements(L"\"<b>\"", static_cast<OutputType>(99)), "«<b>»");
}

TEST(TextTemplate, SaysWhereItsElementsStand)
{
    const WebTextFormatterImpl tFormatter(L"@[html]\"a\\\"b\"\\c[x]@T(5)@I (1,2)@;d", kPDF);
    const String& sSource = tFormatter.sourceText();
    std::string sPlaces;
    const auto add = [&](const SubTextFormatter& tPart)
    {
        for (const Format& tFormat : tPart.formats())
            sPlaces += toUtf8(sSource.substr(tFormat.nSourceStart, tFormat.nSourceEnd - tFormat.nSourceStart)) + "|";
    };
    EXPECT_EQ(sSource, L"\"a\\\"b\"\\c[x]@T(5)@I (1,2)@;d");
    add(tFormatter.mainFormatter());
    add(*tFormatter.emptyFormatter());
    EXPECT_EQ(sPlaces, "|\"a\\\"b\"|\"a\\\"b\"|\\c|@T(5)|@I (1,2)|@||d|");
}

TEST(TextTemplate, ReadsListsUpToTheEndThatItIsGiven)
{
    const std::wstring_view sText = L"(12)";
    for (std::size_t nLength = 0; nLength <= sText.size(); ++nLength)
    {
        SubTextFormatter tFormatter;
        const std::size_t nExpected = nLength == sText.size() ? nLength : 0;
        EXPECT_EQ(tFormatter.parseImageFormat(sText.data(), sText.data() + nLength), nExpected) << nLength;
        EXPECT_EQ(tFormatter.parseTruncateFormat(sText.data(), sText.data() + nLength), nExpected) << nLength;
        EXPECT_EQ(elementsOf(tFormatter), nExpected == 0 ? "I-x- T20" : "I12x- T12") << nLength;
    }
    SubTextFormatter tFormatter;
    const std::wstring_view sMore = L"H(3,4) and (5)";
    EXPECT_EQ(tFormatter.parseTruncateFormat(sMore.data(), sMore.data() + sMore.size()), 6u);
    EXPECT_EQ(elementsOf(tFormatter), "T3,4");
}

TEST(TextTemplate, ReadsHostileTextsInTheTimeOfTheirLength)
{
    constexpr std::size_t kRepeated = 20000;
    for (const wchar_t* pPiece :
         {L"@I(", L"@T(", L"@T(5", L"@T(5,", L"@T(5 ", L"@T(0",   L"@TH(", L"@I ",   L"@I(@T(5,;", L"\"",
          L"[",   L"]",   L";",    L"\\",    L"&nbsp", L"&nbsp;", L"\"\\", L"@T(0)", L"@I(;",      L" "})
    {
        String sTemplate = L"[html]";
        for (std::size_t n = 0; n < kRepeated; ++n)
            sTemplate += pPiece;
        for (const wchar_t* pEnd : {L"", L",)"})
        {
            const WebTextFormatterImpl tFormatter(sTemplate + pEnd, kPDF);
            EXPECT_LE(tFormatter.mainFormatter().formats().size(), sTemplate.size() + 4);
        }
    }
}

TEST(TextTemplate, NamesItsKinds)
{
    EXPECT_STREQ(SubTextFormatter::typeName(SubTextFormatter::kText), "kText");
    EXPECT_STREQ(SubTextFormatter::typeName(SubTextFormatter::kHTML), "kHTML");
    EXPECT_STREQ(SubTextFormatter::typeName(SubTextFormatter::kNoBreakSpaces), "kNoBreakSpaces");
    EXPECT_STREQ(SubTextFormatter::typeName(SubTextFormatter::kJavaScriptString), "kJavaScriptString");
    EXPECT_STREQ(SubTextFormatter::typeName(SubTextFormatter::kImage), "kImage");
    EXPECT_STREQ(SubTextFormatter::typeName(static_cast<SubTextFormatter::TextType>(5)), "");
    EXPECT_STREQ(SubTextFormatter::typeName(static_cast<SubTextFormatter::TextType>(-1)), "");
}

}  // namespace tov

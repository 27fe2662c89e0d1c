#include <gtest/gtest.h>

#include "webformat/convertwhistlerformat.h"

namespace tov {

namespace {

WebValueFormatDefinitionHandle convert(const String& sFormat)
{
    return WebConvertWhistlerFormat::ConvertTextFormat(WebWhistlerFormatDefinition(sFormat));
}

String customFormatOf(const String& sFormat)
{
    const WebValueFormatDefinitionHandle hDefinition = convert(sFormat);
    const auto* const pCustom = dynamic_cast<const WebCustomFormatDefinition*>(hDefinition.getPointer());
    return pCustom ? pCustom->GetCustomFormat() : L"no custom definition";
}

struct TypeRow
{
    int nLine;
    const wchar_t* pFormat;
    WebTextFormatDefinition::Type eType;
};

constexpr TypeRow kTypeRows[] = {
    {__LINE__, L"", WebTextFormatDefinition::kPlainText},
    {__LINE__, L"@", WebTextFormatDefinition::kPlainText},
    {__LINE__, L"@N", WebTextFormatDefinition::kPlainNBSPText},
    {__LINE__, L"@H", WebTextFormatDefinition::kHTML},
    {__LINE__, L"\"<a href=\\\"http://\"@H\"\\\">\"@\"</a>\";;@", WebTextFormatDefinition::kHypertextLinkPrependHttp},
    {__LINE__, L"\"<a href=\\\"\"@H\"\\\">\"@\"</a>\";;@", WebTextFormatDefinition::kHypertextLink},
    {__LINE__, L"\"<a href=\\\"mailto:\"@H\"\\\">\"@\"</a>\";;@", WebTextFormatDefinition::kMailToAddress},
    {__LINE__, L"\"<img src=\\\"\"@H\"\\\"></img>\";;@", WebTextFormatDefinition::kImageURL},
};

struct Row
{
    int nLine;
    const wchar_t* pFormat;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"\"<b>\"@;\"-\";\"-\"", L"[html]\"<b>\"@;\"-\"[text]\"-\""},
    {__LINE__, L"a@b", L"[html]a@b"},
    {__LINE__, L"@J", L"[html]@J"},
    {__LINE__, L"@h", L"[html]@h"},  // case counts in the table, too
    {__LINE__, L" @", L"[html] @"},
    {__LINE__, L"@@", L"[html]@@"},
    // The semicolons: the second becomes the tag, those behind the third are dropped.
    {__LINE__, L";", L"[html];"},
    {__LINE__, L";;", L"[html];[text]"},
    {__LINE__, L"a;b;c;d;e;f", L"[html]a;b[text]c;def"},
    {__LINE__, L"@;;@", L"[html]@;[text]@"},
    // Quoted text is copied whole, with its semicolons and its backslash pairs.
    {__LINE__, L"\"a;b\";c", L"[html]\"a;b\";c"},
    {__LINE__, L"\"a\\\";b\";c", L"[html]\"a\\\";b\";c"},
    {__LINE__, L"\"a\\\";b\";;c", L"[html]\"a\\\";b\";[text]c"},
    {__LINE__, L"\"a\\\\\";;c", L"[html]\"a\\\\\";[text]c"},
    {__LINE__, L"\"\";;", L"[html]\"\";[text]"},
    {__LINE__, L"\"a;;b", L"[html]\"a;;b"},
    {__LINE__, L"\"a\\", L"[html]\"a\\"},
    {__LINE__, L"\"", L"[html]\""},
    // A backslash and the character behind it are copied together.
    {__LINE__, L"\\;;;@", L"[html]\\;;[text]@"},
    {__LINE__, L"\\\";;@", L"[html]\\\";[text]@"},
    {__LINE__, L"a\\", L"[html]a\\"},
    // What means something only in templates is copied like any other character.
    {__LINE__, L"[text]'@&nbsp;;x", L"[html][text]'@&nbsp;[text]x"},
};

}  // namespace

TEST(ConvertWhistlerText, KnowsTheStringsThatTextTypesStandFor)
{
    for (const TypeRow& tRow : kTypeRows)
    {
        const WebValueFormatDefinitionHandle hDefinition = convert(tRow.pFormat);
        const auto* const pText = dynamic_cast<const WebTextFormatDefinition*>(hDefinition.getPointer());
        ASSERT_NE(pText, nullptr) << "row at line " << tRow.nLine;
        EXPECT_EQ(pText->GetFormatType(), tRow.eType) << "row at line " << tRow.nLine;
    }
}

TEST(ConvertWhistlerText, PutsTheHtmlSectionFirst)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(customFormatOf(tRow.pFormat), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(ConvertWhistlerText, RemembersNothing)
{
    EXPECT_FALSE(convert(L"a@") == convert(L"a@"));
    EXPECT_FALSE(convert(L"@") == convert(L"@"));
}

TEST(ConvertWhistlerText, TakesTheTimeOfTheLength)
{
    for (const wchar_t* pPiece : {L"\"", L"\\", L";", L"\"\\", L"@H"})
    {
        String sFormat;
        for (int n = 0; n < 200000; ++n)
            sFormat += pPiece;
        EXPECT_LE(customFormatOf(sFormat).size(), sFormat.size() + 12);
    }
}

}  // namespace tov

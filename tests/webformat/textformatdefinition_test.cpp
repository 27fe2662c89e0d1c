#include <gtest/gtest.h>

#include "definitiontesting.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "support/collected.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

namespace {

using Text = WebTextFormatDefinition;
using Whistler = WebWhistlerFormatDefinition;

struct TextRow
{
    int nLine;
    int nType;
    const wchar_t* pName;
    const wchar_t* pPattern;
};

constexpr TextRow kTextRows[] = {
    {__LINE__, 0, L"plain", L"@"},
    {__LINE__, 1, L"plainNBSP", L"@[html]@N"},
    {__LINE__, 2, L"html", L"@[html]@H"},
    {__LINE__, 3, L"hyperLinkHTTP", L"\"http://\"@[html]\"<a href=\\\"http://\"@H\"\\\">\"@\"</a>\""},
    {__LINE__, 4, L"hyperLink", L"@[html]\"<a href=\\\"\"@H\"\\\">\"@\"</a>\""},
    {__LINE__, 5, L"mailTo", L"@[html]\"<a href=\\\"mailto:\"@H\"\\\">\"@\"</a>\""},
    {__LINE__, 6, L"imageURL", L"@[html]\"<img src=\\\"\"@H\"\\\">\""},
};

TEST(TextFormatDefinition, ReadsAndWritesTheNamesOfItsTypes)
{
    for (const TextRow& tRow : kTextRows)
    {
        const Definition hRead = definitionOf("xsi:type='tov:text' textFormat='" + toUtf8(tRow.pName) + "'/>");
        ASSERT_NE(as<Text>(hRead), nullptr) << "row at line " << tRow.nLine;
        EXPECT_EQ(as<Text>(hRead)->GetFormatType(), tRow.nType) << "row at line " << tRow.nLine;
        EXPECT_EQ(attributesOf(hRead), L"textFormat=" + String(tRow.pName)) << "row at line " << tRow.nLine;
        EXPECT_EQ(settingsOf(hRead), L"textFormat='" + String(tRow.pName) + L"'") << "row at line " << tRow.nLine;
    }
}

TEST(TextFormatDefinition, ReadsAnUnknownNameAsPlain)
{
    for (const char* pRest : {"/>", "textFormat=''/>", "textFormat='HTML'/>", "textFormat='hyperlink'/>",
                              "textFormat=' html'/>", "textFormat='zzz'/>"})
    {
        const Definition hRead = definitionOf(std::string("xsi:type='tov:text' ") + pRest);
        ASSERT_NE(as<Text>(hRead), nullptr) << pRest;
        EXPECT_EQ(as<Text>(hRead)->GetFormatType(), Text::kPlainText) << pRest;
    }
}

TEST(TextFormatDefinition, StandsForAPattern)
{
    for (const TextRow& tRow : kTextRows)
        EXPECT_STREQ(Text::standardPattern(static_cast<Text::Type>(tRow.nType)), tRow.pPattern)
            << "row at line " << tRow.nLine;
    EXPECT_STREQ(Text::standardPattern(Text::kTextTypeEnd_), L"@");
}

TEST(TextFormatDefinition, FindsTheTypeOfAStandardPattern)
{
    for (const TextRow& tRow : kTextRows)
    {
        const WebValueFormatDefinitionHandle hFound = Text::LookupStandardFormat(tRow.pPattern);
        const auto* const pText = dynamic_cast<const Text*>(hFound.getPointer());
        ASSERT_NE(pText, nullptr) << "row at line " << tRow.nLine;
        EXPECT_EQ(pText->GetFormatType(), tRow.nType) << "row at line " << tRow.nLine;
    }
}

TEST(TextFormatDefinition, KeepsAnyOtherPatternAsACustomDefinition)
{
    for (const wchar_t* pPattern : {L"@[html]@h", L"", L"@ ", L"@[HTML]@H", L"x"})
    {
        const WebValueFormatDefinitionHandle hFound = Text::LookupStandardFormat(pPattern);
        const auto* const pCustom = dynamic_cast<const WebCustomFormatDefinition*>(hFound.getPointer());
        ASSERT_NE(pCustom, nullptr) << toUtf8(pPattern);
        EXPECT_EQ(pCustom->GetCustomFormat(), pPattern);
    }
}

TEST(TextFormatDefinition, HasAnExcelStyleButNoExcelPattern)
{
    const Text tText(Text::kHTML);
    EXPECT_EQ(tText.getMsoStyle(Locale::kUSA, KTWUILanguage::kDefaultLanguage), L"mso-number-format:'@'");
    EXPECT_EQ(tText.getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage, Text::kFormatPatternNormal), L"");
    EXPECT_EQ(tText.getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage, Text::kFormatPatternExcel), L"");
}

TEST(TextFormatDefinition, IsOrderedByItsType)
{
    EXPECT_EQ(Text(Text::kPlainText).CompareLikeDefinition(Text(Text::kImageURL)), -1);
    EXPECT_EQ(Text(Text::kImageURL).CompareLikeDefinition(Text(Text::kPlainText)), 1);
    EXPECT_EQ(Text(Text::kHTML).CompareLikeDefinition(Text(Text::kHTML)), 0);
}

TEST(TextFormatDefinition, StreamsItsTypeAsOneByte)
{
    EXPECT_EQ(bytesOf(new Text), "04 00 00 00 74 65 78 74 00");
    EXPECT_EQ(bytesOf(new Text(Text::kImageURL)), "04 00 00 00 74 65 78 74 06");
}

TEST(TextFormatDefinition, SaysThatATypeHasNoName)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(attributesOf(new Text(Text::kTextTypeEnd_)), L"");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "!(i == m_mEnumKeyedMap.end())");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/valueformatdefinition");
}

TEST(WhistlerFormatDefinition, ReadsAndWritesItsString)
{
    const Definition hRead = definitionOf("xsi:type='tov:whistler' whistlerFormat='#,##0;[red](0)'/>");
    ASSERT_NE(as<Whistler>(hRead), nullptr);
    EXPECT_EQ(as<Whistler>(hRead)->GetFormatString(), L"#,##0;[red](0)");
    EXPECT_EQ(attributesOf(hRead), L"whistlerFormat=#,##0;[red](0)");
    EXPECT_EQ(settingsOf(hRead), L"whistlerFormat='#,##0;[red](0)'");
}

TEST(WhistlerFormatDefinition, IsEmptyUnlessTold)
{
    const Definition hRead = definitionOf("xsi:type='tov:whistler'/>");
    ASSERT_NE(as<Whistler>(hRead), nullptr);
    EXPECT_EQ(as<Whistler>(hRead)->GetFormatString(), L"");
    EXPECT_EQ(attributesOf(hRead), L"whistlerFormat=");  // written even so
}

// Kept: the string is no part of the binary form.
TEST(WhistlerFormatDefinition, StreamsItsTypeNameOnly)
{
    EXPECT_EQ(bytesOf(new Whistler(L"0.00")), "08 00 00 00 77 68 69 73 74 6C 65 72");
}

TEST(WhistlerFormatDefinition, IsOrderedByItsString)
{
    EXPECT_EQ(Whistler(L"a").CompareLikeDefinition(Whistler(L"b")), -1);
    EXPECT_EQ(Whistler(L"b").CompareLikeDefinition(Whistler(L"a")), 1);
    EXPECT_EQ(Whistler(L"B").CompareLikeDefinition(Whistler(L"a")), -1);  // case counts
    EXPECT_EQ(Whistler(L"a").CompareLikeDefinition(Whistler(L"a")), 0);
}

TEST(WhistlerFormatDefinition, HasNoExcelForm)
{
    const Whistler tWhistler(L"0.00");
    EXPECT_EQ(tWhistler.getMsoStyle(Locale::kUSA, KTWUILanguage::kDefaultLanguage), L"");
    EXPECT_EQ(tWhistler.getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage, Whistler::kFormatPatternExcel),
              L"");
}

}  // namespace

}  // namespace tov

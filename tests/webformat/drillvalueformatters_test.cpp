#include "webformat/drillvalueformatters.h"

#include <gtest/gtest.h>

#include "support/allocationcounter.h"
#include "support/decoders.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

constexpr Types::OutputType kAllTypes[] = {Types::kText, Types::kHTML, Types::kXML,        Types::kJavaScript,
                                           Types::kPDF,  Types::kSQL,  Types::kSQLLiteral, Types::kXLSX};

WebValueFormatterHandle drillText(Types::OutputType eOutput)
{
    return WebDrillValueFormatter::GetFormatter(SQLDataType(SQLDataType::kVarChar), eOutput);
}

struct Row
{
    int nLine;
    Types::OutputType eOutput;
    const wchar_t* pText;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, Types::kHTML, L"a<b", L"a&lt;b"},
    {__LINE__, Types::kHTML, L"\"R&D\" isn't", L"&quot;R&amp;D&quot; isn&#39;t"},
    {__LINE__, Types::kXML, L"a<b", L"a&lt;b"},
    {__LINE__, Types::kPDF, L"a<b", L"a&lt;b"},
    {__LINE__, Types::kXLSX, L"a<b", L"a&lt;b"},
    {__LINE__, Types::kJavaScript, L"a<b'\n", L"a\\u003Cb\\u0027\\n"},
    {__LINE__, Types::kText, L"a<b'", L"a<b'"},
    {__LINE__, Types::kSQL, L"a<b'", L"a<b'"},
    {__LINE__, Types::kSQLLiteral, L"a<b'", L"a<b'"},  // kept: not encoded here
    {__LINE__, Types::kHTML, L"", L""},
    {__LINE__, Types::kJavaScript, L"", L""},
    {__LINE__, Types::kHTML, L"*KT_NULL*", L"*KT_NULL*"},
};

TEST(DrillValueFormatters, EncodeTextForTheOutput)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(drillText(tRow.eOutput)->formatAsString(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(DrillValueFormatters, WriteTheNullMarkerForANullTextWhateverTheOutput)
{
    for (const Types::OutputType eOutput : kAllTypes)
        EXPECT_EQ(drillText(eOutput)->formatAsString(nullptr), L"*KT_NULL*") << eOutput;
    EXPECT_STREQ(WebDrillValueFormatter::ksTextNULL, L"*KT_NULL*");
}

TEST(DrillValueFormatters, KeepSurrogatePairsTogetherInLongJavaScriptTexts)
{
    for (std::size_t nBefore = 0; nBefore < 300; nBefore += 7)
    {
        const String sText = String(nBefore, L'a') + wchar_t(0xD83D) + wchar_t(0xDE00) + String(500, L'\'');
        const String sEncoded = drillText(Types::kJavaScript)->formatAsString(sText.c_str());
        EXPECT_EQ(decodeJavaLiteral(sEncoded), sText) << nBefore;
    }
}

TEST(DrillValueFormatters, DescribeThemselves)
{
    for (const SQLDataType::DataType eType : {SQLDataType::kChar, SQLDataType::kVarChar, SQLDataType::kLongVarChar})
    {
        const WebValueFormatterHandle hFormatter =
            WebDrillValueFormatter::GetFormatter(SQLDataType(eType), Types::kJavaScript);
        ASSERT_FALSE(hFormatter.isNull());
        EXPECT_EQ(hFormatter->outputType(), Types::kJavaScript);
        EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageWChar);
        EXPECT_EQ(hFormatter->GetCustomFormatString(), L"blech");
        EXPECT_TRUE(hFormatter->IsValidExcelPattern());
    }
}

TEST(DrillValueFormatters, AreMadeAnewForEveryTextColumn)
{
    EXPECT_FALSE(drillText(Types::kHTML) == drillText(Types::kHTML));
}

TEST(DrillValueFormatters, AreTheSharedTypedLiteralsForOtherTypes)
{
    for (const SQLDataType::DataType eType : {SQLDataType::kInteger, SQLDataType::kBigInt, SQLDataType::kDouble,
                                              SQLDataType::kDecimal, SQLDataType::kBinary})
    {
        const SQLDataType tType(eType);
        const WebValueFormatterHandle hFormatter = WebDrillValueFormatter::GetFormatter(tType, Types::kHTML);
        EXPECT_FALSE(hFormatter.isNull()) << eType;
        EXPECT_TRUE(hFormatter == WebValueFormatter::GetTypedLiteralFormatter(tType, Types::kHTML)) << eType;
    }
}

TEST(DrillValueFormatters, WriteIntoFreeRoomWithoutAllocating)
{
    const WebValueFormatterHandle hFormatter = drillText(Types::kHTML);
    StringBufferTemplate<wchar_t, 256> tBuffer;
    hFormatter->formatToBuffer(tBuffer, L"warm");
    const AllocationCounter tCounter;
    hFormatter->formatToBuffer(tBuffer, L"a<b");
    hFormatter->formatToBuffer(tBuffer, nullptr);
    EXPECT_EQ(tCounter.count(), 0u);
}

}  // namespace
}  // namespace tov

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <thread>
#include <vector>

#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/decoders.h"
#include "webformat/outputencoders.h"
#include "webformat/valueformatter.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

constexpr Types::OutputType kAllTypes[] = {Types::kText, Types::kHTML, Types::kXML,        Types::kJavaScript,
                                           Types::kPDF,  Types::kSQL,  Types::kSQLLiteral, Types::kXLSX};

String encode(Types::OutputType eType, std::wstring_view sText)
{
    StringBufferTemplate<wchar_t, 64> tBuffer;
    Types::encodeToBufferOfType(tBuffer, eType, sText.data(), sText.size());
    return tBuffer.toString();
}

struct Row
{
    int nLine;
    Types::OutputType eType;
    const wchar_t* pText;
    const wchar_t* pExpected;
};

constexpr Row kEncoded[] = {
    {__LINE__, Types::kText, L"<b> & \"it's\"", L"<b> & \"it's\""},
    {__LINE__, Types::kSQL, L"<b> & \"it's\"", L"<b> & \"it's\""},
    {__LINE__, Types::kHTML, L"a<b", L"a&lt;b"},
    {__LINE__, Types::kHTML, L"<b> & \"it's\"", L"&lt;b&gt; &amp; &quot;it&#39;s&quot;"},
    {__LINE__, Types::kXML, L"<b> & \"it's\"", L"&lt;b&gt; &amp; &quot;it&#39;s&quot;"},
    {__LINE__, Types::kPDF, L"<b> & \"it's\"", L"&lt;b&gt; &amp; &quot;it&#39;s&quot;"},
    {__LINE__, Types::kXLSX, L"<b> & \"it's\"", L"&lt;b&gt; &amp; &quot;it&#39;s&quot;"},
    {__LINE__, Types::kJavaScript, L"a\n\\'</", L"a\\n\\\\\\u0027\\u003C/"},
    {__LINE__, Types::kJavaScript, L"a&b", L"a&b"},  // the plain literal: no markup around it
    {__LINE__, Types::kSQLLiteral, L"it's \"x\" <y>", L"it''s \"x\" <y>"},
    {__LINE__, Types::kSQLLiteral, L"''", L"''''"},
};

TEST(OutputEncoding, EncodesTextForEachOutput)
{
    for (const Row& tRow : kEncoded)
        EXPECT_EQ(encode(tRow.eType, tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(OutputEncoding, EncodesPdfAndExcelExactlyAsXml)
{
    String sText;
    for (wchar_t nChar = 0; nChar < 0x2100; ++nChar)
        sText.push_back(nChar);
    EXPECT_EQ(encode(Types::kPDF, sText), encode(Types::kXML, sText));
    EXPECT_EQ(encode(Types::kXLSX, sText), encode(Types::kXML, sText));
    EXPECT_EQ(encoderFor(Types::kPDF), encoderFor(Types::kXML));
    EXPECT_EQ(encoderFor(Types::kXLSX), encoderFor(Types::kXML));
}

TEST(OutputEncoding, HasNoEncoderForOutputsThatAreCopiedUnchanged)
{
    for (const int nType : {Types::kText + 0, Types::kSQL + 0, Types::kLastType + 0, -1, 9, INT_MAX})
        EXPECT_EQ(encoderFor(static_cast<Types::OutputType>(nType)), nullptr) << nType;
}

TEST(OutputEncoding, AppendsNothingForAnEmptyTextAndDoesNotGrowTheBuffer)
{
    for (const Types::OutputType eType : kAllTypes)
    {
        StringBufferBaseTemplate<wchar_t> tBuffer;
        Types::encodeToBufferOfType(tBuffer, eType, nullptr, 0);
        EXPECT_EQ(tBuffer.length(), 0u) << eType;
        EXPECT_EQ(tBuffer.capacity(), 0u) << eType;
    }
}

TEST(OutputEncoding, AssertsForTheEndMarkerAndLeavesTheBufferAlone)
{
    const CollectedAssertions tAssertions;
    StringBufferTemplate<wchar_t, 64> tBuffer;
    tBuffer.append(L"kept");
    Types::encodeToBufferOfType(tBuffer, Types::kLastType, L"text", 4);
    EXPECT_EQ(tBuffer.toString(), L"kept");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "unknown type");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/valueformatter");
    EXPECT_GT(tAssertions.all()[0].nLine, 0);
}

TEST(OutputEncoding, DoesNothingForValuesThatAreNoOutputType)
{
    const CollectedAssertions tAssertions;
    for (const int nType : {-1, 9, 15, 16, 100, INT_MIN, INT_MAX})
        EXPECT_EQ(encode(static_cast<Types::OutputType>(nType), L"text"), L"") << nType;
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(OutputEncoding, ReadsNoFurtherThanTheGivenLength)
{
    const std::vector<wchar_t> vText = {L'a', L'<', L'\''};  // no terminator behind it
    for (const Types::OutputType eType : kAllTypes)
    {
        StringBufferTemplate<wchar_t, 64> tBuffer;
        Types::encodeToBufferOfType(tBuffer, eType, vText.data(), 1);
        EXPECT_EQ(tBuffer.toString(), L"a") << eType;
    }
}

TEST(OutputEncoding, GrowsTheBufferByItsOwnRule)
{
    struct Growth
    {
        int nLine;
        std::size_t nLength;
        std::size_t nCapacity;
    };
    for (const Growth& tRow : {Growth{__LINE__, 1, 63}, Growth{__LINE__, 63, 63}, Growth{__LINE__, 64, 127},
                               Growth{__LINE__, 256, 511}, Growth{__LINE__, 1000, 1023}})
    {
        StringBufferBaseTemplate<wchar_t> tBuffer;
        const String sText(tRow.nLength, L'x');
        Types::encodeToBufferOfType(tBuffer, Types::kText, sText.data(), sText.size());
        EXPECT_EQ(tBuffer.view(), sText) << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.capacity(), tRow.nCapacity) << "row at line " << tRow.nLine;
    }
}

// Chunks of 64 characters and more, each ending somewhere else in the text.
TEST(OutputEncoding, EncodesLongTextsWholeWhateverTheRoomInTheBuffer)
{
    for (std::size_t nLength = 1; nLength < 700; nLength += 3)
    {
        String sText;
        for (std::size_t i = 0; i < nLength; ++i)
            sText.push_back(i % 5 == 0 ? L'\'' : i % 7 == 0 ? L'<' : static_cast<wchar_t>(L'a' + i % 26));
        EXPECT_EQ(decodeSQLLiteral(encode(Types::kSQLLiteral, sText)), sText) << nLength;
        EXPECT_EQ(decodeJavaLiteral(encode(Types::kJavaScript, sText)), sText) << nLength;
        EXPECT_EQ(decodeMarkup(encode(Types::kHTML, sText), true), sText) << nLength;
    }
}

TEST(OutputEncoding, GrowsEnoughForTextThatTheEstimateDoesNotCover)
{
    const String sQuotes(10000, L'\'');
    EXPECT_EQ(encode(Types::kSQLLiteral, sQuotes), String(20000, L'\''));
}

TEST(OutputEncoding, KeepsSurrogatePairsTogetherAtEveryPositionInSqlLiterals)
{
    for (std::size_t nBefore = 0; nBefore < 200; ++nBefore)
    {
        const String sText = String(nBefore, L'a') + wchar_t(0xD83D) + wchar_t(0xDE00) + String(100, L'b');
        EXPECT_EQ(encode(Types::kSQLLiteral, sText), sText) << nBefore;
    }
}

TEST(OutputEncoding, EncodesIntoFreeRoomWithoutAllocating)
{
    StringBufferTemplate<wchar_t, 2000> tBuffer;
    for (const Types::OutputType eType : kAllTypes)
        Types::encodeToBufferOfType(tBuffer, eType, L"warm", 4);
    const AllocationCounter tCounter;
    for (const Types::OutputType eType : kAllTypes)
        Types::encodeToBufferOfType(tBuffer, eType, L"it's <b>", 8);
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(OutputEncoding, ServesManyThreadsWithTheSameEncoders)
{
    std::vector<std::thread> vThreads;
    std::vector<int> vWrong(8, 0);
    for (int& nWrong : vWrong)
    {
        vThreads.emplace_back(
            [&nWrong]
            {
                for (int i = 0; i < 200; ++i)
                {
                    for (const Row& tRow : kEncoded)
                        nWrong += encode(tRow.eType, tRow.pText) != tRow.pExpected;
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<int>(8, 0));
}

struct LiteralRow
{
    int nLine;
    const wchar_t* pLiteral;
    int nFrom;
    int nTo;
    const wchar_t* pExpected;
};

constexpr LiteralRow kLiterals[] = {
    {__LINE__, L"a<b", Types::kText, Types::kHTML, L"a&lt;b"},
    {__LINE__, L"a<b", Types::kText, Types::kXML, L"a&lt;b"},
    {__LINE__, L"a<b", Types::kText, Types::kPDF, L"a&lt;b"},
    {__LINE__, L"a<b", Types::kText, Types::kXLSX, L"a&lt;b"},
    {__LINE__, L"a<b", Types::kText, Types::kJavaScript, L"a\\u003Cb"},
    {__LINE__, L"it's", Types::kText, Types::kSQLLiteral, L"it''s"},
    {__LINE__, L"it's", Types::kText, Types::kSQL, L"it's"},
    // The same output on both sides: untouched.
    {__LINE__, L"<b>", Types::kHTML, Types::kHTML, L"<b>"},
    {__LINE__, L"<b>", Types::kXML, Types::kXML, L"<b>"},
    {__LINE__, L"it's", Types::kSQLLiteral, Types::kSQLLiteral, L"it's"},
    // Never decoded from the first, and not recognised as encoded already.
    {__LINE__, L"&lt;", Types::kHTML, Types::kXML, L"&amp;lt;"},
    {__LINE__, L"&lt;", Types::kHTML, Types::kText, L"&lt;"},
    // To plain text and SQL: untouched whatever the first is.
    {__LINE__, L"<'>", Types::kXML, Types::kText, L"<'>"},
    {__LINE__, L"<'>", Types::kPDF, Types::kSQL, L"<'>"},
    {__LINE__, L"<'>", Types::kJavaScript, Types::kSQL, L"<'>"},
    // To what is no output type: untouched.
    {__LINE__, L"<'>", Types::kText, Types::kLastType, L"<'>"},
    {__LINE__, L"<'>", Types::kText, 9, L"<'>"},
    {__LINE__, L"<'>", Types::kText, -1, L"<'>"},
    {__LINE__, L"<'>", 100, 100, L"<'>"},
    {__LINE__, L"<", 100, Types::kHTML, L"&lt;"},
    {__LINE__, L"", Types::kText, Types::kHTML, L""},
};

TEST(ConvertLiteral, EncodesForTheSecondOutputUnlessItIsTheFirst)
{
    const CollectedAssertions tAssertions;
    for (const LiteralRow& tRow : kLiterals)
    {
        EXPECT_EQ(WebValueFormatter::ConvertLiteral(tRow.pLiteral, static_cast<Types::OutputType>(tRow.nFrom),
                                                    static_cast<Types::OutputType>(tRow.nTo)),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
    }
    EXPECT_EQ(tAssertions.count(), 0u);
}

}  // namespace
}  // namespace tov

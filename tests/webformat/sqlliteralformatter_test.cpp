#include <gtest/gtest.h>

#include <cwchar>
#include <random>
#include <thread>
#include <vector>

#include "support/allocationcounter.h"
#include "support/decoders.h"
#include "support/limitedallocator.h"
#include "webformat/textformatter.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

WebValueFormatterHandle literal(Types::OutputType eOutput)
{
    return WEBFORMAT_NEW("test") TextSQLLiteralFormatter(eOutput);
}

struct Row
{
    int nLine;
    Types::OutputType eOutput;
    const wchar_t* pText;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    // The apostrophe is doubled for SQL, then escaped for JavaScript.
    {__LINE__, Types::kText, L"O'Brien", L"'O\\u0027\\u0027Brien'"},
    {__LINE__, Types::kText, L"plain", L"'plain'"},
    {__LINE__, Types::kText, L"\"R&D\" <x>", L"'\\u0022R&D\\u0022 \\u003Cx\\u003E'"},
    {__LINE__, Types::kText, L"a\\b\n\t", L"'a\\\\b\\n\\t'"},
    {__LINE__, Types::kText, L"", L"''"},
    {__LINE__, Types::kText, nullptr, L"''"},
    // In markup the ampersand of an entity stays.
    {__LINE__, Types::kHTML, L"O'Brien", L"&#39;O&#39;&#39;Brien&#39;"},
    {__LINE__, Types::kHTML, L"\"R&D\" <x>", L"&#39;&quot;R&amp;D&quot; &lt;x&gt;&#39;"},
    {__LINE__, Types::kHTML, L"a\\b\n\x1", L"&#39;a\\\\b\\n\\u0001&#39;"},
    {__LINE__, Types::kHTML, L"", L"&#39;&#39;"},
    {__LINE__, Types::kHTML, nullptr, L"&#39;&#39;"},
    {__LINE__, Types::kXML, L"O'Brien", L"'O&#39;&#39;Brien'"},
    {__LINE__, Types::kXML, L"\"R&D\" <x>", L"'&quot;R&amp;D&quot; &lt;x&gt;'"},
    // Kept: characters that XML does not allow are copied, too.
    {__LINE__, Types::kXML, L"a\xFFFE\xFFFF\U00010000\xFFFD\xE000\xD7FF",
     L"'a\xFFFE\xFFFF\U00010000\xFFFD\xE000\xD7FF'"},
    {__LINE__, Types::kHTML, L"\xFFFE\xFFFF", L"&#39;\xFFFE\xFFFF&#39;"},
    {__LINE__, Types::kText, L"a\xFFFE", L"'a\xFFFE'"},
    {__LINE__, Types::kXML, L"", L"''"},
    {__LINE__, Types::kXML, nullptr, L"''"},
    // Kept: all other outputs show the two quotes alone.
    {__LINE__, Types::kJavaScript, L"O'Brien", L"''"},
    {__LINE__, Types::kPDF, L"O'Brien", L"''"},
    {__LINE__, Types::kSQL, L"O'Brien", L"''"},
    {__LINE__, Types::kSQLLiteral, L"O'Brien", L"''"},
    {__LINE__, Types::kXLSX, L"O'Brien", L"''"},
    {__LINE__, Types::kLastType, L"O'Brien", L"''"},
    {__LINE__, Types::kPDF, nullptr, L"''"},
};

TEST(TextSQLLiteralFormatter, WritesAQuotedLiteral)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(literal(tRow.eOutput)->formatAsString(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(TextSQLLiteralFormatter, DescribesItself)
{
    const WebValueFormatterHandle hFormatter = literal(Types::kXLSX);
    EXPECT_EQ(hFormatter->outputType(), Types::kXLSX);
    EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageWChar);
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"");
    EXPECT_NE(dynamic_cast<const WebTextFormatter*>(hFormatter.getPointer()), nullptr);
}

// What stands between the quotes, as JavaScript reads it.
std::optional<String> bodyOf(const String& sLiteral, std::wstring_view sQuote)
{
    if (sLiteral.size() < 2 * sQuote.size() || !sLiteral.starts_with(sQuote) || !sLiteral.ends_with(sQuote))
        return std::nullopt;
    return decodeJavaLiteral(std::wstring_view(sLiteral).substr(sQuote.size(), sLiteral.size() - 2 * sQuote.size()));
}

// Markup is read as text first: the entities, and then the doubled apostrophes.
std::optional<String> valueOf(const String& sLiteral, Types::OutputType eOutput)
{
    const std::optional<String> tBody = bodyOf(sLiteral, eOutput == Types::kHTML ? L"&#39;" : L"'");
    if (!tBody || eOutput == Types::kText)
        return tBody ? decodeSQLLiteral(*tBody) : std::nullopt;
    const std::optional<String> tText = decodeMarkup(*tBody, true);
    return tText ? decodeSQLLiteral(*tText) : std::nullopt;
}

String randomText(std::mt19937& tRandom)
{
    constexpr std::wstring_view kSpecial = L"'\"&<>\\\n\r\t\b\f\x1\x1F\x7F;#39ax \u2028\u00E9\U0001F600";
    std::uniform_int_distribution<std::size_t> tLength(0, 400);
    std::uniform_int_distribution<std::size_t> tAt(0, kSpecial.size() - 1);
    String sText;
    for (std::size_t nLeft = tLength(tRandom); nLeft != 0; --nLeft)
        sText += kSpecial[tAt(tRandom)];
    return sText;
}

TEST(TextSQLLiteralFormatter, GivesTheValueBackToWhoDecodesTheLiteral)
{
    std::mt19937 tRandom(20240305);
    for (const Types::OutputType eOutput : {Types::kText, Types::kHTML, Types::kXML})
    {
        const WebValueFormatterHandle hFormatter = literal(eOutput);
        for (int nTime = 0; nTime < 500; ++nTime)
        {
            const String sText = randomText(tRandom);
            EXPECT_EQ(valueOf(hFormatter->formatAsString(sText.c_str()), eOutput), sText) << eOutput << ' ' << nTime;
        }
    }
}

// Every length up to a few pieces, so that each kind of character stands once at the end of a piece.
TEST(TextSQLLiteralFormatter, WritesLongValuesWholeWhereverTheyAreCut)
{
    const String sPair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    for (std::size_t nBefore = 0; nBefore < 300; ++nBefore)
    {
        const String sText = String(nBefore, L'a') + sPair + L"'" + String(nBefore, L'\'') + sPair + L"&";
        for (const Types::OutputType eOutput : {Types::kText, Types::kHTML, Types::kXML})
            EXPECT_EQ(valueOf(literal(eOutput)->formatAsString(sText.c_str()), eOutput), sText)
                << eOutput << ' ' << nBefore;
    }
}

TEST(TextSQLLiteralFormatter, AppendsToWhatStandsInTheBuffer)
{
    StringBufferBaseTemplate<wchar_t> tBuffer;
    tBuffer.append(L"name = ");
    literal(Types::kXML)->formatToBuffer(tBuffer, L"x");
    EXPECT_EQ(tBuffer.toString(), L"name = 'x'");
}

TEST(TextSQLLiteralFormatter, FormatsValuesOfAnyLengthIntoFreeRoomWithoutAllocating)
{
    const String sLong(100000, L'\'');
    for (const Types::OutputType eOutput : {Types::kText, Types::kHTML, Types::kXML, Types::kPDF})
    {
        const WebValueFormatterHandle hFormatter = literal(eOutput);
        StringBufferBaseTemplate<wchar_t> tBuffer;
        hFormatter->formatToBuffer(tBuffer, sLong.c_str());
        tBuffer.clear();
        const AllocationCounter tCounter;
        hFormatter->formatToBuffer(tBuffer, sLong.c_str());
        EXPECT_EQ(tCounter.count(), 0u) << eOutput;
    }
}

TEST(TextSQLLiteralFormatter, LeavesTheBufferAtItsOldLengthWhenMemoryRunsOut)
{
    const WebValueFormatterHandle hFormatter = literal(Types::kText);
    const String sText(200, L'x');
    for (const std::size_t nLength : {std::size_t(29), std::size_t(200)})
    {
        StringBufferTemplate<wchar_t, 34> tBuffer;
        tBuffer.append(L"kept");
        const LimitedAllocator tNothing(0);
        EXPECT_THROW(hFormatter->formatToBuffer(tBuffer, sText.c_str() + (200 - nLength)), std::bad_alloc) << nLength;
        EXPECT_EQ(tBuffer.toString(), L"kept") << nLength;
    }
}

TEST(TextSQLLiteralFormatter, FormatsTheSameFromManyThreadsAtOnce)
{
    const WebValueFormatterHandle hFormatter = literal(Types::kHTML);
    std::vector<int> vWrong(8);
    std::vector<std::thread> vThreads;
    for (int& nWrong : vWrong)
    {
        vThreads.emplace_back(
            [&hFormatter, &nWrong]
            {
                for (int nTime = 0; nTime < 2000; ++nTime)
                    nWrong += hFormatter->formatAsString(L"O'Brien") != L"&#39;O&#39;&#39;Brien&#39;";
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<int>(8));
}

}  // namespace
}  // namespace tov

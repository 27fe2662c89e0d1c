#include "webformat/compoundformatter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <vector>

#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/limitedallocator.h"

namespace tov {
namespace {

using Types = ValueFormatterTypes;

constexpr double kfValue = 12.5;

// The inner formatter of the tests: "12.5" whatever the output.
WebValueFormatterHandle number(Types::OutputType eOutput = Types::kText)
{
    return WebValueFormatter::GetCustomFormatter(SQLDataType(SQLDataType::kDouble), L"0.0", Locale::kUSA, eOutput,
                                                 KTWUILanguage::kDefaultLanguage);
}

WebValueFormatterHandle compound(const String& sFormat, Types::OutputType eOutput = Types::kText)
{
    return WEBFORMAT_NEW("test") CompoundFormatter(sFormat, number(eOutput), eOutput);
}

struct FormatRow
{
    int nLine;
    Types::OutputType eOutput;
    String sFormat;
    String sExpected;
};

TEST(CompoundFormatter, PutsTheValueInItsPlacesAndEncodesTheRestForTheOutput)
{
    const FormatRow aRows[] = {
        {__LINE__, Types::kText, L"@ kg", L"12.5 kg"},
        {__LINE__, Types::kHTML, L"@ kg", L"12.5 kg"},
        {__LINE__, Types::kText, L"@ <b> & 'x'", L"12.5 <b> & 'x'"},
        {__LINE__, Types::kHTML, L"@ <b> & 'x'", L"12.5 &lt;b&gt; &amp; &#39;x&#39;"},
        {__LINE__, Types::kXML, L"<@>", L"&lt;12.5&gt;"},
        {__LINE__, Types::kPDF, L"<@>", L"&lt;12.5&gt;"},
        {__LINE__, Types::kXLSX, L"<@>", L"&lt;12.5&gt;"},
        {__LINE__, Types::kJavaScript, L"'@'", L"\\u002712.5\\u0027"},
        {__LINE__, Types::kSQLLiteral, L"it's @", L"it''s 12.5"},
        {__LINE__, Types::kSQL, L"it's @", L"it's 12.5"},
        {__LINE__, Types::kText, L"@", L"12.5"},
        {__LINE__, Types::kText, L"@@", L"12.512.5"},
        {__LINE__, Types::kText, L"@ to @", L"12.5 to 12.5"},
        {__LINE__, Types::kText, L"", L""},
        {__LINE__, Types::kText, L"no value", L"no value"},
        {__LINE__, Types::kText, L"\"@\" @", L"@ 12.5"},
        {__LINE__, Types::kText, L"\"a\\\"b\"@", L"a\"b12.5"},
        {__LINE__, Types::kHTML, L"\"a\\\"b\"@", L"a&quot;b12.5"},
        {__LINE__, Types::kText, L"\"a\\\\b\"@", L"a\\b12.5"},
        {__LINE__, Types::kText, L"\"a\\@b\"@", L"a@b12.5"},
        // A quoted literal that nothing closes runs to the end; a backslash at the very end stays.
        {__LINE__, Types::kText, L"@\" kg", L"12.5 kg"},
        {__LINE__, Types::kText, L"@\"a@\\", L"12.5a@\\"},
        {__LINE__, Types::kText, L"@\"\\", L"12.5\\"},
        {__LINE__, Types::kText, L"@\"", L"12.5"},
        {__LINE__, Types::kText, L"@\"a\\\"", L"12.5a\""},
        // A backslash outside of quotes is a character as any other.
        {__LINE__, Types::kText, L"a\\@b\\", L"a\\12.5b\\"},
        {__LINE__, Types::kText, L"'@;[html]@", L"'12.5;[html]12.5"},
        {__LINE__, Types::kText, String(L"a\0b@", 4), String(L"a\0b12.5", 7)},
        // The encoding drops it; it is no place of the value for that.
        {__LINE__, Types::kSQLLiteral, String(L"\0", 1), L""},
        {__LINE__, Types::kHTML, L"\U0001F600@", L"\U0001F60012.5"},
    };
    for (const FormatRow& tRow : aRows)
        EXPECT_EQ(compound(tRow.sFormat, tRow.eOutput)->formatAsString(&kfValue), tRow.sExpected)
            << "row at line " << tRow.nLine;
}

TEST(CompoundFormatter, SplitsTheFormatIntoPlainPartsWithEmptyOnesForTheValue)
{
    struct Row
    {
        int nLine;
        String sFormat;
        std::vector<String> vParts;
    };
    const Row aRows[] = {
        {__LINE__, L"", {}},
        {__LINE__, L"@", {L""}},
        {__LINE__, L"@@", {L"", L""}},
        {__LINE__, L"a<b @ c", {L"a<b ", L"", L" c"}},
        // Bare characters join the quoted literal before them; a quoted literal always starts a part.
        {__LINE__, L"x\"y\"z@", {L"x", L"yz", L""}},
        {__LINE__, L"\"a\"\"b\"c", {L"a", L"bc"}},
        {__LINE__, L"@\"a\"@", {L"", L"a", L""}},
        // An empty quoted literal adds nothing.
        {__LINE__, L"\"\"", {}},
        {__LINE__, L"a\"\"b", {L"ab"}},
        {__LINE__, L"@\"\"b", {L"", L"b"}},
        {__LINE__, L"@\"", {L""}},
        {__LINE__, L"\"\\", {L"\\"}},
    };
    for (const Row& tRow : aRows)
    {
        const CompoundFormatter tFormatter(tRow.sFormat, number(), Types::kHTML);
        std::vector<String> vParts;
        for (const CompoundFormatter::Part& tPart : tFormatter.parts())
            vParts.push_back(tPart.sText);
        EXPECT_EQ(vParts, tRow.vParts) << "row at line " << tRow.nLine;
    }
}

TEST(CompoundFormatter, WritesANullValueAsABlankThatKeepsItsCellInHtmlAndAsNothingElsewhere)
{
    for (int nOutput = Types::kText; nOutput < Types::kLastType; ++nOutput)
    {
        const auto eOutput = static_cast<Types::OutputType>(nOutput);
        const String sExpected = eOutput == Types::kHTML ? L"&nbsp;" : L"";
        EXPECT_EQ(compound(L"[@]", eOutput)->formatAsString(nullptr), sExpected) << nOutput;
        EXPECT_EQ(compound(L"", eOutput)->formatAsString(nullptr), sExpected) << nOutput;
    }
}

// An inner formatter that counts how often it is asked.
class CountingFormatter final : public WebValueFormatter
{
public:
    CountingFormatter() : WebValueFormatter(SQLDataType::kStorageInt32) {}
    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return L"inner"; }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void*) const override
    {
        ++m_nAsked;
        tBuffer.append(L'*');
    }

    mutable int m_nAsked = 0;
};

TEST(CompoundFormatter, DoesNotAskTheInnerFormatterForANullValue)
{
    const Handle<CountingFormatter, CountingFormatter> hInner = WEBFORMAT_NEW("test") CountingFormatter;
    const CompoundFormatter tFormatter(L"@-@", WebValueFormatterHandle(hInner), Types::kHTML);
    EXPECT_EQ(tFormatter.formatAsString(nullptr), L"&nbsp;");
    EXPECT_EQ(hInner->m_nAsked, 0);
    const int nValue = 1;
    EXPECT_EQ(tFormatter.formatAsString(&nValue), L"*-*");
    EXPECT_EQ(hInner->m_nAsked, 2);
}

TEST(CompoundFormatter, DescribesItself)
{
    const WebValueFormatterHandle hFormatter = compound(L"\"a\"@", Types::kPDF);
    EXPECT_EQ(hFormatter->outputType(), Types::kPDF);
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"\"a\"@");
    EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageDouble);
    EXPECT_TRUE(hFormatter->IsValidExcelPattern());
    const WebValueFormatterHandle hOfInts =
        WEBFORMAT_NEW("test") CompoundFormatter(L"@", WEBFORMAT_NEW("test") CountingFormatter, Types::kText);
    EXPECT_EQ(hOfInts->valueStorageType(), SQLDataType::kStorageInt32);
}

TEST(CompoundFormatter, RefusesANullInnerFormatter)
{
    EXPECT_THROW(CompoundFormatter(L"@", nullptr, Types::kText), InvalidHandleException);
    EXPECT_THROW(CompoundFormatter(L"", nullptr, Types::kLastType), InvalidHandleException);
}

TEST(CompoundFormatter, ClonesItselfAndSharesTheInnerFormatter)
{
    const WebValueFormatterHandle hInner = number();
    const std::uint32_t nBefore = hInner->referenceCount();
    const Handle<CompoundFormatter, CompoundFormatter> hOriginal =
        WEBFORMAT_NEW("test") CompoundFormatter(L"<@>", hInner, Types::kHTML);
    EXPECT_EQ(hInner->referenceCount(), nBefore + 1);
    const Handle<CompoundFormatter, CompoundFormatter> hClone = hOriginal->clone();
    EXPECT_EQ(hInner->referenceCount(), nBefore + 2);
    EXPECT_FALSE(hClone == hOriginal);
    EXPECT_EQ(hClone->referenceCount(), 1u);
    EXPECT_EQ(hClone->formatAsString(&kfValue), L"&lt;12.5&gt;");
    EXPECT_EQ(hClone->GetCustomFormatString(), L"<@>");
    EXPECT_EQ(hClone->outputType(), Types::kHTML);
    EXPECT_EQ(hClone->valueStorageType(), SQLDataType::kStorageDouble);
    ASSERT_EQ(hClone->parts().size(), 3u);
    EXPECT_EQ(hClone->parts()[0].sText, L"<");
}

TEST(CompoundFormatter, WrapsOtherCompoundFormatters)
{
    const WebValueFormatterHandle hOuter =
        WEBFORMAT_NEW("test") CompoundFormatter(L"(@)", compound(L"@ kg"), Types::kText);
    EXPECT_EQ(hOuter->formatAsString(&kfValue), L"(12.5 kg)");
}

TEST(CompoundFormatter, ShowsTheValueAloneWhereTheOutputIsNone)
{
    const CollectedAssertions tAssertions;
    const WebValueFormatterHandle hEnd = WEBFORMAT_NEW("test") CompoundFormatter(L"a@b", number(), Types::kLastType);
    EXPECT_EQ(hEnd->formatAsString(&kfValue), L"12.5");
    EXPECT_EQ(tAssertions.count(), 2u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "unknown type");
    const auto eNone = static_cast<Types::OutputType>(-1);
    EXPECT_EQ(WebValueFormatterHandle(WEBFORMAT_NEW("test") CompoundFormatter(L"a@b", number(), eNone))
                  ->formatAsString(&kfValue),
              L"12.5");
    EXPECT_EQ(tAssertions.count(), 2u);
}

TEST(CompoundFormatter, FormatsIntoFreeRoomWithoutAllocating)
{
    const WebValueFormatterHandle hFormatter = compound(L"<@ \"kg\">", Types::kHTML);
    StringBufferTemplate<wchar_t, 256> tBuffer;
    hFormatter->formatToBuffer(tBuffer, &kfValue);
    const AllocationCounter tCounter;
    hFormatter->formatToBuffer(tBuffer, &kfValue);
    hFormatter->formatToBuffer(tBuffer, nullptr);
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(CompoundFormatter, LeavesTheBufferAtItsOldLengthWhenMemoryRunsOut)
{
    const WebValueFormatterHandle hFormatter = compound(L"@" + String(200, L'x'));
    StringBufferTemplate<wchar_t, 20> tBuffer;
    tBuffer.append(L"kept");
    const LimitedAllocator tNothing(0);
    EXPECT_THROW(hFormatter->formatToBuffer(tBuffer, &kfValue), std::bad_alloc);
    EXPECT_EQ(tBuffer.toString(), L"kept");
}

TEST(CompoundFormatter, FormatsTheSameFromManyThreadsAtOnce)
{
    const WebValueFormatterHandle hFormatter = compound(L"<@>", Types::kHTML);
    std::vector<int> vWrong(8);
    std::vector<std::thread> vThreads;
    for (int& nWrong : vWrong)
    {
        vThreads.emplace_back(
            [&hFormatter, &nWrong]
            {
                for (int nTime = 0; nTime < 2000; ++nTime)
                    nWrong += hFormatter->formatAsString(&kfValue) != L"&lt;12.5&gt;";
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<int>(8));
}

}  // namespace
}  // namespace tov

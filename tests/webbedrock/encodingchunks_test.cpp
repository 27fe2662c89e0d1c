// How the default updateToBuffer feeds an encoder, and how markup goes around it.

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/limitedallocator.h"
#include "webbedrock/encoding.h"

namespace tov {

namespace {

struct Call
{
    std::size_t nSource;
    std::size_t nCapacity;

    friend bool operator==(const Call& tLeft, const Call& tRight) = default;
    friend std::ostream& operator<<(std::ostream& tStream, const Call& tCall)
    {
        return tStream << '{' << tCall.nSource << ", " << tCall.nCapacity << '}';
    }
};

// Writes each item a number of times and notes how it was called.
template <class Source>
class NotingEncoding : public Encoding<Source, wchar_t>
{
public:
    std::size_t nTimes = 1;
    std::size_t nEstimate = 0;  // 0: as many as there are items
    bool bChunkable = true;
    std::wstring_view sEnd;
    mutable std::vector<Call> vCalls;

    std::size_t estimateEncodingSize(std::size_t nLength) const override { return nEstimate ? nEstimate : nLength; }
    bool isChunkable() const override { return bChunkable; }

    std::size_t encode(const Source* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState&) const override
    {
        vCalls.push_back({nSource, nCapacity});
        if (nSource * nTimes > nCapacity)
            return this->knTooSmall;
        for (std::size_t nAt = 0; nAt < nSource; ++nAt)
            pTarget = std::fill_n(pTarget, nTimes, static_cast<wchar_t>(pSource[nAt]));
        return nSource * nTimes;
    }

    std::size_t finish(wchar_t* pTarget, std::size_t nCapacity, EncodingState&) const override
    {
        if (sEnd.size() > nCapacity)
            return this->knTooSmall;
        sEnd.copy(pTarget, sEnd.size());
        return sEnd.size();
    }

    std::vector<std::size_t> chunks() const
    {
        std::vector<std::size_t> vChunks;
        for (const Call& tCall : vCalls)
            vChunks.push_back(tCall.nSource);
        return vChunks;
    }
};

using NotingText = NotingEncoding<wchar_t>;
using NotingBytes = NotingEncoding<unsigned char>;
using Sizes = std::vector<std::size_t>;

TEST(EncodingChunks, FillHalfOfTheFreeRoomButHave64CharactersAtLeast)
{
    const String sText(1000, L'x');
    const NotingText tEncoding;
    StringBufferTemplate<wchar_t, 256> tBuffer;
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    EXPECT_EQ(tBuffer.toString(), sText);
    // Free before each: 256, 128, 64, 0 (grows to 511), 191, 96, 32 (grows to 1023), 480, 240, 120, 56.
    EXPECT_EQ(tEncoding.chunks(), (Sizes{128, 64, 64, 64, 95, 64, 64, 240, 120, 64, 33}));
}

TEST(EncodingChunks, EndWithTheText)
{
    struct Row
    {
        int nLine;
        std::size_t nLength;
        Sizes vExpected;
    };
    const Row kRows[] = {
        {__LINE__, 1, {1}},   {__LINE__, 63, {63}},   {__LINE__, 64, {64}},
        {__LINE__, 65, {65}}, {__LINE__, 128, {128}}, {__LINE__, 129, {128, 1}},
    };
    for (const Row& tRow : kRows)
    {
        const String sText(tRow.nLength, L'x');
        const NotingText tEncoding;
        StringBufferTemplate<wchar_t, 256> tBuffer;
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tEncoding.chunks(), tRow.vExpected) << "row at line " << tRow.nLine;
    }
}

TEST(EncodingChunks, GoIntoTheWholeFreeRoomBehindTheContents)
{
    const NotingText tEncoding;
    StringBufferTemplate<wchar_t, 256> tBuffer;
    tBuffer.append(L"before ", 7);
    tEncoding.updateToBuffer(tBuffer, L"text", 4);
    EXPECT_EQ(tBuffer.view(), L"before text");
    EXPECT_EQ(tEncoding.vCalls, (std::vector<Call>{{4, 249}}));
}

TEST(EncodingChunks, NeverStartWithALowSurrogate)
{
    struct Row
    {
        int nLine;
        std::size_t nAt;
        wchar_t nChar;
        Sizes vExpected;
    };
    const Row kRows[] = {
        {__LINE__, 64, 0xDC00, {63, 37}}, {__LINE__, 64, 0xDE00, {63, 37}}, {__LINE__, 64, 0xDFFF, {63, 37}},
        {__LINE__, 64, 0xDBFF, {64, 36}}, {__LINE__, 64, 0xE000, {64, 36}}, {__LINE__, 63, 0xDC00, {64, 36}},
        {__LINE__, 65, 0xDC00, {64, 36}}, {__LINE__, 99, 0xDC00, {64, 36}},
    };
    for (const Row& tRow : kRows)
    {
        String sText(100, L'x');
        sText[tRow.nAt] = tRow.nChar;
        const NotingText tEncoding;
        StringBufferTemplate<wchar_t, 100> tBuffer;
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tEncoding.chunks(), tRow.vExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.toString(), sText) << "row at line " << tRow.nLine;
    }
}

TEST(EncodingChunks, AreNotShortenedByWhatStandsBehindTheText)
{
    const String sText = String(40, L'x') + static_cast<wchar_t>(0xDC00);
    const NotingText tEncoding;
    StringBufferTemplate<wchar_t, 100> tBuffer;
    tEncoding.updateToBuffer(tBuffer, sText.data(), 40);
    EXPECT_EQ(tEncoding.chunks(), Sizes{40});
}

TEST(EncodingChunks, AreShortenedByOneOnlyAndComeToAnEnd)
{
    const String sText(200, static_cast<wchar_t>(0xDC00));
    const NotingText tEncoding;
    StringBufferTemplate<wchar_t, 10> tBuffer;
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    EXPECT_EQ(tBuffer.toString(), sText);
    EXPECT_EQ(tEncoding.chunks(), (Sizes{63, 63, 63, 11}));
}

TEST(EncodingChunks, OfBytesAreNeverShortened)
{
    const std::vector<unsigned char> vBytes(200, 0xDC);
    const NotingBytes tEncoding;
    StringBufferTemplate<wchar_t, 10> tBuffer;
    tEncoding.updateToBuffer(tBuffer, vBytes.data(), vBytes.size());
    EXPECT_EQ(tEncoding.chunks(), (Sizes{64, 64, 64, 8}));
}

TEST(EncodingChunks, AreNotMadeForAnEncoderThatTakesWholeTexts)
{
    const String sText(1000, static_cast<wchar_t>(0xDC00));
    NotingText tEncoding;
    tEncoding.bChunkable = false;
    StringBufferTemplate<wchar_t, 10> tBuffer;
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    EXPECT_EQ(tEncoding.chunks(), Sizes{1000});
    EXPECT_EQ(tBuffer.toString(), sText);
}

TEST(EncodingChunks, ALowEstimateIsDoubledUpToTwiceTheRemainingTextAndThenOn)
{
    struct Row
    {
        int nLine;
        std::size_t nEstimate;
        std::size_t nTimes;
        std::size_t nLength;
        std::vector<Call> vExpected;
    };
    const Row kRows[] = {
        // 1, 2, 4, ... 32 have room in the first 63; then 64 and 128, twice the text; then 256.
        {__LINE__,
         1,
         5,
         64,
         {{64, 63}, {64, 63}, {64, 63}, {64, 63}, {64, 63}, {64, 63}, {64, 127}, {64, 255}, {64, 511}}},
        // 150, then 200, twice the text, where doubling would be 300; then 400. The first piece is 64 of 100.
        {__LINE__, 150, 5, 100, {{64, 255}, {64, 255}, {64, 511}, {36, 191}}},
        // 130 is above twice the text from the start: 260.
        {__LINE__, 130, 6, 64, {{64, 255}, {64, 511}}},
        {__LINE__, 128, 4, 64, {{64, 255}, {64, 511}}},             // equal is not greater: doubled
        {__LINE__, 127, 4, 64, {{64, 127}, {64, 255}, {64, 511}}},  // 127, 128, 256
    };
    for (const Row& tRow : kRows)
    {
        const String sText(tRow.nLength, L'x');
        NotingText tEncoding;
        tEncoding.nEstimate = tRow.nEstimate;
        tEncoding.nTimes = tRow.nTimes;
        StringBufferBaseTemplate<wchar_t> tBuffer;
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tEncoding.vCalls, tRow.vExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.toString(), String(tRow.nLength * tRow.nTimes, L'x')) << "row at line " << tRow.nLine;
    }
}

TEST(EncodingChunks, AreFollowedByTheEndOfTheText)
{
    NotingText tEncoding;
    tEncoding.sEnd = L"====";
    StringBufferTemplate<wchar_t, 4> tBuffer;
    tEncoding.updateToBuffer(tBuffer, L"abc", 3);
    EXPECT_EQ(tBuffer.view(), L"abc====");
    EXPECT_EQ(tBuffer.capacity(), 63u);  // grew for the end alone
}

TEST(EncodingChunks, AnEndThatFitsDoesNotGrowTheBuffer)
{
    NotingText tEncoding;
    tEncoding.sEnd = L"=";
    StringBufferTemplate<wchar_t, 4> tBuffer;
    tEncoding.updateToBuffer(tBuffer, L"abc", 3);
    EXPECT_EQ(tBuffer.view(), L"abc=");
    EXPECT_EQ(tBuffer.capacity(), 4u);
}

TEST(EncodingChunks, AnEmptyTextNeverGrowsTheBuffer)
{
    StringBufferBaseTemplate<wchar_t> tBuffer;
    for (const W2WEncodingSGML::SGMLType eType : {W2WEncodingSGML::kXML, W2WEncodingSGML::kHTML,
                                                  W2WEncodingSGML::kHTMLNoBreakSpaces, W2WEncodingSGML::kXMLNoQuotes})
        W2WEncodingSGML(eType).updateToBuffer(tBuffer, L"", 0);
    W2WEncodingJavaLiteral().updateToBuffer(tBuffer, nullptr, 0);
    W2WEncodingSQLLiteral().updateToBuffer(tBuffer, nullptr, 0);
    B2WEncodingHex().updateToBuffer(tBuffer, nullptr, 0);
    B2TEncodingBase64().updateToBuffer(tBuffer, nullptr, 0);
    EXPECT_EQ(tBuffer.length(), 0u);
    EXPECT_EQ(tBuffer.capacity(), 0u);
}

TEST(EncodingChunks, ATextThatIsTooLongIsAnAssertionAndTakenBackWhole)
{
    class GrowingGreedy : public NotingText
    {
    public:
        std::size_t estimateEncodingSize(std::size_t nLength) const override
        {
            return vCalls.empty() ? nLength : std::size_t{1} << 31;
        }
    };
    const String sText(100, L'x');
    const GrowingGreedy tEncoding;
    StringBufferTemplate<wchar_t, 100> tBuffer;
    tBuffer.append(L"before", 6);
    const CollectedAssertions tAssertions;
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    EXPECT_EQ(tEncoding.chunks(), Sizes{64});  // the second piece found no room
    EXPECT_EQ(tBuffer.view(), L"before");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "nSize < (1ULL << 31)");
}

TEST(EncodingChunks, OutOfMemoryTakesTheTextBackWhole)
{
    LimitedAllocator tAllocator(256 * sizeof(wchar_t));
    const String sText(1000, L'\'');
    const W2WEncodingSQLLiteral tEncoding;
    StringBufferTemplate<wchar_t, 10> tBuffer;
    tBuffer.append(L"before", 6);
    EXPECT_THROW(tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size()), std::bad_alloc);
    EXPECT_EQ(tBuffer.view(), L"before");
    EXPECT_EQ(tBuffer.capacity(), 255u);  // a part of it had been written
}

TEST(EncodingChunks, OutOfMemoryLeavesTheBufferAsItWasForMarkup)
{
    LimitedAllocator tAllocator(0);
    const W2WEncodingSGML tEncoding(W2WEncodingSGML::kHTML);
    for (const String& sText : {String(100, L'x'), String(100, L'<')})
    {
        StringBufferTemplate<wchar_t, 10> tBuffer;
        tBuffer.append(L"before", 6);
        EXPECT_THROW(tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size()), std::bad_alloc);
        EXPECT_EQ(tBuffer.view(), L"before");
        EXPECT_EQ(tBuffer.capacity(), 10u);
    }
}

TEST(EncodingChunks, MarkupGrowsTheBufferOnceAndNoMoreThanItNeeds)
{
    struct Row
    {
        int nLine;
        std::size_t nClean;
        std::size_t nMarkup;
        std::size_t nCapacity;
    };
    constexpr Row kRows[] = {
        {__LINE__, 63, 0, 63},         {__LINE__, 64, 0, 127},       {__LINE__, 57, 1, 63},  // &quot; is 6 long
        {__LINE__, 58, 1, 127},        {__LINE__, 0, 10, 63},        {__LINE__, 3, 10, 63},
        {__LINE__, 4, 10, 127},        {__LINE__, 1000, 1000, 8191}, {__LINE__, 2191, 1000, 8191},
        {__LINE__, 2192, 1000, 16383},
    };
    const W2WEncodingSGML tEncoding(W2WEncodingSGML::kHTML);
    for (const Row& tRow : kRows)
    {
        const LimitedAllocator tAllocator(static_cast<std::size_t>(-1));
        const String sText = String(tRow.nClean, L'x') + String(tRow.nMarkup, L'"');
        StringBufferBaseTemplate<wchar_t> tBuffer;
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tBuffer.length(), tRow.nClean + 6 * tRow.nMarkup) << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.capacity(), tRow.nCapacity) << "row at line " << tRow.nLine;
        EXPECT_EQ(tAllocator.count(), 1u) << "row at line " << tRow.nLine;
    }
}

TEST(EncodingChunks, MarkupThatFitsIsNeverMoved)
{
    const W2WEncodingSGML tEncoding(W2WEncodingSGML::kHTML);
    for (std::size_t nMarkup = 0; nMarkup <= 10; ++nMarkup)
    {
        const String sText = String(60 - 6 * nMarkup, L'x') + String(nMarkup, L'"');
        StringBufferTemplate<wchar_t, 60> tBuffer;
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tBuffer.length(), 60u);
        EXPECT_EQ(tBuffer.capacity(), 60u);
    }
}

TEST(EncodingChunks, MarkupGrowsTheBufferExactlyWhereItDoesNotFitBehindTheContents)
{
    const W2WEncodingSGML tEncoding(W2WEncodingSGML::kHTML);
    const String sText(10, L'"');
    for (std::size_t nBefore = 0; nBefore <= 256; ++nBefore)
    {
        StringBufferTemplate<wchar_t, 256> tBuffer;
        tBuffer.appendRepeated(L'-', nBefore);
        tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
        EXPECT_EQ(tBuffer.length(), nBefore + 60);
        EXPECT_EQ(tBuffer.capacity(), nBefore + 60 <= 256 ? 256u : 511u) << "behind " << nBefore;
    }
}

TEST(EncodingChunks, NoEncoderAllocatesBesidesTheBuffer)
{
    const String sText = L"a<b> & \"c\" it's\n\u2028\xD800 and a rather longer piece of clean text behind it";
    const unsigned char aBytes[] = {1, 2, 3, 4, 5, 6, 7};
    const W2WEncodingSGML tMarkup(W2WEncodingSGML::kHTMLNoBreakSpaces);
    const W2WEncodingJavaLiteral tJavaLiteral(true);
    const W2WEncodingSQLLiteral tSQLLiteral;
    StringBufferTemplate<wchar_t, 4000> tBuffer;

    const AllocationCounter tCounter;
    for (const W2WEncoding* pEncoding :
         {static_cast<const W2WEncoding*>(&tMarkup), static_cast<const W2WEncoding*>(&tJavaLiteral),
          static_cast<const W2WEncoding*>(&tSQLLiteral)})
        pEncoding->updateToBuffer(tBuffer, sText.data(), sText.size());
    B2WEncodingHex().updateToBuffer(tBuffer, aBytes, sizeof(aBytes));
    B2TEncodingBase64().updateToBuffer(tBuffer, aBytes, sizeof(aBytes));
    EXPECT_EQ(tCounter.count(), 0u);
    EXPECT_GT(tBuffer.length(), 3 * sText.size());
}

}  // namespace

}  // namespace tov

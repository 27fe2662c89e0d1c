#include "webbedrock/stringbuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/limitedallocator.h"

namespace tov {

namespace {

constexpr std::size_t kAll = static_cast<std::size_t>(-1);

TEST(StringBuffer, GrowsToTheSmallestCapacityOfTheSequenceThatHoldsTheNeed)
{
    struct Row
    {
        int nLine;
        std::size_t nNeeded;
        std::size_t nExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, 1, 63},       {__LINE__, 62, 63},        {__LINE__, 63, 63},     {__LINE__, 64, 127},
        {__LINE__, 127, 127},    {__LINE__, 128, 255},      {__LINE__, 255, 255},   {__LINE__, 256, 511},
        {__LINE__, 512, 1023},   {__LINE__, 1023, 1023},    {__LINE__, 1024, 2047}, {__LINE__, 5000, 8191},
        {__LINE__, 8192, 16383}, {__LINE__, 70000, 131071},
    };
    for (const Row& tRow : kRows)
    {
        StringBufferBaseTemplate<wchar_t> tAtOnce;
        tAtOnce.appendRepeated(L'x', tRow.nNeeded);
        EXPECT_EQ(tAtOnce.capacity(), tRow.nExpected) << "row at line " << tRow.nLine;

        StringBufferBaseTemplate<char> tOneByOne;
        for (std::size_t nAt = 0; nAt < tRow.nNeeded; ++nAt)
            tOneByOne.append('x');
        EXPECT_EQ(tOneByOne.capacity(), tRow.nExpected) << "row at line " << tRow.nLine;
    }
}

TEST(StringBuffer, StartsEmptyWithoutStorage)
{
    const AllocationCounter tCounter;
    StringBufferBaseTemplate<wchar_t> tBuffer;
    EXPECT_EQ(tBuffer.length(), 0u);
    EXPECT_EQ(tBuffer.capacity(), 0u);
    EXPECT_TRUE(tBuffer.empty());
    EXPECT_EQ(tBuffer.view(), L"");
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(StringBuffer, KeepsItsFirstCharactersInline)
{
    const AllocationCounter tCounter;
    StringBufferTemplate<wchar_t, 256> tSmall;
    StringBufferTemplate<wchar_t, 511> tLarge;
    EXPECT_EQ(tSmall.capacity(), 256u);
    EXPECT_EQ(tLarge.capacity(), 511u);
    tSmall.appendRepeated(L'x', 256);
    tLarge.appendRepeated(L'x', 511);
    tSmall.terminated();
    tLarge.terminated();
    EXPECT_EQ(tCounter.count(), 0u);

    tSmall.append(L'y');
    tLarge.append(L'y');
    EXPECT_EQ(tCounter.count(), 2u);
    EXPECT_EQ(tSmall.capacity(), 511u);
    EXPECT_EQ(tLarge.capacity(), 1023u);
    EXPECT_EQ(tSmall.toString(), std::wstring(256, L'x') + L'y');
    EXPECT_EQ(tLarge.toString(), std::wstring(511, L'x') + L'y');
}

TEST(StringBuffer, AppendsWhatItIsGiven)
{
    StringBufferTemplate<wchar_t, 8> tBuffer;
    tBuffer.append(L"12", 2);
    tBuffer.append(L'%');
    tBuffer.append(std::wstring_view(L" of\0all", 7));
    tBuffer.appendRepeated(L'!', 3);
    EXPECT_EQ(tBuffer.view(), std::wstring_view(L"12% of\0all!!!", 13));
    EXPECT_EQ(tBuffer.length(), 13u);
    EXPECT_EQ(tBuffer[2], L'%');
    tBuffer[2] = L'#';
    EXPECT_EQ(tBuffer.data()[2], L'#');
}

TEST(StringBuffer, AppendingNothingNeverGrows)
{
    StringBufferBaseTemplate<wchar_t> tBuffer;
    tBuffer.append(L"", 0);
    tBuffer.append(nullptr, 0);
    tBuffer.append(std::wstring_view());
    tBuffer.appendRepeated(L'x', 0);
    EXPECT_TRUE(tBuffer.reserveFree(0));
    EXPECT_EQ(tBuffer.capacity(), 0u);
}

TEST(StringBuffer, PutsATerminatorBehindTheContents)
{
    StringBufferBaseTemplate<wchar_t> tBuffer;
    EXPECT_STREQ(tBuffer.terminated(), L"");
    tBuffer.appendRepeated(L'x', 63);
    EXPECT_EQ(tBuffer.capacity(), 63u);  // the terminator has a place of its own
    EXPECT_STREQ(tBuffer.terminated(), std::wstring(63, L'x').c_str());
    EXPECT_EQ(tBuffer.length(), 63u);
    EXPECT_EQ(tBuffer.capacity(), 63u);
}

TEST(StringBuffer, TakesWhatIsWrittenInItsFreePlace)
{
    StringBufferTemplate<char, 4> tBuffer;
    tBuffer.append("ab", 2);
    ASSERT_TRUE(tBuffer.reserveFree(100));
    EXPECT_EQ(tBuffer.capacity(), 127u);
    EXPECT_EQ(tBuffer.view(), "ab");
    tBuffer.freePlace()[0] = 'c';
    tBuffer.freePlace()[1] = 'd';
    tBuffer.advance(1);
    EXPECT_EQ(tBuffer.view(), "abc");
}

TEST(StringBuffer, ShorteningKeepsTheStorage)
{
    StringBufferTemplate<wchar_t, 4> tBuffer;
    tBuffer.append(L"abcdefgh", 8);
    tBuffer.truncate(3);
    EXPECT_EQ(tBuffer.view(), L"abc");
    EXPECT_EQ(tBuffer.capacity(), 63u);
    tBuffer.clear();
    EXPECT_TRUE(tBuffer.empty());
    EXPECT_EQ(tBuffer.capacity(), 63u);
}

TEST(StringBuffer, ALengthOf2To31IsAnAssertionAndLeavesTheContents)
{
    struct Row
    {
        int nLine;
        std::size_t nFree;
    };
    constexpr Row kRows[] = {
        {__LINE__, 0x7FFFFFFFu - 4},
        {__LINE__, 0x80000000u},
        {__LINE__, 0xFFFFFFFFu},
        {__LINE__, kAll / 2},
        {__LINE__, kAll - 5},
        {__LINE__, kAll - 4},  // the sum with 5 would be 0
        {__LINE__, kAll},
    };
    for (const Row& tRow : kRows)
    {
        StringBufferTemplate<wchar_t, 256> tBuffer;
        tBuffer.append(L"12345", 5);
        const CollectedAssertions tAssertions;
        EXPECT_FALSE(tBuffer.reserveFree(tRow.nFree)) << "row at line " << tRow.nLine;
        tBuffer.append(L"", tRow.nFree);  // refused before anything is read
        tBuffer.appendRepeated(L'x', tRow.nFree);
        ASSERT_EQ(tAssertions.count(), 3u) << "row at line " << tRow.nLine;
        EXPECT_EQ(tAssertions.all()[0].sExpression, "nSize < (1ULL << 31)");
        EXPECT_EQ(tAssertions.all()[0].sSource, "webbedrock/stringbufferbase");
        EXPECT_EQ(tBuffer.view(), L"12345") << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.capacity(), 256u) << "row at line " << tRow.nLine;
    }
}

TEST(StringBuffer, ALengthOf2To31Minus1IsAskedOfTheAllocator)
{
    LimitedAllocator tAllocator(1000);
    const CollectedAssertions tAssertions;
    StringBufferTemplate<wchar_t, 256> tBuffer;
    tBuffer.append(L"12345", 5);
    EXPECT_THROW(tBuffer.reserveFree(0x7FFFFFFFu - 5), std::bad_alloc);
    EXPECT_EQ(tAllocator.largestAsked(), 0x80000000u * sizeof(wchar_t));
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(StringBuffer, OutOfMemoryThrowsAndLeavesTheContents)
{
    struct Row
    {
        int nLine;
        void (*pGrow)(StringBufferBaseTemplate<wchar_t>&);
    };
    constexpr Row kRows[] = {
        {__LINE__, [](StringBufferBaseTemplate<wchar_t>& tBuffer) { tBuffer.append(L'x'); }},
        {__LINE__, [](StringBufferBaseTemplate<wchar_t>& tBuffer) { tBuffer.append(L"xy", 2); }},
        {__LINE__, [](StringBufferBaseTemplate<wchar_t>& tBuffer) { tBuffer.appendRepeated(L'x', 9); }},
        {__LINE__, [](StringBufferBaseTemplate<wchar_t>& tBuffer) { tBuffer.reserveFree(9); }},
    };
    for (const Row& tRow : kRows)
    {
        LimitedAllocator tAllocator(64 * sizeof(wchar_t));
        StringBufferTemplate<wchar_t, 2> tBuffer;
        tBuffer.appendRepeated(L'a', 63);
        EXPECT_THROW(tRow.pGrow(tBuffer), std::bad_alloc) << "row at line " << tRow.nLine;
        EXPECT_EQ(tBuffer.toString(), std::wstring(63, L'a')) << "row at line " << tRow.nLine;
        tAllocator.setLimit(kAll);
        tBuffer.append(L'b');
        EXPECT_EQ(tBuffer.toString(), std::wstring(63, L'a') + L'b') << "row at line " << tRow.nLine;
    }
}

TEST(StringBuffer, GrowingGivesTheOldStorageBack)
{
    LimitedAllocator tAllocator(kAll);
    {
        StringBufferTemplate<wchar_t, 4> tBuffer;
        for (int nAt = 0; nAt < 1000; ++nAt)
            tBuffer.append(static_cast<wchar_t>(L'a' + nAt % 26));
        EXPECT_EQ(tAllocator.count(), 5u);  // 63, 127, 255, 511, 1023
        for (int nAt = 0; nAt < 1000; ++nAt)
            ASSERT_EQ(tBuffer[nAt], static_cast<wchar_t>(L'a' + nAt % 26));
    }
}

}  // namespace

}  // namespace tov

#include "utilities/stringutils.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

#include "support/allocationcounter.h"

namespace tov {
namespace {

using Limits = std::numeric_limits<double>;

// What the C library prints in the C locale, in which test programs start.
String printed(double dValue, int nDigits)
{
    char aText[2048];
    const int nLength = std::snprintf(aText, sizeof aText, "%.*g", nDigits, dValue);
    return String(aText, aText + nLength);
}

TEST(StringUtils, WritesDoublesAsPercentG)
{
    struct Row
    {
        int nLine;
        double dValue;
        int nDigits;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, 0.0, 15, L"0"},
        {__LINE__, -0.0, 15, L"-0"},
        {__LINE__, 0.1, 15, L"0.1"},
        {__LINE__, 0.1, 17, L"0.10000000000000001"},
        {__LINE__, 1.0 / 3, 3, L"0.333"},
        {__LINE__, 1234567.0, 15, L"1234567"},
        {__LINE__, 1234567.0, 3, L"1.23e+06"},
        {__LINE__, 1e15, 15, L"1e+15"},
        {__LINE__, 123456789012345.0, 15, L"123456789012345"},
        {__LINE__, 1e21, 15, L"1e+21"},
        {__LINE__, 0.0001, 15, L"0.0001"},
        {__LINE__, 0.00001, 15, L"1e-05"},
        {__LINE__, 1e-320, 15, L"9.99988867182683e-321"},
        {__LINE__, 2.5, 1, L"2"},  // exact ties to even
        {__LINE__, 3.5, 1, L"4"},
        {__LINE__, 12.0, 0, L"1e+01"},
        {__LINE__, 1.23456789, -1, L"1.23457"},
        {__LINE__, Limits::quiet_NaN(), 15, L"nan"},
        {__LINE__, -Limits::quiet_NaN(), 15, L"-nan"},
        {__LINE__, Limits::infinity(), 15, L"inf"},
        {__LINE__, -Limits::infinity(), 15, L"-inf"},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(StringUtils::doubleAsString(tRow.dValue, tRow.nDigits), tRow.pExpected)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(printed(tRow.dValue, tRow.nDigits), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(StringUtils, WritesAnyDoubleAsTheCLibraryDoes)
{
    std::mt19937_64 tRandom(20240305);
    for (int i = 0; i < 50'000; ++i)
    {
        const std::uint64_t nBits = tRandom();
        double dValue;
        std::memcpy(&dValue, &nBits, sizeof dValue);
        const int nDigits = i % 3 == 0 ? 15 : static_cast<int>(tRandom() % 40);
        ASSERT_EQ(StringUtils::doubleAsString(dValue, nDigits), printed(dValue, nDigits)) << dValue << " " << nDigits;
    }
}

TEST(StringUtils, WritesAbsurdNumbersOfDigits)
{
    for (const double dValue : {Limits::max(), Limits::min(), Limits::denorm_min(), 0.1, 1.0, -Limits::max()})
        for (const int nDigits : {308, 309, 767, 768, 1100})
            EXPECT_EQ(StringUtils::doubleAsString(dValue, nDigits), printed(dValue, nDigits)) << nDigits;
    EXPECT_EQ(StringUtils::doubleAsString(Limits::max(), std::numeric_limits<int>::max()),
              StringUtils::doubleAsString(Limits::max(), 1100));
    EXPECT_EQ(StringUtils::doubleAsString(0.1, std::numeric_limits<int>::min()), L"0.1");
}

TEST(StringUtils, TheLocaleOfTheProcessDoesNotMatter)
{
    const std::string sBefore = std::setlocale(LC_ALL, nullptr);
    for (const char* pLocale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"})
    {
        std::setlocale(LC_ALL, pLocale);  // where it is installed
        EXPECT_EQ(StringUtils::doubleAsString(1234.5, 15), L"1234.5");
    }
    std::setlocale(LC_ALL, sBefore.c_str());
}

TEST(StringUtils, AppendingADoubleTouchesNoHeap)
{
    StringBufferTemplate<wchar_t, 64> tBuffer;
    tBuffer.append(L"x = ");
    const AllocationCounter tCounter;
    StringUtils::appendDouble(tBuffer, 1.7976931348623157e308, 15);
    StringUtils::appendDouble(tBuffer, -5e-324, 17);
    EXPECT_EQ(tCounter.count(), 0u);
    EXPECT_EQ(tBuffer.toString(), L"x = 1.79769313486232e+308-4.9406564584124654e-324");
}

TEST(StringUtils, ComparesAsciiLettersWithoutCase)
{
    struct Row
    {
        int nLine;
        const wchar_t* pLeft;
        const wchar_t* pRight;
        bool bEqual;
        bool bStarts;  // left starts with right
        int nOrder;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"", L"", true, true, 0},
        {__LINE__, L"Default", L"dEFAULT", true, true, 0},
        {__LINE__, L"unknown1", L"UNKNOWN", false, true, 1},
        {__LINE__, L"unknow", L"unknown", false, false, -1},
        {__LINE__, L"abc", L"", false, true, 1},
        {__LINE__, L"\x00C9", L"\x00E9", false, false, -1},  // not of ASCII: each equals itself only
        {__LINE__, L"k", L"\x212A", false, false, -1},       // the Kelvin sign is no k
        {__LINE__, L"[", L"{", false, false, -1},            // 32 apart, but no letters
        {__LINE__, L"@", L"`", false, false, -1},
        {__LINE__, L"b", L"A", false, false, 1},
        {__LINE__, L"_", L"A", false, false, -1},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(StringUtils::equalsIgnoreCase(tRow.pLeft, tRow.pRight), tRow.bEqual) << "row at line " << tRow.nLine;
        EXPECT_EQ(StringUtils::startsWithIgnoreCase(tRow.pLeft, tRow.pRight), tRow.bStarts)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(StringUtils::compareIgnoreCase(tRow.pLeft, tRow.pRight), tRow.nOrder) << "row at line " << tRow.nLine;
        EXPECT_EQ(StringUtils::compareIgnoreCase(tRow.pRight, tRow.pLeft), -tRow.nOrder)
            << "row at line " << tRow.nLine;
    }
}

TEST(StringUtils, TrimsBlanksAtBothEnds)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        const wchar_t* pExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, L" EST ", L"EST"},     {__LINE__, L"a b", L"a b"}, {__LINE__, L"", L""},
        {__LINE__, L" \t\n\v\f\r ", L""}, {__LINE__, L"\r\nx", L"x"}, {__LINE__, L"\xA0x\x2003", L"\xA0x\x2003"},
    };
    for (const Row& tRow : kRows)
    {
        EXPECT_EQ(StringUtils::trim(tRow.pText), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(StringUtils::isBlank(tRow.pText), *tRow.pExpected == 0) << "row at line " << tRow.nLine;
    }
}

TEST(StringUtils, ReplacesFromLeftToRightAndLooksAtNothingTwice)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        const wchar_t* pFrom;
        const wchar_t* pTo;
        const wchar_t* pExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"[$:x]$:", L"$:", L"$", L"[$x]$"},
        {__LINE__, L"aaa", L"aa", L"b", L"ba"},
        {__LINE__, L"aXa", L"X", L"XX", L"aXXa"},
        {__LINE__, L"abab", L"ab", L"", L""},
        {__LINE__, L"abc", L"x", L"y", L"abc"},
        {__LINE__, L"abc", L"", L"y", L"abc"},
        {__LINE__, L"", L"a", L"b", L""},
        {__LINE__, L"$::", L"$:", L"$", L"$:"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(StringUtils::replaceAll(tRow.pText, tRow.pFrom, tRow.pTo), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

}  // namespace
}  // namespace tov

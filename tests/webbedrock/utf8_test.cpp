#include "webbedrock/utf8.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <locale>

namespace tov {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The standard library's own conversion is the judge.
std::string utf8ByStandardLibrary(char32_t nCode)
{
    using Facet = std::codecvt<char32_t, char8_t, std::mbstate_t>;
    const Facet& tFacet = std::use_facet<Facet>(std::locale::classic());
    std::mbstate_t tState{};
    char8_t aBytes[8];
    const char32_t* pNext = nullptr;
    char8_t* pEnd = aBytes;
    tFacet.out(tState, &nCode, &nCode + 1, pNext, aBytes, aBytes + 8, pEnd);
    return std::string(reinterpret_cast<const char*>(aBytes), static_cast<std::size_t>(pEnd - aBytes));
}

bool isSurrogate(char32_t nCode)
{
    return nCode >= 0xD800 && nCode <= 0xDFFF;
}

TEST(Utf8, EveryScalarValueGoesThereAndBack)
{
    for (char32_t nCode = 0; nCode <= 0x10FFFF; ++nCode)
    {
        if (isSurrogate(nCode))
            continue;
        const String sText(1, static_cast<wchar_t>(nCode));
        const std::string sBytes = toUtf8(sText);
        ASSERT_EQ(sBytes, utf8ByStandardLibrary(nCode)) << std::hex << static_cast<std::uint32_t>(nCode);
        ASSERT_EQ(fromUtf8(sBytes), sText) << std::hex << static_cast<std::uint32_t>(nCode);
    }
}

TEST(Utf8, AllScalarValuesInOneTextGoThereAndBack)
{
    String sText;
    for (char32_t nCode = 0; nCode <= 0x10FFFF; ++nCode)
    {
        if (!isSurrogate(nCode))
            sText.push_back(static_cast<wchar_t>(nCode));
    }
    EXPECT_TRUE(fromUtf8(toUtf8(sText)) == sText);
}

TEST(Utf8, WhatIsNoScalarValueIsWrittenAsTheReplacementCharacter)
{
    for (char32_t nCode = 0xD800; nCode <= 0xDFFF; ++nCode)
        ASSERT_EQ(toUtf8(String(1, static_cast<wchar_t>(nCode))), "\xEF\xBF\xBD");
    for (const std::uint32_t nCode : {0x110000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(toUtf8(L"a" + String(1, static_cast<wchar_t>(nCode)) + L"b"),
                  "a\xEF\xBF\xBD"
                  "b")
            << nCode;
}

TEST(Utf8, RefusesWhatIsNotWellFormedAndSaysWhere)
{
    struct Row
    {
        int nLine;
        std::string_view sBytes;
        std::size_t nBad;
    };
    constexpr Row kRows[] = {
        {__LINE__, "abc\x80", 3},  // a continuation without a lead
        {__LINE__, "\xBF", 0},
        {__LINE__, "a\xC0\x80", 1},  // overlong
        {__LINE__, "a\xC1\xBF", 1},
        {__LINE__, "\xE0\x80\x80", 0},
        {__LINE__, "\xE0\x9F\xBF", 0},
        {__LINE__, "\xF0\x80\x80\x80", 0},
        {__LINE__, "\xF0\x8F\xBF\xBF", 0},
        {__LINE__, "\xE2\x82\xAC\xED\xA0\x80", 3},  // surrogates
        {__LINE__, "\xED\xBF\xBF", 0},
        {__LINE__, "\xF4\x90\x80\x80", 0},  // above U+10FFFF
        {__LINE__, "\xF5\x80\x80\x80", 0},
        {__LINE__, "\xF8\x88\x80\x80\x80", 0},
        {__LINE__, "\xFC\x84\x80\x80\x80\x80", 0},
        {__LINE__, "x\xFE", 1},
        {__LINE__, "xy\xFF", 2},
        {__LINE__, "\xC3", 0},  // cut short
        {__LINE__, "a\xE2\x82", 1},
        {__LINE__, "a\xF0\x9F\x98", 1},
        {__LINE__,
         "\xC3"
         "a",
         0},  // broken off by something else
        {__LINE__,
         "\xE2\x82"
         "a",
         0},
        {__LINE__,
         "\xE2"
         "a\xAC",
         0},
        {__LINE__,
         "\xF0\x9F\x98"
         "ab",
         0},
        {__LINE__, "\xC3\xC3\xA9", 0},
        {__LINE__, "\xC3\xA9\xC3\xA9\xC3", 4},
    };
    for (const Row& tRow : kRows)
    {
        std::size_t nBad = kNone;
        EXPECT_EQ(fromUtf8(tRow.sBytes, &nBad), std::nullopt) << "row at line " << tRow.nLine;
        EXPECT_EQ(nBad, tRow.nBad) << "row at line " << tRow.nLine;
        EXPECT_EQ(fromUtf8(tRow.sBytes), std::nullopt) << "row at line " << tRow.nLine;
    }
}

TEST(Utf8, AppendsBehindWhatIsThereAndLeavesItWhereTheBytesAreBad)
{
    // Longer than any piece that is converted at once; a sequence at every offset from a run of ASCII.
    for (std::size_t nRun = 0; nRun < 150; ++nRun)
    {
        const String sText = String(nRun, L'x') + L"\u00E9\u20AC" + String(nRun % 9, L'y') + L"\U0001F600";
        const std::string sBytes =
            std::string(nRun, 'x') + "\xC3\xA9\xE2\x82\xAC" + std::string(nRun % 9, 'y') + "\xF0\x9F\x98\x80";
        std::string sTarget = "<";
        appendUtf8(sTarget, sText);
        ASSERT_EQ(sTarget, "<" + sBytes);
        ASSERT_TRUE(isUtf8(sBytes));
        String sWide = L"<";
        ASSERT_TRUE(appendFromUtf8(sWide, sBytes));
        ASSERT_EQ(sWide, L"<" + sText);
        std::size_t nBad = kNone;
        ASSERT_FALSE(appendFromUtf8(sWide, sBytes + "\xFFz", &nBad));
        ASSERT_EQ(sWide, L"<" + sText);
        ASSERT_EQ(nBad, sBytes.size());
        ASSERT_FALSE(isUtf8(sBytes + "\xFFz", &nBad));
        ASSERT_EQ(nBad, sBytes.size());
    }
}

TEST(Utf8, TakesTheEdgesOfWhatIsWellFormed)
{
    struct Row
    {
        int nLine;
        std::string_view sBytes;
        std::wstring_view sExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, "", L""},
        {__LINE__, std::string_view("a\0b", 3), std::wstring_view(L"a\0b", 3)},
        {__LINE__, "\x7F", L"\x7F"},
        {__LINE__, "\xC2\x80", L"\x80"},
        {__LINE__, "\xDF\xBF", L"\x7FF"},
        {__LINE__, "\xE0\xA0\x80", L"\x800"},
        {__LINE__, "\xED\x9F\xBF", L"\xD7FF"},
        {__LINE__, "\xEE\x80\x80", L"\xE000"},
        {__LINE__, "\xEF\xBB\xBF", L"\xFEFF"},  // a byte order mark is a character like others
        {__LINE__, "\xEF\xBF\xBF", L"\xFFFF"},
        {__LINE__, "\xF0\x90\x80\x80", L"\x10000"},
        {__LINE__, "\xF4\x8F\xBF\xBF", L"\x10FFFF"},
    };
    for (const Row& tRow : kRows)
    {
        std::size_t nBad = kNone;
        EXPECT_EQ(fromUtf8(tRow.sBytes, &nBad), String(tRow.sExpected)) << "row at line " << tRow.nLine;
        EXPECT_EQ(nBad, kNone) << "row at line " << tRow.nLine;
    }
}

}  // namespace

}  // namespace tov

#include "tools/webformat/eastasianwidth.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

namespace tov {

TEST(EastAsianWidth, AddsUpTheColumnsOfCharacters)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        std::size_t nExpected;
    };
    constexpr Row aRows[] = {
        {__LINE__, L"", 0},
        {__LINE__, L"abc", 3},
        {__LINE__, L"日本 de", 7},
        {__LINE__, L"한국", 4},
        {__LINE__, L"ＡＢ", 4},
        {__LINE__, L"ｱｲ", 2},  // half-width kana
        {__LINE__, L"é", 1},
        {__LINE__, L"e\u0301", 1},  // composed and with a combining mark
        {__LINE__, L"\U00020BB7", 2},
        {__LINE__, L"\U0001F3B8", 2},          // an ideograph and an emoji of the upper planes
        {__LINE__, L"\u1112\u1161\u11AB", 2},  // a Hangul syllable in parts
        {__LINE__, L"a\u200Bb\u200F", 2},      // format characters
        {__LINE__, L"\u00B1\u2026", 2},        // ambiguous ones are narrow
        {__LINE__, L"שָׁלוֹם", 4},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(displayWidth(tRow.pText), tRow.nExpected) << "row at line " << tRow.nLine;
}

TEST(EastAsianWidth, AgreesWithUnicodeOnEveryAssignedCharacter)
{
    for (UChar32 nCharacter = 0x300; nCharacter <= 0x10FFFF; ++nCharacter)
    {
        const auto eCategory = u_charType(nCharacter);
        const bool bHangulPart = nCharacter >= 0x1160 && nCharacter <= 0x11FF;
        if (eCategory == U_UNASSIGNED || eCategory == U_SURROGATE || bHangulPart ||
            (nCharacter >= 0xD7B0 && nCharacter <= 0xD7FF))
            continue;
        const bool bMark =
            eCategory == U_NON_SPACING_MARK || eCategory == U_ENCLOSING_MARK || eCategory == U_FORMAT_CHAR;
        const int nProperty = u_getIntPropertyValue(nCharacter, UCHAR_EAST_ASIAN_WIDTH);
        const std::size_t nWide = nProperty == U_EA_WIDE || nProperty == U_EA_FULLWIDTH ? 2 : 1;
        ASSERT_EQ(displayWidth(static_cast<wchar_t>(nCharacter)), bMark ? 0 : nWide) << std::hex << nCharacter;
    }
}

}  // namespace tov

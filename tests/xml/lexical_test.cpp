#include "xml/lexical.h"

#include <gtest/gtest.h>

#include <limits>

namespace tov {
namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(Lexical, IntegersAreDigitsWithAnOptionalSignAndBlanksAround)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        std::optional<std::int64_t> tExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"15", 15},
        {__LINE__, L"-4", -4},
        {__LINE__, L" 20 ", 20},
        {__LINE__, L"\t\r\n7\n", 7},
        {__LINE__, L"+3", 3},
        {__LINE__, L"-0", 0},
        {__LINE__, L"007", 7},
        {__LINE__, L"2147483647", kMost},
        {__LINE__, L"-2147483648", kLeast},
        {__LINE__, L"2147483648", std::nullopt},
        {__LINE__, L"-2147483649", std::nullopt},
        {__LINE__, L"9223372036854775808", std::nullopt},
        {__LINE__, L"99999999999999999999999999999999", std::nullopt},
        {__LINE__, L"", std::nullopt},
        {__LINE__, L"  ", std::nullopt},
        {__LINE__, L"-", std::nullopt},
        {__LINE__, L"+-3", std::nullopt},
        {__LINE__, L"1 2", std::nullopt},
        {__LINE__, L"12x", std::nullopt},
        {__LINE__, L"0x10", std::nullopt},
        {__LINE__, L"1.0", std::nullopt},
        {__LINE__, L"1e3", std::nullopt},
        {__LINE__, L"\x0661", std::nullopt},  // a digit, but none of ASCII
        {__LINE__,
         L"\x00A0"
         L"5",
         std::nullopt},  // no blank of XML
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(lexical::parseInteger(tRow.pText, kLeast, kMost), tRow.tExpected) << "row at line " << tRow.nLine;
}

TEST(Lexical, IntegersReachTheEndsOfSixtyFourBits)
{
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_EQ(lexical::parseInteger(L"9223372036854775807", Limits::min(), Limits::max()), Limits::max());
    EXPECT_EQ(lexical::parseInteger(L"-9223372036854775807", Limits::min(), Limits::max()), -Limits::max());
}

TEST(Lexical, BooleansAreFourWordsInLowerCase)
{
    struct Row
    {
        int nLine;
        const wchar_t* pText;
        std::optional<bool> tExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"true", true},       {__LINE__, L"1", true},           {__LINE__, L"false", false},
        {__LINE__, L"0", false},         {__LINE__, L" true\n", true},     {__LINE__, L"True", std::nullopt},
        {__LINE__, L"", std::nullopt},   {__LINE__, L"yes", std::nullopt}, {__LINE__, L"2", std::nullopt},
        {__LINE__, L"01", std::nullopt},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(lexical::parseBool(tRow.pText), tRow.tExpected) << "row at line " << tRow.nLine;
}

}  // namespace
}  // namespace tov

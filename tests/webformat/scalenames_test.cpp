#include "project/webformat/scalenames.h"

#include <gtest/gtest.h>

#include "intl/localetaglookup.h"

namespace tov {

namespace {

struct Row
{
    int nLine;
    const wchar_t* pName;
    int nExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"thousand", -3},
    {__LINE__, L"ten-thousand", -4},
    {__LINE__, L"hundred-thousand", -5},
    {__LINE__, L"million", -6},
    {__LINE__, L"ten-million", -7},
    {__LINE__, L"hundred-million", -8},
    {__LINE__, L"billion", -9},
    {__LINE__, L"ten-billion", -10},
    {__LINE__, L"hundred-billion", -11},
    {__LINE__, L"trillion", -12},
    {__LINE__, L"ten-trillion", -13},
    {__LINE__, L"hundred-trillion", -14},
    {__LINE__, L"quadrillion", -15},
    {__LINE__, L"ten-quadrillion", -16},
    {__LINE__, L"hundred-quadrillion", -17},
    {__LINE__, L"quintillion", -18},
    {__LINE__, L"ten-quintillion", -19},
    {__LINE__, L"hundred-quintillion", -20},
    {__LINE__, L"sextillion", -21},
    {__LINE__, L"ten-sextillion", -22},
    {__LINE__, L"hundred-sextillion", -23},
    {__LINE__, L"septillion", -24},
    {__LINE__, L"ten-septillion", -25},
    {__LINE__, L"hundred-septillion", -26},
    {__LINE__, L"octillion", -27},
    {__LINE__, L"ten-octillion", -28},
    {__LINE__, L"hundred-octillion", -29},
    {__LINE__, L"nonillion", -30},
    {__LINE__, L"ten-nonillion", -31},
    {__LINE__, L"hundred-nonillion", -32},
    {__LINE__, L"decillion", -33},
    {__LINE__, L"ten-decillion", -34},
    {__LINE__, L"hundred-decillion", -35},
    {__LINE__, L"undecillion", -36},
    {__LINE__, L"ten-undecillion", -37},
    {__LINE__, L"hundred-undecillion", -38},
    {__LINE__, L"duodecillion", -39},
    // The largest has no forms of ten and a hundred; names are exact.
    {__LINE__, L"ten-duodecillion", 0},
    {__LINE__, L"hundred-duodecillion", 0},
    {__LINE__, L"Thousand", 0},
    {__LINE__, L"thousand ", 0},
    {__LINE__, L"ten-", 0},
    {__LINE__, L"ten-ten-thousand", 0},
    {__LINE__, L"hundred", 0},
    {__LINE__, L"", 0},
    {__LINE__, L"centillion", 0},
};

TEST(ScaleNames, AreNegativePowersOfTen)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(scaleNumberOfName(tRow.pName), tRow.nExpected) << "row at line " << tRow.nLine;
}

TEST(ScaleNames, AreFoundByTheirPlaceInTheLocalesList)
{
    String sIndicator = L"before";
    EXPECT_EQ(scaleNumberByPosition(Locale::kUSA, 0, sIndicator), -3);
    EXPECT_EQ(sIndicator, L"K");
    EXPECT_EQ(scaleNumberByPosition(Locale::kUSA, 1, sIndicator), -6);
    EXPECT_EQ(sIndicator, L"M");
    EXPECT_EQ(scaleNumberByPosition(Locale::kUSA, 1000, sIndicator), 0);
    EXPECT_EQ(sIndicator, L"M") << "a place past the list leaves the indicator alone";
}

TEST(ScaleNames, GiveTheLocalesIndicator)
{
    EXPECT_EQ(indicatorOfScaleName(Locale::kUSA, L"billion"), L"B");
    EXPECT_EQ(indicatorOfScaleName(Locale::kUSA, L"ten-thousand"), L"");
    EXPECT_EQ(indicatorOfScaleName(LocaleTagLookup::lookupOrDefault(L"hi-IN"), L"hundred-thousand"), L"L");
}

}  // namespace

}  // namespace tov

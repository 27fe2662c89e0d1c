#include "tools/webformat/papertext.h"

#include <gtest/gtest.h>

namespace tov {

namespace {

struct CharacterRow
{
    int nLine;
    wchar_t nCharacter;
    bool bSame;
};

struct PairRow
{
    int nLine;
    wchar_t nBefore;
    wchar_t nAfter;
    bool bBreak;
};

struct PrintedRow
{
    int nLine;
    wchar_t nBefore;
    wchar_t nCharacter;
    wchar_t nExpected;  // 0: nothing
};

struct DirectionRow
{
    int nLine;
    wchar_t nCharacter;
    TextDirection eDirection;
};

}  // namespace

TEST(PaperText, KeepsTheScriptsOfOneTextFontTogether)
{
    constexpr CharacterRow kRows[] = {
        {__LINE__, L'a', true},     {__LINE__, L'é', true},     {__LINE__, L'Ж', true},     {__LINE__, L'Ω', true},
        {__LINE__, L'ש', true},     {__LINE__, L'€', true},     {__LINE__, L'—', true},     {__LINE__, L'→', true},
        {__LINE__, 0x10D0, true},   {__LINE__, 0x1E9E, true},   {__LINE__, 0x05FF, true},   {__LINE__, 0x0600, false},
        {__LINE__, L'س', false},    {__LINE__, 0xFEFE, false},  {__LINE__, 0x0900, false},  {__LINE__, L'ก', false},
        {__LINE__, L'★', false},    {__LINE__, L'急', false},   {__LINE__, L'한', false},   {__LINE__, L'（', false},
        {__LINE__, 0x1F600, false}, {__LINE__, 0x20BB7, false}, {__LINE__, 0x3FFFF, false}, {__LINE__, 0x40000, true},
    };
    for (const CharacterRow& tRow : kRows)
        EXPECT_EQ(fontGroupOf(tRow.nCharacter) == 0, tRow.bSame) << "row at line " << tRow.nLine;
    EXPECT_EQ(fontGroupOf(L'急'), fontGroupOf(L'の'));
    EXPECT_NE(fontGroupOf(L'急'), fontGroupOf(0x20BB7));
    EXPECT_NE(fontGroupOf(L'急'), fontGroupOf(L'한'));
    EXPECT_NE(fontGroupOf(L'ह'), fontGroupOf(L'ก'));
    EXPECT_EQ(fontGroupOf(L'س'), knArabicFontGroup);
    EXPECT_TRUE(continuesFontGroup(0x0301));
    EXPECT_TRUE(continuesFontGroup(0x094D));
    EXPECT_TRUE(continuesFontGroup(0x200D));
    EXPECT_FALSE(continuesFontGroup(0x200B));
    EXPECT_FALSE(continuesFontGroup(L'a'));
}

TEST(PaperText, BreaksLongWordsWhereNoLetterIsTakenApart)
{
    constexpr PairRow kRows[] = {
        {__LINE__, L'a', L'b', true},      {__LINE__, L'e', 0x0301, false},  // a mark belongs to its letter
        {__LINE__, 0x0301, L'a', true},    {__LINE__, 0x0938, 0x094D, false},
        {__LINE__, 0x094D, 0x0924, false},  // and consonants to their conjunct
        {__LINE__, 0x0E40, 0x0E01, false},  // a vowel to the consonant after it
        {__LINE__, 0x0E01, 0x0E32, true},  {__LINE__, L'a', 0x2060, false},
        {__LINE__, 0x2060, L'a', false},   {__LINE__, 0x200D, L'a', false},
    };
    for (const PairRow& tRow : kRows)
        EXPECT_EQ(mayBreakBetween(tRow.nBefore, tRow.nAfter), tRow.bBreak) << "row at line " << tRow.nLine;
    EXPECT_TRUE(breaksAnywhere(L'急'));
    EXPECT_TRUE(breaksAnywhere(0x20BB7));
    EXPECT_FALSE(breaksAnywhere(L'한'));
    EXPECT_FALSE(breaksAnywhere(L'a'));
}

TEST(PaperText, MeasuresRatherTooWide)
{
    EXPECT_EQ(advanceOf(L' ', false), 285U);
    EXPECT_EQ(advanceOf(L'0', false), 572U);
    EXPECT_EQ(advanceOf(L'W', false), 889U);
    EXPECT_EQ(advanceOf(L'~', false), 753U);
    EXPECT_EQ(advanceOf(0xA0, false), 285U);
    EXPECT_EQ(advanceOf(L'é', false), 700U);
    EXPECT_EQ(advanceOf(L'急', false), 1000U);
    EXPECT_EQ(advanceOf(0x0301, false), 0U);
    EXPECT_EQ(advanceOf(L'ह', false), 850U);
    EXPECT_EQ(advanceOf(L'0', true), 643U);
}

TEST(PaperText, PrintsWhatHasAMeaningOnPaper)
{
    constexpr PrintedRow kRows[] = {
        {__LINE__, L'a', L'b', L'b'},       {__LINE__, L'a', L'\n', L'\n'},   {__LINE__, L'a', L'\t', L'\t'},
        {__LINE__, L'a', 0x2028, L'\n'},    {__LINE__, L'a', 0x0085, L'\n'},  {__LINE__, L'a', 0x0007, 0xFFFD},
        {__LINE__, L'a', 0x009F, 0xFFFD},   {__LINE__, L'a', 0x00A0, 0x00A0}, {__LINE__, L'a', 0xFEFF, 0},
        {__LINE__, 0x2764, 0xFE0F, 0},      {__LINE__, 0x1F468, 0x200D, 0},  // a family is its members
        {__LINE__, 0x1F44D, 0x1F3FD, 0},     // there is no skin colour in black and white
        {__LINE__, L'a', 0x1F3FD, 0x1F3FD},  // but a colour by itself is a picture
        {__LINE__, 0x0915, 0x200D, 0x200D},  // between letters the joiner shapes
        {__LINE__, L'a', 0x200F, 0x200F},   {__LINE__, L'a', 0x2067, 0},      {__LINE__, 0x1F3F4, 0xE0067, 0},
    };
    for (const PrintedRow& tRow : kRows)
        EXPECT_EQ(printedCharacter(tRow.nBefore, tRow.nCharacter).value_or(0), tRow.nExpected)
            << "row at line " << tRow.nLine;
}

TEST(PaperText, KnowsTheDirectionOfLetters)
{
    constexpr DirectionRow kRows[] = {
        {__LINE__, L'a', TextDirection::kLeftToRight},    {__LINE__, L'É', TextDirection::kLeftToRight},
        {__LINE__, L'×', TextDirection::kNeutral},        {__LINE__, L'1', TextDirection::kNeutral},
        {__LINE__, L'(', TextDirection::kNeutral},        {__LINE__, L'Ж', TextDirection::kLeftToRight},
        {__LINE__, L'ש', TextDirection::kRightToLeft},    {__LINE__, L'س', TextDirection::kRightToLeft},
        {__LINE__, 0xFEFC, TextDirection::kRightToLeft},  {__LINE__, 0x200E, TextDirection::kLeftToRight},
        {__LINE__, 0x200F, TextDirection::kRightToLeft},  {__LINE__, L'急', TextDirection::kLeftToRight},
        {__LINE__, L'、', TextDirection::kNeutral},       {__LINE__, 0x1F600, TextDirection::kNeutral},
        {__LINE__, 0x1E900, TextDirection::kRightToLeft},
    };
    for (const DirectionRow& tRow : kRows)
        EXPECT_EQ(directionOf(tRow.nCharacter), tRow.eDirection) << "row at line " << tRow.nLine;
}

}  // namespace tov

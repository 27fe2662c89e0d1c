#include "intl/localedatepattern.h"

#include <gtest/gtest.h>

namespace tov {
namespace {

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pExpected;
};

TEST(LocaleDatePattern, ConvertsFieldsTokenByToken)
{
    constexpr Row kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"M/d/yy", L"M/d/yyyy"},
        {__LINE__, L"dd.MM.y", L"dd.MM.yyyy"},
        {__LINE__, L"yyyy-LL-dd", L"yyyy-MM-dd"},
        {__LINE__, L"EEEE, MMMM d, y", L"dddd, MMMM d, yyyy"},
        {__LINE__, L"E, MMM d", L"ddd, MMM d"},
        {__LINE__, L"EEE ccc", L"ddd ddd"},
        {__LINE__, L"cccc LLLL", L"dddd MMMM"},
        {__LINE__, L"h:mm:ss a", L"h:mm:ss tt"},
        {__LINE__, L"KK:mm b", L"hh:mm tt"},
        {__LINE__, L"Bh:mm:ss", L"tth:mm:ss"},
        {__LINE__, L"HH.mm.ss", L"HH.mm.ss"},
        {__LINE__, L"kk:m:s", L"HH:m:s"},
        {__LINE__, L"G y", L"gg yyyy"},
        {__LINE__, L"HH:mm z", L"HH:mm "},
        {__LINE__, L"y\u5E74M\u6708d\u65E5EEEE", L"yyyy\u5E74M\u6708d\u65E5dddd"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(LocaleDatePattern(tRow.pPattern).text(), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(LocaleDatePattern, QuotesLiteralTextThatTheGrammarWouldReadOtherwise)
{
    constexpr Row kRows[] = {
        {__LINE__, L"d 'de' MMMM 'de' y", L"d \"de\" MMMM \"de\" yyyy"},
        {__LINE__, L"HH 'h' mm 'min'", L"HH \"h\" mm \"min\""},
        {__LINE__, L"y '\u0433'.", L"yyyy \u0433."},  // no ASCII letter: as it stands
        {__LINE__, L"y('e')'ko'", L"yyyy(\"e\")\"ko\""},
        {__LINE__, L"h 'o''clock'", L"h \"o'clock\""},
        {__LINE__, L"h''mm", L"h'mm"},
        {__LINE__, L"y '\"'", L"yyyy \"\\\"\""},
        {__LINE__, L"y\\M", L"yyyy\"\\\\\"M"},
        {__LINE__, L"y '['M", L"yyyy \"[\"M"},
        {__LINE__, L"y 'open", L"yyyy \"open\""},
        {__LINE__, L"ss.", L"ss\".\""},      // otherwise a fraction of a second
        {__LINE__, L"dEEEE", L"d\"\"dddd"},  // otherwise one run of five
        {__LINE__, L"EEEEd", L"dddd\"\"d"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(LocaleDatePattern(tRow.pPattern).text(), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(LocaleDatePattern, DropsDirectionMarksAndUsesPlainBlanks)
{
    EXPECT_EQ(LocaleDatePattern(L"d\u200F/M\u200F/y").text(), L"d/M/yyyy");
    EXPECT_EQ(LocaleDatePattern(L"h:mm\u202Fa").text(), L"h:mm tt");
    EXPECT_EQ(LocaleDatePattern(L"HH\u00A0'h'").text(), L"HH \"h\"");
}

TEST(LocaleDatePattern, WidensDayAndMonthForInput)
{
    constexpr Row kRows[] = {
        {__LINE__, L"M/d/yy", L"MM/dd/yyyy"},   {__LINE__, L"d. M. y.", L"dd. MM. yyyy."},
        {__LINE__, L"yy.L.d", L"yyyy.MM.dd"},   {__LINE__, L"dd.MM.y", L"dd.MM.yyyy"},
        {__LINE__, L"d MMM y", L"dd MMM yyyy"}, {__LINE__, L"d 'd' M", L"dd \"d\" MM"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(LocaleDatePattern(tRow.pPattern).inputText(), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(LocaleDatePattern, SwitchesToTheMonthNamesInsideDates)
{
    constexpr Row kRows[] = {
        {__LINE__, L"d MMMM y", L"d [L:ru-RU;dates]MMMM[L:ru-RU] yyyy"},
        {__LINE__, L"dMMMM", L"d[L:ru-RU;dates]MMMM[L:ru-RU]"},
        {__LINE__, L"d LLLL y", L"d MMMM yyyy"},  // asked for by itself
        {__LINE__, L"d MMM y", L"d MMM yyyy"},
        {__LINE__, L"d.MM.y", L"d.MM.yyyy"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(LocaleDatePattern(tRow.pPattern).textWithMonthsInsideDates(L"ru-RU"), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

TEST(LocaleDatePattern, FindsTheSeparatorOfHourAndMinute)
{
    constexpr Row kRows[] = {
        {__LINE__, L"h:mm a", L":"},    {__LINE__, L"HH.mm.ss", L"."},  {__LINE__, L"a h.mm", L"."},
        {__LINE__, L"HH'h'mm", L":"},   {__LINE__, L"HH 'h' mm", L":"}, {__LINE__, L"H\u066Bmm", L"\u066B"},
        {__LINE__, L"H\u6642mm", L":"},  // a letter
        {__LINE__, L"H: mm", L":"},     {__LINE__, L"HHmm", L":"},      {__LINE__, L"d.M.y", L":"},
        {__LINE__, L"mm.HH", L":"},     {__LINE__, L"", L":"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(LocaleDatePattern(tRow.pPattern).hourMinuteSeparator(), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

TEST(LocaleDatePattern, KnowsDayNamesThatStandByThemselves)
{
    EXPECT_TRUE(LocaleDatePattern(L"cccc d. MMMM y").namesDaysByThemselves());
    EXPECT_FALSE(LocaleDatePattern(L"EEEE d. MMMM y").namesDaysByThemselves());
    EXPECT_FALSE(LocaleDatePattern(L"'cccc' ccc d").namesDaysByThemselves());
}

}  // namespace
}  // namespace tov

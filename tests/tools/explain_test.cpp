#include <gtest/gtest.h>

#include <algorithm>

#include "tools/support/command.h"

namespace tov {

namespace {

// What the command prints, with "|" between the columns in place of blanks.
std::string columnsOf(const std::vector<std::string>& vArguments)
{
    const std::string sOutput = runCommand(vArguments).sOutput;
    std::string sResult;
    for (std::size_t nAt = 0; nAt < sOutput.size();)
    {
        const std::size_t nEnd = std::min(sOutput.find_first_not_of(' ', nAt), sOutput.size());
        sResult += nEnd - nAt > 1 ? "|" : sOutput.substr(nAt, nEnd - nAt);
        nAt = std::min(sOutput.find(' ', nEnd), sOutput.size());
        sResult += sOutput.substr(nEnd, nAt - nEnd);
    }
    return sResult;
}

}  // namespace

TEST(Explain, WritesALineForEachItemWithAnExampleUpToThere)
{
    const CommandResult tResult = runCommand({"explain", "--kind", "numeric", "#,##0.0;[red](0)"});
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "#         optional digits, integer place 4 upwards            1234568\n"
              "##        optional digits, integer places 3 to 2              1,234,568\n"
              "0         required digit, integer place 1                     1,234,568\n"
              ".         decimal separator, where fraction digits follow     1,234,568\n"
              "0         required digit, fraction place 1                    1,234,567.9\n"
              "#,##0.0   for positive values and zero; grouped in thousands  1,234,567.9\n"
              "[red]     red, in outputs that have colours                   \n"
              "(         the text \"(\"                                        (\n"
              "          optional digits, integer place 2 upwards            (\n"
              "0         required digit, integer place 1                     (1234568\n"
              ")         the text \")\"                                        (1234568)\n"
              "[red](0)  for negative values, whose sign it writes itself    (1234568)\n");
}

TEST(Explain, FindsAnExampleThatTheItemsHaveSomethingToShowFor)
{
    const std::pair<const char*, const char*> aRows[] = {
        {"[MMMM]", "March"},
        {"[DDD]", "Tue"},
        {"0.0%", "1234567.9%"},
        {"0,,", "1"},
        {"0.0[scale-name:auto]", "1.2M"},
        {"0;0;\"none\"", "none"},
        {"0\\:00[%60]", "20576:08"},
    };
    for (const auto& [pPattern, pExample] : aRows)
    {
        const std::string sOutput = runCommand({"explain", "--kind", "numeric", pPattern}).sOutput;
        EXPECT_NE(sOutput.find(std::string("  ") + pExample + "\n"), std::string::npos) << pPattern << "\n" << sOutput;
    }
}

TEST(Explain, PutsEachItemOnOneLineWhateverThePatternHolds)
{
    EXPECT_EQ(columnsOf({"explain", "--kind", "date", "\t\nd"}),
              "␉␊|the text \"␉␊\"|␉␊\nd|day|␉␊5\n␉␊d|for dates, times and timestamps|␉␊5\n");
}

TEST(Explain, SaysWhoExplainsTheUnitsOfADurationInANumericPattern)
{
    const std::string sOutput = columnsOf({"explain", "--kind", "numeric", "[duration(min)]hh"});
    EXPECT_TRUE(sOutput.starts_with("[duration(min)]|duration in seconds: value x 60; its units: --kind duration|\n"))
        << sOutput;
}

TEST(Explain, SaysWhatDatePatternsDo)
{
    EXPECT_EQ(columnsOf({"explain", "--kind", "date", "dddd, dMMMM d MMM \\a yy hh:mm:ss.# tt[TZ:Asia/Tokyo]"}),
              "dddd|name of the day of the week|Tuesday\n"
              ",|the text \", \"|Tuesday, \n"
              "d|day|Tuesday, 5\n"
              "MMMM|name of the month, as it stands behind a day|Tuesday, 5March\n"
              "|the text \" \"|Tuesday, 5March \n"
              "d|day|Tuesday, 5March 5\n"
              "|the text \" \"|Tuesday, 5March 5 \n"
              "MMM|short name of the month|Tuesday, 5March 5 Mar\n"
              "|the text \" \"|Tuesday, 5March 5 Mar \n"
              "\\a|the text \"a \"|Tuesday, 5March 5 Mar a \n"
              "yy|year of the century, two digits|Tuesday, 5March 5 Mar a 24\n"
              "|the text \" \"|Tuesday, 5March 5 Mar a 24 \n"
              "hh|hour, 1 to 12, two digits|Tuesday, 5March 5 Mar a 24 05\n"
              ":|the text \":\"|Tuesday, 5March 5 Mar a 24 05:\n"
              "mm|minute, two digits|Tuesday, 5March 5 Mar a 24 05:08\n"
              ":|the text \":\"|Tuesday, 5March 5 Mar a 24 05:08:\n"
              "ss.#|second with its fraction, as the number \"00.#\"|Tuesday, 5March 5 Mar a 24 05:08:09.1\n"
              "|the text \" \"|Tuesday, 5March 5 Mar a 24 05:08:09.1 \n"
              "tt|half of the day|Tuesday, 5March 5 Mar a 24 05:08:09.1 PM\n"
              "[TZ:Asia/Tokyo]|the zone to show timestamps in|\n"
              "TZ|behind a timestamp, the short name of its zone|\n"
              "dddd, dMMMM d MMM \\a yy hh:mm:ss.# tt[TZ:Asia/Tokyo]|for dates, times and timestamps|"
              "Tuesday, 5March 5 Mar a 24 05:08:09.1 PM\n");
}

TEST(Explain, FindsTheWordsOfEveryDateElement)
{
    const std::pair<const char*, const char*> aRows[] = {
        {"y", "y|year of the century, without a leading zero|24\n"},
        {"yyy", "yyy|year, four digits|2024\n"},
        {"yyyy", "yyyy|year|2024\n"},
        {"M", "M|month|3\n"},
        {"MM", "MM|month, two digits|03\n"},
        {"MMMM", "MMMM|name of the month|March\n"},
        {"D", "D|day|5\n"},
        {"DDD", "DDD|short name of the day of the week, in capitals|TUE\n"},
        {"ddddd", "ddddd|first letter of the day of the week|T\n"},
        {"H", "H|hour, 0 to 23|17\n"},
        {"m", "m|minute|8\n"},
        {"s", "s|second|9\n"},
        {"gg", "gg|era|AD\n"},
        {"[L:]", "[L:]|from here on the names of the first locale again|\n"},
        {"[L:de-DE]MMMM", "[L:de-DE]|from here on the names of \"de-DE\"|\nMMMM|name of the month|März\n"},
        {"[FMT:dateODBC]", "[FMT:dateODBC]|month, two digits|2024-03\n"},
        {"", "|for dates, times and timestamps|\n"},
    };
    for (const auto& [pPattern, pLine] : aRows)
    {
        const std::string sOutput = columnsOf({"explain", "--kind", "date", pPattern});
        EXPECT_NE(sOutput.find(pLine), std::string::npos) << pPattern << "\n" << sOutput;
    }
}

TEST(Explain, SaysWhatDurationPatternsDo)
{
    const CommandResult tResult = runCommand({"explain", "--kind", "duration", "[opt:dd\"d \"]hh:mmc"});
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "dd                  days; only where there are days           01\n"
              "\"d \"                the text \"d \"; only where there are days  01d \n"
              "hh                  hours                                     01d 02\n"
              ":                   the text \":\"                              01d 02:\n"
              "mm                  minutes, rounded up                       01d 02:03\n"
              "[opt:dd\"d \"]hh:mmc  for numbers of seconds                    01d 02:04\n");
    const auto explained = [](const char* pPattern) {
        return runCommand({"explain", "--kind", "duration", pPattern}).sOutput;
    };
    EXPECT_NE(explained("hhr").find("hours, rounded to nearest "), std::string::npos);
    EXPECT_NE(explained("dd").find("days, rounded when they are written; whole numbers are cut off "),
              std::string::npos);
    EXPECT_EQ(columnsOf({"explain", "--kind", "duration", "ss"}),
              "ss|seconds|93784\nss|for numbers of seconds|93784\n");
}

TEST(Explain, UsesTheLocale)
{
    const std::string sDate = runCommand({"explain", "--kind", "date", "--locale", "ru-RU", "dMMMM"}).sOutput;
    EXPECT_NE(sDate.find("  5марта\n"), std::string::npos) << sDate;
    const std::string sOutput = runCommand({"explain", "--kind", "numeric", "--locale", "de-DE", "#,##0.00"}).sOutput;
    EXPECT_NE(sOutput.find("1.234.567,89\n"), std::string::npos) << sOutput;
}

}  // namespace tov

#include "tools/webformat/commandline.h"

#include <gtest/gtest.h>

#include "tools/support/command.h"

namespace tov {

namespace {

using Arguments = std::vector<std::string>;

}  // namespace

TEST(CommandLine, TakesNegativeValuesForValues)
{
    const std::pair<Arguments, Arguments> aRows[] = {
        {{}, {}},
        {{"value", "--type", "double", "-5", "7"}, {"value", "--type", "double", "--", "-5", "7"}},
        {{"value", "-5", "--type", "double", "7"}, {"value", "--type", "double", "--", "-5", "7"}},
        {{"value", "--pattern", "-0", "-INF", "-.5"}, {"value", "--pattern", "-0", "--", "-INF", "-.5"}},
        {{"value", "--pattern=-0", "-5"}, {"value", "--pattern=-0", "--", "-5"}},
        {{"value", "--", "--help", "-5"}, {"value", "--", "--help", "-5"}},
        {{"value", "--help"}, {"value", "--help"}},
        {{"report", "a.xml", "-ob.html", "--data", "c"}, {"report", "-ob.html", "--data", "c", "--", "a.xml"}},
        {{"--config", "c.xml", "list", "types"}, {"--config", "c.xml", "list", "--", "types"}},
        {{"explain", "--kind", "numeric", "-#"}, {"explain", "--kind", "numeric", "--", "-#"}},
        {{"value", "-x", "1"}, {"value", "-x", "1"}},
    };
    for (const auto& [vGiven, vExpected] : aRows)
        EXPECT_EQ(withSeparatedValues(vGiven), vExpected) << ::testing::PrintToString(vGiven);
}

TEST(CommandLine, TellsDoneFromWrongInputAndWrongUsage)
{
    struct Row
    {
        int nLine;
        Arguments vArguments;
        int nStatus;
        std::string sOutput;   // its start
        std::string sMessage;  // a part of it
    };
    const Row aRows[] = {
        {__LINE__, {"--version"}, 0, "webformat 1.", ""},
        {__LINE__, {"--help"}, 0, "Shows values", ""},
        {__LINE__, {"report", "--help"}, 0, "Renders a table", ""},
        {__LINE__, {"value", "--help"}, 0, "Formats values", ""},
        {__LINE__, {"explain", "--help"}, 0, "Says what", ""},
        {__LINE__, {"batch", "--help"}, 0, "Answers requests", ""},
        {__LINE__, {"list", "--help"}, 0, "Prints the names", ""},
        {__LINE__, {}, 2, "", "A subcommand is required"},
        {__LINE__,
         {"nonsense", "--type", "double"},
         2,
         "",
         "webformat: found \"nonsense\", expected one of report, value, explain, batch, list\nRun with --help"},
        {__LINE__, {"--nonsense"}, 2, "", "webformat: found \"--nonsense\", expected one of report, value"},
        {__LINE__, {"list"}, 2, "", "KIND is required"},
        {__LINE__, {"list", "nonsense"}, 2, "", "nonsense not in {types,locales,currencies,time-zones,outputs}"},
        {__LINE__, {"list", "currencies"}, 0, "ADP\nAED\nAFA\n", ""},
        {__LINE__, {"list", "time-zones"}, 0, "Africa/Abidjan\nAfrica/Accra\n", ""},
        {__LINE__, {"list", "outputs"}, 0, "text\nhtml\nxml\njavascript\npdf\nsql\nsqlliteral\nxlsx\n", ""},
        {__LINE__, {"list", "types"}, 0, "invalid\nunknown\nbit\ntinyint\nsmallint\ninteger\nunsignedinteger\n", ""},
        {__LINE__, {"value", "--type", "double"}, 2, "", "VALUE is required"},
        {__LINE__, {"value", "--type", "nope", "1"}, 1, "", "--type: found the type \"nope\", expected one of"},
        {__LINE__,
         {"value", "--type", "double", "--storage", "x", "1"},
         1,
         "",
         "--storage: found the storage \"x\", expected one of double"},
        {__LINE__,
         {"value", "--type", "double", "--storage", "wchar", "a"},
         1,
         "",
         "webformat: no formatter applies to values of the type \"double\" with the storage \"wchar\""},
        {__LINE__, {"value", "--type", "double", "--locale", "xx", "1"}, 1, "", "found the locale \"xx\""},
        {__LINE__, {"value", "--type", "double", "--output", "htm", "1"}, 1, "", "found the output \"htm\""},
        {__LINE__, {"value", "--type", "double", "--pattern", "0", "--definition", "<a/>", "1"}, 2, "", "excludes"},
        {__LINE__, {"value", "--type", "double", "-5", "-.5", "7", "-INF"}, 0, "-5.00\n-0.50\n7.00\n-INF\n", ""},
        {__LINE__,
         {"value", "--type", "double", "1", "2x"},
         1,
         "",
         "value 2: found \"2x\", expected a number, NaN, INF or -INF"},
        {__LINE__,
         {"value", "--type", "bigint", "--pattern", "#,##0", "-9223372036854775809"},
         0,
         "-9,223,372,036,854,775,809\n",
         ""},
        {__LINE__,
         {"value", "--type", "double", "--pattern", "#,##0.00;[red](#,##0.00)", "1234.5", "-1234.5"},
         0,
         "1,234.50\n(1,234.50)\n",
         ""},
        {__LINE__,
         {"value", "--type", "double", "--locale", "de-DE", "--pattern", "#,##0.00", "1234.5"},
         0,
         "1.234,50\n",
         ""},
        {__LINE__,
         {"value", "--type", "double", "--output", "html", "--pattern", "0;[red]0", "-5"},
         0,
         "<font style=\"color:red\">5</font>\n",
         ""},
        {__LINE__,
         {"value", "--type", "integer", "--storage", "int64", "--pattern", "0", "9223372036854775807"},
         0,
         "9223372036854775807\n",
         ""},
        {__LINE__, {"value", "--type", "varbinary", "AP8="}, 0, "00FF\n", ""},
        {__LINE__, {"value", "--type", "date", "2024-03-05", "-0044-03-15"}, 0, "3/5/2024\n3/15/-44\n", ""},
        {__LINE__, {"value", "--type", "time", "--locale", "de-DE", "17:08:09.5"}, 0, "17:08:09\n", ""},
        {__LINE__,
         {"value", "--type", "date", "--pattern", "dddd", "--locale", "ja-JP", "2024-03-05"},
         0,
         "火曜日\n",
         ""},
        {__LINE__,
         {"value", "--type", "date", "2024-02-30"},
         1,
         "",
         "value 1: found \"2024-02-30\", expected a date such as 2024-03-05"},
        {__LINE__, {"value", "--type", "timestamp", "2024-03-05 07:08:09"}, 0, "3/5/2024 7:08:09 AM\n", ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset", "-300", "--time-zone", "Europe/Berlin", "--language", "de",
          "--pattern", "HH:mm TZ", "2024-07-01 12:00:00"},
         0,
         "19:00 MEZ\n",
         ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset=-300", "--time-zone", "america/new_york",
          "2024-07-01 12:00:00"},
         0,
         "7/1/2024 1:00:00 PM\n",
         ""},
        // Without an offset the values are in UTC.
        {__LINE__,
         {"value", "--type", "timestamp", "--time-zone", "Asia/Tokyo", "2024-07-01 12:00:00"},
         0,
         "7/1/2024 9:00:00 PM\n",
         ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset", "unknown", "--time-zone", "Asia/Tokyo",
          "2024-07-01 12:00:00"},
         0,
         "7/1/2024 12:00:00 PM\n",
         ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset", "0", "--pattern", "HH:mm[TZ:Asia/Tokyo]",
          "2024-07-01 12:00:00"},
         0,
         "21:00GMT+9\n",
         ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset", "0", "--definition",
          "<tov:dataFormat xsi:type='tov:date' biFormat='timeODBC' displayTimeZone='Asia/Tokyo'/>",
          "2024-07-01 12:00:00"},
         0,
         "21:00:00\n",
         ""},
        {__LINE__,
         {"value", "--type", "timestamp", "--time-zone", "Europe/Berlinn", "2024-03-05 07:08:09"},
         1,
         "",
         "--time-zone: found \"Europe/Berlinn\", expected a known time zone such as \"America/New_York\" (see: "
         "webformat list time-zones)"},
        {__LINE__,
         {"value", "--type", "timestamp", "--data-offset", "1081", "2024-03-05 07:08:09"},
         1,
         "",
         "--data-offset: found \"1081\", expected a whole number of minutes from -1080 to 1080, or \"unknown\""},
        {__LINE__,
         {"value", "--type", "double", "--pattern", "[duration(sec)][opt:dd\"d \"]hh:mm", "93784", "3600"},
         0,
         "01d 02:03\n01:00\n",
         ""},
        {__LINE__, {"explain", "--kind", "poem", "d"}, 2, "", "poem not in {numeric,date,duration"},
        {__LINE__,
         {"value", "--type", "double", "--definition", "<tov:dataFormat xsi:type='tov:number' negativeType='paren'/>",
          "-5"},
         0,
         "(5.00)\n",
         ""},
        {__LINE__,
         {"value", "--type", "double", "--definition", "<tov:dataFormat xsi:type='tov:nope'/>", "5"},
         1,
         "",
         "--definition:1:27: type: found \"tov:nope\", expected \"none\", \"custom\","},
        {__LINE__, {"value", "--type", "double", "--definition", "<tov:dataFormat", "5"}, 1, "", "--definition:1:"},
        {__LINE__,
         {"value", "--type", "double", "--definition", "<tov:column/>", "5"},
         1,
         "",
         "--definition:1:1: found the element \"column\", expected \"tov:dataFormat\""},
        {__LINE__,
         {"value", "--type", "double", "--pattern", "\xFF", "5"},
         1,
         "",
         "bytes that are not UTF-8 in --pattern"},
        {__LINE__, {"--config", "/nonexistent.xml", "value", "--type", "double", "5"}, 1, "", "/nonexistent.xml: "},
        {__LINE__, {"value", "--type", "double", "5", "--config", "/nonexistent.xml"}, 1, "", "/nonexistent.xml: "},
        {__LINE__, {"batch", "--threads", "0"}, 2, "", "--threads"},
        {__LINE__,
         {"report", "r.xml", "--data", "d.csv", "--output", "nonsense"},
         2,
         "",
         "nonsense not in {html,text,csv"},
    };
    for (const Row& tRow : aRows)
    {
        const CommandResult tResult = runCommand(tRow.vArguments);
        EXPECT_EQ(tResult.nStatus, tRow.nStatus) << "row at line " << tRow.nLine;
        EXPECT_EQ(tResult.sOutput.substr(0, tRow.sOutput.size()), tRow.sOutput) << "row at line " << tRow.nLine;
        EXPECT_EQ(tRow.sOutput.empty(), tResult.sOutput.empty()) << "row at line " << tRow.nLine;
        EXPECT_NE(tResult.sErrors.find(tRow.sMessage), std::string::npos)
            << "row at line " << tRow.nLine << ": " << tResult.sErrors;
        EXPECT_EQ(tRow.nStatus == 0, tResult.sErrors.empty()) << "row at line " << tRow.nLine << tResult.sErrors;
        EXPECT_EQ(tResult.sErrors.find("ssertion"), std::string::npos) << "row at line " << tRow.nLine;
    }
}

TEST(CommandLine, ListsLocalesThatValuesTake)
{
    const CommandResult tResult = runCommand({"list", "locales"});
    EXPECT_EQ(tResult.nStatus, 0);
    for (const char* pTag : {"\nen-US\n", "\nde-DE\n", "\nja-JP\n", "\nhe-IL\n"})
        EXPECT_NE(tResult.sOutput.find(pTag), std::string::npos) << pTag;
}

TEST(CommandLine, ReadsTheHostConfiguration)
{
    const TemporaryFolder tFolder;
    const std::string sConfig = tFolder.write(
        "config.xml", "<Config><Formatters><NumericFormatter maxSignificantDigits=\"3\"/></Formatters></Config>");
    EXPECT_EQ(runCommand({"value", "--type", "double", "--pattern", "0.####", "1.23456"}).sOutput, "1.2346\n");
    EXPECT_EQ(runCommand({"value", "--type", "double", "--pattern", "0.####", "1.23456", "--config", sConfig}).sOutput,
              "1.23\n");
    const std::string sZones = tFolder.write("zones.xml",
                                             "<Config><TimeZone><DefaultDataOffset>GMT+01:00</DefaultDataOffset>"
                                             "<DefaultDataDisplay>Asia/Tokyo</DefaultDataDisplay></TimeZone></Config>");
    const auto stamp = [&](std::vector<std::string> vOptions)
    {
        vOptions.insert(vOptions.begin(), {"--config", sZones, "value", "--type", "timestamp"});
        vOptions.emplace_back("2024-07-01 12:00:00");
        return runCommand(vOptions).sOutput;
    };
    EXPECT_EQ(stamp({}), "7/1/2024 8:00:00 PM\n");
    EXPECT_EQ(stamp({"--data-offset", "0"}), "7/1/2024 9:00:00 PM\n");
    EXPECT_EQ(stamp({"--time-zone", "Europe/Paris"}), "7/1/2024 1:00:00 PM\n");
    EXPECT_EQ(stamp({"--time-zone", "default"}), "7/1/2024 8:00:00 PM\n");
    const std::string sBroken = tFolder.write("broken.xml", "<Config>\n  <a></b></Config>");
    const CommandResult tResult = runCommand({"--config", sBroken, "value", "--type", "double", "1"});
    EXPECT_EQ(tResult.nStatus, 1);
    EXPECT_NE(tResult.sErrors.find(sBroken + ":2:"), std::string::npos) << tResult.sErrors;
}

}  // namespace tov

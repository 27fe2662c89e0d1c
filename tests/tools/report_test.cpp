#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "tools/support/command.h"
#include "tools/support/database.h"
#include "tools/support/report.h"

namespace tov {

namespace {

constexpr const char* kpPng =
    "iVBORw0KGgoAAAANSUhEUgAAABAAAAAICAMAAAA8BVCCAAAAA1BMVEX///+nxBvIAAAADElEQVR4nGNgGMwAAACIAAFyPPh9AAAAAElFTkSuQmCC";

}  // namespace

TEST(Report, RendersTextWithAlignedColumns)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportXml(
        "<tov:column name=\"n\" heading=\"Name\" type=\"varchar\"/>"
        "<tov:column name=\"a\" heading=\"Amount\" type=\"double\">"
        "<tov:dataFormat xsi:type=\"tov:number\" commas=\"true\" negativeType=\"paren\"/></tov:column>"
        "<tov:column name=\"p\" heading=\"Picture\" type=\"varbinary\"/>",
        " title=\"Sums\"");
    const std::string sData = std::string("a,n,p\n1234.5,日本,\n-7,\"x\ny\",") + kpPng + "\n,\"a \x1b[31mb\",AP8=\n";
    const CommandResult tResult = render(tFolder, sReport, sData, "text");
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "Sums\n\n"
              "Name        Amount  Picture\n"
              "--------  --------  ------------\n"
              "日本      1,234.50  \n"
              "x y         (7.00)  [image 16x8]\n"
              "a  [31mb            00FF\n"
              "\n3 rows\n");
}

TEST(Report, WritesCsvThatReadsBackAsTheData)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportXml(
        "<tov:column name=\"t\" heading=\"Text\" type=\"varchar\"/><tov:column name=\"d\" type=\"double\">"
        "<tov:dataFormat xsi:type=\"tov:percent\"/></tov:column><tov:column name=\"n\" type=\"numeric\"/>"
        "<tov:column name=\"b\" type=\"bigint\"/><tov:column name=\"w\" type=\"date\"/>"
        "<tov:column name=\"p\" type=\"varbinary\"/>",
        " locale=\"de-DE\"");
    const std::string sData = std::string(
                                  "t,d,n,b,w,p\r\n"
                                  "\"a,\"\"b\"\"\",1234.5,0.1234567890123456789012345678901234567,"
                                  "9223372036854775807,2024-03-05,") +
                              kpPng + "\r\n=1+1,,,,,\r\n";
    EXPECT_EQ(render(tFolder, sReport, sData, "csv").sOutput,
              "t,d,n,b,w,p\r\n"
              "\"a,\"\"b\"\"\",1234.5,0.1234567890123456789012345678901234567,9223372036854775807,2024-03-05,"
              "[image 16x8]\r\n'=1+1,,,,,\r\n");
    const CommandResult tKept = runCommand({"report", tFolder.path("r.xml"), "--data", tFolder.path("d.csv"),
                                            "--output", "csv", "--csv-formulas", "keep"});
    EXPECT_NE(tKept.sOutput.find("\r\n=1+1,"), std::string::npos);
}

TEST(Report, WritesAPageThatNoTextCanBreak)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportXml(
        "<tov:column name=\"t\" heading=\"&lt;b&gt;&amp;\" type=\"varchar\"/><tov:column name=\"d\" type=\"double\">"
        "<tov:dataFormat xsi:type=\"tov:custom\" "
        "customFormat=\"0&quot;';}&lt;/style&gt;&lt;i&gt;&quot;\"/></tov:column>"
        "<tov:column name=\"d\" type=\"double\">"
        "<tov:dataFormat xsi:type=\"tov:number\" negativeType=\"redParen\" commas=\"true\"/></tov:column>"
        "<tov:column name=\"p\" type=\"varbinary\"/>",
        " title=\"&lt;/title&gt;&quot;\" locale=\"he-IL\"");
    const CommandResult tResult =
        render(tFolder, sReport, std::string("t,d,p\n<script>&amp;,-5,") + kpPng + "\n", "html");
    EXPECT_EQ(tResult.sErrors, "");
    // What a pattern quotes is the author's own markup and stands in the cells as it is; the style sheet holds it as
    // text.
    EXPECT_NE(tResult.sOutput.find(R"(td.c2 { mso-number-format:'0\"\0027\;\}\<\/style\>\<i\>\"'; })"),
              std::string::npos);
    EXPECT_NE(tResult.sOutput.find(R"(td.c1 { mso-number-format:'\@'; })"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find("<html lang=\"he-IL\" dir=\"rtl\">"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find("<title>&lt;/title&gt;&quot;</title>"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find("<th scope=\"col\" class=\"text\">&lt;b&gt;&amp;</th>"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find("<td class=\"c1\">&lt;script&gt;&amp;amp;</td>"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find("<td class=\"c3\"><font style=\"color:red\">(5.00)</font></td>"), std::string::npos);
    EXPECT_NE(tResult.sOutput.find(std::string("<img width=16 height=8 src=\"data:image/png;base64,") + kpPng + "\">"),
              std::string::npos);
    EXPECT_EQ(tResult.sOutput.find("dir=\"rtl\"", tResult.sOutput.find("<body")), std::string::npos);
}

TEST(Report, RendersTheSampleTheSameFromCsvAndFromTheDatabase)
{
    const TemporaryFolder tFolder;
    for (const char* pOutput : {"html", "text", "csv"})
    {
        for (const char* pData : {"examples/sales.csv", "examples/sales.db", "examples/sales.db:sales"})
        {
            const std::string sFile =
                tFolder.path(pOutput + std::string(pData == std::string("examples/sales.csv") ? "1" : "0"));
            const CommandResult tResult = runCommand({"report", sourcePath("examples/sales-report.xml"), "--data",
                                                      sourcePath(pData), "--output", pOutput, "-o", sFile});
            ASSERT_EQ(tResult.nStatus, 0) << tResult.sErrors;
        }
        EXPECT_TRUE(readFile(tFolder.path(std::string(pOutput) + "1")) ==
                    readFile(tFolder.path(std::string(pOutput) + "0")))
            << pOutput;
    }
    const CommandResult tCheck =
        runProgram("python3", {sourcePath("tests/tools/check_html.py"), tFolder.path("html1")});
    EXPECT_EQ(tCheck.nStatus, 0) << tCheck.sOutput.substr(0, 2000);
    EXPECT_NE(tCheck.sOutput.find("\n9007199254740000\t"), std::string::npos);
    EXPECT_NE(readFile(tFolder.path("html1")).find("<p dir=\"ltr\">3,000 rows</p>"), std::string::npos);
}

TEST(Report, ShowsDatesTimesTimestampsAndDurationsWithAndWithoutAFormat)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportXml(
        "<tov:column name=\"d\" type=\"date\"/><tov:column name=\"t\" type=\"time\"/>"
        "<tov:column name=\"s\" type=\"timestamp\"/>"
        "<tov:column name=\"d\" type=\"date\"><tov:dataFormat xsi:type=\"tov:date\" "
        "biFormat=\"dateLong\"/></tov:column>"
        "<tov:column name=\"t\" type=\"time\"><tov:dataFormat xsi:type=\"tov:date\" biFormat=\"timeHourMin\"/>"
        "</tov:column><tov:column name=\"s\" type=\"timestamp\">"
        "<tov:dataFormat xsi:type=\"tov:custom\" customFormat=\"&quot;&lt;&quot;\\&lt;HH:mm TZ\"/></tov:column>"
        "<tov:column name=\"n\" type=\"double\"><tov:dataFormat xsi:type=\"tov:custom\" "
        "customFormat=\"[duration(sec)][opt:dd&quot;d &quot;]hh:mm\"/></tov:column>",
        " locale=\"de-DE\" language=\"de\" dataOffset=\"0\" displayTimeZone=\"Europe/Berlin\"");
    const std::string sData = "d,t,s,n\n2024-03-05,17:08:09.5,2024-07-01 22:30:00.25,93784.5\n,,,\n";
    const CommandResult tText = render(tFolder, sReport, sData, "text");
    EXPECT_EQ(tText.sErrors, "");
    EXPECT_EQ(tText.sOutput,
              "d           t         s                    d                       t      s                    n\n"
              "----------  --------  -------------------  ----------------------  -----  -----------  ---------\n"
              "05.03.2024  17:08:09  02.07.2024 00:30:00  Dienstag, 5. März 2024  17:08  <<00:30 MEZ  01d 02:03\n"
              "                                                                                                \n"
              "\nZeilen: 2\n");
    const std::string sPage = render(tFolder, sReport, sData, "html").sOutput;
    for (const char* pCell : {">05.03.2024<", ">17:08:09<", ">02.07.2024 00:30:00<", ">Dienstag, 5. März 2024<",
                              ">17:08<", "&lt;&lt;00:30 MEZ<", ">01d 02:03<", ">&nbsp;<", ">Zeilen: 2<"})
        EXPECT_NE(sPage.find(pCell), std::string::npos) << pCell << sPage.substr(sPage.find("<tbody>"));
    // Machines get what is stored.
    EXPECT_EQ(render(tFolder, sReport, sData, "csv").sOutput,
              "d,t,s,d,t,s,n\r\n2024-03-05,17:08:09.5,2024-07-01 22:30:00,2024-03-05,17:08:09.5,2024-07-01 22:30:00,"
              "93784.5\r\n,,,,,,\r\n");
}

TEST(Report, ShowsTimestampsInItsZoneUnlessAColumnHasItsOwn)
{
    struct Row
    {
        int nLine;
        const char* pReport;  // attributes
        const char* pFormat;
        const char* pCell;
    };
    const char* const pPlain = "xsi:type='tov:custom' customFormat='HH:mm'";
    const Row aRows[] = {
        {__LINE__, "", pPlain, "12:00"},
        {__LINE__, " dataOffset='0'", pPlain, "12:00"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'", pPlain, "08:00"},
        {__LINE__, " dataOffset='-300' displayTimeZone='america/new_york'", pPlain, "13:00"},
        {__LINE__, " dataOffset='unknown' displayTimeZone='America/New_York'", pPlain, "12:00"},
        // Without an offset the values are in UTC.
        {__LINE__, " displayTimeZone='America/New_York'", pPlain, "08:00"},
        {__LINE__, " dataOffset='0' displayTimeZone='default'", pPlain, "12:00"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'",
         "xsi:type='tov:custom' customFormat='HH:mm TZ'", "08:00 ET"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'",
         "xsi:type='tov:date' predefinedFormat='HH:mm' displayTimeZone='Asia/Tokyo'", "21:00"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'",
         "xsi:type='tov:date' predefinedFormat='HH:mm' displayTimeZone='default'", "08:00"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'",
         "xsi:type='tov:date' predefinedFormat='HH:mm[TZ:Asia/Tokyo]'", "21:00GMT+9"},
        {__LINE__, " dataOffset='0'", "xsi:type='tov:date' biFormat='timeHourMin' displayTimeZone='Asia/Tokyo'",
         "9:00 PM"},
        {__LINE__, " dataOffset='0' displayTimeZone='America/New_York'",
         "xsi:type='tov:whistler' whistlerFormat='hh:mm'", "08:00"},
    };
    const TemporaryFolder tFolder;
    for (const Row& tRow : aRows)
    {
        const CommandResult tResult = render(tFolder,
                                             reportXml("<tov:column name='a' type='timestamp'><tov:dataFormat " +
                                                           std::string(tRow.pFormat) + "/></tov:column>",
                                                       tRow.pReport),
                                             "a\n2024-07-01 12:00:00\n", "text");
        EXPECT_EQ(tResult.sErrors, "") << "row at line " << tRow.nLine;
        EXPECT_NE(tResult.sOutput.find(std::string("\n") + tRow.pCell + "\n"), std::string::npos)
            << "row at line " << tRow.nLine << "\n"
            << tResult.sOutput;
    }
}

TEST(Report, ShowsEachRowInItsOwnCurrency)
{
    struct Row
    {
        int nLine;
        const char* pFormat;  // of the column "a"
        std::vector<const char*> vCells;
    };
    const std::string sTagColumn =
        "<tov:currencyTagColumn><tovx:expr xsi:type='tovx:sqlExpression'>the \"tag\"</tovx:expr>"
        "</tov:currencyTagColumn>";
    const Row aRows[] = {
        {__LINE__,
         "<tov:dataFormat xsi:type='tov:conditionalcurrency' minDigits='1' maxDigits='1' negativeType='paren'>",
         {"$1234.6", "($7.0)", "CHF 5.0", "¥0.0", "", "1235", "1235"}},
        {__LINE__,
         "<tov:dataFormat xsi:type='tov:conditionalcurrency' commas='true' minDigits='0' maxDigits='0'>",
         {"$1,235", "-$7", "CHF 5", "¥0", "", "1235", "1235"}},
    };
    const TemporaryFolder tFolder;
    const std::string sData =
        "a,\"the \"\"tag\"\"\"\n1234.56,loc:en-US\n-7,loc:en-US\n5,int:CHF\n0,JPY\n,JPY\n1234.56,\n1234.56,XX9\n";
    for (const Row& tRow : aRows)
    {
        const std::string sReport = reportXml("<tov:column name='a' type='double'>" + std::string(tRow.pFormat) +
                                                  sTagColumn + "</tov:dataFormat></tov:column>",
                                              " xmlns:tovx='urn:tov:schemas:expression:v1'");
        const CommandResult tResult = render(tFolder, sReport, sData, "text");
        EXPECT_EQ(tResult.sErrors,
                  "webformat: " + tFolder.path("d.csv") +
                      ":8:9: column \"the \"tag\"\": found \"XX9\", expected a currency tag such as "
                      "\"loc:en-US\", \"int:EUR\" or \"USD\"; its amounts are shown as whole numbers\n");
        std::string sCells = tResult.sOutput.substr(tResult.sOutput.find("-\n") + 2);
        sCells.erase(std::remove(sCells.begin(), sCells.end(), ' '), sCells.end());
        std::string sExpected;
        for (const std::string sCell : tRow.vCells)
            sExpected += sCell + "\n";
        sExpected.erase(std::remove(sExpected.begin(), sExpected.end(), ' '), sExpected.end());
        EXPECT_EQ(sCells, sExpected + "\n7rows\n") << "row at line " << tRow.nLine;
        // Machines get the values.
        EXPECT_EQ(render(tFolder, sReport, sData, "csv").sOutput,
                  "a\r\n1234.56\r\n-7\r\n5\r\n0\r\n\r\n1234.56\r\n1234.56\r\n");
    }
}

TEST(Report, TakesTheDigitsOfEachRowsCurrencyWhereThePatternNamesOnlyTheColumn)
{
    const TemporaryFolder tFolder;
    for (const char* pName : {"tag", "'tag'", "&quot;tag&quot;", " tag "})
    {
        const CommandResult tResult =
            render(tFolder,
                   reportXml("<tov:column name='a' type='double'><tov:dataFormat xsi:type='tov:custom' "
                             "customFormat=\"[$:currencyTagColumn=" +
                             std::string(pName) + "]\"/></tov:column>"),
                   "a,tag\n1234.5,loc:en-US\n-1234.5,loc:ja-JP\n1234.5,KWD\n", "html");
        EXPECT_EQ(tResult.sErrors, "") << pName;
        for (const char* pCell : {">$1,234.50<", ">-￥1,235<", ">1,234.500<"})
            EXPECT_NE(std::string(tResult.sOutput).find(pCell + (pCell[1] == '1' ? 1 : 0)), std::string::npos)
                << pName << pCell << tResult.sOutput.substr(tResult.sOutput.find("<tbody>"));
    }
}

TEST(Report, NamesAtMostAHundredUnknownCurrencies)
{
    const TemporaryFolder tFolder;
    std::string sData = "a,tag\n";
    for (int nRow = 0; nRow < 3000; ++nRow)
        sData += "1.25,x" + std::to_string(nRow) + std::string(nRow % 200, 'y') + "\n";
    const CommandResult tResult =
        render(tFolder,
               reportXml("<tov:column name='a' type='double'><tov:dataFormat xsi:type='tov:custom' "
                         "customFormat='[$:currencyTagColumn=tag]'/></tov:column>"),
               sData, "text");
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(std::count(tResult.sErrors.begin(), tResult.sErrors.end(), '\n'), 101);
    EXPECT_NE(tResult.sErrors.find("\nwebformat: more currency tags are unknown; they are not named\n"),
              std::string::npos);
}

TEST(Report, CountsItsRowsInItsLanguage)
{
    const std::pair<const char*, const char*> aRows[] = {{"en-us", "\n1,000 rows\n"},    {"de", "\nZeilen: 1,000\n"},
                                                         {"DE-at", "\nZeilen: 1,000\n"}, {"ja", "\n行数: 1,000\n"},
                                                         {"ru", "\nСтрок: 1,000\n"},     {"del", "\n1,000 rows\n"},
                                                         {"d", "\n1,000 rows\n"}};
    std::string sData = "a\n";
    for (int nRow = 0; nRow < 1000; ++nRow)
        sData += "1\n";
    const TemporaryFolder tFolder;
    for (const auto& [pLanguage, pEnd] : aRows)
    {
        const std::string sOutput =
            render(tFolder,
                   reportXml("<tov:column name='a' type='integer'/>", " language='" + std::string(pLanguage) + "'"),
                   sData, "text")
                .sOutput;
        EXPECT_NE(sOutput.find(pEnd), std::string::npos) << pLanguage << sOutput.substr(sOutput.size() - 40);
    }
}

TEST(Report, TakesTheValuesOfADatabaseByTheirColumnsTypes)
{
    const TemporaryFolder tFolder;
    makeDatabase(tFolder.path("d.db"),
                 "CREATE TABLE \"odd \"\"name\" (a, b); INSERT INTO \"odd \"\"name\" VALUES (5, x'00ff'), (2.0, NULL), "
                 "('7', 'AP8='); CREATE TABLE other (a); INSERT INTO other VALUES (2.5)");
    const auto run = [&](const std::string& sTable, const std::string& sColumns)
    {
        return runCommand({"report", tFolder.write("r.xml", reportXml(sColumns)), "--data",
                           tFolder.path("d.db") + sTable, "--output", "csv"});
    };
    const std::string sBinary = "<tov:column name=\"b\" type=\"binary\"/>";
    EXPECT_EQ(run(":odd \"name", "<tov:column name=\"a\" type=\"integer\"/>" + sBinary).sOutput,
              "a,b\r\n5,00FF\r\n2,\r\n7,00FF\r\n");
    EXPECT_EQ(run(":odd \"name", "<tov:column name=\"a\" type=\"varchar\"/>").sOutput, "a\r\n5\r\n2\r\n7\r\n");
    EXPECT_EQ(run(":odd \"name", "<tov:column name=\"a\" type=\"numeric\"/>").sOutput, "a\r\n5\r\n2\r\n7\r\n");
    EXPECT_EQ(run(":other", "<tov:column name=\"a\" type=\"double\"/>").sOutput, "a\r\n2.5\r\n");
    const std::pair<CommandResult, std::string> aWrong[] = {
        {run(":other", "<tov:column name=\"a\" type=\"integer\"/>"),
         "d.db: table \"other\", row 1: column \"a\": found \"2.5\", expected a whole number"},
        {run(":odd \"name", "<tov:column name=\"b\" type=\"varchar\"/>"),
         "row 1: column \"b\": found 2 bytes, expected text"},
        {run(":other", "<tov:column name=\"a\" type=\"date\"/>"), "found the real 2.5, expected a date such as"},
        {run("", "<tov:column name=\"a\" type=\"double\"/>"),
         "d.db: found the tables \"odd \"name\", \"other\", expected one of them behind a colon"},
        {run(":nope", "<tov:column name=\"a\" type=\"double\"/>"), "d.db: found no table \"nope\", expected one of"},
        {run(":x\"; DROP TABLE other; --", "<tov:column name=\"a\" type=\"double\"/>"), "found no table"},
    };
    for (const auto& [tResult, sMessage] : aWrong)
    {
        EXPECT_EQ(tResult.nStatus, 1);
        EXPECT_NE(tResult.sErrors.find(sMessage), std::string::npos) << tResult.sErrors << "for " << sMessage;
    }
    const std::string sCut = readFile(sourcePath("examples/sales.db")).substr(0, 20000);
    const CommandResult tDamaged =
        runCommand({"report", tFolder.write("r.xml", reportXml("<tov:column name=\"product\" type=\"varchar\"/>")),
                    "--data", tFolder.write("cut.db", sCut), "--output", "csv", "-o", tFolder.path("out.csv")});
    EXPECT_EQ(tDamaged.nStatus, 1);
    EXPECT_NE(tDamaged.sErrors.find("cut.db: "), std::string::npos) << tDamaged.sErrors;
    EXPECT_EQ(tFolder.names(), "cut.db d.db r.xml");
}

TEST(Report, SaysWhatIsWrongWithTheDataAndWhere)
{
    struct Row
    {
        int nLine;
        std::string sType;
        std::string sData;
        std::string sMessage;
    };
    const Row aRows[] = {
        {__LINE__, "double", "", ":1:1: found an empty file, expected the names of the columns in the first line"},
        {__LINE__, "double", "a,b,a\n", ":1:5: found the column name \"a\" a second time, expected different names"},
        {__LINE__, "double", "x,a\n1,2\n3,4x\n",
         ":3:3: column \"a\": found \"4x\", expected a number, NaN, INF or -INF"},
        {__LINE__, "integer", "a\n1\n2147483648\n",
         ":3:1: column \"a\": found \"2147483648\", expected a whole number from"},
        {__LINE__, "date", "a\n2024-02-30\n",
         ":2:1: column \"a\": found \"2024-02-30\", expected a date such as 2024-03-05"},
        {__LINE__, "date", "a,b\n2024-03-05,1\n2024-3-6,2\n",
         ":3:1: column \"a\": found \"2024-3-6\", expected a date"},
        {__LINE__, "timestamp", "b,a\n\"x\ny\",2024-03-05 07:08:60\n",
         ":3:4: column \"a\": found \"2024-03-05 07:08:60\", expected a timestamp such as 2024-03-05 07:08:09.5"},
        {__LINE__, "time", "a\n25:00:00\n", ":2:1: column \"a\": found \"25:00:00\", expected a time"},
        {__LINE__, "timestamp", "a\n2024-02-03\n", ":2:1: column \"a\": found \"2024-02-03\", expected a timestamp"},
        {__LINE__, "varbinary", "a\nxyz\n", ":2:1: column \"a\": found \"xyz\", expected base64"},
        {__LINE__, "double", "a,b\n1,2\n3\n", ":3:1: found 1 cells, expected 2"},
        {__LINE__, "double", "a,b\n1,2,3\n", ":2:1: found 3 cells, expected 2"},
        {__LINE__, "varchar", "a\n\"b\nc\n",
         ":2:1: found the end of the file, expected the quotation mark that closes this cell"},
        {__LINE__, "varchar", "a\nb\xFF\n", ":2:1: found bytes that are not UTF-8"},
    };
    const TemporaryFolder tFolder;
    for (const Row& tRow : aRows)
        for (const char* pOutput : {"html", "text", "csv"})
        {
            const std::string sReport =
                tFolder.write("r.xml", reportXml("<tov:column name='a' type='" + tRow.sType + "'/>"));
            const std::string sData = tFolder.write("d.csv", tRow.sData);
            const CommandResult tResult =
                runCommand({"report", sReport, "--data", sData, "--output", pOutput, "-o", tFolder.path("out")});
            const std::string sExpected = "webformat: " + sData + tRow.sMessage;
            EXPECT_EQ(tResult.nStatus, 1) << "row at line " << tRow.nLine;
            EXPECT_EQ(tResult.sErrors.substr(0, sExpected.size()), sExpected) << "row at line " << tRow.nLine;
            EXPECT_EQ(tFolder.names(), "d.csv r.xml") << "row at line " << tRow.nLine;
        }
}

TEST(Report, SaysWhichFileCannotBeReadOrWritten)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", reportXml("<tov:column name='a' type='double'/>"));
    const std::string sData = tFolder.write("d.csv", "a\n1\n");
    const std::pair<std::vector<std::string>, std::string> aRows[] = {
        {{"/no/r.xml", "--data", sData, "--output", "csv"}, "/no/r.xml: cannot read the file"},
        {{sReport, "--data", "/no/d.csv", "--output", "csv"}, "/no/d.csv: there is no such file"},
        {{sReport, "--data", tFolder.path(""), "--output", "csv"}, "found a folder, expected a CSV file or a database"},
        {{sReport, "--data", sData + ":t", "--output", "csv"}, "d.csv: found a file that is no SQLite database"},
        {{sReport, "--data", sData, "--output", "csv", "-o", "/no/out"},
         "/no/out: cannot be made: No such file or directory"},
        {{sReport, "--data", sData, "--output", "csv", "-o", tFolder.path("")},
         "found a folder, expected the name of a file"},
        {{sReport, "--data", sData, "--output", "csv", "-o", "/dev/full"},
         "/dev/full: cannot be written: No space left on device"},
    };
    for (const auto& [vArguments, sMessage] : aRows)
    {
        std::vector<std::string> vAll = {"report"};
        vAll.insert(vAll.end(), vArguments.begin(), vArguments.end());
        const CommandResult tResult = runCommand(vAll);
        EXPECT_EQ(tResult.nStatus, 1);
        EXPECT_NE(tResult.sErrors.find(sMessage), std::string::npos) << tResult.sErrors << "for " << sMessage;
    }
}

TEST(Report, ReplacesAnOlderFileOnlyByAWholeOne)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", reportXml("<tov:column name='a' type='double'/>"));
    const std::string sOutput = tFolder.write("out", "older");
    chmod(sOutput.c_str(), 0640);
    std::string sRows = "a\n";
    for (int nRow = 0; nRow < 100000; ++nRow)
        sRows += "1\n";
    const auto run = [&](const std::string& sData) {
        return runCommand(
            {"report", sReport, "--data", tFolder.write("d.csv", sData), "--output", "csv", "-o", sOutput});
    };
    EXPECT_EQ(run(sRows + "x\n").nStatus, 1);
    EXPECT_EQ(readFile(sOutput), "older");
    EXPECT_EQ(run("a\n1\n").nStatus, 0);
    EXPECT_EQ(readFile(sOutput), "a\r\n1\r\n");
    struct stat tStatus = {};
    ASSERT_EQ(stat(sOutput.c_str(), &tStatus), 0);
    EXPECT_EQ(tStatus.st_mode & 07777, 0640u);
    EXPECT_EQ(tFolder.names(), "d.csv out r.xml");
}

TEST(Report, LeavesNothingBehindWhenASignalEndsIt)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", reportXml("<tov:column name='a' type='double'/>"));
    const std::string sPipe = tFolder.path("d.csv");
    ASSERT_EQ(mkfifo(sPipe.c_str(), 0600), 0);
    const int nWatch = inotify_init();
    ASSERT_GE(inotify_add_watch(nWatch, tFolder.path("").c_str(), IN_CREATE), 0);
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        execl(WEBFORMAT_COMMAND, "webformat", "report", sReport.c_str(), "--data", sPipe.c_str(), "--output", "csv",
              "-o", tFolder.path("out").c_str(), nullptr);
        _exit(127);
    }
    const int nData = open(sPipe.c_str(), O_WRONLY);
    // More than the reader takes in one go.
    std::string sRows = "a\n";
    for (int nRow = 0; nRow < 100000; ++nRow)
        sRows += "1\n";
    ASSERT_EQ(write(nData, sRows.data(), sRows.size()), static_cast<ssize_t>(sRows.size()));
    // The unfinished file is there: the command waits for more data.
    char aEvent[4096];
    ASSERT_GT(read(nWatch, aEvent, sizeof aEvent), 0);
    EXPECT_EQ(tFolder.names().substr(0, 5), ".out.");
    kill(nChild, SIGTERM);
    int nStatus = 0;
    waitpid(nChild, &nStatus, 0);
    EXPECT_TRUE(WIFSIGNALED(nStatus) && WTERMSIG(nStatus) == SIGTERM);
    EXPECT_EQ(tFolder.names(), "d.csv r.xml");
    close(nData);
    close(nWatch);
}

TEST(Report, ReadsAPipeOnceAndSaysSoWhereItNeedsTwo)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", reportXml("<tov:column name='a' type='integer'/>"));
    const std::string sData = "aaaaaaaaaaaaaaaaaaaaaaaa,a\n1,2\n";
    const auto run = [&](const char* pOutput) {
        return runCommand({"report", sReport, "--data", "/dev/stdin", "--output", pOutput}, sData, kFromPipe);
    };
    EXPECT_EQ(run("csv").sOutput, "a\r\n2\r\n");
    EXPECT_EQ(run("text").nStatus, 1);
    EXPECT_NE(run("text").sErrors.find("/dev/stdin: the file cannot be read a second time"), std::string::npos);
}

TEST(Examples, ShowTheOrdersToReadersOfOtherCountries)
{
    struct Row
    {
        const char* pReport;
        std::vector<const char*> vCells;
    };
    // The first order: due on 2021-09-06, ordered at 2021-08-29 13:51:37 in UTC.
    const Row aRows[] = {
        {"sales-report",
         {"8/29/2021 9:51 AM ET", "Monday, September 6, 2021", "03d 00h 05m", "$558.21", "€&nbsp;558.21",
          "8/29/21 9:51 AM"}},
        {"sales-report-de",
         {"Montag, 6. September 2021", "So. 29.08.2021 15:51 MEZ", "03 T. 00:05 Std.", "558,21&nbsp;€",
          "€&nbsp;558,21"}},
        {"sales-report-ja",
         {"2021年9月6日月曜日", "西暦 2021/08/29 午後 10:51 JST", "03日00時間05分", "￥558", "€&nbsp;558.21"}},
        {"sales-report-ru",
         {"понедельник, 6 сентября 2021 г.", "сентябрь 2021", "вс, 29.08.2021 16:51 GMT+3", "558,21&nbsp;₽",
          "€&nbsp;558,21"}},
    };
    const TemporaryFolder tFolder;
    for (const Row& tRow : aRows)
    {
        const std::string sPage = tFolder.path("page.html");
        const CommandResult tResult =
            runCommand({"report", sourcePath("examples/" + std::string(tRow.pReport) + ".xml"), "--data",
                        sourcePath("examples/sales.csv"), "--output", "html", "-o", sPage});
        ASSERT_EQ(tResult.nStatus, 0) << tResult.sErrors;
        EXPECT_EQ(tResult.sErrors, "") << tRow.pReport;
        const std::string sText = readFile(sPage);
        const std::string sFirst = sText.substr(sText.find("<tbody>"), sText.find("</tr>", sText.find("<tbody>")));
        for (const char* pCell : tRow.vCells)
            EXPECT_NE(sFirst.find(std::string(">") + pCell + "<"), std::string::npos) << pCell;
        EXPECT_EQ(runProgram("python3", {sourcePath("tests/tools/check_html.py"), sPage}).nStatus, 0) << tRow.pReport;
    }
}

TEST(Examples, AreWhatTheirScriptMakes)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult =
        runProgram("python3", {"-B", sourcePath("examples/make_sales_data.py"), tFolder.path("")});
    ASSERT_EQ(tResult.nStatus, 0) << tResult.sErrors;
    for (const char* pName : {"sales.csv", "sales.db"})
        EXPECT_TRUE(readFile(tFolder.path(pName)) == readFile(sourcePath(std::string("examples/") + pName))) << pName;
}

}  // namespace tov

#include <gtest/gtest.h>

#include "tools/support/command.h"

namespace tov {

namespace {

std::string reportOf(const std::string& sColumns, const std::string& sAttributes = "")
{
    return "<tov:report xmlns:tov=\"urn:tov:schemas:report:v1\" xmlns:tovx=\"urn:tov:schemas:expression:v1\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"" +
           sAttributes + ">" + sColumns + "</tov:report>";
}

CommandResult writeWorkbook(const TemporaryFolder& tFolder, const std::string& sReport, const std::string& sData,
                            const std::string& sName = "out.xlsx")
{
    return runCommand({"report", tFolder.write("r.xml", sReport), "--data", tFolder.write("d.csv", sData), "--output",
                       "xlsx", "-o", tFolder.path(sName)});
}

// The cells of the sheet as "A2 n 1234.5 #,##0.00", a line a cell: place, n or t, what it holds, and its number format.
std::string cellsOf(const std::string& sPath)
{
    const char* pScript = R"(
import re, sys, zipfile, xml.etree.ElementTree as E
book = zipfile.ZipFile(sys.argv[1]); N = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'
styles = E.fromstring(book.read('xl/styles.xml'))
codes = {f.get('numFmtId'): f.get('formatCode') for f in styles.iter(N + 'numFmt')}
formats = [codes.get(x.get('numFmtId'), x.get('numFmtId')) for x in styles.find(N + 'cellXfs')]
for c in E.fromstring(book.read('xl/worksheets/sheet1.xml')).iter(N + 'c'):
    text = ''.join(t.text or '' for t in c.iter(N + 't')); value = c.find(N + 'v')
    kind = 'n ' + value.text if value is not None else 't ' + text
    sys.stdout.write(c.get('r') + ' ' + kind + ' ' + formats[int(c.get('s', 0))] + '\n')
)";
    return runProgram("python3", {"-c", pScript, sPath}).sOutput;
}

TEST(ReportXlsx, WritesTypedCells)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportOf(
        "<tov:column name=\"a\" heading=\"Amount\" type=\"double\"><tov:dataFormat xsi:type=\"tov:number\" "
        "commas=\"true\" negativeType=\"redParen\"/></tov:column>"
        "<tov:column name=\"d\" type=\"date\"><tov:dataFormat xsi:type=\"tov:custom\" customFormat=\"dd.MM.yyyy\"/>"
        "</tov:column><tov:column name=\"t\" type=\"varchar\"/><tov:column name=\"a\" type=\"double\"/>");
    const CommandResult tResult = writeWorkbook(tFolder, sReport, "a,d,t\n-1234.5,2024-03-05,=1+1\n,,\n");
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(cellsOf(tFolder.path("out.xlsx")),
              "A1 t Amount 0\nB1 t d 0\nC1 t t 0\nD1 t a 0\n"
              "A2 n -1234.5 #,##0.00_);[red](#,##0.00)\nB2 n 45356 dd.mm.yyyy\nC2 t =1+1 49\nD2 n -1234.5 0\n");
}

TEST(ReportXlsx, MakesRowsAsHighAsTheirText)
{
    const TemporaryFolder tFolder;
    writeWorkbook(tFolder, reportOf("<tov:column name=\"t\" type=\"varchar\"/>"),
                  "t\none line\n\"a\r\nb\nc\"\n" + std::string(60, 'w') + "\n" + std::string(200, 'w') + "\n\"" +
                      std::string(100, '\n') + "\"\n");
    const char* pScript = R"py(
import re, sys, zipfile
rows = re.findall('<row r="(.)"([^>]*)>', zipfile.ZipFile(sys.argv[1]).read('xl/worksheets/sheet1.xml').decode())
print([(row, re.findall(' ht="([^"]*)"', rest)) for row, rest in rows])
)py";
    EXPECT_EQ(runProgram("python3", {"-c", pScript, tFolder.path("out.xlsx")}).sOutput,
              "[('1', []), ('2', []), ('3', ['45']), ('4', []), ('5', ['60']), ('6', ['405'])]\n");
}

TEST(ReportXlsx, HasACurrencyForEachRow)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportOf(
        "<tov:column name=\"a\" type=\"double\"><tov:dataFormat xsi:type=\"tov:conditionalcurrency\">"
        "<tov:currencyTagColumn><tovx:expr xsi:type=\"tovx:sqlExpression\">c</tovx:expr></tov:currencyTagColumn>"
        "</tov:dataFormat></tov:column>");
    const CommandResult tResult = writeWorkbook(tFolder, sReport, "a,c\n1,EUR\n2,loc:en-US\n3,EUR\n");
    EXPECT_EQ(tResult.nStatus, 0) << tResult.sErrors;
    EXPECT_EQ(cellsOf(tFolder.path("out.xlsx")),
              "A1 t a 0\nA2 n 1 [$\xE2\x82\xAC]#0.00;-[$\xE2\x82\xAC]#0.00\nA3 n 2 [$$]#0.00;-[$$]#0.00\n"
              "A4 n 3 [$\xE2\x82\xAC]#0.00;-[$\xE2\x82\xAC]#0.00\n");
}

TEST(ReportXlsx, GivesTheSameBytesForTheSameReport)
{
    const TemporaryFolder tFolder;
    const std::string sReport = reportOf("<tov:column name=\"a\" type=\"double\"/>", " title=\"T\"");
    writeWorkbook(tFolder, sReport, "a\n1\n", "first.xlsx");
    writeWorkbook(tFolder, sReport, "a\n1\n", "second.xlsx");
    const std::string sFirst = readFile(tFolder.path("first.xlsx"));
    EXPECT_EQ(sFirst.substr(0, 2), "PK");
    EXPECT_EQ(sFirst, readFile(tFolder.path("second.xlsx")));
    const CommandResult tPiped =
        runCommand({"report", tFolder.path("r.xml"), "--data", tFolder.path("d.csv"), "--output", "xlsx"});
    EXPECT_EQ(tPiped.nStatus, 0);
    EXPECT_TRUE(tPiped.sOutput == sFirst);
}

TEST(ReportXlsx, LeavesNothingBehindWhenTheDataIsWrong)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult =
        writeWorkbook(tFolder, reportOf("<tov:column name=\"a\" type=\"integer\"/>"), "a\n1\nx\n");
    EXPECT_EQ(tResult.nStatus, 1);
    EXPECT_NE(tResult.sErrors.find("d.csv:3:1"), std::string::npos) << tResult.sErrors;
    EXPECT_EQ(tFolder.names(), "d.csv r.xml");
}

TEST(ReportXlsx, NamesTheFileWhoseTextsWereCut)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult = writeWorkbook(tFolder, reportOf("<tov:column name=\"a\" type=\"varchar\"/>"),
                                                "a\n" + std::string(32768, 'b') + "\n");
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(tResult.sErrors,
              "webformat: " + tFolder.path("out.xlsx") + ": texts cut to the 32767 characters that a cell holds: 1\n");
}

TEST(ReportXlsx, NamesTheFirstRowThatASheetDoesNotHave)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult = writeWorkbook(tFolder, reportOf("<tov:column name=\"a\" type=\"varchar\"/>"),
                                                "a\n" + std::string(1048577, '\n'));
    EXPECT_EQ(tResult.nStatus, 1);
    EXPECT_EQ(tResult.sErrors, "webformat: " + tFolder.path("d.csv") +
                                   ":1048577:1: found more rows than 1048575, expected at most so many: a worksheet "
                                   "has no more\n");
    EXPECT_EQ(tFolder.names(), "d.csv r.xml");
}

TEST(ReportXlsx, RefusesMoreColumnsThanASheetHas)
{
    const TemporaryFolder tFolder;
    std::string sColumns;
    for (int n = 0; n <= 16384; ++n)
        sColumns += "<tov:column name=\"a\" type=\"integer\"/>\n";
    const CommandResult tResult = writeWorkbook(tFolder, reportOf(sColumns), "a\n1\n");
    EXPECT_EQ(tResult.nStatus, 1);
    EXPECT_NE(tResult.sErrors.find("found more columns than 16384"), std::string::npos)
        << tResult.sErrors.substr(0, 300);
    EXPECT_EQ(tFolder.names(), "d.csv r.xml");
}

}  // namespace

}  // namespace tov

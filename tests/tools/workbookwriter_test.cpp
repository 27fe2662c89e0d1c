#include "tools/webformat/workbookwriter.h"

#include <gtest/gtest.h>

#include "tools/support/command.h"
#include "tools/webformat/inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

// A part of a workbook.
std::string partOf(const std::string& sPath, const std::string& sPart)
{
    const char* pScript =
        "import sys, zipfile; sys.stdout.write(zipfile.ZipFile(sys.argv[1]).read(sys.argv[2]).decode())";
    return runProgram("python3", {"-c", pScript, sPath, sPart}).sOutput;
}

constexpr char ksSheet[] = "xl/worksheets/sheet1.xml";

TEST(WorkbookWriter, NamesTheSheetAfterTheTitle)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> aRows[] = {
        {L"Orders & returns", L"Orders & returns"},
        {L"", L"Report"},
        {L" '' ", L"Report"},
        {L"history", L"Report"},
        {L"a:b\\c/d?e*f[g]", L"a-b-c-d-e-f-g-"},
        {L"'quoted'", L"quoted"},
        {L"a\nb", L"a b"},
        {L"1234567890123456789012345678901234", L"1234567890123456789012345678901"},
        {L"123456789012345678901234567890😀", L"123456789012345678901234567890"},  // two units do not fit
        {L"123456789012345678901234567890'xx", L"123456789012345678901234567890"},
    };
    for (const auto& [pTitle, pExpected] : aRows)
        EXPECT_EQ(toUtf8(worksheetName(pTitle)), toUtf8(pExpected)) << toUtf8(pTitle);
}

TEST(WorkbookWriter, WritesTypedCellsUnderFrozenBoldHeadings)
{
    const TemporaryFolder tFolder;
    const std::string sPath = tFolder.path("a.xlsx");
    WorkbookWriter tWriter(sPath, "a", {L"T", false});
    tWriter.writeHeading(0, L"Amount", WorkbookWriter::kRight);
    EXPECT_TRUE(tWriter.writeNumber(1, 0, 0.1, L"0.00"));
    tWriter.writeText(2, 0, L"=1+1 <&> _x0041_ _x004_ __x0042_", WorkbookWriter::kLeft);
    tWriter.finish({7});
    const std::string sSheet = partOf(sPath, ksSheet);
    EXPECT_NE(sSheet.find("<pane ySplit=\"1\" topLeftCell=\"A2\" activePane=\"bottomLeft\" state=\"frozen\"/>"),
              std::string::npos);
    EXPECT_NE(sSheet.find("<v>0.1</v>"), std::string::npos);
    EXPECT_NE(sSheet.find("<t>=1+1 &lt;&amp;&gt; _x005F_x0041_ _x004_ __x005F_x0042_</t>"), std::string::npos)
        << sSheet;
    EXPECT_EQ(sSheet.find("<f>"), std::string::npos);
    EXPECT_NE(partOf(sPath, "xl/styles.xml").find("<b/>"), std::string::npos);
}

TEST(WorkbookWriter, CutsWhatACellCannotHoldAndCountsIt)
{
    const TemporaryFolder tFolder;
    const std::string sPath = tFolder.path("a.xlsx");
    WorkbookWriter tWriter(sPath, "a", {L"T", false});
    tWriter.writeText(1, 0, String(32767, L'a'), WorkbookWriter::kLeft);
    EXPECT_EQ(tWriter.cutTexts(), 0u);
    tWriter.writeText(2, 0, String(32768, L'b'), WorkbookWriter::kLeft);
    tWriter.writeText(3, 0, String(16384, L'😀'), WorkbookWriter::kLeft);  // two units each
    EXPECT_EQ(tWriter.cutTexts(), 2u);
    tWriter.writeText(4, 0, L"a\r\nb\rc\uFFFE\x01", WorkbookWriter::kLeft);
    // What stands for an underscore takes room, too.
    tWriter.writeText(5, 0, L"_x0041_" + String(32754, L'd'), WorkbookWriter::kLeft);
    EXPECT_EQ(tWriter.cutTexts(), 2u);
    tWriter.writeText(6, 0, L"_x0041_" + String(32755, L'e'), WorkbookWriter::kLeft);
    EXPECT_EQ(tWriter.cutTexts(), 3u);
    tWriter.finish({7});
    const std::string sSheet = partOf(sPath, ksSheet);
    EXPECT_NE(sSheet.find(">" + std::string(32767, 'a') + "<"), std::string::npos);
    EXPECT_NE(sSheet.find(">" + std::string(32766, 'b') + "\xE2\x80\xA6<"), std::string::npos);
    EXPECT_NE(sSheet.find("a\nb\nc\xEF\xBF\xBD_x0001_<"), std::string::npos);
    EXPECT_NE(sSheet.find(">_x005F_x0041_" + std::string(32754, 'd') + "<"), std::string::npos);
    EXPECT_NE(sSheet.find(">_x005F_x0041_" + std::string(32753, 'e') + "\xE2\x80\xA6<"), std::string::npos);
}

TEST(WorkbookWriter, HasAsManyNumberFormatsAsEveryVersionTakes)
{
    const TemporaryFolder tFolder;
    WorkbookWriter tWriter(tFolder.path("a.xlsx"), "a", {L"T", false});
    for (std::uint32_t nRow = 1; nRow <= WorkbookWriter::knMostPatterns; ++nRow)
        EXPECT_TRUE(tWriter.writeNumber(nRow, 0, 1, L"\"" + std::to_wstring(nRow) + L"\"0"));
    EXPECT_FALSE(tWriter.writeNumber(500, 0, 1, L"0"));
    EXPECT_TRUE(tWriter.writeNumber(500, 0, 1, L"\"7\"0"));
    EXPECT_TRUE(tWriter.writeNumber(501, 0, 1, L""));
    tWriter.finish({7});
}

TEST(WorkbookWriter, SaysWhereItCannotWrite)
{
    WorkbookWriter tWriter("/nowhere/at/all.xlsx", "out.xlsx", {L"T", false});
    try
    {
        tWriter.finish({});
        FAIL();
    }
    catch (const InputError& tError)
    {
        EXPECT_EQ(std::string(tError.what()).find("out.xlsx: cannot be written: "), 0u) << tError.what();
    }
}

}  // namespace

}  // namespace tov

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <sstream>

#include "tools/support/command.h"

namespace tov {

namespace {

constexpr const char* kpStart =
    "<tov:report xmlns:tov=\"urn:tov:schemas:report:v1\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
constexpr const char* kpPng =
    "iVBORw0KGgoAAAANSUhEUgAAABAAAAAICAMAAAA8BVCCAAAAA1BMVEX///+nxBvIAAAADElEQVR4nGNgGMwAAACIAAFyPPh9AAAAAElFTkSuQmCC";

std::string reportXml(const std::string& sColumns, const std::string& sAttributes = std::string())
{
    return std::string(kpStart) + sAttributes + ">\n" + sColumns + "\n</tov:report>\n";
}

std::string column(const std::string& sName, const std::string& sType, const std::string& sFormat = std::string())
{
    return "<tov:column name=\"" + sName + "\" type=\"" + sType + "\">" + sFormat + "</tov:column>";
}

std::string custom(const std::string& sPattern)
{
    return "<tov:dataFormat xsi:type=\"tov:custom\" customFormat=\"" + sPattern + "\"/>";
}

// What the document that the command writes holds: what is wrong with it, or a line for each thing that is asked for.
// The program reads the document as XML and knows the elements `body` (texts of the body's cells, a row a line),
// `links` (targets), `images` (start of the sources) and `pages` (their sizes).
std::string read(const std::string& sFile, const std::string& sWhat)
{
    constexpr const char* kpReader = R"python(
import sys
import xml.etree.ElementTree as ElementTree
fo = "{http://www.w3.org/1999/XSL/Format}"
root = ElementTree.parse(sys.argv[1]).getroot()
if sys.argv[2] == "body":
    for row in root.find(f".//{fo}table-body"):
        print("|".join("".join(cell.itertext()).replace("\n", "/") for cell in row))
if sys.argv[2] == "links":
    for link in root.iter(f"{fo}basic-link"):
        print(link.get("external-destination"))
if sys.argv[2] == "images":
    for image in root.iter(f"{fo}external-graphic"):
        print(image.get("src")[:16], image.get("content-width"))
if sys.argv[2] == "pages":
    for page in root.iter(f"{fo}simple-page-master"):
        print(page.get("page-width"), root.get("writing-mode"))
)python";
    const CommandResult tResult = runProgram("python3", {"-c", kpReader, sFile, sWhat});
    return tResult.nStatus == 0 ? tResult.sOutput : tResult.sErrors;
}

// Renders the data and gives the document's path.
std::string render(const TemporaryFolder& tFolder, const std::string& sReport, const std::string& sData)
{
    const std::string sFile = tFolder.path("r.fo");
    const CommandResult tResult = runCommand({"report", tFolder.write("r.xml", sReport), "--data",
                                              tFolder.write("d.csv", sData), "--output", "fo", "-o", sFile});
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.nStatus, 0);
    return sFile;
}

}  // namespace

TEST(ReportFo, WritesATableWithNumbersTextsLinksAndImages)
{
    const TemporaryFolder tFolder;
    const std::string sFile = render(
        tFolder,
        reportXml(column("t", "varchar") +
                      column("d", "double",
                             "<tov:dataFormat xsi:type=\"tov:number\" negativeType=\"redParen\" commas=\"true\"/>") +
                      column("h", "varchar", custom("@H[html]@H")) + column("p", "varbinary") +
                      column("l", "varchar", "<tov:dataFormat xsi:type=\"tov:text\" textFormat=\"hyperLink\"/>"),
                  " title=\"A &lt;b&gt; &amp; c\""),
        std::string("t,d,h,p,l\n\"<b>&amp;\nx\",-1234.5,a<b>b</b><br>c,") + kpPng + ",https://a.b/?c=d&e\n,,,AP8=,\n");
    EXPECT_EQ(read(sFile, "body"), "<b>&amp;/x|(1,234.50)|ab/c||https://a.b/?c=d&e\n|||00FF|\n");
    EXPECT_EQ(read(sFile, "links"), "url('https://a.b/?c=d&e')\n");
    EXPECT_EQ(read(sFile, "images"), "url('data:image/ 12.0pt\n");
    const std::string sDocument = readFile(sFile);
    for (const char* pPart :
         {"<dc:title>A &lt;b&gt; &amp; c</dc:title>", "<fo:inline color=\"red\">(1,234.50)</fo:inline>",
          "<fo:inline font-weight=\"bold\">b</fo:inline>", ">2 rows<", "Page <fo:page-number/> of "})
        EXPECT_NE(sDocument.find(pPart), std::string::npos) << pPart;
    EXPECT_EQ(sDocument.find("lumfo:"), std::string::npos);
}

TEST(ReportFo, ChoosesThePageAndTheDirectionForTheReport)
{
    const TemporaryFolder tFolder;
    std::string sColumns;
    for (int nColumn = 0; nColumn < 12; ++nColumn)
        sColumns += column("t", "integer");
    const std::string sData = "t\n1234567890\n";
    EXPECT_EQ(read(render(tFolder, reportXml(column("t", "integer")), sData), "pages"), "841.90pt None\n");
    EXPECT_EQ(read(render(tFolder, reportXml(column("t", "integer"), " locale=\"he-IL\""), sData), "pages"),
              "841.90pt rl-tb\n");
    EXPECT_EQ(read(render(tFolder, reportXml(sColumns + sColumns), sData), "pages"), "1190.60pt None\n");
}

TEST(ReportFo, MakesColumnsThatFillThePageAndAreNotWider)
{
    const TemporaryFolder tFolder;
    for (const int nColumns : {1, 3, 6, 7})
    {
        std::string sColumns;
        for (int nColumn = 0; nColumn < nColumns; ++nColumn)
            sColumns += column("t", "integer");
        const std::string sDocument = readFile(render(tFolder, reportXml(sColumns), "t\n5\n"));
        const std::string sBefore = "column-width=\"";
        double fSum = 0;
        for (std::size_t nAt = 0; (nAt = sDocument.find(sBefore, nAt)) != std::string::npos; ++nAt)
            fSum += std::stod(sDocument.substr(nAt + sBefore.size()));
        EXPECT_NEAR(fSum, 841.90 - 2 * 28.30, 0.001) << nColumns;  // the margins are 10 mm
    }
}

TEST(ReportFo, IsWholeWithoutARow)
{
    const TemporaryFolder tFolder;
    const std::string sFile = render(tFolder, reportXml(column("t", "varchar") + column("u", "varchar")), "t,u\n");
    EXPECT_EQ(read(sFile, "body"), "\n");
    EXPECT_NE(readFile(sFile).find("number-columns-spanned=\"2\""), std::string::npos);
    EXPECT_NE(readFile(sFile).find(">0 rows<"), std::string::npos);
}

TEST(ReportFo, SaysWhereTheDataIsWrongAndLeavesNoFile)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult =
        runCommand({"report", tFolder.write("r.xml", reportXml(column("t", "integer"))), "--data",
                    tFolder.write("d.csv", "t\n1\nx\n"), "--output", "fo", "-o", tFolder.path("r.fo")});
    EXPECT_EQ(tResult.nStatus, 1);
    EXPECT_NE(tResult.sErrors.find("d.csv:3:1"), std::string::npos) << tResult.sErrors;
    EXPECT_EQ(tFolder.names(), "d.csv r.xml");
}

TEST(ReportFo, RendersTheSampleTheSameFromCsvAndFromTheDatabase)
{
    const TemporaryFolder tFolder;
    for (const char* pData : {"sales.csv", "sales.db"})
    {
        const CommandResult tResult =
            runCommand({"report", sourcePath("examples/sales-report-print.xml"), "--data",
                        sourcePath(std::string("examples/") + pData), "--output", "fo", "-o", tFolder.path(pData)});
        ASSERT_EQ(tResult.nStatus, 0) << tResult.sErrors;
    }
    EXPECT_TRUE(readFile(tFolder.path("sales.csv")) == readFile(tFolder.path("sales.db")));
    EXPECT_EQ(read(tFolder.path("sales.csv"), "pages"), "841.90pt None\n");
}

TEST(ReportFo, StaysWellFormedAndLinksToTheWebOnlyWhateverTheValuesHold)
{
    constexpr std::array<const char*, 36> kaPieces = {"<b>",
                                                      "</b>",
                                                      "<i",
                                                      ">",
                                                      "\"\"/>",
                                                      "\"\"",
                                                      "'",
                                                      "&",
                                                      "&lt;",
                                                      "&#0;",
                                                      "&#xD800;",
                                                      "<a href=\"\"",
                                                      "https://a.b/",
                                                      "javascript:a",
                                                      "file:///a",
                                                      "')",
                                                      "<img src=\"\"",
                                                      "data:image/png;base64,",
                                                      kpPng,
                                                      "</fo:block>",
                                                      "<fo:inline>",
                                                      "<lumfo:html2fo src=\"\"",
                                                      "<fo:external-graphic src=\"\"url('file:///a')\"\"/>",
                                                      "]]>",
                                                      "<!--",
                                                      "-->",
                                                      "<?x",
                                                      "<script>",
                                                      "</script>",
                                                      "<pre>",
                                                      "\x01",
                                                      "\n",
                                                      "\xEF\xBF\xBF",
                                                      "שלום",
                                                      "𠮷野",
                                                      "👨‍👩‍👧"};
    const TemporaryFolder tFolder;
    std::mt19937 tRandom(20240305);
    std::string sData = "t\n";
    for (int nRow = 0; nRow < 3000; ++nRow)
    {
        sData += '"';
        for (unsigned nPiece = tRandom() % 12; nPiece != 0; --nPiece)
            sData += kaPieces[tRandom() % kaPieces.size()];
        sData += "\"\n";
    }
    const std::string sFile =
        render(tFolder,
               reportXml(column("t", "varchar") + column("t", "varchar", custom("[html]@H")) +
                         column("t", "varchar", custom("[html]@N")) + column("t", "varchar", custom("[html]@T(5)")) +
                         column("t", "varchar", custom("[html]@I(16)")) +
                         column("t", "varchar", "<tov:dataFormat xsi:type=\"tov:text\" textFormat=\"hyperLink\"/>") +
                         column("t", "varchar", "<tov:dataFormat xsi:type=\"tov:text\" textFormat=\"imageURL\"/>")),
               sData);
    const std::string sBody = read(sFile, "body");
    EXPECT_EQ(std::count(sBody.begin(), sBody.end(), '\n'), 3000) << sBody.substr(0, 500);
    std::istringstream tLinks(read(sFile, "links"));
    std::size_t nLinks = 0;
    for (std::string sLink; std::getline(tLinks, sLink); ++nLinks)
        EXPECT_TRUE(sLink.rfind("url('http", 0) == 0 || sLink.rfind("url('mailto:", 0) == 0) << sLink;
    EXPECT_GT(nLinks, 50U);
    std::istringstream tImages(read(sFile, "images"));
    std::size_t nImages = 0;
    for (std::string sImage; std::getline(tImages, sImage); ++nImages)
        EXPECT_TRUE(sImage.rfind("url('http", 0) == 0 || sImage.rfind("url('data:image", 0) == 0) << sImage;
    EXPECT_GT(nImages, 20U);
}

}  // namespace tov

// Runs the examples of docs/command.md.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tools/support/batchrows.h"
#include "tools/support/command.h"

namespace tov {

namespace {

std::string page()
{
    std::ostringstream tText;
    tText << std::ifstream(WEBFORMAT_SOURCE_DIR "/docs/command.md").rdbuf();
    return tText.str();
}

// The text between the two marks, without them.
std::string between(const std::string& sText, const std::string& sFirst, const std::string& sLast)
{
    const std::size_t nStart = sText.find(sFirst);
    if (nStart == std::string::npos)
        return std::string();
    const std::size_t nText = nStart + sFirst.size();
    return sText.substr(nText, sText.find(sLast, nText) - nText);
}

}  // namespace

TEST(CommandDocument, ShowsRequestsWithTheirResponses)
{
    std::istringstream tPage(page());
    int nLine = 0;
    int nRows = 0;
    for (std::string sRow; std::getline(tPage, sRow);)
    {
        ++nLine;
        if (!sRow.starts_with("| `{"))
            continue;
        ++nRows;
        EXPECT_EQ(ask(between(sRow, "| `", "` | `") + "\n"), between(sRow, "` | `", "` |") + "\n")
            << "docs/command.md:" << nLine;
    }
    EXPECT_EQ(nRows, 14);
}

TEST(CommandDocument, ShowsAReportFile)
{
    const TemporaryFolder tFolder;
    const CommandResult tResult =
        runCommand({"report", tFolder.write("r.xml", between(page(), "```xml\n", "```")), "--data",
                    tFolder.write("d.csv", "ordered,amount\n2024-03-05 01:08:09,-1234.5\n"), "--output", "text"});
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "Orders\n\nOrdered at               Amount\n-------------------  ----------\n"
              "3/4/2024 8:08:09 PM  (1,234.50)\n\n1 row\n");
}

}  // namespace tov

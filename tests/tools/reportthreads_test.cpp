#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "tools/support/command.h"

namespace tov {

namespace {

constexpr const char* kpReport = R"(<tov:report xmlns:tov="urn:tov:schemas:report:v1"
    xmlns:tovx="urn:tov:schemas:expression:v1" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" title="Rows">
  <tov:column name="n" type="integer"><tov:dataFormat xsi:type="tov:number" commas="true" maxDigits="0"/></tov:column>
  <tov:column name="t" type="varchar"/>
  <tov:column name="a" type="double"><tov:dataFormat xsi:type="tov:conditionalcurrency" commas="true">
    <tov:currencyTagColumn><tovx:expr xsi:type="tovx:sqlExpression">c</tovx:expr></tov:currencyTagColumn>
  </tov:dataFormat></tov:column>
  <tov:column name="w" type="timestamp"/>
</tov:report>
)";

// Rows of all lengths, some of them over several lines; the tags of one in a hundred are unknown.
std::string dataRow(unsigned nRow)
{
    const char* const apTags[] = {"loc:en-US", "loc:de-DE", "int:CHF", "", "JPY"};
    std::string sText = nRow % 7 == 0 ? "\"a \"\"b\"\"\nc, " + std::string(nRow % 50, 'x') + "\"" : "日本 é";
    if (nRow % 1000 == 299)
        sText = std::string(100000, 'y');
    const std::string sTag = nRow % 100 == 50 ? "zz" + std::to_string(nRow % 300) : apTags[nRow % 5];
    return std::to_string(nRow) + "," + sText + "," + std::to_string(nRow) + ".25," + sTag + ",2024-03-0" +
           std::to_string(1 + nRow % 9) + " 07:08:09\n";
}

constexpr const char* kpNames = "n,t,a,c,w\n";

std::string dataRows(unsigned nRows)
{
    std::string sData = kpNames;
    for (unsigned nRow = 0; nRow < nRows; ++nRow)
        sData += dataRow(nRow);
    return sData;
}

const char* const kapThreads[] = {"1", "3", "64"};

}  // namespace

TEST(ReportThreads, WriteTheSameBytesAndWarningsHoweverManyWorkAtOnce)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", kpReport);
    for (const char* pOutput : {"html", "text", "csv"})
    {
        // The lines of the text are as long as the longest cell.
        const std::string sData = tFolder.write("d.csv", dataRows(pOutput == std::string("text") ? 400 : 8000));
        CommandResult tOne;
        for (const char* pThreads : kapThreads)
        {
            const CommandResult tResult =
                runCommand({"report", sReport, "--data", sData, "--output", pOutput, "--threads", pThreads});
            ASSERT_EQ(tResult.nStatus, 0) << tResult.sErrors;
            if (tOne.sOutput.empty())
                tOne = tResult;
            EXPECT_TRUE(tResult.sOutput == tOne.sOutput) << pOutput << " with " << pThreads;
            EXPECT_EQ(tResult.sErrors, tOne.sErrors) << pOutput << " with " << pThreads;
        }
        // 50, 150 and 250 of every 300 rows; exports show no currency.
        const auto nWarnings = std::count(tOne.sErrors.begin(), tOne.sErrors.end(), '\n');
        EXPECT_EQ(nWarnings, pOutput == std::string("csv") ? 0 : 3) << tOne.sErrors;
    }
}

TEST(ReportThreads, ReportTheFirstMistakeOfTheFileHoweverManyWorkAtOnce)
{
    struct Row
    {
        int nLine;
        unsigned nMistake;     // the row that is wrong
        std::string sMistake;  // what stands there
        std::string sMessage;
    };
    const Row aRows[] = {
        {__LINE__, 1500, "1500,t,1x,,2024-03-01 07:08:09\n", "column \"a\": found \"1x\", expected a number"},
        {__LINE__, 1500, "1500,t\n", "found 2 cells, expected 5"},
        {__LINE__, 0, "x,t,1,,2024-03-01 07:08:09\n", "d.csv:2:1: column \"n\": found \"x\""},
        {__LINE__, 3998, "3998,\xFF,1,,\n", "found bytes that are not UTF-8"},
        {__LINE__, 2500, "2500,t,1,,\"2024-03-01 07:08:09\n", "found the end of the file, expected the quotation mark"},
        {__LINE__, 2500, "2500,t\"u,1,,\n", "found a quotation mark inside a cell"},
    };
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", kpReport);
    for (const Row& tRow : aRows)
    {
        std::string sBytes = kpNames;
        for (unsigned nRow = 0; nRow < 4000; ++nRow)
            sBytes += nRow == tRow.nMistake ? tRow.sMistake : std::to_string(nRow) + ",t,1,,2024-03-01 07:08:09\n";
        // Mistakes behind it, which count only where it does not swallow them.
        sBytes += "x,t,1,,\n1,2,3\n";
        const std::string sData = tFolder.write("d.csv", sBytes);
        std::string sFirst;
        for (const char* pThreads : kapThreads)
            for (const char* pOutput : {"html", "text"})
            {
                const CommandResult tResult = runCommand({"report", sReport, "--data", sData, "--output", pOutput,
                                                          "--threads", pThreads, "-o", tFolder.path("out")});
                EXPECT_EQ(tResult.nStatus, 1) << "row at line " << tRow.nLine;
                EXPECT_NE(tResult.sErrors.find(tRow.sMessage), std::string::npos)
                    << "row at line " << tRow.nLine << ": " << tResult.sErrors;
                if (sFirst.empty())
                    sFirst = tResult.sErrors;
                EXPECT_EQ(tResult.sErrors, sFirst) << "row at line " << tRow.nLine << ", threads " << pThreads;
                EXPECT_EQ(tFolder.names(), "d.csv r.xml") << "row at line " << tRow.nLine;
            }
    }
}

TEST(ReportThreads, EndWhenTheOutputCannotBeWritten)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", kpReport);
    const std::string sData = tFolder.write("d.csv", dataRows(20000));
    for (const char* pThreads : kapThreads)
    {
        const CommandResult tResult = runCommand(
            {"report", sReport, "--data", sData, "--output", "html", "--threads", pThreads, "-o", "/dev/full"});
        EXPECT_EQ(tResult.nStatus, 1);
        EXPECT_NE(tResult.sErrors.find("/dev/full: cannot be written: No space left on device"), std::string::npos)
            << tResult.sErrors;
    }
}

TEST(ReportThreads, AreFromOneTo64)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", kpReport);
    const std::string sData = tFolder.write("d.csv", dataRows(1));
    for (const auto& [pThreads, nStatus] :
         {std::pair{"0", 2}, {"1", 0}, {"64", 0}, {"65", 2}, {"-1", 2}, {"two", 2}, {"", 2}})
        EXPECT_EQ(runCommand({"report", sReport, "--data", sData, "--output", "csv", "--threads", pThreads}).nStatus,
                  nStatus)
            << pThreads;
}

TEST(Report, NeedsNoMoreMemoryForMoreRows)
{
    const TemporaryFolder tFolder;
    const std::string sReport = tFolder.write("r.xml", kpReport);
    const auto peakKibibytes = [&](unsigned nRows, const char* pOutput)
    {
        const std::string sData = tFolder.path("d.csv");
        {
            std::ofstream tData(sData, std::ios::binary);
            tData << kpNames;
            for (unsigned nRow = 0; nRow < nRows; ++nRow)
                tData << nRow << ",some text,1234.5,loc:en-US,2024-03-05 07:08:09\n";
        }
        const pid_t nChild = fork();
        if (nChild == 0)
        {
            // What a sanitizer keeps of freed memory would grow.
            setenv("ASAN_OPTIONS", "quarantine_size_mb=1:thread_local_quarantine_size_kb=64", 1);
            execl(WEBFORMAT_COMMAND, "webformat", "report", sReport.c_str(), "--data", sData.c_str(), "--output",
                  pOutput, "--threads", "2", "-o", tFolder.path("out").c_str(), nullptr);
            _exit(127);
        }
        int nStatus = 0;
        struct rusage tUsage = {};
        EXPECT_EQ(wait4(nChild, &nStatus, 0, &tUsage), nChild);
        EXPECT_EQ(nStatus, 0);
        return tUsage.ru_maxrss;
    };
    for (const char* pOutput : {"html", "text", "csv"})
    {
        const long nFew = peakKibibytes(10000, pOutput);
        const long nMany = peakKibibytes(100000, pOutput);
        // 100,000 rows are 5 MiB of data and 10 MiB of page.
        EXPECT_LT(nMany, nFew + nFew / 20 + 1500) << pOutput << ": " << nFew << " KiB for 10,000 rows";
    }
}

}  // namespace tov

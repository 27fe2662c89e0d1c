// What a report costs beside the bare work of reading its rows and copying their cells, and what a second thread gains:
// a million rows of ten columns, made here, the same in every run.

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "tools/webformat/cellvalue.h"
#include "tools/webformat/reportwriters.h"
#include "tools/webformat/rowpipeline.h"
#include "tools/webformat/threadcollector.h"

namespace tov {

namespace {

constexpr unsigned knRows = 1'000'000;
constexpr unsigned knFewRows = 10'000;

constexpr const char* kpReport = R"(<tov:report xmlns:tov="urn:tov:schemas:report:v1"
    xmlns:tovx="urn:tov:schemas:expression:v1" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    dataOffset="0" displayTimeZone="America/New_York">
  <tov:column name="id" type="integer"/>
  <tov:column name="product" type="varchar"/>
  <tov:column name="region" type="varchar"/>
  <tov:column name="amount" type="double">
    <tov:dataFormat xsi:type="tov:number" commas="true" negativeType="redParen"/>
  </tov:column>
  <tov:column name="price" type="double"><tov:dataFormat xsi:type="tov:currency" currencyTag="loc:en-US"/></tov:column>
  <tov:column name="sum" type="double">
    <tov:dataFormat xsi:type="tov:conditionalcurrency" commas="true">
      <tov:currencyTagColumn><tovx:expr xsi:type="tovx:sqlExpression">currency</tovx:expr></tov:currencyTagColumn>
    </tov:dataFormat>
  </tov:column>
  <tov:column name="share" type="double"><tov:dataFormat xsi:type="tov:custom" customFormat="0.0%%"/></tov:column>
  <tov:column name="total" type="numeric"><tov:dataFormat xsi:type="tov:number" commas="true"/></tov:column>
  <tov:column name="due" type="date"/>
  <tov:column name="at" type="timestamp"/>
</tov:report>
)";

void writeRow(std::FILE* pFile, unsigned nRow, std::mt19937& tRandom)
{
    constexpr const char* apProducts[] = {"Teapot", "\"Chair, \"\"folding\"\"\"", "Crème brûlée set",
                                          "Tom & Jerry mugs", "青花瓷茶杯"};
    constexpr const char* apRegions[] = {"North America", "Österreich", "日本", "Saint-Pierre"};
    constexpr const char* apTags[] = {"loc:en-US", "loc:de-AT", "loc:ja-JP", "int:GBP", "EUR"};
    const auto draw = [&tRandom](unsigned nEnd) { return static_cast<unsigned>(tRandom() % nEnd); };
    std::fprintf(pFile, "%u,%s,%s,", nRow, apProducts[draw(5)], apRegions[draw(4)]);
    std::fprintf(pFile, "%s%u.%02u,", draw(4) == 0 ? "-" : "", draw(1'000'000), draw(100));
    std::fprintf(pFile, "%u.%02u,", draw(1000), draw(100));
    std::fprintf(pFile, "%u.%02u,%s,", draw(100'000), draw(100), apTags[draw(5)]);
    std::fprintf(pFile, "0.%03u,%u%09u.%04u,", draw(1000), draw(1000), draw(1'000'000'000), draw(10'000));
    std::fprintf(pFile, "20%02u-%02u-%02u,", draw(30), 1 + draw(12), 1 + draw(28));
    std::fprintf(pFile, "20%02u-%02u-%02u %02u:%02u:%02u\n", draw(30), 1 + draw(12), 1 + draw(28), draw(24), draw(60),
                 draw(60));
}

// The files of the runs; gone at the end.
class Files
{
public:
    Files() : m_sFolder(std::filesystem::temp_directory_path() / ("report_bench_" + std::to_string(getpid())))
    {
        std::filesystem::create_directory(m_sFolder);
        std::ofstream(report()) << kpReport;
        makeData(data(), knRows);
        makeData(fewData(), knFewRows);
    }
    ~Files() { std::filesystem::remove_all(m_sFolder); }

    std::string report() const { return m_sFolder / "report.xml"; }
    std::string data() const { return m_sFolder / "data.csv"; }
    std::string fewData() const { return m_sFolder / "few.csv"; }

private:
    static void makeData(const std::string& sPath, unsigned nRows)
    {
        std::FILE* pFile = std::fopen(sPath.c_str(), "w");
        if (!pFile)
            std::abort();
        std::fputs("id,product,region,amount,price,sum,currency,share,total,due,at\n", pFile);
        std::mt19937 tRandom(1);
        for (unsigned nRow = 0; nRow < nRows; ++nRow)
            writeRow(pFile, nRow, tRandom);
        std::fclose(pFile);
    }

    std::filesystem::path m_sFolder;
};

const Files& files()
{
    static const Files s_tFiles;
    return s_tFiles;
}

// The same run without formatting: each cell is read as a value of its column's type and copied as it stands.
class CopiedCells final : public RowWorker
{
public:
    CopiedCells(const ReportColumns& tColumns, std::string_view sStart, std::string_view sEnd)
        : m_tColumns(tColumns), m_sStart(sStart), m_sEnd(sEnd)
    {
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override
    {
        for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
        {
            for (std::size_t nColumn = 0; nColumn < m_tColumns.count(); ++nColumn)
            {
                const DataCell tCell = tChunk.cell(nRow, m_tColumns[nColumn].nDataColumn);
                readCellValue(m_tColumns[nColumn].pColumn->tType, tCell, m_tValue);
                tResult.sBytes.append(m_sStart).append(tCell.sText).append(m_sEnd);
            }
            tResult.sBytes += "\r\n";
        }
    }

private:
    const ReportColumns& m_tColumns;
    std::string_view m_sStart;
    std::string_view m_sEnd;
    TypedValue m_tValue;
};

enum Output
{
    kHtml,
    kCsv
};

void render(Output eOutput, unsigned nThreads, const std::string& sData)
{
    const ReportDefinition tReport = readReportDefinition(files().report());
    const std::unique_ptr<DataSource> pData = openDataSource(sData);
    OutputFile tOutput("/dev/null");
    if (eOutput == kHtml)
        writeHtmlReport(tReport, *pData, nThreads, tOutput);
    else
        writeCsvReport(tReport, *pData, CsvFormulas::kEscape, nThreads, tOutput);
    tOutput.commit();
}

void copy(Output eOutput)
{
    const ReportDefinition tReport = readReportDefinition(files().report());
    const std::unique_ptr<DataSource> pData = openDataSource(files().data());
    OutputFile tOutput("/dev/null");
    const ReportColumns tColumns(tReport, *pData, ValueFormatterTypes::kText, ReportColumns::kDisplay);
    const std::string_view sStart = eOutput == kHtml ? "<td class=\"number c1\">" : "";
    const std::string_view sEnd = eOutput == kHtml ? "</td>" : ",";
    RowPipeline::run(*pData, makeWorkers<CopiedCells>(1, tColumns, sStart, sEnd), tOutput);
    tOutput.commit();
}

// The most memory, in MiB, that a process of its own takes for a report.
double peakMebibytes(Output eOutput, const std::string& sData)
{
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        render(eOutput, 2, sData);
        _exit(0);
    }
    int nStatus = 0;
    struct rusage tUsage = {};
    wait4(nChild, &nStatus, 0, &tUsage);
    return static_cast<double>(tUsage.ru_maxrss) / 1024;
}

template <unsigned nThreads>
void format(benchmark::State& tState, Output eOutput)
{
    files();
    for (auto tStep : tState)
        render(eOutput, nThreads, files().data());
}

void copyCells(benchmark::State& tState, Output eOutput)
{
    files();
    for (auto tStep : tState)
        copy(eOutput);
}

template <unsigned nRows>
void memory(benchmark::State& tState, Output eOutput)
{
    for (auto tStep : tState)
        tState.counters["mebibytes"] = peakMebibytes(eOutput, nRows == knRows ? files().data() : files().fewData());
}

benchmark::internal::Benchmark* add(const std::string& sName, void (*pRun)(benchmark::State&, Output), Output eOutput)
{
    return benchmark::RegisterBenchmark(sName.c_str(), [=](benchmark::State& tState) { pRun(tState, eOutput); })
        ->Unit(benchmark::kMillisecond);
}

void addAll()
{
    for (const auto& [eOutput, sName] : {std::pair{kHtml, std::string("HTML")}, {kCsv, "CSV"}})
    {
        const std::string sWork = "report, a million rows to " + sName;
        add(sWork + "/webformat", &format<1>, eOutput);
        add(sWork + "/cells copied", &copyCells, eOutput);
        // What the clock says, not the processor.
        add(sWork + " on two threads/webformat", &format<2>, eOutput)->UseRealTime();
        add(sWork + " on two threads/one thread", &format<1>, eOutput)->UseRealTime();
    }
    add("report, memory for a million rows/webformat", &memory<knRows>, kHtml)->UseRealTime();
    add("report, memory for ten thousand rows/webformat", &memory<knFewRows>, kHtml)->UseRealTime();
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::ThreadCollector::install();
    tov::addAll();
    benchmark::Initialize(&nArguments, ppArguments);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}

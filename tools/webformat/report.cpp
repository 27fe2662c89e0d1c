#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <thread>

#include "commands.h"
#include "reportwriters.h"
#include "threadcollector.h"

namespace tov {

namespace {

constexpr unsigned knMostThreads = 64;

struct ReportOptions
{
    std::string sReport;
    std::string sData;
    std::string sOutput;
    std::string sFile;
    std::string sFormulas = "escape";
    unsigned nThreads = std::clamp(std::thread::hardware_concurrency(), 1U, knMostThreads);
};

void runReport(const ReportOptions& tOptions)
{
    ThreadCollector::install();
    const ReportDefinition tReport = readReportDefinition(tOptions.sReport);
    const std::unique_ptr<DataSource> pData = openDataSource(tOptions.sData);
    OutputFile tOutput(tOptions.sFile);
    if (tOptions.sOutput == "html")
        writeHtmlReport(tReport, *pData, tOptions.nThreads, tOutput);
    else if (tOptions.sOutput == "text")
        writeTextReport(tReport, *pData, tOptions.nThreads, tOutput);
    else if (tOptions.sOutput == "fo")
        writeFoReport(tReport, *pData, tOutput);
    else if (tOptions.sOutput == "xlsx")
        writeXlsxReport(tReport, *pData, tOutput);
    else
        writeCsvReport(tReport, *pData, tOptions.sFormulas == "keep" ? CsvFormulas::kKeep : CsvFormulas::kEscape,
                       tOptions.nThreads, tOutput);
    tOutput.commit();
}

}  // namespace

void addReportCommand(CLI::App& tApp, CommandAction& tAction)
{
    CLI::App* pCommand = tApp.add_subcommand("report", "Renders a table of data as a report file says");
    const auto pOptions = std::make_shared<ReportOptions>();
    pCommand->add_option("REPORT", pOptions->sReport, "The report file")->type_name("FILE.xml")->required();
    pCommand->add_option("--data", pOptions->sData, "The data: comma-separated values, or an SQLite database")
        ->type_name("FILE.csv|FILE.db[:TABLE]")
        ->required();
    pCommand->add_option("--output", pOptions->sOutput, "What to write")
        ->required()
        ->check(CLI::IsMember({"html", "text", "csv", "fo", "xlsx"}));
    pCommand->add_option("-o", pOptions->sFile, "Where to write it; standard output unless given")->type_name("FILE");
    pCommand->add_option("--csv-formulas", pOptions->sFormulas, "Text in CSV that a spreadsheet would run as a formula")
        ->check(CLI::IsMember({"keep", "escape"}))
        ->capture_default_str();
    pCommand->add_option("--threads", pOptions->nThreads, "Threads that format rows (html, text and csv)")
        ->check(CLI::Range(1U, knMostThreads))
        ->capture_default_str();
    pCommand->callback([pOptions, &tAction] { tAction = [pOptions] { runReport(*pOptions); }; });
}

}  // namespace tov

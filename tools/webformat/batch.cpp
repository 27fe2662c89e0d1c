#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <memory>

#include "batchrequest.h"
#include "commands.h"
#include "inputerror.h"
#include "linereader.h"
#include "outputfile.h"
#include "threadcollector.h"
#include "workerpool.h"

namespace tov {

namespace {

constexpr unsigned knMostThreads = 256;

// Answers the lines of one chunk in any order and writes the answers in theirs.
void answerChunk(const std::vector<InputLine>& vLines, WorkerPool& tPool, OutputFile& tOutput)
{
    std::vector<std::string> vResponses(vLines.size());
    tPool.run(vLines.size(),
              [&](std::size_t nAt)
              {
                  const InputLine& tLine = vLines[nAt];
                  vResponses[nAt] = tLine.bTooLong ? malformedLine("the line is longer than 64 MiB", tLine.nNumber)
                                                   : respond(tLine.sText, tLine.nNumber);
              });
    for (const std::string& sResponse : vResponses)
        tOutput.write(sResponse + "\n");
    tOutput.commit();
}

void runBatch(unsigned nThreads)
{
    ThreadCollector::install();
    WorkerPool tPool(nThreads);
    OutputFile tOutput("");
    LineReader tReader(STDIN_FILENO);
    std::vector<InputLine> vLines;
    while (tReader.readChunk(vLines))
        answerChunk(vLines, tPool, tOutput);
}

}  // namespace

void addBatchCommand(CLI::App& tApp, CommandAction& tAction)
{
    CLI::App* pCommand = tApp.add_subcommand("batch", "Answers requests: JSON lines in, JSON lines out");
    const auto pThreads = std::make_shared<unsigned>(1);
    pCommand->add_option("--threads", *pThreads, "Requests that are answered at the same time")
        ->check(CLI::Range(1U, knMostThreads))
        ->capture_default_str();
    pCommand->callback([pThreads, &tAction] { tAction = [pThreads] { runBatch(*pThreads); }; });
}

}  // namespace tov

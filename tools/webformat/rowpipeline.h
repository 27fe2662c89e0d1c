#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "datasource.h"
#include "outputfile.h"
#include "rowformatter.h"
#include "unknowntags.h"

namespace tov {

// What a chunk of rows became.
struct ChunkResult
{
    std::string sBytes;  // to be written
    std::vector<UnknownTag> vUnknownTags;
    std::function<void()> tWriteNow;  // set by the pipeline

    // To be called behind each row: what has grown long is written at once, when its turn has come.
    void endRow()
    {
        if (sBytes.size() >= knLong && tWriteNow)
            tWriteNow();
    }
    void clear();

private:
    static constexpr std::size_t knLong = std::size_t(1) << 20;
};

// What a pass over the rows does with them. Each thread has its own.
class RowWorker
{
public:
    virtual ~RowWorker() = default;

    // Adds what becomes of the chunk's rows to `tResult`, which is empty. May throw InputError.
    virtual void work(const DataChunk& tChunk, ChunkResult& tResult) = 0;
};

// As many workers as threads, each made with the same arguments.
template <class Worker, class... Arguments>
std::vector<std::unique_ptr<RowWorker>> makeWorkers(unsigned nThreads, const Arguments&... tArguments)
{
    std::vector<std::unique_ptr<RowWorker>> vWorkers;
    for (unsigned nWorker = 0; nWorker < nThreads; ++nWorker)
        vWorkers.push_back(std::make_unique<Worker>(tArguments...));
    return vWorkers;
}

// Passes over the rows of some data with several threads at once.
//
// The threads take turns at reading a chunk, work on their chunks at the same time, and write the results in the order
// of the file: bytes and messages are the same for any number of threads. At most two chunks a thread are in memory,
// and of each chunk's result a mebibyte and one row, whatever the number of rows. With one thread everything happens on
// the caller's.
//
// The first mistake in the file's order is the one that is thrown; whatever stands behind it is not written.
class RowPipeline
{
public:
    // Reads from where `tData` stands to its end, shows a progress bar, and warns once of every unknown currency tag
    // on standard error. Returns the number of rows. There are as many threads as workers.
    static std::uint64_t run(DataSource& tData, const std::vector<std::unique_ptr<RowWorker>>& vWorkers,
                             OutputFile& tOutput);
};

}  // namespace tov

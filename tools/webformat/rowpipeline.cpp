#include "rowpipeline.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "progressbar.h"

namespace tov {

namespace {

// One pass: a ring of chunks that are read, worked on and written.
class Pass
{
public:
    Pass(DataSource& tData, OutputFile& tOutput, std::size_t nThreads)
        : m_tData(tData), m_tOutput(tOutput), m_vSlots(nThreads == 1 ? 1 : 2 * nThreads)
    {
    }

    // Takes part until all is done or something has failed.
    void serve(RowWorker& tWorker);

    // When no thread serves any more.
    void throwError() const;
    std::uint64_t rowCount() const { return m_nRows; }

private:
    struct Slot
    {
        DataChunk tChunk;
        ChunkResult tResult;
        std::exception_ptr pError;
        bool bDone = false;
    };

    using Lock = std::unique_lock<std::mutex>;

    bool canWrite() const { return !m_bWriting && m_nWritten != m_nRead && slot(m_nWritten).bDone; }
    bool canRead() const { return !m_bReading && !m_bEnd && m_nRead - m_nWritten < m_vSlots.size(); }
    bool isOver() const { return m_pError || (m_bEnd && !m_bReading && m_nWritten == m_nRead); }
    void writeNext(Lock& tLock);
    void write(Slot& tSlot);
    void takeNext(Lock& tLock, RowWorker& tWorker);
    bool read(Slot& tSlot);
    void workOn(Slot& tSlot, std::uint64_t nChunk, RowWorker& tWorker);
    void writeNow(std::uint64_t nChunk, std::string& sBytes);
    Slot& slot(std::uint64_t nChunk) { return m_vSlots[nChunk % m_vSlots.size()]; }
    const Slot& slot(std::uint64_t nChunk) const { return m_vSlots[nChunk % m_vSlots.size()]; }

    DataSource& m_tData;             // of the thread that reads
    ProgressBar m_tProgress;         // of the thread that reads
    OutputFile& m_tOutput;           // of the thread that writes
    UnknownTagWarnings m_tWarnings;  // of the thread that writes

    std::mutex m_tMutex;
    std::condition_variable m_tChange;
    // All guarded by m_tMutex, but for a slot's contents: they belong to the thread that reads, works on or writes it.
    std::vector<Slot> m_vSlots;
    std::uint64_t m_nRead = 0;
    std::uint64_t m_nWritten = 0;
    std::uint64_t m_nRows = 0;
    bool m_bReading = false;
    bool m_bWriting = false;
    bool m_bEnd = false;
    std::exception_ptr m_pError;
};

// Writing comes first: it sets chunks free.
void Pass::serve(RowWorker& tWorker)
{
    Lock tLock(m_tMutex);
    while (!isOver())
    {
        if (canWrite())
            writeNext(tLock);
        else if (canRead())
            takeNext(tLock, tWorker);
        else
            m_tChange.wait(tLock);
    }
    m_tChange.notify_all();
}

void Pass::writeNext(Lock& tLock)
{
    Slot& tSlot = slot(m_nWritten);
    m_bWriting = true;
    tLock.unlock();
    if (!tSlot.pError)
        write(tSlot);
    tLock.lock();
    m_bWriting = false;
    m_pError = tSlot.pError;
    m_nRows += tSlot.tChunk.rowCount();
    ++m_nWritten;
    m_tChange.notify_all();
}

void Pass::write(Slot& tSlot)
{
    try
    {
        m_tWarnings.add(tSlot.tResult.vUnknownTags);
        m_tOutput.write(tSlot.tResult.sBytes);
    }
    catch (...)
    {
        tSlot.pError = std::current_exception();
    }
}

void Pass::takeNext(Lock& tLock, RowWorker& tWorker)
{
    Slot& tSlot = slot(m_nRead);
    m_bReading = true;
    tLock.unlock();
    const bool bRead = read(tSlot);
    tLock.lock();
    m_bReading = false;
    m_bEnd = !bRead || tSlot.pError;
    const std::uint64_t nChunk = m_nRead;
    m_nRead += bRead ? 1 : 0;
    m_tChange.notify_all();
    if (!bRead)
        return;
    tLock.unlock();
    workOn(tSlot, nChunk, tWorker);
    tLock.lock();
    tSlot.bDone = true;
    m_tChange.notify_all();
}

bool Pass::read(Slot& tSlot)
{
    tSlot.bDone = false;
    tSlot.pError = nullptr;
    try
    {
        const bool bRead = m_tData.read(tSlot.tChunk);
        m_tProgress.update(m_tData.progress());
        return bRead;
    }
    catch (...)
    {
        tSlot.pError = std::current_exception();
        return true;
    }
}

// A mistake in one of the rows stands in front of the one that ended them.
void Pass::workOn(Slot& tSlot, std::uint64_t nChunk, RowWorker& tWorker)
{
    if (tSlot.pError)
        return;
    try
    {
        tSlot.tResult.clear();
        tSlot.tResult.tWriteNow = [this, nChunk, &tSlot] { writeNow(nChunk, tSlot.tResult.sBytes); };
        m_tData.parse(tSlot.tChunk);
        tWorker.work(tSlot.tChunk, tSlot.tResult);
        tSlot.pError = tSlot.tChunk.pError;
    }
    catch (...)
    {
        tSlot.pError = std::current_exception();
    }
}

// Whoever waits for a turn writes the finished chunks that stand in front, so that the turn comes.
void Pass::writeNow(std::uint64_t nChunk, std::string& sBytes)
{
    Lock tLock(m_tMutex);
    while (m_nWritten != nChunk && !m_pError)
    {
        if (canWrite())
            writeNext(tLock);
        else
            m_tChange.wait(tLock);
    }
    if (!m_pError)
    {
        // Nobody else writes: this chunk is the next, and not done.
        tLock.unlock();
        m_tOutput.write(sBytes);
    }
    sBytes.clear();
}

void Pass::throwError() const
{
    if (m_pError)
        std::rethrow_exception(m_pError);
}

}  // namespace

void ChunkResult::clear()
{
    // What one long row became is not kept for all the others.
    constexpr std::size_t knKeptBytes = std::size_t(4) << 20;
    if (sBytes.capacity() > knKeptBytes)
        std::string().swap(sBytes);
    sBytes.clear();
    vUnknownTags.clear();
}

std::uint64_t RowPipeline::run(DataSource& tData, const std::vector<std::unique_ptr<RowWorker>>& vWorkers,
                               OutputFile& tOutput)
{
    Pass tPass(tData, tOutput, vWorkers.size());
    std::vector<std::thread> vThreads;
    vThreads.reserve(vWorkers.size());
    try
    {
        for (std::size_t nWorker = 1; nWorker < vWorkers.size(); ++nWorker)
            vThreads.emplace_back([&tPass, &vWorkers, nWorker] { tPass.serve(*vWorkers[nWorker]); });
    }
    catch (const std::system_error&)
    {
        // The system gives no more threads: those that there are do the work.
    }
    tPass.serve(*vWorkers.front());
    for (std::thread& tThread : vThreads)
        tThread.join();
    tPass.throwError();
    return tPass.rowCount();
}

}  // namespace tov

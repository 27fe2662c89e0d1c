#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tov {

// Threads that share the items of one piece of work after the other. With one thread everything happens on the
// caller's.
class WorkerPool
{
public:
    explicit WorkerPool(unsigned nThreads);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Calls `tWork` once for every number below `nItems`, on any of the threads, in any order; returns when all are
    // done. What one call throws is thrown here, after the others have ended.
    void run(std::size_t nItems, const std::function<void(std::size_t)>& tWork);

private:
    void serve();
    void workOn(std::unique_lock<std::mutex>& tLock);

    std::vector<std::thread> m_vThreads;
    std::mutex m_tMutex;
    std::condition_variable m_tStart;
    std::condition_variable m_tDone;
    // All guarded by m_tMutex.
    const std::function<void(std::size_t)>* m_pWork = nullptr;
    std::size_t m_nItems = 0;
    std::size_t m_nNext = 0;
    std::size_t m_nUnfinished = 0;
    std::exception_ptr m_pError;
    bool m_bEnd = false;
};

}  // namespace tov

#include "workerpool.h"

#include <utility>

namespace tov {

WorkerPool::WorkerPool(unsigned nThreads)
{
    for (unsigned nThread = 1; nThread < nThreads; ++nThread)
        m_vThreads.emplace_back([this] { serve(); });
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> tLock(m_tMutex);
        m_bEnd = true;
    }
    m_tStart.notify_all();
    for (std::thread& tThread : m_vThreads)
        tThread.join();
}

void WorkerPool::run(std::size_t nItems, const std::function<void(std::size_t)>& tWork)
{
    std::unique_lock<std::mutex> tLock(m_tMutex);
    m_pWork = &tWork;
    m_nItems = nItems;
    m_nNext = 0;
    m_nUnfinished = nItems;
    m_pError = nullptr;
    if (nItems > 1)
        m_tStart.notify_all();
    workOn(tLock);
    m_tDone.wait(tLock, [this] { return m_nUnfinished == 0; });
    m_nItems = m_nNext = 0;
    if (m_pError)
        std::rethrow_exception(std::exchange(m_pError, nullptr));
}

void WorkerPool::serve()
{
    std::unique_lock<std::mutex> tLock(m_tMutex);
    for (;;)
    {
        m_tStart.wait(tLock, [this] { return m_bEnd || m_nNext < m_nItems; });
        if (m_bEnd)
            return;
        workOn(tLock);
    }
}

// Takes items until none is left; the lock is held between them only.
void WorkerPool::workOn(std::unique_lock<std::mutex>& tLock)
{
    while (m_nNext < m_nItems)
    {
        const std::size_t nItem = m_nNext++;
        const std::function<void(std::size_t)>& tWork = *m_pWork;
        tLock.unlock();
        std::exception_ptr pError;
        try
        {
            tWork(nItem);
        }
        catch (...)
        {
            pError = std::current_exception();
        }
        tLock.lock();
        if (pError)
            m_pError = pError;
        if (--m_nUnfinished == 0)
            m_tDone.notify_all();
    }
}

}  // namespace tov

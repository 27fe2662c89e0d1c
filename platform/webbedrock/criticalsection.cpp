#include "webbedrock/criticalsection.h"

#include "webbedrock/logger.h"

namespace tov {

namespace {

std::atomic<bool> s_bContentionLogging{false};

}  // namespace

void CriticalSection::acquire()
{
    if (!m_tMutex.try_lock())
    {
        if (s_bContentionLogging.load(std::memory_order_relaxed))
            Logger::log(Logger::kInformation, L"A thread waits for a critical section");
        m_tMutex.lock();
    }
    m_nAcquisitions.fetch_add(1, std::memory_order_relaxed);
}

void CriticalSection::setContentionLogging(bool bOn)
{
    s_bContentionLogging.store(bOn, std::memory_order_relaxed);
}

}  // namespace tov

#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "webbedrock/export.h"

namespace tov {

// A lock that one thread at a time holds; not recursive. `Lock` holds it for a scope.
class WEBFORMAT_EXPORT CriticalSection
{
public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    // Waits until the lock is free and takes it. With contention logging on, a wait is told to the log.
    void acquire();
    void release() { m_tMutex.unlock(); }

    // How often the lock has been taken so far. Any thread; meant for tests and monitoring.
    std::uint64_t acquisitions() const { return m_nAcquisitions.load(std::memory_order_relaxed); }

    // Switches the log line about waits on or off for the whole process; off at start.
    static void setContentionLogging(bool bOn);

    class Lock
    {
    public:
        explicit Lock(CriticalSection& tSection) : m_tSection(tSection) { m_tSection.acquire(); }
        ~Lock() { m_tSection.release(); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        CriticalSection& m_tSection;
    };

private:
    std::mutex m_tMutex;
    std::atomic<std::uint64_t> m_nAcquisitions{0};
};

}  // namespace tov

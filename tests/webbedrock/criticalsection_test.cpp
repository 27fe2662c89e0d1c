#include "webbedrock/criticalsection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "support/collected.h"

namespace tov {

namespace {

TEST(CriticalSection, CountsHowOftenItWasTaken)
{
    CriticalSection tSection;
    EXPECT_EQ(tSection.acquisitions(), 0u);
    for (int nRound = 0; nRound < 3; ++nRound)
        const CriticalSection::Lock tLock(tSection);
    tSection.acquire();
    tSection.release();
    EXPECT_EQ(tSection.acquisitions(), 4u);
}

TEST(CriticalSection, LetsOneThreadInAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    CriticalSection tSection;
    int nPlain = 0;
    std::vector<std::thread> vThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread)
    {
        vThreads.emplace_back(
            [&]
            {
                for (int nRound = 0; nRound < kRounds; ++nRound)
                {
                    const CriticalSection::Lock tLock(tSection);
                    ++nPlain;
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nPlain, kThreads * kRounds);
    EXPECT_EQ(tSection.acquisitions(), static_cast<std::uint64_t>(kThreads * kRounds));
}

// One thread holds the section until the other one's wait is in the log, or, with logging off, until it is about to
// wait.
void contend(CriticalSection& tSection, const CollectedLog& tLog, bool bLogged)
{
    std::atomic<bool> bAboutToWait{false};
    tSection.acquire();
    std::thread tThread(
        [&]
        {
            bAboutToWait = true;
            const CriticalSection::Lock tLock(tSection);
        });
    while (!bAboutToWait || (bLogged && tLog.count() == 0))
        std::this_thread::yield();
    tSection.release();
    tThread.join();
}

TEST(CriticalSection, TellsTheLogAboutAWaitWhenAsked)
{
    CriticalSection tSection;
    const CollectedLog tLog;
    CriticalSection::setContentionLogging(true);
    contend(tSection, tLog, true);
    CriticalSection::setContentionLogging(false);
    ASSERT_EQ(tLog.count(), 1u);
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kInformation);
    EXPECT_EQ(tLog.all()[0].sText, L"A thread waits for a critical section");
}

TEST(CriticalSection, IsSilentAboutWaitsByDefault)
{
    CriticalSection tSection;
    const CollectedLog tLog;
    contend(tSection, tLog, false);
    EXPECT_EQ(tLog.count(), 0u);
    EXPECT_EQ(tSection.acquisitions(), 2u);
}

TEST(CriticalSection, IsSilentWithoutAWait)
{
    CriticalSection tSection;
    const CollectedLog tLog;
    CriticalSection::setContentionLogging(true);
    tSection.acquire();
    tSection.release();
    CriticalSection::setContentionLogging(false);
    EXPECT_EQ(tLog.count(), 0u);
}

}  // namespace

}  // namespace tov

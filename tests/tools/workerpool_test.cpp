#include "tools/webformat/workerpool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <stdexcept>

namespace tov {

TEST(WorkerPool, DoesEveryItemOnceAndIsUsedAgain)
{
    for (const unsigned nThreads : {1U, 2U, 8U})
    {
        WorkerPool tPool(nThreads);
        for (const std::size_t nItems : {0, 1, 7, 1000})
        {
            std::vector<std::atomic<int>> vDone(nItems);
            tPool.run(nItems, [&](std::size_t nItem) { ++vDone[nItem]; });
            for (const std::atomic<int>& nDone : vDone)
                EXPECT_EQ(nDone.load(), 1);
        }
    }
}

TEST(WorkerPool, HandsOnWhatAnItemThrowsAfterTheOthersHaveEnded)
{
    WorkerPool tPool(4);
    std::atomic<int> nDone{0};
    const auto work = [&](std::size_t nItem)
    {
        ++nDone;
        if (nItem == 3)
            throw std::runtime_error("three");
    };
    EXPECT_THROW(tPool.run(100, work), std::runtime_error);
    EXPECT_EQ(nDone.load(), 100);
    tPool.run(5, [&](std::size_t) { ++nDone; });
    EXPECT_EQ(nDone.load(), 105);
}

}  // namespace tov

#include "webbedrock/handlecache.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "webbedrock/refcounted.h"

namespace tov {

namespace {

struct Thing : RefCountedBaseTemplate<MemAllocNewdel>
{
    explicit Thing(int n) : nNumber(n) {}
    const int nNumber;
};

using ThingHandle = Handle<const Thing, const Thing>;

ThingHandle thing(int nNumber)
{
    return WEBFORMAT_NEW("tests/handlecache") Thing(nNumber);
}

TEST(HandleCache, FindsWhatWasInserted)
{
    HandleCache<const Thing> tCache(10);
    EXPECT_TRUE(tCache.find(L"a").isNull());
    const ThingHandle hThing = thing(1);
    EXPECT_TRUE(tCache.insert(L"a", hThing) == hThing);
    EXPECT_TRUE(tCache.find(L"a") == hThing);
    EXPECT_TRUE(tCache.find(L"A").isNull());
    EXPECT_EQ(tCache.size(), 1u);
}

TEST(HandleCache, LetsTheFirstToInsertWin)
{
    HandleCache<const Thing> tCache(10);
    const ThingHandle hFirst = tCache.insert(L"a", thing(1));
    EXPECT_TRUE(tCache.insert(L"a", thing(2)) == hFirst);
    EXPECT_EQ(tCache.find(L"a")->nNumber, 1);
    EXPECT_EQ(hFirst->referenceCount(), 2u) << "the loser is not kept";
}

TEST(HandleCache, RemembersNoMoreThanItsLimit)
{
    HandleCache<const Thing> tCache(2);
    tCache.insert(L"a", thing(1));
    tCache.insert(L"b", thing(2));
    EXPECT_EQ(tCache.insert(L"c", thing(3))->nNumber, 3);
    EXPECT_TRUE(tCache.find(L"c").isNull());
    EXPECT_EQ(tCache.insert(L"a", thing(4))->nNumber, 1) << "those that are there stay";
    EXPECT_EQ(tCache.size(), 2u);
}

TEST(HandleCache, GivesAllThreadsTheSameObjectAtOnce)
{
    for (int nRound = 0; nRound < 50; ++nRound)
    {
        HandleCache<const Thing> tCache(100);
        std::vector<ThingHandle> vFound(8);
        std::vector<std::thread> vThreads;
        for (ThingHandle& hFound : vFound)
            vThreads.emplace_back(
                [&, nThread = static_cast<int>(vThreads.size())]
                {
                    hFound = tCache.find(L"x");
                    if (hFound.isNull())
                        hFound = tCache.insert(L"x", thing(nThread));
                });
        for (std::thread& tThread : vThreads)
            tThread.join();
        for (const ThingHandle& hFound : vFound)
            EXPECT_TRUE(hFound == vFound.front());
    }
}

}  // namespace

}  // namespace tov

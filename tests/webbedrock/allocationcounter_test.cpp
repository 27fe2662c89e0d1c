#include "support/allocationcounter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <thread>

namespace tov {

namespace {

// What a compiler may not see through, so that it keeps every allocation.
void* volatile s_pSink;

template <class Function>
std::size_t allocationsOf(const Function& tFunction)
{
    const AllocationCounter tCounter;
    tFunction();
    return tCounter.count();
}

void allocateOnce()
{
    s_pSink = ::operator new(1);
    ::operator delete(s_pSink);
}

struct alignas(64) Wide
{
    char aBytes[64];
};

TEST(AllocationCounter, StartsAtZero)
{
    EXPECT_EQ(allocationsOf([] {}), 0u);
}

TEST(AllocationCounter, CountsEveryFormOfOperatorNew)
{
    struct Row
    {
        int nLine;
        void (*pAllocate)();
    };
    const Row kRows[] = {
        {__LINE__,
         []
         {
             s_pSink = ::operator new(10);
             ::operator delete(s_pSink);
         }},
        {__LINE__,
         []
         {
             s_pSink = ::operator new[](10);
             ::operator delete[](s_pSink);
         }},
        {__LINE__,
         []
         {
             s_pSink = ::operator new(10, std::nothrow);
             ::operator delete(s_pSink, std::nothrow);
         }},
        {__LINE__,
         []
         {
             s_pSink = ::operator new[](10, std::nothrow);
             ::operator delete[](s_pSink, std::nothrow);
         }},
        {__LINE__,
         []
         {
             Wide* pWide = new Wide;
             s_pSink = pWide;
             delete pWide;
         }},
        {__LINE__,
         []
         {
             Wide* pWide = new Wide[3];
             s_pSink = pWide;
             delete[] pWide;
         }},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(allocationsOf(tRow.pAllocate), 1u) << "row at line " << tRow.nLine;
}

TEST(AllocationCounter, AlignsWhatAsksForIt)
{
    Wide* pWide = new Wide;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pWide) % 64, 0u);
    delete pWide;
}

TEST(AllocationCounter, CountsMallocCallocAndReallocWhereItMay)
{
    const std::size_t nAllocations = allocationsOf(
        []
        {
            s_pSink = std::malloc(10);
            s_pSink = std::realloc(s_pSink, 10000);
            std::free(s_pSink);
            s_pSink = std::calloc(10, 10);
            std::free(s_pSink);
        });
    EXPECT_EQ(nAllocations, AllocationCounter::countsMalloc() ? 3u : 0u);
}

TEST(AllocationCounter, CountersOverlap)
{
    const AllocationCounter tOuter;
    allocateOnce();
    const AllocationCounter tInner;
    allocateOnce();
    EXPECT_EQ(tOuter.count(), 2u);
    EXPECT_EQ(tInner.count(), 1u);
}

TEST(AllocationCounter, CountsItsOwnThreadOnly)
{
    std::size_t nInThread = 0;
    std::thread tThread([&] { nInThread = allocationsOf(&allocateOnce); });
    const AllocationCounter tCounter;
    tThread.join();
    EXPECT_EQ(nInThread, 1u);
    EXPECT_EQ(tCounter.count(), 0u);
}

}  // namespace

}  // namespace tov

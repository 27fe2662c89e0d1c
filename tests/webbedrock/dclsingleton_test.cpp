#include "webbedrock/dclsingleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webbedrock/refcounted.h"

namespace tov {

namespace {

// Each test has a singleton of its own: `nTest` makes the types differ.
template <int nTest>
class Single : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    Single() { ++s_nMade; }
    int nContents = 7;
    static inline std::atomic<int> s_nMade{0};
};

TEST(DCLSingleton, MakesOneObjectOnFirstUse)
{
    using Type = Single<1>;
    EXPECT_EQ(Type::s_nMade, 0);
    const Type* pFirst = DCLSingleton<Type>::getInstanceHandle().getPointer();
    for (int nCall = 0; nCall < 30; ++nCall)
        EXPECT_EQ(DCLSingleton<Type>::getInstanceHandle().getPointer(), pFirst);
    EXPECT_EQ(Type::s_nMade, 1);
    EXPECT_EQ(pFirst->nContents, 7);
}

TEST(DCLSingleton, TheFirstTenCallsLockAndTheEleventhDoesNot)
{
    using Singleton = DCLSingleton<Single<2>>;
    EXPECT_EQ(Singleton::lockAcquisitions(), 0u);
    for (std::uint64_t nCall = 1; nCall <= 10; ++nCall)
    {
        Singleton::getInstanceHandle();
        EXPECT_EQ(Singleton::lockAcquisitions(), nCall);
    }
    for (int nCall = 11; nCall <= 1000; ++nCall)
        Singleton::getInstanceHandle();
    EXPECT_EQ(Singleton::lockAcquisitions(), 10u);
}

TEST(DCLSingleton, LaterCallsNeitherAllocateNorRaiseTheCount)
{
    using Singleton = DCLSingleton<Single<3>>;
    for (int nCall = 0; nCall < 10; ++nCall)
        Singleton::getInstanceHandle();
    const AllocationCounter tCounter;
    Singleton::getInstanceHandle();
    EXPECT_EQ(tCounter.count(), 0u);
    EXPECT_EQ(Singleton::getInstanceHandle().getPointer()->referenceCount(), 1u);
}

template <class T>
struct FactoryOfEights
{
    static T* create()
    {
        T* pObject = new T;
        pObject->nContents = 8;
        return pObject;
    }
};

TEST(DCLSingleton, AFactoryMayMakeTheObject)
{
    const auto& hInstance = DCLSingleton<Single<4>, FactoryOfEights>::getInstanceHandle();
    EXPECT_EQ(hInstance.getPointer()->nContents, 8);
}

template <class T>
struct EmptyFactory
{
    static T* create() { return nullptr; }
};

TEST(DCLSingleton, AFactoryThatMakesNothingIsAnAssertion)
{
    const CollectedAssertions tAssertions;
    const auto& hInstance = DCLSingleton<Single<5>, EmptyFactory>::getInstanceHandle();
    EXPECT_TRUE(hInstance.isNull());
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "!s_hTheT.isNull()");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webbedrock/dclsingleton");
}

template <class T>
struct FailingOnceFactory
{
    static T* create()
    {
        if (!std::exchange(s_bFailed, true))
            throw std::bad_alloc();
        return new T;
    }
    static inline bool s_bFailed = false;
};

TEST(DCLSingleton, AFailureToMakeTheObjectIsNotRemembered)
{
    using Singleton = DCLSingleton<Single<6>, FailingOnceFactory>;
    EXPECT_THROW(Singleton::getInstanceHandle(), std::bad_alloc);
    EXPECT_FALSE(Singleton::getInstanceHandle().isNull());
}

TEST(DCLSingleton, ManyThreadsSeeOneObjectAndTakeFewLocks)
{
    using Singleton = DCLSingleton<Single<7>>;
    constexpr std::uint64_t kThreads = 8;
    std::atomic<bool> bGo{false};
    std::atomic<int> nWrong{0};
    std::vector<std::thread> vThreads;
    for (std::uint64_t nThread = 0; nThread < kThreads; ++nThread)
    {
        vThreads.emplace_back(
            [&]
            {
                while (!bGo)
                    std::this_thread::yield();
                for (int nCall = 0; nCall < 200; ++nCall)
                    nWrong += Singleton::getInstanceHandle().getPointer()->nContents != 7;
            });
    }
    bGo = true;
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nWrong, 0);
    EXPECT_EQ(Single<7>::s_nMade, 1);
    // Beyond ten: the calls that were under way when the tenth completed.
    EXPECT_GE(Singleton::lockAcquisitions(), 10u);
    EXPECT_LT(Singleton::lockAcquisitions(), 10u + kThreads);
}

}  // namespace

}  // namespace tov

#include "webbedrock/handle.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "webbedrock/refcounted.h"

namespace tov {

namespace {

std::atomic<int> s_nAlive{0};

class Animal : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    Animal() { ++s_nAlive; }
    Animal(const Animal& tOther) : RefCountedBaseTemplate(tOther) { ++s_nAlive; }
    Animal& operator=(const Animal&) = default;
    ~Animal() override { --s_nAlive; }
    virtual int legs() const { return 4; }
    int name() { return 1; }
    int name() const { return 2; }
};

class Bird : public Animal
{
public:
    int legs() const override { return 2; }
};

using AnimalHandle = Handle<const Animal, const Animal>;

TEST(Handle, UsingANullOneThrows)
{
    Handle<Animal> hAnimal;
    const Handle<Animal> hConstAnimal;
    EXPECT_THROW(static_cast<void>(hAnimal->legs()), InvalidHandleException);
    EXPECT_THROW(static_cast<void>((*hAnimal).legs()), InvalidHandleException);
    EXPECT_THROW(static_cast<void>(hConstAnimal->legs()), InvalidHandleException);
    EXPECT_THROW(static_cast<void>((*hConstAnimal).legs()), InvalidHandleException);
}

TEST(Handle, ItsExceptionIsAStandardOneThatSaysWhy)
{
    const AnimalHandle hAnimal;
    try
    {
        static_cast<void>(hAnimal->legs());
        FAIL() << "no exception";
    }
    catch (const std::exception& tException)
    {
        EXPECT_STREQ(tException.what(), "invalid handle");
    }
}

TEST(Handle, IsNullByDefaultFromNullAndAfterAMove)
{
    AnimalHandle hAnimal(new Bird);
    const AnimalHandle hMoved(std::move(hAnimal));
    EXPECT_TRUE(AnimalHandle().isNull());
    EXPECT_TRUE(AnimalHandle(nullptr).isNull());
    EXPECT_EQ(AnimalHandle().getPointer(), nullptr);
    EXPECT_TRUE(hAnimal.isNull());  // NOLINT: the state after a move is what is tested
    EXPECT_FALSE(hMoved.isNull());
}

TEST(Handle, GivesConstAccessWhereItIsConst)
{
    Handle<Animal> hAnimal(new Animal);
    EXPECT_EQ(hAnimal->name(), 1);
    EXPECT_EQ((*hAnimal).name(), 1);
    EXPECT_EQ(std::as_const(hAnimal)->name(), 2);
    EXPECT_EQ((*std::as_const(hAnimal)).name(), 2);
}

TEST(Handle, ConvertsToOneOfABase)
{
    const Handle<Bird> hBird(new Bird);
    const AnimalHandle hAnimal(hBird);
    AnimalHandle hAssigned;
    hAssigned = hBird;
    EXPECT_EQ(hAnimal->legs(), 2);
    EXPECT_EQ(hAnimal.getPointer(), hBird.getPointer());
    EXPECT_EQ(hBird->referenceCount(), 3u);
    static_assert(!std::is_convertible_v<AnimalHandle, Handle<Bird>>);
    static_assert(!std::is_convertible_v<AnimalHandle, Handle<Animal>>);
}

TEST(Handle, CountsItsCopies)
{
    const AnimalHandle hFirst(new Animal);
    EXPECT_EQ(hFirst->referenceCount(), 1u);
    {
        const AnimalHandle hSecond(hFirst);
        AnimalHandle hThird;
        hThird = hSecond;
        EXPECT_EQ(hFirst->referenceCount(), 3u);
        AnimalHandle hMoved(std::move(hThird));
        EXPECT_EQ(hFirst->referenceCount(), 3u);
        hMoved = nullptr;
        EXPECT_EQ(hFirst->referenceCount(), 2u);
    }
    EXPECT_EQ(hFirst->referenceCount(), 1u);
}

TEST(Handle, TheLastOneDeletesTheObject)
{
    const int nBefore = s_nAlive;
    {
        const AnimalHandle hBird(new Bird);
        const AnimalHandle hSame(hBird);
        EXPECT_EQ(s_nAlive, nBefore + 1);
    }
    EXPECT_EQ(s_nAlive, nBefore);
}

TEST(Handle, SurvivesAssignmentToItself)
{
    AnimalHandle hAnimal(new Animal);
    const AnimalHandle& hSame = hAnimal;
    hAnimal = hSame;
    EXPECT_EQ(hAnimal->referenceCount(), 1u);
    EXPECT_EQ(hAnimal->legs(), 4);
}

TEST(Handle, AssigningReleasesTheObjectBefore)
{
    const int nBefore = s_nAlive;
    AnimalHandle hAnimal(new Animal);
    hAnimal = AnimalHandle(new Bird);
    EXPECT_EQ(s_nAlive, nBefore + 1);
    EXPECT_EQ(hAnimal->legs(), 2);
}

TEST(Handle, IsEqualToOneOfTheSameObjectOnly)
{
    const AnimalHandle hFirst(new Animal);
    const AnimalHandle hSame(hFirst);
    const AnimalHandle hOther(new Animal);
    EXPECT_TRUE(hFirst == hSame);
    EXPECT_FALSE(hFirst == hOther);
    EXPECT_FALSE(hFirst == AnimalHandle());
    EXPECT_TRUE(AnimalHandle() == AnimalHandle());
}

TEST(RefCounted, StartsAtZeroAndACopyHasACountOfItsOwn)
{
    const AnimalHandle hAnimal(new Animal);
    Animal tCopy(*hAnimal);
    EXPECT_EQ(tCopy.referenceCount(), 0u);
    tCopy = *hAnimal;
    EXPECT_EQ(tCopy.referenceCount(), 0u);
    EXPECT_EQ(hAnimal->referenceCount(), 1u);
}

TEST(RefCounted, TheFirstRaiseIsOneAndEveryLaterOneAddsOne)
{
    const Animal tAnimal;
    tAnimal.addReference();
    EXPECT_EQ(tAnimal.referenceCount(), 1u);
    tAnimal.addReference();
    tAnimal.addReference();
    EXPECT_EQ(tAnimal.referenceCount(), 3u);
    tAnimal.releaseReference();
    EXPECT_EQ(tAnimal.referenceCount(), 2u);
}

void copyAndRelease(const AnimalHandle& hShared)
{
    std::vector<AnimalHandle> vCopies;
    for (int nRound = 0; nRound < 200; ++nRound)
    {
        for (int nCopy = 0; nCopy < 20; ++nCopy)
            vCopies.push_back(hShared);
        vCopies.clear();
    }
}

TEST(RefCounted, ThreadsThatCopyAndReleaseLeaveTheCountRight)
{
    const AnimalHandle hShared(new Bird);
    std::vector<std::thread> vThreads;
    for (int nThread = 0; nThread < 4; ++nThread)
        vThreads.emplace_back([hShared] { copyAndRelease(hShared); });
    for (std::thread& tThread : vThreads)
        tThread.join();
    vThreads.clear();
    EXPECT_EQ(hShared->referenceCount(), 1u);
}

// Each thread writes to the object before it lets go: the deletion must come after all of that (a race under the
// thread sanitizer otherwise).
class Notes : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    ~Notes() override { *pnSum = aNotes[0] + aNotes[1] + aNotes[2] + aNotes[3]; }
    int aNotes[4] = {};
    int* pnSum = nullptr;
};

TEST(RefCounted, TheDeletingThreadSeesWhatAllOthersWrote)
{
    for (int nRound = 0; nRound < 100; ++nRound)
    {
        int nSum = 0;
        Handle<Notes, Notes> hNotes(new Notes);
        hNotes->pnSum = &nSum;
        std::vector<std::thread> vThreads;
        for (int nThread = 0; nThread < 4; ++nThread)
        {
            vThreads.emplace_back(
                [nThread, hMine = hNotes]() mutable
                {
                    hMine->aNotes[nThread] = 1 << nThread;
                    hMine = nullptr;
                });
        }
        hNotes = nullptr;
        for (std::thread& tThread : vThreads)
            tThread.join();
        EXPECT_EQ(nSum, 15);
    }
}

}  // namespace

}  // namespace tov

#include "webbedrock/memoryallocator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "webbedrock/handle.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

namespace {

struct Allocation
{
    std::size_t nBytes;
    std::string sFile;
    int nLine;
};

std::vector<Allocation> s_vAllocations;
int s_nFrees = 0;

void* recordingAllocate(std::size_t nBytes, const char* pFile, int nLine)
{
    s_vAllocations.push_back({nBytes, pFile, nLine});
    return ::operator new(nBytes);
}

void recordingFree(void* pMemory)
{
    ++s_nFrees;
    ::operator delete(pMemory);
}

class Thing : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    explicit Thing(bool bThrow = false)
    {
        if (bThrow)
            throw 1;
    }
    std::uint64_t aContents[4] = {};
};

class MemoryAllocatorGatewayTest : public testing::Test
{
protected:
    void SetUp() override
    {
        s_vAllocations.clear();
        s_nFrees = 0;
        MemoryAllocatorGateway::setFunctions(&recordingAllocate, &recordingFree);
    }
    void TearDown() override { MemoryAllocatorGateway::setFunctions(nullptr, nullptr); }
};

TEST_F(MemoryAllocatorGatewayTest, AHostSeesTheUnitAndLineOfAnObject)
{
    {
        const Handle<Thing> hThing(WEBFORMAT_NEW("webbedrock/example") Thing);
        ASSERT_EQ(s_vAllocations.size(), 1u);
        EXPECT_EQ(s_vAllocations[0].sFile, "webbedrock/example");
        EXPECT_EQ(s_vAllocations[0].nLine, __LINE__ - 3);
        EXPECT_EQ(s_vAllocations[0].nBytes, sizeof(Thing));
        EXPECT_EQ(s_nFrees, 0);
    }
    EXPECT_EQ(s_nFrees, 1);
}

TEST_F(MemoryAllocatorGatewayTest, PlainNewOfAnObjectGoesThroughTheGatewayToo)
{
    Thing* pThing = new Thing;
    ASSERT_EQ(s_vAllocations.size(), 1u);
    EXPECT_EQ(s_vAllocations[0].sFile, "webbedrock/memoryallocator");
    delete pThing;
    EXPECT_EQ(s_nFrees, 1);
}

TEST_F(MemoryAllocatorGatewayTest, AConstructorThatThrowsLosesNoMemory)
{
    EXPECT_THROW(WEBFORMAT_NEW("webbedrock/example") Thing(true), int);
    EXPECT_EQ(s_vAllocations.size(), 1u);
    EXPECT_EQ(s_nFrees, 1);
}

TEST_F(MemoryAllocatorGatewayTest, AHostSeesTheStorageOfABuffer)
{
    {
        StringBufferBaseTemplate<wchar_t> tBuffer;
        tBuffer.append(L'x');
        ASSERT_EQ(s_vAllocations.size(), 1u);
        EXPECT_EQ(s_vAllocations[0].sFile, "webbedrock/stringbufferbase");
        EXPECT_GT(s_vAllocations[0].nLine, 0);
        EXPECT_EQ(s_vAllocations[0].nBytes, 64 * sizeof(wchar_t));
    }
    EXPECT_EQ(s_nFrees, 1);
}

TEST_F(MemoryAllocatorGatewayTest, FreeingNullDoesNothing)
{
    MemoryAllocatorGateway::free(nullptr);
    EXPECT_EQ(s_nFrees, 0);
}

TEST_F(MemoryAllocatorGatewayTest, NullFunctionsRestoreTheDefault)
{
    MemoryAllocatorGateway::setFunctions(nullptr, nullptr);
    void* pMemory = MemoryAllocatorGateway::allocate(100, "webbedrock/example", 1);
    ASSERT_NE(pMemory, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pMemory) % alignof(std::max_align_t), 0u);
    MemoryAllocatorGateway::free(pMemory);
    EXPECT_TRUE(s_vAllocations.empty());
    EXPECT_EQ(s_nFrees, 0);
}

}  // namespace

}  // namespace tov

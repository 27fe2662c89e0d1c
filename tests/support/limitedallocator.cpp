#include "support/limitedallocator.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "webbedrock/memoryallocator.h"

namespace tov {

namespace {

std::atomic<std::size_t> s_nLimit{0};
std::atomic<std::size_t> s_nCount{0};
std::atomic<std::size_t> s_nLargest{0};

void* allocateWithin(std::size_t nBytes, const char*, int)
{
    s_nLargest = std::max(s_nLargest.load(), nBytes);
    if (nBytes > s_nLimit)
        throw std::bad_alloc();
    ++s_nCount;
    return ::operator new(nBytes);
}

void release(void* pMemory)
{
    ::operator delete(pMemory);
}

}  // namespace

LimitedAllocator::LimitedAllocator(std::size_t nLimit)
{
    s_nLimit = nLimit;
    s_nCount = 0;
    s_nLargest = 0;
    MemoryAllocatorGateway::setFunctions(&allocateWithin, &release);
}

LimitedAllocator::~LimitedAllocator()
{
    MemoryAllocatorGateway::setFunctions(nullptr, nullptr);
}

void LimitedAllocator::setLimit(std::size_t nLimit)
{
    s_nLimit = nLimit;
}

std::size_t LimitedAllocator::count() const
{
    return s_nCount;
}

std::size_t LimitedAllocator::largestAsked() const
{
    return s_nLargest;
}

}  // namespace tov

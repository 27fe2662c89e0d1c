#include "webbedrock/memoryallocator.h"

#include <atomic>
#include <new>

namespace tov {

namespace {

void* allocateByNew(std::size_t nBytes, const char*, int)
{
    return ::operator new(nBytes);
}

void freeByDelete(void* pMemory)
{
    ::operator delete(pMemory);
}

std::atomic<MemoryAllocatorGateway::Allocate> s_pAllocate{&allocateByNew};
std::atomic<MemoryAllocatorGateway::Free> s_pFree{&freeByDelete};

}  // namespace

void* MemoryAllocatorGateway::allocate(std::size_t nBytes, const char* pFile, int nLine)
{
    return s_pAllocate.load(std::memory_order_relaxed)(nBytes, pFile, nLine);
}

void MemoryAllocatorGateway::free(void* pMemory)
{
    if (pMemory)
        s_pFree.load(std::memory_order_relaxed)(pMemory);
}

void MemoryAllocatorGateway::setFunctions(Allocate pAllocate, Free pFree)
{
    s_pAllocate.store(pAllocate ? pAllocate : &allocateByNew, std::memory_order_relaxed);
    s_pFree.store(pFree ? pFree : &freeByDelete, std::memory_order_relaxed);
}

}  // namespace tov

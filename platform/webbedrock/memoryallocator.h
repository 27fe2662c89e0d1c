#pragma once

#include <cstddef>

#include "webbedrock/export.h"

namespace tov {

// The one door through which the library's objects get their memory. A host may put functions of its own behind it.
//
// Example: a host that counts
//     MemoryAllocatorGateway::setFunctions(&countingAllocate, &countingFree);   // before the first object is made
class WEBFORMAT_EXPORT MemoryAllocatorGateway
{
public:
    // `pFile` is the source unit that allocates ("webformat/numericformatterimpl"), `nLine` its line. Returns memory
    // aligned for any type or throws std::bad_alloc.
    using Allocate = void* (*)(std::size_t nBytes, const char* pFile, int nLine);
    using Free = void (*)(void* pMemory);

    static void* allocate(std::size_t nBytes, const char* pFile, int nLine);

    // Null is allowed and does nothing.
    static void free(void* pMemory);

    // Replaces both functions for the whole process; null for both restores the default (operator new and delete).
    // Memory must be freed by the pair that allocated it: call this while the library holds no object, on one thread.
    static void setFunctions(Allocate pAllocate, Free pFree);
};

// The allocation policy of reference-counted objects: class-level new and delete that go through the gateway.
class WEBFORMAT_EXPORT MemAllocNewdel
{
public:
    static void* operator new(std::size_t nBytes, const char* pFile, int nLine)
    {
        return MemoryAllocatorGateway::allocate(nBytes, pFile, nLine);
    }
    static void* operator new(std::size_t nBytes)
    {
        return MemoryAllocatorGateway::allocate(nBytes, "webbedrock/memoryallocator", __LINE__);
    }
    static void operator delete(void* pMemory) { MemoryAllocatorGateway::free(pMemory); }
    static void operator delete(void* pMemory, const char*, int) { MemoryAllocatorGateway::free(pMemory); }
};

}  // namespace tov

// `new` for reference-counted objects that records the source unit and the line: WEBFORMAT_NEW(kSource) Thing(1, 2).
#define WEBFORMAT_NEW(source) new (source, __LINE__)

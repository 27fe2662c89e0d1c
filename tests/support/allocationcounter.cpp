#include "support/allocationcounter.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define WEBFORMAT_MALLOC_IS_TAKEN
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)
#define WEBFORMAT_MALLOC_IS_TAKEN
#endif

namespace tov {

namespace {

constinit thread_local std::size_t t_nAllocations = 0;

}  // namespace

AllocationCounter::AllocationCounter() : m_nStart(t_nAllocations) {}

std::size_t AllocationCounter::count() const
{
    return t_nAllocations - m_nStart;
}

}  // namespace tov

#ifdef WEBFORMAT_MALLOC_IS_TAKEN

bool tov::AllocationCounter::countsMalloc()
{
    return false;
}

namespace {

void* plainAllocate(std::size_t nBytes)
{
    return std::malloc(nBytes);
}

void* plainAllocateAligned(std::size_t nAlignment, std::size_t nBytes)
{
    void* pMemory = nullptr;
    return posix_memalign(&pMemory, std::max(nAlignment, sizeof(void*)), nBytes) == 0 ? pMemory : nullptr;
}

void plainFree(void* pMemory)
{
    std::free(pMemory);
}

}  // namespace

#else

bool tov::AllocationCounter::countsMalloc()
{
    return true;
}

// The C library's own functions under their second names: the program's malloc stands before them and counts.
extern "C" {
void* __libc_malloc(std::size_t nBytes);
void* __libc_calloc(std::size_t nItems, std::size_t nBytes);
void* __libc_realloc(void* pMemory, std::size_t nBytes);
void* __libc_memalign(std::size_t nAlignment, std::size_t nBytes);
void __libc_free(void* pMemory);

void* malloc(std::size_t nBytes) noexcept
{
    ++tov::t_nAllocations;
    return __libc_malloc(nBytes);
}

void* calloc(std::size_t nItems, std::size_t nBytes) noexcept
{
    ++tov::t_nAllocations;
    return __libc_calloc(nItems, nBytes);
}

void* realloc(void* pMemory, std::size_t nBytes) noexcept
{
    ++tov::t_nAllocations;
    return __libc_realloc(pMemory, nBytes);
}

void free(void* pMemory) noexcept
{
    __libc_free(pMemory);
}
}

namespace {

void* plainAllocate(std::size_t nBytes)
{
    return __libc_malloc(nBytes);
}

void* plainAllocateAligned(std::size_t nAlignment, std::size_t nBytes)
{
    return __libc_memalign(nAlignment, nBytes);
}

void plainFree(void* pMemory)
{
    __libc_free(pMemory);
}

}  // namespace

#endif

namespace {

void* countedNew(std::size_t nBytes) noexcept
{
    ++tov::t_nAllocations;
    return plainAllocate(std::max<std::size_t>(nBytes, 1));
}

void* countedNew(std::size_t nBytes, std::align_val_t eAlignment) noexcept
{
    ++tov::t_nAllocations;
    return plainAllocateAligned(static_cast<std::size_t>(eAlignment), std::max<std::size_t>(nBytes, 1));
}

void* orThrow(void* pMemory)
{
    if (!pMemory)
        throw std::bad_alloc();
    return pMemory;
}

}  // namespace

void* operator new(std::size_t nBytes)
{
    return orThrow(countedNew(nBytes));
}

void* operator new[](std::size_t nBytes)
{
    return orThrow(countedNew(nBytes));
}

void* operator new(std::size_t nBytes, const std::nothrow_t&) noexcept
{
    return countedNew(nBytes);
}

void* operator new[](std::size_t nBytes, const std::nothrow_t&) noexcept
{
    return countedNew(nBytes);
}

void* operator new(std::size_t nBytes, std::align_val_t eAlignment)
{
    return orThrow(countedNew(nBytes, eAlignment));
}

void* operator new[](std::size_t nBytes, std::align_val_t eAlignment)
{
    return orThrow(countedNew(nBytes, eAlignment));
}

void* operator new(std::size_t nBytes, std::align_val_t eAlignment, const std::nothrow_t&) noexcept
{
    return countedNew(nBytes, eAlignment);
}

void* operator new[](std::size_t nBytes, std::align_val_t eAlignment, const std::nothrow_t&) noexcept
{
    return countedNew(nBytes, eAlignment);
}

void operator delete(void* pMemory) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory) noexcept
{
    plainFree(pMemory);
}

void operator delete(void* pMemory, std::size_t) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory, std::size_t) noexcept
{
    plainFree(pMemory);
}

void operator delete(void* pMemory, const std::nothrow_t&) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory, const std::nothrow_t&) noexcept
{
    plainFree(pMemory);
}

void operator delete(void* pMemory, std::align_val_t) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory, std::align_val_t) noexcept
{
    plainFree(pMemory);
}

void operator delete(void* pMemory, std::size_t, std::align_val_t) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory, std::size_t, std::align_val_t) noexcept
{
    plainFree(pMemory);
}

void operator delete(void* pMemory, std::align_val_t, const std::nothrow_t&) noexcept
{
    plainFree(pMemory);
}

void operator delete[](void* pMemory, std::align_val_t, const std::nothrow_t&) noexcept
{
    plainFree(pMemory);
}

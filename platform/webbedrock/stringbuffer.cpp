#include "webbedrock/stringbuffer.h"

#include <algorithm>

#include "webbedrock/assertion.h"
#include "webbedrock/memoryallocator.h"

namespace tov {

namespace {

constexpr char kSource[] = "webbedrock/stringbufferbase";
constexpr std::size_t kSmallestCapacity = 63;

std::size_t capacityFor(std::size_t nNeeded)
{
    std::size_t nCapacity = kSmallestCapacity;
    while (nCapacity < nNeeded)
        nCapacity = (nCapacity + 1) * 2 - 1;
    return nCapacity;
}

}  // namespace

template <class Char>
bool StringBufferBaseTemplate<Char>::grow(std::size_t nFree)
{
    // No sum of the two may wrap round to a small number.
    const std::size_t nSize = m_nLength + std::min<std::size_t>(nFree, 1ULL << 31);
    WEBFORMAT_ASSERT(kSource, nSize < (1ULL << 31));
    if (nSize >= (1ULL << 31))
        return false;
    const std::size_t nCapacity = capacityFor(nSize);
    Char* pData =
        static_cast<Char*>(MemoryAllocatorGateway::allocate((nCapacity + 1) * sizeof(Char), kSource, __LINE__));
    std::memcpy(pData, m_pData, m_nLength * sizeof(Char));
    releaseHeap();
    m_pData = pData;
    m_nCapacity = nCapacity;
    return true;
}

template <class Char>
void StringBufferBaseTemplate<Char>::releaseHeap()
{
    if (m_pData != m_pInline)
        MemoryAllocatorGateway::free(m_pData);
}

template class StringBufferBaseTemplate<wchar_t>;
template class StringBufferBaseTemplate<char>;

}  // namespace tov

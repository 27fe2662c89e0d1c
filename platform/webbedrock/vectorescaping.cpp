#include "webbedrock/vectorescaping.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tov {

namespace {

// How many characters are looked at together.
constexpr std::ptrdiff_t knBlock = 16;

// A block is stored up to a whole block behind its end, and each mark may take this many characters more than one.
constexpr std::ptrdiff_t knStored = 2 * knBlock + EscapeTable::knPadded;
constexpr std::ptrdiff_t knMostGrowth = EscapeTable::knLongest - 1;

constinit std::atomic<VectorLevel> s_eMost{VectorLevel::kV3};

VectorLevel levelOfProcessor()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return VectorLevel::kV3;
    if (__builtin_cpu_supports("ssse3"))
        return VectorLevel::kV2;
#endif
    return VectorLevel::kPortable;
}

// One class for each level: the marks of a block as bits, the first character's lowest, and a block's copy.
class PortableBlock
{
public:
    explicit PortableBlock(const EscapeRule& tRule) : m_tTable(tRule.tTable) {}

    std::uint32_t marks(const wchar_t* pBlock) const
    {
        std::uint32_t nMarks = 0;
        for (unsigned nAt = 0; nAt < knBlock; ++nAt)
        {
            const std::uint8_t nClass = m_tTable.classOf(static_cast<std::uint32_t>(pBlock[nAt]));
            nMarks |= static_cast<std::uint32_t>(nClass != EscapeTable::knClean) << nAt;
        }
        return nMarks;
    }

    static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
        std::memcpy(pTarget, pBlock, knBlock * sizeof(wchar_t));
    }

private:
    const EscapeTable& m_tTable;
};

#if defined(__x86_64__)
#define WEBFORMAT_V2 __attribute__((target("ssse3")))
#define WEBFORMAT_V3 __attribute__((target("avx2")))

class V2Block
{
public:
    WEBFORMAT_V2 explicit V2Block(const EscapeRule& tRule)
        : m_tByLowBits(_mm_loadu_si128(reinterpret_cast<const __m128i*>(tRule.tMarks.aByLowBits.data()))),
          m_tOther(_mm_set1_epi32(static_cast<int>(tRule.tMarks.nOther))),
          m_tPair(_mm_set1_epi32(static_cast<int>(tRule.tMarks.nPair))),
          m_tLastLow(_mm_set1_epi32(static_cast<int>(tRule.tMarks.nFirstHigh - 1)))
    {
    }

    WEBFORMAT_V2 std::uint32_t marks(const wchar_t* pBlock) const
    {
        constexpr int knLanes = 4;
        std::uint32_t nMarks = 0;
#pragma GCC unroll 4
        for (int nAt = 0; nAt < knBlock; nAt += knLanes)
        {
            const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pBlock + nAt));
            const __m128i tNear = _mm_or_si128(_mm_cmpeq_epi32(_mm_shuffle_epi8(m_tByLowBits, t), t),
                                               _mm_cmpgt_epi32(_mm_set1_epi32(0x20), t));
            const __m128i tFar = _mm_or_si128(_mm_cmpeq_epi32(_mm_or_si128(t, _mm_set1_epi32(1)), m_tPair),
                                              _mm_cmpgt_epi32(t, m_tLastLow));
            const __m128i tFound = _mm_or_si128(_mm_or_si128(tNear, tFar), _mm_cmpeq_epi32(t, m_tOther));
            nMarks |= static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(tFound))) << nAt;
        }
        return nMarks;
    }

    static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
        PortableBlock::copy(pBlock, pTarget);
    }

private:
    const __m128i m_tByLowBits;
    const __m128i m_tOther;
    const __m128i m_tPair;
    const __m128i m_tLastLow;
};

class V3Block
{
public:
    WEBFORMAT_V3 explicit V3Block(const EscapeRule& tRule)
        : m_tByLowBits(_mm256_broadcastsi128_si256(
              _mm_loadu_si128(reinterpret_cast<const __m128i*>(tRule.tMarks.aByLowBits.data())))),
          m_tOther(_mm256_set1_epi32(static_cast<int>(tRule.tMarks.nOther))),
          m_tPair(_mm256_set1_epi32(static_cast<int>(tRule.tMarks.nPair))),
          m_tLastLow(_mm256_set1_epi32(static_cast<int>(tRule.tMarks.nFirstHigh - 1)))
    {
    }

    WEBFORMAT_V3 std::uint32_t marks(const wchar_t* pBlock) const
    {
        std::uint32_t nMarks = 0;
#pragma GCC unroll 2
        for (int nAt = 0; nAt < knBlock; nAt += knLanes)
        {
            const __m256i t = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pBlock + nAt));
            const __m256i tNear = _mm256_or_si256(_mm256_cmpeq_epi32(_mm256_shuffle_epi8(m_tByLowBits, t), t),
                                                  _mm256_cmpgt_epi32(_mm256_set1_epi32(0x20), t));
            const __m256i tFar = _mm256_or_si256(_mm256_cmpeq_epi32(_mm256_or_si256(t, _mm256_set1_epi32(1)), m_tPair),
                                                 _mm256_cmpgt_epi32(t, m_tLastLow));
            const __m256i tFound = _mm256_or_si256(_mm256_or_si256(tNear, tFar), _mm256_cmpeq_epi32(t, m_tOther));
            nMarks |= static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(tFound))) << nAt;
        }
        return nMarks;
    }

    WEBFORMAT_V3 static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
#pragma GCC unroll 2
        for (int nAt = 0; nAt < knBlock; nAt += knLanes)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + nAt),
                                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pBlock + nAt)));
    }

private:
    static constexpr int knLanes = 8;

    const __m256i m_tByLowBits;
    const __m256i m_tOther;
    const __m256i m_tPair;
    const __m256i m_tLastLow;
};
#endif

bool hasRoom(const wchar_t* pTarget, const wchar_t* pTargetEnd, std::uint32_t nMarks)
{
    return pTargetEnd - pTarget >= knStored + knMostGrowth * std::popcount(nMarks);
}

// Stores `nCount` characters; a whole block more of the source can be read.
template <class Block>
[[gnu::always_inline]] inline wchar_t* store(const Block& tBlock, const EscapeRule& tRule, const wchar_t* pBlock,
                                             std::ptrdiff_t nCount, std::uint32_t nMarks, wchar_t* pTarget)
{
    tBlock.copy(pBlock, pTarget);
    const wchar_t* pRest = pBlock;
    for (; nMarks != 0; nMarks &= nMarks - 1)
    {
        const wchar_t* const pMark = pBlock + std::countr_zero(nMarks);
        const std::uint8_t nClass = tRule.classOf(*pMark);
        pTarget += pMark - pRest;
        std::memcpy(pTarget, tRule.tTable.textOf(nClass), EscapeTable::knPadded * sizeof(wchar_t));
        if (nClass == EscapeTable::knClean)
            *pTarget = *pMark;
        pTarget += tRule.tTable.lengthOf(nClass);
        pRest = pMark + 1;
        tBlock.copy(pRest, pTarget);
    }
    return pTarget + (pBlock + nCount - pRest);
}

// The end is read from a copy, behind which there is something to read.
template <class Block>
[[gnu::always_inline]] inline EscapeWalk walkEnd(const Block& tBlock, const EscapeRule& tRule, EscapeWalk tWalk,
                                                 const wchar_t* pSourceEnd, const wchar_t* pTargetEnd)
{
    wchar_t aEnd[3 * knBlock] = {};
    const std::ptrdiff_t nEnd = pSourceEnd - tWalk.pSource;
    std::memcpy(aEnd, tWalk.pSource, static_cast<std::size_t>(nEnd) * sizeof(wchar_t));
    for (std::ptrdiff_t nAt = 0; nAt < nEnd; nAt += knBlock)
    {
        const std::ptrdiff_t nCount = std::min(nEnd - nAt, knBlock);
        const std::uint32_t nMarks = tBlock.marks(aEnd + nAt) & ((std::uint32_t{1} << nCount) - 1);
        if (!hasRoom(tWalk.pTarget, pTargetEnd, nMarks))
            return tWalk;
        tWalk = {tWalk.pSource + nCount, store(tBlock, tRule, aEnd + nAt, nCount, nMarks, tWalk.pTarget)};
    }
    return tWalk;
}

template <class Block>
[[gnu::always_inline]] inline EscapeWalk walkWith(const Block& tBlock, const EscapeRule& tRule, EscapeWalk tWalk,
                                                  const wchar_t* pSourceEnd, const wchar_t* pTargetEnd)
{
    for (std::ptrdiff_t nRest; (nRest = pSourceEnd - tWalk.pSource) >= knBlock;)
    {
        const std::uint32_t nMarks = tBlock.marks(tWalk.pSource);
        if (!hasRoom(tWalk.pTarget, pTargetEnd, nMarks))
            return tWalk;
        // Behind a mark a whole block is read again.
        if (nMarks != 0 && nRest < 2 * knBlock)
            break;
        tWalk = {tWalk.pSource + knBlock, store(tBlock, tRule, tWalk.pSource, knBlock, nMarks, tWalk.pTarget)};
    }
    return tWalk.pSource == pSourceEnd ? tWalk : walkEnd(tBlock, tRule, tWalk, pSourceEnd, pTargetEnd);
}

#if defined(__x86_64__)
WEBFORMAT_V2 EscapeWalk walkV2(const EscapeRule& tRule, EscapeWalk tWalk, const wchar_t* pSourceEnd,
                               const wchar_t* pTargetEnd)
{
    return walkWith(V2Block(tRule), tRule, tWalk, pSourceEnd, pTargetEnd);
}

WEBFORMAT_V3 EscapeWalk walkV3(const EscapeRule& tRule, EscapeWalk tWalk, const wchar_t* pSourceEnd,
                               const wchar_t* pTargetEnd)
{
    return walkWith(V3Block(tRule), tRule, tWalk, pSourceEnd, pTargetEnd);
}
#endif

}  // namespace

VectorLevel vectorLevel()
{
    return std::min(levelOfProcessor(), s_eMost.load(std::memory_order_relaxed));
}

void limitVectorLevel(VectorLevel eMost)
{
    s_eMost.store(eMost, std::memory_order_relaxed);
}

EscapeWalk walkInBlocks(VectorLevel eLevel, const EscapeRule& tRule, EscapeWalk tWalk, const wchar_t* pSourceEnd,
                        const wchar_t* pTargetEnd)
{
#if defined(__x86_64__)
    if (eLevel == VectorLevel::kV3)
        return walkV3(tRule, tWalk, pSourceEnd, pTargetEnd);
    if (eLevel == VectorLevel::kV2)
        return walkV2(tRule, tWalk, pSourceEnd, pTargetEnd);
#endif
    return walkWith(PortableBlock(tRule), tRule, tWalk, pSourceEnd, pTargetEnd);
}

}  // namespace tov

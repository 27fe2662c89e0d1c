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
    if (__builtin_cpu_supports("sse4.1"))
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
#define WEBFORMAT_V2 __attribute__((target("sse4.1")))
#define WEBFORMAT_V3 __attribute__((target("avx2")))

// Two vectors of characters are packed into one of 16 bits each, where what has no place becomes U+FFFF, or 0 if
// negative: both are marks.
class V2Block
{
public:
    WEBFORMAT_V2 explicit V2Block(const EscapeRule& tRule)
        : m_tByLowBits(_mm_loadu_si128(reinterpret_cast<const __m128i*>(tRule.tMarks.aByLowBits.data()))),
          m_tOther(_mm_set1_epi16(static_cast<short>(tRule.tMarks.nOther))),
          m_tPair(_mm_set1_epi16(static_cast<short>(tRule.tMarks.nPair))),
          m_tFirstHigh(_mm_set1_epi16(static_cast<short>(tRule.tMarks.nFirstHigh)))
    {
    }

    WEBFORMAT_V2 std::uint32_t marks(const wchar_t* pBlock) const
    {
        const __m128i tMarks = _mm_packs_epi16(found(pBlock), found(pBlock + knBlock / 2));
        return static_cast<std::uint32_t>(_mm_movemask_epi8(tMarks));
    }

    static void copy(const wchar_t* pBlock, wchar_t* pTarget) { PortableBlock::copy(pBlock, pTarget); }

private:
    WEBFORMAT_V2 __m128i found(const wchar_t* pHalf) const
    {
        const __m128i* const pVectors = reinterpret_cast<const __m128i*>(pHalf);
        const __m128i t = _mm_packus_epi32(_mm_loadu_si128(pVectors), _mm_loadu_si128(pVectors + 1));
        const __m128i tNear = _mm_or_si128(_mm_cmpeq_epi16(_mm_shuffle_epi8(m_tByLowBits, t), t),
                                           _mm_cmpeq_epi16(_mm_min_epu16(t, _mm_set1_epi16(0x1F)), t));
        const __m128i tFar = _mm_or_si128(_mm_cmpeq_epi16(_mm_or_si128(t, _mm_set1_epi16(1)), m_tPair),
                                          _mm_cmpeq_epi16(_mm_max_epu16(t, m_tFirstHigh), t));
        return _mm_or_si128(_mm_or_si128(tNear, tFar), _mm_cmpeq_epi16(t, m_tOther));
    }

    const __m128i m_tByLowBits;
    const __m128i m_tOther;
    const __m128i m_tPair;
    const __m128i m_tFirstHigh;
};

class V3Block
{
public:
    WEBFORMAT_V3 explicit V3Block(const EscapeRule& tRule)
        : m_tByLowBits(_mm256_broadcastsi128_si256(
              _mm_loadu_si128(reinterpret_cast<const __m128i*>(tRule.tMarks.aByLowBits.data())))),
          m_tOther(_mm256_set1_epi16(static_cast<short>(tRule.tMarks.nOther))),
          m_tPair(_mm256_set1_epi16(static_cast<short>(tRule.tMarks.nPair))),
          m_tFirstHigh(_mm256_set1_epi16(static_cast<short>(tRule.tMarks.nFirstHigh)))
    {
    }

    WEBFORMAT_V3 std::uint32_t marks(const wchar_t* pBlock) const
    {
        const __m256i* const pVectors = reinterpret_cast<const __m256i*>(pBlock);
        const __m256i t = _mm256_packus_epi32(_mm256_loadu_si256(pVectors), _mm256_loadu_si256(pVectors + 1));
        const __m256i tNear = _mm256_or_si256(_mm256_cmpeq_epi16(_mm256_shuffle_epi8(m_tByLowBits, t), t),
                                              _mm256_cmpeq_epi16(_mm256_min_epu16(t, _mm256_set1_epi16(0x1F)), t));
        const __m256i tFar = _mm256_or_si256(_mm256_cmpeq_epi16(_mm256_or_si256(t, _mm256_set1_epi16(1)), m_tPair),
                                             _mm256_cmpeq_epi16(_mm256_max_epu16(t, m_tFirstHigh), t));
        const __m256i tFound = _mm256_or_si256(_mm256_or_si256(tNear, tFar), _mm256_cmpeq_epi16(t, m_tOther));
        if (_mm256_testz_si256(tFound, tFound))
            return 0;
        // Packing took the halves of the two vectors in turn.
        const __m256i tInOrder = _mm256_permute4x64_epi64(tFound, 0b11'01'10'00);
        return static_cast<std::uint32_t>(_mm_movemask_epi8(
            _mm_packs_epi16(_mm256_castsi256_si128(tInOrder), _mm256_extracti128_si256(tInOrder, 1))));
    }

    WEBFORMAT_V3 static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
        const __m256i* const pFrom = reinterpret_cast<const __m256i*>(pBlock);
        __m256i* const pTo = reinterpret_cast<__m256i*>(pTarget);
        const __m256i tSecond = _mm256_loadu_si256(pFrom + 1);
        _mm256_storeu_si256(pTo, _mm256_loadu_si256(pFrom));
        _mm256_storeu_si256(pTo + 1, tSecond);
    }

private:
    const __m256i m_tByLowBits;
    const __m256i m_tOther;
    const __m256i m_tPair;
    const __m256i m_tFirstHigh;
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

// Copies blocks up to the first with marks, which it returns; 0 where there is none or no room.
template <class Block>
[[gnu::always_inline]] inline std::uint32_t copyClean(const Block& tBlock, EscapeWalk& tWalk, const wchar_t* pSourceEnd,
                                                      const wchar_t* pTargetEnd)
{
    std::ptrdiff_t nBlocks = std::min(pSourceEnd - tWalk.pSource, pTargetEnd - tWalk.pTarget - knStored) / knBlock;
    for (; nBlocks > 0; --nBlocks)
    {
        if (const std::uint32_t nMarks = tBlock.marks(tWalk.pSource))
            return nMarks;
        tBlock.copy(tWalk.pSource, tWalk.pTarget);
        tWalk.pSource += knBlock;
        tWalk.pTarget += knBlock;
    }
    return 0;
}

template <class Block>
[[gnu::always_inline]] inline EscapeWalk walkWith(const Block& tBlock, const EscapeRule& tRule, EscapeWalk tWalk,
                                                  const wchar_t* pSourceEnd, const wchar_t* pTargetEnd)
{
    for (;;)
    {
        const std::uint32_t nMarks = copyClean(tBlock, tWalk, pSourceEnd, pTargetEnd);
        const std::ptrdiff_t nRest = pSourceEnd - tWalk.pSource;
        // Behind a mark a whole block is read again.
        if (nRest < 2 * knBlock)
            return nRest == 0 ? tWalk : walkEnd(tBlock, tRule, tWalk, pSourceEnd, pTargetEnd);
        if (nMarks == 0 || !hasRoom(tWalk.pTarget, pTargetEnd, nMarks))
            return tWalk;
        tWalk = {tWalk.pSource + knBlock, store(tBlock, tRule, tWalk.pSource, knBlock, nMarks, tWalk.pTarget)};
    }
}

// The exact number of characters that a text encodes to.
template <class Block>
[[gnu::always_inline]] inline std::size_t measureWith(const Block& tBlock, const EscapeRule& tRule,
                                                      const wchar_t* pSource, std::size_t nSource)
{
    std::size_t nLength = nSource;
    std::size_t nAt = 0;
    for (; nSource - nAt >= knBlock; nAt += knBlock)
    {
        for (std::uint32_t nMarks = tBlock.marks(pSource + nAt); nMarks != 0; nMarks &= nMarks - 1)
            nLength += tRule.lengthOf(pSource[nAt + static_cast<std::size_t>(std::countr_zero(nMarks))]) - 1;
    }
    for (; nAt < nSource; ++nAt)
        nLength += tRule.lengthOf(pSource[nAt]) - 1;
    return nLength;
}

#if defined(__x86_64__)
WEBFORMAT_V2 std::size_t measureV2(const EscapeRule& tRule, const wchar_t* pSource, std::size_t nSource)
{
    return measureWith(V2Block(tRule), tRule, pSource, nSource);
}

WEBFORMAT_V3 std::size_t measureV3(const EscapeRule& tRule, const wchar_t* pSource, std::size_t nSource)
{
    return measureWith(V3Block(tRule), tRule, pSource, nSource);
}

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

std::size_t measureInBlocks(VectorLevel eLevel, const EscapeRule& tRule, const wchar_t* pSource, std::size_t nSource)
{
#if defined(__x86_64__)
    if (eLevel == VectorLevel::kV3)
        return measureV3(tRule, pSource, nSource);
    if (eLevel == VectorLevel::kV2)
        return measureV2(tRule, pSource, nSource);
#endif
    return measureWith(PortableBlock(tRule), tRule, pSource, nSource);
}

}  // namespace tov

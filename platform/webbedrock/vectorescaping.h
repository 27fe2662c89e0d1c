#pragma once

// The encoders' walk over whole blocks of a text, four or eight characters at a time. Internal to this library's
// sources, tests, fuzz targets and benchmarks.

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include "webbedrock/escapetable.h"

namespace tov {

// The widths of vectors that the walk knows: none, those of x86-64-v2 (four characters), those of x86-64-v3 (eight).
enum class VectorLevel
{
    kPortable,
    kV2,
    kV3
};

// The widest that the processor has, and that was not ruled out.
VectorLevel vectorLevel();

// Rules out wider ones for the whole process: tests and fuzz targets hold the three to each other. Not while other
// threads encode.
void limitVectorLevel(VectorLevel eMost);

// What a vector looks for. It may find too much, which is looked at again, but never too little:
//
//   every character below U+0020 and from `nFirstHigh` on
//   the characters in `aByLowBits`, each at the place that its low four bits name
//   `nOther`, and the two characters `nPair` and `nPair` - 1
struct EscapeMarks
{
    static constexpr std::uint32_t knNever = 0x7FFFFFFF;

    std::array<std::uint8_t, 16> aByLowBits{};
    std::uint32_t nOther = 0;
    std::uint32_t nPair = 0;
    std::uint32_t nFirstHigh = knNever;

    // The marks of the characters below 128 that a table replaces. At most one of them finds its place taken.
    static constexpr EscapeMarks of(const EscapeTable& tTable, std::uint32_t nPair, std::uint32_t nFirstHigh)
    {
        EscapeMarks tMarks;
        // A place that nothing takes holds what never comes there; the first one is 0 for the upper bytes of all.
        for (unsigned nAt = 1; nAt < 16; ++nAt)
            tMarks.aByLowBits[nAt] = static_cast<std::uint8_t>(nAt - 1);
        std::array<bool, 16> aTaken{true};
        for (std::uint32_t nCode = 0x20; nCode < EscapeTable::knCodes; ++nCode)
        {
            if (tTable.classOf(nCode) == EscapeTable::knClean)
                continue;
            const std::uint32_t nAt = nCode % 16;
            if (aTaken[nAt])
                tMarks.nOther = nCode;
            else
                tMarks.aByLowBits[nAt] = static_cast<std::uint8_t>(nCode);
            aTaken[nAt] = true;
        }
        tMarks.nPair = nPair;
        tMarks.nFirstHigh = nFirstHigh;
        return tMarks;
    }
};

// Where a walk has come to.
struct EscapeWalk
{
    const wchar_t* pSource;
    wchar_t* pTarget;
};

// How many characters are looked at together.
inline constexpr std::ptrdiff_t knEscapeBlock = 16;

// The marks of a block as bits, the first character's lowest, and a block's copy; one class for each level.
template <class Rule>
struct PortableBlock
{
    static std::uint32_t marks(const wchar_t* pBlock)
    {
        std::uint32_t nMarks = 0;
        for (unsigned nAt = 0; nAt < knEscapeBlock; ++nAt)
        {
            const std::uint8_t nClass = Rule::kTable.classOf(static_cast<std::uint32_t>(pBlock[nAt]));
            nMarks |= static_cast<std::uint32_t>(nClass != EscapeTable::knClean) << nAt;
        }
        return nMarks;
    }

    static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
        std::memcpy(pTarget, pBlock, knEscapeBlock * sizeof(wchar_t));
    }
};

#if defined(__x86_64__)
template <class Rule>
struct V2Block
{
    static constexpr int knLanes = 4;

    __attribute__((target("ssse3"))) static std::uint32_t marks(const wchar_t* pBlock)
    {
        constexpr EscapeMarks kMarks = Rule::kMarks;
        const __m128i tByLowBits = _mm_loadu_si128(reinterpret_cast<const __m128i*>(Rule::kMarks.aByLowBits.data()));
        std::uint32_t nMarks = 0;
        for (int nAt = 0; nAt < knEscapeBlock; nAt += knLanes)
        {
            const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pBlock + nAt));
            __m128i tFound = _mm_cmpeq_epi32(_mm_shuffle_epi8(tByLowBits, t), t);
            tFound = _mm_or_si128(tFound, _mm_cmpgt_epi32(_mm_set1_epi32(0x20), t));
            if constexpr (kMarks.nOther != 0)
                tFound = _mm_or_si128(tFound, _mm_cmpeq_epi32(t, _mm_set1_epi32(static_cast<int>(kMarks.nOther))));
            if constexpr (kMarks.nPair != 0)
                tFound = _mm_or_si128(tFound, _mm_cmpeq_epi32(_mm_or_si128(t, _mm_set1_epi32(1)),
                                                              _mm_set1_epi32(static_cast<int>(kMarks.nPair))));
            if constexpr (kMarks.nFirstHigh != EscapeMarks::knNever)
                tFound =
                    _mm_or_si128(tFound, _mm_cmpgt_epi32(t, _mm_set1_epi32(static_cast<int>(kMarks.nFirstHigh) - 1)));
            nMarks |= static_cast<std::uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(tFound))) << nAt;
        }
        return nMarks;
    }

    static void copy(const wchar_t* pBlock, wchar_t* pTarget) { PortableBlock<Rule>::copy(pBlock, pTarget); }
};

template <class Rule>
struct V3Block
{
    static constexpr int knLanes = 8;

    __attribute__((target("avx2"))) static std::uint32_t marks(const wchar_t* pBlock)
    {
        constexpr EscapeMarks kMarks = Rule::kMarks;
        const __m256i tByLowBits = _mm256_broadcastsi128_si256(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(Rule::kMarks.aByLowBits.data())));
        std::uint32_t nMarks = 0;
#pragma GCC unroll 2
        for (int nAt = 0; nAt < knEscapeBlock; nAt += knLanes)
        {
            const __m256i t = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pBlock + nAt));
            __m256i tFound = _mm256_cmpeq_epi32(_mm256_shuffle_epi8(tByLowBits, t), t);
            tFound = _mm256_or_si256(tFound, _mm256_cmpgt_epi32(_mm256_set1_epi32(0x20), t));
            if constexpr (kMarks.nOther != 0)
                tFound =
                    _mm256_or_si256(tFound, _mm256_cmpeq_epi32(t, _mm256_set1_epi32(static_cast<int>(kMarks.nOther))));
            if constexpr (kMarks.nPair != 0)
                tFound = _mm256_or_si256(tFound, _mm256_cmpeq_epi32(_mm256_or_si256(t, _mm256_set1_epi32(1)),
                                                                    _mm256_set1_epi32(static_cast<int>(kMarks.nPair))));
            if constexpr (kMarks.nFirstHigh != EscapeMarks::knNever)
                tFound = _mm256_or_si256(
                    tFound, _mm256_cmpgt_epi32(t, _mm256_set1_epi32(static_cast<int>(kMarks.nFirstHigh) - 1)));
            nMarks |= static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(tFound))) << nAt;
        }
        return nMarks;
    }

    __attribute__((target("avx2"))) static void copy(const wchar_t* pBlock, wchar_t* pTarget)
    {
#pragma GCC unroll 2
        for (int nAt = 0; nAt < knEscapeBlock; nAt += knLanes)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTarget + nAt),
                                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pBlock + nAt)));
    }
};
#endif

// The walk encodes block by block until the source ends or the target has too little room for the next one, up to
// `pTargetEnd`; what lies behind the result up to there may be overwritten. A block is stored as it is at once. The
// marks in it are then known together: the text of each is stored over it, and the rest of the block behind that once
// more. So clean text costs a comparison and a copy, and the only branch that can be guessed wrongly is on the number
// of marks in a block.
template <class Rule>
class VectorEscaper
{
public:
    static EscapeWalk walk(VectorLevel eLevel, EscapeWalk tWalk, const wchar_t* pSourceEnd, const wchar_t* pTargetEnd)
    {
#if defined(__x86_64__)
        if (eLevel == VectorLevel::kV3)
            return walkV3(tWalk, pSourceEnd, pTargetEnd);
        if (eLevel == VectorLevel::kV2)
            return walkV2(tWalk, pSourceEnd, pTargetEnd);
#endif
        return walkWith<PortableBlock<Rule>>(tWalk, pSourceEnd, pTargetEnd);
    }

private:
    // A block is stored up to a whole block behind its end, and each mark may take this many characters more than one.
    static constexpr std::ptrdiff_t knStored = 2 * knEscapeBlock + EscapeTable::knPadded;
    static constexpr std::ptrdiff_t knMostGrowth = EscapeTable::knLongest - 1;

#if defined(__x86_64__)
    __attribute__((target("avx2"))) static EscapeWalk walkV3(EscapeWalk tWalk, const wchar_t* pSourceEnd,
                                                             const wchar_t* pTargetEnd)
    {
        return walkWith<V3Block<Rule>>(tWalk, pSourceEnd, pTargetEnd);
    }

    __attribute__((target("ssse3"))) static EscapeWalk walkV2(EscapeWalk tWalk, const wchar_t* pSourceEnd,
                                                              const wchar_t* pTargetEnd)
    {
        return walkWith<V2Block<Rule>>(tWalk, pSourceEnd, pTargetEnd);
    }
#endif

    template <class Block>
    [[gnu::always_inline]] static EscapeWalk walkWith(EscapeWalk tWalk, const wchar_t* pSourceEnd,
                                                      const wchar_t* pTargetEnd)
    {
        for (std::ptrdiff_t nRest; (nRest = pSourceEnd - tWalk.pSource) >= knEscapeBlock;)
        {
            const std::uint32_t nMarks = Block::marks(tWalk.pSource);
            if (!hasRoom(tWalk.pTarget, pTargetEnd, nMarks))
                return tWalk;
            // Behind a mark a whole block is read again.
            if (nMarks != 0 && nRest < 2 * knEscapeBlock)
                break;
            tWalk = {tWalk.pSource + knEscapeBlock, store<Block>(tWalk.pSource, knEscapeBlock, nMarks, tWalk.pTarget)};
        }
        return tWalk.pSource == pSourceEnd ? tWalk : walkEnd<Block>(tWalk, pSourceEnd, pTargetEnd);
    }

    // The end is read from a copy, behind which there is something to read.
    template <class Block>
    [[gnu::always_inline]] static EscapeWalk walkEnd(EscapeWalk tWalk, const wchar_t* pSourceEnd,
                                                     const wchar_t* pTargetEnd)
    {
        wchar_t aEnd[3 * knEscapeBlock] = {};
        const std::ptrdiff_t nEnd = pSourceEnd - tWalk.pSource;
        std::memcpy(aEnd, tWalk.pSource, static_cast<std::size_t>(nEnd) * sizeof(wchar_t));
        for (std::ptrdiff_t nAt = 0; nAt < nEnd; nAt += knEscapeBlock)
        {
            const std::ptrdiff_t nCount = std::min(nEnd - nAt, knEscapeBlock);
            const std::uint32_t nMarks = Block::marks(aEnd + nAt) & ((std::uint32_t{1} << nCount) - 1);
            if (!hasRoom(tWalk.pTarget, pTargetEnd, nMarks))
                return tWalk;
            tWalk = {tWalk.pSource + nCount, store<Block>(aEnd + nAt, nCount, nMarks, tWalk.pTarget)};
        }
        return tWalk;
    }

    static bool hasRoom(const wchar_t* pTarget, const wchar_t* pTargetEnd, std::uint32_t nMarks)
    {
        return pTargetEnd - pTarget >= knStored + knMostGrowth * std::popcount(nMarks);
    }

    // Stores `nCount` characters; a whole block more of the source can be read.
    template <class Block>
    [[gnu::always_inline]] static wchar_t* store(const wchar_t* pBlock, std::ptrdiff_t nCount, std::uint32_t nMarks,
                                                 wchar_t* pTarget)
    {
        Block::copy(pBlock, pTarget);
        const wchar_t* pRest = pBlock;
        for (; nMarks != 0; nMarks &= nMarks - 1)
        {
            const wchar_t* const pMark = pBlock + std::countr_zero(nMarks);
            const std::uint8_t nClass = escapeClassOf<Rule>(*pMark);
            pTarget += pMark - pRest;
            std::memcpy(pTarget, Rule::kTable.textOf(nClass), EscapeTable::knPadded * sizeof(wchar_t));
            if (nClass == EscapeTable::knClean)
                *pTarget = *pMark;
            pTarget += Rule::kTable.lengthOf(nClass);
            pRest = pMark + 1;
            Block::copy(pRest, pTarget);
        }
        return pTarget + (pBlock + nCount - pRest);
    }
};

}  // namespace tov

#pragma once

// Digits as text: what the decimals, doubles and integers share when they are written for display. Internal to this
// library's sources and their tests.

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "webbedrock/stringbuffer.h"

namespace tov {

__extension__ typedef unsigned __int128 UInt128;

inline constexpr unsigned kMaxDigits64 = 20;
inline constexpr unsigned kMaxDigits128 = 39;

// What can be asked for without asking for absurd amounts of memory; see floatingpointutils.h.
inline constexpr unsigned kMaxFractionDigits = 65536;
inline constexpr int kMaxPower10 = 65536;

inline constexpr std::uint64_t kTenTo8 = 100'000'000;
inline constexpr std::uint64_t kTenTo16 = kTenTo8 * kTenTo8;
inline constexpr std::uint64_t kTenTo19 = kTenTo16 * 1000;

// 10^0 to 10^38, every power of ten below 2^128.
inline constexpr std::array<UInt128, kMaxDigits128> kPowersOf10 = []
{
    std::array<UInt128, kMaxDigits128> aPowers{};
    aPowers[0] = 1;
    for (unsigned n = 1; n < kMaxDigits128; ++n)
        aPowers[n] = aPowers[n - 1] * 10;
    return aPowers;
}();

inline constexpr std::array<char, 200> kDigitPairs = []
{
    std::array<char, 200> aPairs{};
    for (unsigned n = 0; n < 100; ++n)
    {
        aPairs[2 * n] = static_cast<char>('0' + n / 10);
        aPairs[2 * n + 1] = static_cast<char>('0' + n % 10);
    }
    return aPairs;
}();

// The number of decimal digits; 0 has none.
inline unsigned countDigits(std::uint64_t nValue)
{
    // 1233 / 4096 is a little below log10(2): never too many, at most one missing.
    const unsigned nEstimate = static_cast<unsigned>(std::bit_width(nValue)) * 1233U >> 12;
    return nEstimate + (nValue >= static_cast<std::uint64_t>(kPowersOf10[nEstimate]) ? 1 : 0);
}

inline unsigned countDigits(UInt128 nValue)
{
    const std::uint64_t nHigh = static_cast<std::uint64_t>(nValue >> 64);
    if (nHigh == 0)
        return countDigits(static_cast<std::uint64_t>(nValue));
    const unsigned nEstimate = (64 + static_cast<unsigned>(std::bit_width(nHigh))) * 1233U >> 12;
    return nEstimate + (nValue >= kPowersOf10[nEstimate] ? 1 : 0);
}

inline void writePair(char* pOut, unsigned nPair)
{
    std::memcpy(pOut, &kDigitPairs[2 * nPair], 2);
}

// Exactly eight digits of a value below 10^8.
inline void writeEightDigits(char* pOut, std::uint32_t nValue)
{
    const std::uint32_t nHigh = nValue / 10000;
    const std::uint32_t nLow = nValue % 10000;
    writePair(pOut, nHigh / 100);
    writePair(pOut + 2, nHigh % 100);
    writePair(pOut + 4, nLow / 100);
    writePair(pOut + 6, nLow % 100);
}

// Exactly nineteen digits of a value below 10^19.
inline void writeNineteenDigits(char* pOut, std::uint64_t nValue)
{
    const unsigned nTop = static_cast<unsigned>(nValue / kTenTo16);
    const std::uint64_t nRest = nValue % kTenTo16;
    pOut[0] = static_cast<char>('0' + nTop / 100);
    writePair(pOut + 1, nTop % 100);
    writeEightDigits(pOut + 3, static_cast<std::uint32_t>(nRest / kTenTo8));
    writeEightDigits(pOut + 11, static_cast<std::uint32_t>(nRest % kTenTo8));
}

// The last `nCount` digits of `nValue`, with leading zeros where it has fewer.
inline void writeLastDigits(char* pOut, std::uint64_t nValue, unsigned nCount)
{
    char* pEnd = pOut + nCount;
    for (; pEnd - pOut >= 8; pEnd -= 8, nValue /= kTenTo8)
        writeEightDigits(pEnd - 8, static_cast<std::uint32_t>(nValue % kTenTo8));
    for (; pEnd - pOut >= 2; pEnd -= 2, nValue /= 100)
        writePair(pEnd - 2, static_cast<unsigned>(nValue % 100));
    if (pEnd != pOut)
        *pOut = static_cast<char>('0' + nValue % 10);
}

// The digits of `nValue` without leading zeros; returns how many. `pOut` has room for 20.
inline unsigned writeDigits(char* pOut, std::uint64_t nValue)
{
    const unsigned nCount = countDigits(nValue);
    writeLastDigits(pOut, nValue, nCount);
    return nCount;
}

// The same; `pOut` has room for 39.
unsigned writeDigits(char* pOut, UInt128 nValue);

// Appends the digits of the number with `nLimbs` limbs of 64 bits, lowest first, without leading zeros; none for zero.
// Up to two limbs: no heap, divisions by constants only. Quadratic in the number of limbs.
void appendDigits(StringBufferBaseTemplate<char>& tBuffer, const unsigned long long* pLimbs, std::size_t nLimbs);

// Turns the contents of `tBuffer`, digits d, into the digits of d x 10^nExponent, rounded to `nFractionDigits` places
// (halves away from zero), every fraction place included; returns how many digits stand left of the point. The contents
// are empty (zero) or do not begin with "0". The caller has bounded `nExponent`; more than kMaxFractionDigits count as
// that.
int placeDigits(StringBufferBaseTemplate<char>& tBuffer, std::int64_t nExponent, unsigned nFractionDigits);

// The same for digits that stand elsewhere: they replace the contents of `tBuffer`.
int placeDigits(StringBufferBaseTemplate<char>& tBuffer, std::string_view sDigits, std::int64_t nExponent,
                unsigned nFractionDigits);

}  // namespace tov

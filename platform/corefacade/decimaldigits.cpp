#include "corefacade/decimaldigits.h"

#include <algorithm>
#include <vector>

namespace tov {

namespace {

// 10^19 has its top bit set, so that dividing two limbs by it needs no shifting: two multiplications and at most two
// corrections, with the reciprocal floor((2^128 - 1) / 10^19) - 2^64.
constexpr std::uint64_t kReciprocal = static_cast<std::uint64_t>(~UInt128{0} / kTenTo19 - (UInt128{1} << 64));

struct QuotientAndRemainder
{
    std::uint64_t m_nQuotient;
    std::uint64_t m_nRemainder;
};

// `nHigh` is below 10^19.
QuotientAndRemainder divideTwoLimbs(std::uint64_t nHigh, std::uint64_t nLow)
{
    const UInt128 nEstimate = UInt128{kReciprocal} * nHigh + ((UInt128{nHigh} << 64) | nLow);
    std::uint64_t nQuotient = static_cast<std::uint64_t>(nEstimate >> 64) + 1;
    std::uint64_t nRemainder = nLow - nQuotient * kTenTo19;
    if (nRemainder > static_cast<std::uint64_t>(nEstimate))
    {
        --nQuotient;
        nRemainder += kTenTo19;
    }
    if (nRemainder >= kTenTo19)
    {
        ++nQuotient;
        nRemainder -= kTenTo19;
    }
    return {nQuotient, nRemainder};
}

// Divides in place, lowest limb first in memory; returns the remainder.
std::uint64_t divideByTenTo19(std::uint64_t* pLimbs, std::size_t nLimbs)
{
    std::uint64_t nRemainder = 0;
    for (std::size_t n = nLimbs; n-- > 0;)
    {
        const QuotientAndRemainder tStep = divideTwoLimbs(nRemainder, pLimbs[n]);
        pLimbs[n] = tStep.m_nQuotient;
        nRemainder = tStep.m_nRemainder;
    }
    return nRemainder;
}

// How many groups of nineteen digits `nLimbs` limbs hold at most: one has 63.1 bits.
constexpr std::size_t groupsOf(std::size_t nLimbs)
{
    return nLimbs + nLimbs / 64 + 1;
}

// Uses up the limbs and writes over the groups.
void appendGroups(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t* pLimbs, std::size_t nLimbs,
                  std::uint64_t* pGroups)
{
    std::size_t nGroups = 0;
    while (nLimbs > 0)
    {
        pGroups[nGroups++] = divideByTenTo19(pLimbs, nLimbs);
        while (nLimbs > 0 && pLimbs[nLimbs - 1] == 0)
            --nLimbs;
    }
    if (!tBuffer.reserveFree(nGroups * 19))
        return;
    tBuffer.advance(writeDigits(tBuffer.freePlace(), pGroups[nGroups - 1]));
    for (std::size_t n = nGroups - 1; n-- > 0; tBuffer.advance(19))
        writeNineteenDigits(tBuffer.freePlace(), pGroups[n]);
}

// More than two limbs. Up to four, as quotients have them, need no heap.
void appendLongDigits(StringBufferBaseTemplate<char>& tBuffer, const unsigned long long* pLimbs, std::size_t nLimbs)
{
    constexpr std::size_t kInlineLimbs = 4;
    if (nLimbs <= kInlineLimbs)
    {
        std::uint64_t aLimbs[kInlineLimbs];
        std::uint64_t aGroups[groupsOf(kInlineLimbs)];
        std::copy_n(pLimbs, nLimbs, aLimbs);
        appendGroups(tBuffer, aLimbs, nLimbs, aGroups);
        return;
    }
    std::vector<std::uint64_t> vLimbs(pLimbs, pLimbs + nLimbs);
    std::vector<std::uint64_t> vGroups(groupsOf(nLimbs));
    appendGroups(tBuffer, vLimbs.data(), nLimbs, vGroups.data());
}

// Adds one to the number written in the digits [pFirst, pEnd); false when all were nines and are zeros now.
bool increment(char* pFirst, char* pEnd)
{
    while (pEnd != pFirst)
    {
        --pEnd;
        if (*pEnd != '9')
        {
            ++*pEnd;
            return true;
        }
        *pEnd = '0';
    }
    return false;
}

// Keeps the first `nKept` digits, rounded.
void roundAt(StringBufferBaseTemplate<char>& tBuffer, std::size_t nKept)
{
    const bool bUp = tBuffer[nKept] >= '5';
    tBuffer.truncate(nKept);
    if (!bUp || increment(tBuffer.freePlace() - nKept, tBuffer.freePlace()))
        return;
    // All nines: a one and as many zeros.
    tBuffer.append('0');
    tBuffer[0] = '1';
}

void insertZeros(StringBufferBaseTemplate<char>& tBuffer, std::size_t nZeros)
{
    const std::size_t nDigits = tBuffer.length();
    tBuffer.appendRepeated('0', nZeros);
    if (tBuffer.length() == nDigits)
        return;
    std::memmove(&tBuffer[nZeros], &tBuffer[0], nDigits);
    std::memset(&tBuffer[0], '0', nZeros);
}

}  // namespace

unsigned writeDigits(char* pOut, UInt128 nValue)
{
    const std::uint64_t nLow = static_cast<std::uint64_t>(nValue);
    const std::uint64_t nHigh = static_cast<std::uint64_t>(nValue >> 64);
    if (nHigh == 0)
        return writeDigits(pOut, nLow);
    // The upper limb holds 10^19 once at most, which needs no division.
    const std::uint64_t nTop = nHigh >= kTenTo19 ? 1 : 0;
    const QuotientAndRemainder tLast = divideTwoLimbs(nHigh - nTop * kTenTo19, nLow);
    unsigned nCount = 0;
    if (nTop == 0 && tLast.m_nQuotient < kTenTo19)
    {
        nCount = writeDigits(pOut, tLast.m_nQuotient);
    }
    else
    {
        const QuotientAndRemainder tMiddle = divideTwoLimbs(nTop, tLast.m_nQuotient);
        nCount = writeDigits(pOut, tMiddle.m_nQuotient);
        writeNineteenDigits(pOut + nCount, tMiddle.m_nRemainder);
        nCount += 19;
    }
    writeNineteenDigits(pOut + nCount, tLast.m_nRemainder);
    return nCount + 19;
}

void appendDigits(StringBufferBaseTemplate<char>& tBuffer, const unsigned long long* pLimbs, std::size_t nLimbs)
{
    if (nLimbs > 2)
    {
        appendLongDigits(tBuffer, pLimbs, nLimbs);
        return;
    }
    const UInt128 nHigh = nLimbs == 2 ? pLimbs[1] : 0;
    if (tBuffer.reserveFree(kMaxDigits128))
        tBuffer.advance(writeDigits(tBuffer.freePlace(), nHigh << 64 | pLimbs[0]));
}

int placeDigits(StringBufferBaseTemplate<char>& tBuffer, std::int64_t nExponent, unsigned nFractionDigits)
{
    const std::int64_t nPlaces = std::min(nFractionDigits, kMaxFractionDigits);
    const std::int64_t nDigits = static_cast<std::int64_t>(tBuffer.length());
    const std::int64_t nKept = nDigits + nExponent + nPlaces;
    if (nDigits == 0 || nKept < 0)
        tBuffer.clear();
    else if (nKept < nDigits)
        roundAt(tBuffer, static_cast<std::size_t>(nKept));
    else
        tBuffer.appendRepeated('0', static_cast<std::size_t>(nKept - nDigits));
    const std::int64_t nWritten = static_cast<std::int64_t>(tBuffer.length());
    if (nWritten >= nPlaces)
        return static_cast<int>(nWritten - nPlaces);
    insertZeros(tBuffer, static_cast<std::size_t>(nPlaces - nWritten));
    return 0;
}

int placeDigits(StringBufferBaseTemplate<char>& tBuffer, std::string_view sDigits, std::int64_t nExponent,
                unsigned nFractionDigits)
{
    tBuffer.clear();
    tBuffer.append(sDigits);
    return placeDigits(tBuffer, nExponent, nFractionDigits);
}

}  // namespace tov

#include <cstdint>

#include "webbedrock/encoding.h"

namespace tov {

namespace {

constexpr wchar_t kHexDigits[] = L"0123456789ABCDEF";
constexpr wchar_t kBase64Digits[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr wchar_t kPadding = L'=';
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupDigits = 4;

void writeGroup(std::uint32_t nBits, wchar_t* pTarget)
{
    for (unsigned nDigit = 0; nDigit < kGroupDigits; ++nDigit)
        pTarget[nDigit] = kBase64Digits[(nBits >> (18 - 6 * nDigit)) & 0x3F];
}

std::uint32_t groupBits(unsigned char nFirst, unsigned char nSecond, unsigned char nThird)
{
    return std::uint32_t{nFirst} << 16 | std::uint32_t{nSecond} << 8 | nThird;
}

}  // namespace

B2WEncodingHex::B2WEncodingHex() = default;
B2WEncodingHex::~B2WEncodingHex() = default;

std::size_t B2WEncodingHex::estimateEncodingSize(std::size_t nLength) const
{
    return 2 * nLength;
}

std::size_t B2WEncodingHex::encode(const unsigned char* pSource, std::size_t nSource, wchar_t* pTarget,
                                   std::size_t nCapacity, EncodingState&) const
{
    if (nSource > nCapacity / 2)
        return knTooSmall;
    for (std::size_t nAt = 0; nAt < nSource; ++nAt)
    {
        *pTarget++ = kHexDigits[pSource[nAt] >> 4];
        *pTarget++ = kHexDigits[pSource[nAt] & 0xF];
    }
    return 2 * nSource;
}

B2TEncodingBase64::B2TEncodingBase64() = default;
B2TEncodingBase64::~B2TEncodingBase64() = default;

std::size_t B2TEncodingBase64::estimateEncodingSize(std::size_t nLength) const
{
    return nLength / kGroupBytes * kGroupDigits + kGroupDigits;
}

std::size_t B2TEncodingBase64::encode(const unsigned char* pSource, std::size_t nSource, wchar_t* pTarget,
                                      std::size_t nCapacity, EncodingState& tState) const
{
    const std::size_t nGroups = nSource / kGroupBytes + (nSource % kGroupBytes + tState.nPending) / kGroupBytes;
    if (nGroups > nCapacity / kGroupDigits)
        return knTooSmall;
    const unsigned char* const pEnd = pSource + nSource;
    for (std::size_t nGroup = 0; nGroup < nGroups; ++nGroup, pTarget += kGroupDigits)
    {
        unsigned char aBytes[kGroupBytes];
        for (std::size_t nByte = 0; nByte < kGroupBytes; ++nByte)
            aBytes[nByte] = nByte < tState.nPending ? tState.aPending[nByte] : *pSource++;
        tState.nPending = 0;
        writeGroup(groupBits(aBytes[0], aBytes[1], aBytes[2]), pTarget);
    }
    while (pSource != pEnd)
        tState.aPending[tState.nPending++] = *pSource++;
    return nGroups * kGroupDigits;
}

std::size_t B2TEncodingBase64::finish(wchar_t* pTarget, std::size_t nCapacity, EncodingState& tState) const
{
    if (tState.nPending == 0)
        return 0;
    if (nCapacity < kGroupDigits)
        return knTooSmall;
    writeGroup(groupBits(tState.aPending[0], tState.nPending == 2 ? tState.aPending[1] : 0, 0), pTarget);
    pTarget[3] = kPadding;
    if (tState.nPending == 1)
        pTarget[2] = kPadding;
    tState.nPending = 0;
    return kGroupDigits;
}

}  // namespace tov

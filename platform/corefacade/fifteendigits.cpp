#include <array>
#include <bit>
#include <cstdint>

#include "corefacade/decimaldigits.h"
#include "corefacade/fastdecimal.h"

namespace tov {

namespace {

// The powers by which the least and the largest double become numbers of 15 or 16 digits.
constexpr int kLeastPower = -294;
constexpr int kLargestPower = 338;
constexpr std::uint64_t kTenTo15 = 1'000'000'000'000'000;

// The first 128 bits of 10^k: 10^k is m_nBits x 2^(floor(k x log2(10)) - 127) and at most one in the last place more.
using PowerTable = std::array<UInt128, kLargestPower - kLeastPower + 1>;

// A number from 1/2 to below 1 in 256 bits, the highest limb first, that is multiplied and divided by five. What each
// step cuts off is below 2^-252; after 338 steps the first 128 bits are still right but for the last place.
class Fixed
{
public:
    constexpr UInt128 top() const { return UInt128{m_aLimbs[0]} << 64 | m_aLimbs[1]; }

    constexpr void timesFive()
    {
        std::uint64_t nCarry = 0;
        for (std::size_t n = m_aLimbs.size(); n-- > 0;)
        {
            const UInt128 nProduct = UInt128{m_aLimbs[n]} * 5 + nCarry;
            m_aLimbs[n] = static_cast<std::uint64_t>(nProduct);
            nCarry = static_cast<std::uint64_t>(nProduct >> 64);
        }
        const int nShift = static_cast<int>(std::bit_width(nCarry));
        for (std::uint64_t& nLimb : m_aLimbs)
        {
            const std::uint64_t nHigher = nCarry;
            nCarry = nLimb;
            nLimb = nHigher << (64 - nShift) | nLimb >> nShift;
        }
    }

    constexpr void byFive()
    {
        std::uint64_t nRemainder = 0;
        for (std::uint64_t& nLimb : m_aLimbs)
        {
            const UInt128 nPart = UInt128{nRemainder} << 64 | nLimb;
            nLimb = static_cast<std::uint64_t>(nPart / 5);
            nRemainder = static_cast<std::uint64_t>(nPart % 5);
        }
        const int nShift = std::countl_zero(m_aLimbs[0]);
        for (std::size_t n = 0; n < m_aLimbs.size(); ++n)
        {
            const std::uint64_t nLower = n + 1 < m_aLimbs.size() ? m_aLimbs[n + 1] : 0;
            m_aLimbs[n] = m_aLimbs[n] << nShift | nLower >> (64 - nShift);
        }
    }

private:
    std::array<std::uint64_t, 4> m_aLimbs = {1ULL << 63, 0, 0, 0};
};

constexpr PowerTable kPowers = []
{
    PowerTable aPowers{};
    Fixed tUp;
    for (int nPower = 0; nPower <= kLargestPower; ++nPower, tUp.timesFive())
        aPowers[static_cast<std::size_t>(nPower - kLeastPower)] = tUp.top();
    Fixed tDown;
    for (int nPower = -1; nPower >= kLeastPower; --nPower)
    {
        tDown.byFive();
        aPowers[static_cast<std::size_t>(nPower - kLeastPower)] = tDown.top();
    }
    return aPowers;
}();

// floor(n x log10(2)) and floor(n x log2(10)), exact for every n that occurs.
constexpr int log10OfPowerOf2(int nPower)
{
    return nPower * 315653 >> 20;
}
constexpr int log2OfPowerOf10(int nPower)
{
    return nPower * 1741647 >> 19;
}

// A double as a mantissa with its top bit set and the power of two of that bit.
struct Binary
{
    std::uint64_t m_nMantissa;
    int m_nPower;
};

Binary split(double fMagnitude)
{
    constexpr int kMantissaBits = 52;
    const std::uint64_t nBits = std::bit_cast<std::uint64_t>(fMagnitude);
    const int nBiased = static_cast<int>(nBits >> kMantissaBits);
    const std::uint64_t nFraction = nBits & ((1ULL << kMantissaBits) - 1);
    const std::uint64_t nMantissa = nBiased == 0 ? nFraction : nFraction | 1ULL << kMantissaBits;
    const int nZeros = std::countl_zero(nMantissa);
    return {nMantissa << nZeros, (nBiased == 0 ? 1 : nBiased) - 1023 + 11 - nZeros};
}

// The upper 128 of the 192 bits of a product; what is cut off is below 1.
UInt128 multiplyHigh(std::uint64_t nLeft, UInt128 nRight)
{
    const UInt128 nLow = UInt128{nLeft} * static_cast<std::uint64_t>(nRight);
    return UInt128{nLeft} * static_cast<std::uint64_t>(nRight >> 64) + (nLow >> 64);
}

}  // namespace

bool roundToFifteenDigits(double fMagnitude, std::uint64_t& nDigits, int& nExponent)
{
    const Binary tValue = split(fMagnitude);
    // The value has this power of ten in front, or the next one: scaled, it has 15 or 16 digits before the point.
    const int nPower = 14 - log10OfPowerOf2(tValue.m_nPower);
    const UInt128 nScaled = multiplyHigh(tValue.m_nMantissa, kPowers[static_cast<std::size_t>(nPower - kLeastPower)]);
    // The power and the product are cut off: the scaled value is in [nScaled, nScaled + 2), with this many bits behind
    // its point.
    const int nFractionBits = 126 - tValue.m_nPower - log2OfPowerOf10(nPower);
    const std::uint64_t nWhole = static_cast<std::uint64_t>(nScaled >> nFractionBits);
    const unsigned nDivisor = nWhole >= kTenTo15 ? 10 : 1;
    nDigits = nWhole / nDivisor;
    nExponent = (nDivisor == 10 ? 1 : 0) - nPower;
    const UInt128 nRest = nScaled - (UInt128{nDigits * nDivisor} << nFractionBits);
    const UInt128 nHalf = UInt128{nDivisor} << (nFractionBits - 1);
    nDigits += nRest > nHalf ? 1 : 0;
    return nRest > nHalf || nRest + 2 < nHalf;
}

}  // namespace tov

#include "corefacade/fastdecimal.h"

namespace tov {

namespace {

constexpr int kLeastPlaces = -static_cast<int>(kDoublePowers.size()) + 1;
constexpr int kMostPlaces = static_cast<int>(kWholePowers.size()) - 1;

// The most powers of ten that a number of 15 digits is multiplied by within 64 bits.
constexpr int kMostRaise = 3;

// Splits nDigits x 10^-nBehind, halves away from zero; `nBehind` is 1 to 18.
void splitAtPoint(std::int64_t nDigits, unsigned nBehind, unsigned nPlaces, DecimalParts& tParts)
{
    const std::int64_t nRest = nDigits % kWholePowers[nBehind];
    tParts.nWhole = nDigits / kWholePowers[nBehind];
    if (nBehind <= nPlaces)
    {
        tParts.nFraction = nRest * kWholePowers[nPlaces - nBehind];
        return;
    }
    const std::int64_t nUnit = kWholePowers[nBehind - nPlaces];
    const std::int64_t nFraction = (nRest + nUnit / 2) / nUnit;
    const std::int64_t nCarry = nFraction >= kWholePowers[nPlaces];
    tParts.nWhole += nCarry;
    tParts.nFraction = nFraction - nCarry * kWholePowers[nPlaces];
}

}  // namespace

bool roundLongToParts(double fMagnitude, unsigned nPlaces, DecimalParts& tParts)
{
    constexpr double kMost = 1e18;
    std::uint64_t nDigits = 0;
    int nExponent = 0;
    if (!(fMagnitude < kMost) || fMagnitude == 0 || !roundToFifteenDigits(fMagnitude, nDigits, nExponent) ||
        nExponent < -kMostPlaces || nExponent > kMostRaise)
        return false;
    const std::int64_t nSigned = static_cast<std::int64_t>(nDigits);
    if (nExponent < 0)
        splitAtPoint(nSigned, static_cast<unsigned>(-nExponent), nPlaces, tParts);
    else
        tParts = {nSigned * kWholePowers[static_cast<unsigned>(nExponent)], 0};
    return true;
}

bool roundToUnits(double fMagnitude, int nPlaces, std::uint64_t& nUnits)
{
    if (nPlaces < kLeastPlaces || nPlaces > kMostPlaces)
        return false;
    const bool bDivide = nPlaces < 0;
    const unsigned nMultiplied = bDivide ? 0 : static_cast<unsigned>(nPlaces);
    DecimalParts tParts;
    const bool bSure = roundToParts(bDivide ? fMagnitude / kDoublePowers[static_cast<unsigned>(-nPlaces)] : fMagnitude,
                                    nMultiplied, tParts);
    nUnits = static_cast<std::uint64_t>(tParts.nWhole * kWholePowers[nMultiplied] + tParts.nFraction);
    return bSure;
}

}  // namespace tov

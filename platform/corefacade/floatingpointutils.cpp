#include "corefacade/floatingpointutils.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "corefacade/decimaldigits.h"
#include "corefacade/fastdecimal.h"

namespace tov {

namespace {

// No double has more significant digits.
constexpr int kMaxDoubleDigits = 767;

int bounded(int nPower10)
{
    return std::clamp(nPower10, -kMaxPower10, kMaxPower10);
}

// A magnitude in units of 10^-nPlaces as digits with all their places.
int placeUnits(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t nUnits, unsigned nPlaces)
{
    tBuffer.clear();
    const unsigned nDigits = std::max(countDigits(nUnits), nPlaces);
    if (!tBuffer.reserveFree(nDigits))
        return 0;
    writeLastDigits(tBuffer.freePlace(), nUnits, nDigits);
    tBuffer.advance(nDigits);
    return static_cast<int>(nDigits - nPlaces);
}

// The digits of `nDigits` x 10^nExponent with all their places.
int placeWhole(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t nDigits, int nExponent, unsigned nPlaces)
{
    tBuffer.clear();
    if (!tBuffer.reserveFree(kMaxDigits64))
        return 0;
    tBuffer.advance(writeDigits(tBuffer.freePlace(), nDigits));
    return placeDigits(tBuffer, nExponent, nPlaces);
}

// Printed exactly: "d.ddde-12", or "de-12" with one digit.
int placePrinted(StringBufferBaseTemplate<char>& tBuffer, double fMagnitude, unsigned nFractionDigits, int nPower10,
                 int nSignificantDigits)
{
    char aText[kMaxDoubleDigits + 16];
    const char* pEnd =
        std::to_chars(aText, aText + sizeof(aText), fMagnitude, std::chars_format::scientific, nSignificantDigits - 1)
            .ptr;
    // The first digit takes the place of the point, so that all digits stand together.
    char* pDigits = nSignificantDigits == 1 ? aText : aText + 1;
    *pDigits = aText[0];
    const char* pExponent = pDigits + nSignificantDigits + 1;
    if (*pExponent == '+')
        ++pExponent;
    int nExponent = 0;
    std::from_chars(pExponent, pEnd, nExponent);
    return placeDigits(tBuffer, std::string_view(pDigits, static_cast<std::size_t>(nSignificantDigits)),
                       nExponent + 1 - nSignificantDigits + nPower10, nFractionDigits);
}

}  // namespace

int FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(StringBufferBaseTemplate<char>& tBuffer, double fValue,
                                                               unsigned nFractionDigits, int nPower10,
                                                               int nMaxSignificantDigits)
{
    const double fMagnitude = std::fabs(fValue);
    if (!std::isfinite(fMagnitude) || fMagnitude == 0.0)
        return placeDigits(tBuffer, {}, 0, nFractionDigits);
    nPower10 = bounded(nPower10);
    nFractionDigits = std::min(nFractionDigits, kMaxFractionDigits);
    if (nMaxSignificantDigits == kFastSignificantDigits)
    {
        std::uint64_t nUnits = 0;
        int nExponent = 0;
        if (roundToUnits(fMagnitude, static_cast<int>(nFractionDigits) + nPower10, nUnits))
            return placeUnits(tBuffer, nUnits, nFractionDigits);
        if (roundToFifteenDigits(fMagnitude, nUnits, nExponent))
            return placeWhole(tBuffer, nUnits, nExponent + nPower10, nFractionDigits);
    }
    return placePrinted(tBuffer, fMagnitude, nFractionDigits, nPower10,
                        std::clamp(nMaxSignificantDigits, 1, kMaxDoubleDigits));
}

int FloatingPointUtils::getIntegerDigits(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t nMagnitude,
                                         unsigned nFractionDigits, int nPower10)
{
    if ((nFractionDigits | static_cast<unsigned>(nPower10)) == 0)
        return placeUnits(tBuffer, nMagnitude, 0);
    return placeWhole(tBuffer, nMagnitude, bounded(nPower10), nFractionDigits);
}

}  // namespace tov

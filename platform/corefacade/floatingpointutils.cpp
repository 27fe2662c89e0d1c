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

// "d.ddde-12" as its digits, moved together, and the power of ten of the last of them.
struct Scientific
{
    std::string_view m_sDigits;
    int m_nExponent;
};

Scientific splitScientific(char* pText, const char* pEnd)
{
    const char* pMark = std::find(pText, const_cast<char*>(pEnd), 'e');
    int nExponent = 0;
    const char* pNumber = pMark[1] == '+' ? pMark + 2 : pMark + 1;
    std::from_chars(pNumber, pEnd, nExponent);
    const std::size_t nDigits = pMark - pText == 1 ? 1 : static_cast<std::size_t>(pMark - pText) - 1;
    // The point stands behind the first digit: that digit takes its place.
    if (nDigits > 1)
    {
        pText[1] = pText[0];
        ++pText;
    }
    return {std::string_view(pText, nDigits), nExponent + 1 - static_cast<int>(nDigits)};
}

int placePrinted(StringBufferBaseTemplate<char>& tBuffer, double fMagnitude, unsigned nFractionDigits, int nPower10,
                 int nSignificantDigits)
{
    char aText[kMaxDoubleDigits + 16];
    const std::to_chars_result tEnd =
        std::to_chars(aText, aText + sizeof(aText), fMagnitude, std::chars_format::scientific, nSignificantDigits - 1);
    const Scientific tNumber = splitScientific(aText, tEnd.ptr);
    return placeDigits(tBuffer, tNumber.m_sDigits, tNumber.m_nExponent + nPower10, nFractionDigits);
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
    std::uint64_t nUnits = 0;
    if (nMaxSignificantDigits == kFastSignificantDigits &&
        roundToUnits(fMagnitude, static_cast<int>(nFractionDigits) + nPower10, nUnits))
        return placeUnits(tBuffer, nUnits, nFractionDigits);
    return placePrinted(tBuffer, fMagnitude, nFractionDigits, nPower10,
                        std::clamp(nMaxSignificantDigits, 1, kMaxDoubleDigits));
}

int FloatingPointUtils::getIntegerDigits(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t nMagnitude,
                                         unsigned nFractionDigits, int nPower10)
{
    if ((nFractionDigits | static_cast<unsigned>(nPower10)) == 0)
        return placeUnits(tBuffer, nMagnitude, 0);
    char aDigits[kMaxDigits64];
    const unsigned nDigits = writeDigits(aDigits, nMagnitude);
    return placeDigits(tBuffer, std::string_view(aDigits, nDigits), bounded(nPower10), nFractionDigits);
}

}  // namespace tov

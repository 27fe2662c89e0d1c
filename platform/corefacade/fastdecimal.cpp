#include "corefacade/fastdecimal.h"

#include <array>

namespace tov {

namespace {

constexpr int kLeastPlaces = -22;  // 10^22 is the largest power of ten that a double holds exactly
constexpr int kMostPlaces = 18;    // 10^18 fits 64 bits

constexpr std::array<double, 23> kDoublePowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr std::array<std::int64_t, kMostPlaces + 1> kWholePowers = []
{
    std::array<std::int64_t, kMostPlaces + 1> aPowers{1};
    for (unsigned n = 1; n < aPowers.size(); ++n)
        aPowers[n] = aPowers[n - 1] * 10;
    return aPowers;
}();

constexpr double kLimit = 1e14;

// Let X be the value in units and H the next half unit above its whole part: X has at most 14 digits before the point,
// so that H is a number of 15 digits. Rounding to 15 digits keeps the order, so what is at or above H stays there; what
// is below H becomes H, and goes up with it, when it is within half a unit of the fifteenth digit, which is more than
// 5e-16 and at most 5e-15 times X. The difference H - X is known here to 1.7e-16 times X (or X is below 1/4 and far
// from H).
constexpr double kSurelyUp = 3e-16;
constexpr double kSurelyDown = 5.2e-15;

struct Scaled
{
    std::int64_t m_nWhole;  // signed: converting to and from unsigned takes a branch
    double m_fFraction;     // of a unit, in [0, 1)
};

Scaled scaleUp(double fMagnitude, unsigned nPlaces)
{
    const std::int64_t nWhole = static_cast<std::int64_t>(fMagnitude);
    const double fRest = (fMagnitude - static_cast<double>(nWhole)) * kDoublePowers[nPlaces];
    const std::int64_t nRest = static_cast<std::int64_t>(fRest);
    return {nWhole * kWholePowers[nPlaces] + nRest, fRest - static_cast<double>(nRest)};
}

Scaled scaleDown(double fMagnitude, unsigned nPlaces)
{
    const double fUnits = fMagnitude / kDoublePowers[nPlaces];
    const std::int64_t nWhole = static_cast<std::int64_t>(fUnits);
    return {nWhole, fUnits - static_cast<double>(nWhole)};
}

}  // namespace

bool roundToUnits(double fMagnitude, int nPlaces, std::uint64_t& nUnits)
{
    if (nPlaces < kLeastPlaces || nPlaces > kMostPlaces)
        return false;
    const unsigned nPower = static_cast<unsigned>(nPlaces < 0 ? -nPlaces : nPlaces);
    const double fUnits = nPlaces < 0 ? fMagnitude / kDoublePowers[nPower] : fMagnitude * kDoublePowers[nPower];
    if (!(fUnits < kLimit))
        return false;
    const Scaled tScaled = nPlaces < 0 ? scaleDown(fMagnitude, nPower) : scaleUp(fMagnitude, nPower);
    const double fBelowHalf = 0.5 - tScaled.m_fFraction;
    const unsigned nUp = fBelowHalf <= kSurelyUp * fUnits;
    const unsigned nDown = fBelowHalf > kSurelyDown * fUnits;
    nUnits = static_cast<std::uint64_t>(tScaled.m_nWhole) + nUp;
    return (nUp | nDown) != 0;
}

}  // namespace tov

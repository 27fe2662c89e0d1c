#pragma once

// Rounding doubles to decimal places without printing them. Internal to this library's sources, tests and benchmarks.

#include <algorithm>
#include <array>
#include <cstdint>

namespace tov {

// The number of significant digits that the quick way rounds to before it rounds to places.
inline constexpr int kFastSignificantDigits = 15;

// Rounds a magnitude to 15 significant decimal digits (of its exact binary value) and then to `nPlaces` places after
// the point, halves away from zero; negative places count to the left of the point. `nUnits` is the result in units of
// 10^-nPlaces: 1.005, 2 -> 101.
//
// False, and `nUnits` is worth nothing, where this way is not sure: places outside -22 to 18, results of 10^14 units or
// more, and values so close to the boundary between two results that the error of two operations in double could hide
// on which side they are (about one amount in a million, rising to one number in ten near 10^14 units).
bool roundToUnits(double fMagnitude, int nPlaces, std::uint64_t& nUnits);

// 10^0 to 10^22, which a double holds exactly, and 10^0 to 10^18, which fit 64 bits.
inline constexpr std::array<double, 23> kDoublePowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline constexpr std::array<std::int64_t, 19> kWholePowers = []
{
    std::array<std::int64_t, 19> aPowers{1};
    for (unsigned n = 1; n < aPowers.size(); ++n)
        aPowers[n] = aPowers[n - 1] * 10;
    return aPowers;
}();

// A decimal number of at most 18 places: nWhole + nFraction / 10^nPlaces.
struct DecimalParts
{
    std::int64_t nWhole = 0;  // signed: converting between doubles and unsigned numbers takes a branch
    std::int64_t nFraction = 0;
};

// The same as `roundToUnits`, for 0 to 18 places, with the whole part apart. Without a branch that depends on the
// digits.
inline bool roundToParts(double fMagnitude, unsigned nPlaces, DecimalParts& tParts);

// The same for numbers that it leaves alone: rounded to 15 significant digits first. False past 10^19 and for what
// `roundToFifteenDigits` cannot tell.
bool roundLongToParts(double fMagnitude, unsigned nPlaces, DecimalParts& tParts);

// Rounds a positive magnitude to 15 significant decimal digits (of its exact binary value): it becomes
// `nDigits` x 10^nExponent with 10^14 <= nDigits <= 10^15.
//
// False, and the outputs are worth nothing, where the value is so close to the middle of two results that a
// multiplication with 128 bits of a power of ten does not tell them apart: exact ties, and otherwise about one value in
// 10^21.
bool roundToFifteenDigits(double fMagnitude, std::uint64_t& nDigits, int& nExponent);

// Results of this many units and more are left to the exact way.
inline constexpr double kFastLimit = 1e14;

// Let X be the value in units and H the next half unit above its whole part: X has at most 14 digits before the point,
// so that H is a number of 15 digits. Rounding to 15 digits keeps the order, so what is at or above H stays there; what
// is below H becomes H, and goes up with it, when it is within half a unit of the fifteenth digit, which is more than
// 5e-16 and at most 5e-15 times X. The difference H - X is known here to 1.7e-16 times X (or X is below 1/4 and far
// from H).
inline constexpr double kSurelyUp = 3e-16;
inline constexpr double kSurelyDown = 5.2e-15;

inline bool roundToParts(double fMagnitude, unsigned nPlaces, DecimalParts& tParts)
{
    const double fUnits = fMagnitude * kDoublePowers[nPlaces];
    if (!(fUnits < kFastLimit))
        return false;
    const std::int64_t nWhole = static_cast<std::int64_t>(fMagnitude);
    const double fRest = (fMagnitude - static_cast<double>(nWhole)) * kDoublePowers[nPlaces];
    const std::int64_t nRest = static_cast<std::int64_t>(fRest);
    const double fBelowHalf = 0.5 - (fRest - static_cast<double>(nRest));
    // One comparison in the end: half of all numbers go up, and no branch could guess which.
    const double fUp = kSurelyUp * fUnits - fBelowHalf;
    const double fDown = fBelowHalf - kSurelyDown * fUnits;
    const std::int64_t nFraction = nRest + (fUp >= 0);
    const std::int64_t nCarry = nFraction >= kWholePowers[nPlaces];
    tParts.nWhole = nWhole + nCarry;
    tParts.nFraction = nFraction - nCarry * kWholePowers[nPlaces];
    return std::max(fUp, fDown) >= 0;
}

}  // namespace tov

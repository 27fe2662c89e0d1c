#pragma once

// Rounding doubles to decimal places without printing them. Internal to this library's sources, tests and benchmarks.

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

// Rounds a positive magnitude to 15 significant decimal digits (of its exact binary value): it becomes
// `nDigits` x 10^nExponent with 10^14 <= nDigits <= 10^15.
//
// False, and the outputs are worth nothing, where the value is so close to the middle of two results that a
// multiplication with 128 bits of a power of ten does not tell them apart: exact ties, and otherwise about one value in
// 10^21.
bool roundToFifteenDigits(double fMagnitude, std::uint64_t& nDigits, int& nExponent);

}  // namespace tov

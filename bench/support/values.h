#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tov {

// The sets of 4,096 values that the benchmarks write: varied in sign and length, the same in every run.
//
// "One in eight" and the like are probabilities.

// Amounts of money as a table of sales has them: up to `nMaxIntegerDigits` digits and two decimals, every length as
// likely as any other; one in `nNegativeIn` negative.
std::vector<double> amounts(unsigned nNegativeIn, unsigned nMaxIntegerDigits = 9);

// Magnitudes from 10^-6 to 10^21, every power of ten as likely, with all binary digits; every second one negative.
std::vector<double> anyDoubles();

// Every number of bits up to 63 as likely; one in eight negative.
std::vector<std::int64_t> wholeNumbers();

// Decimals of 28 significant digits, two of them behind the point, as text: "-12345678901234567890123456.78"; one in
// eight negative.
std::vector<std::string> longDecimals();

// Moments from 1970 to 2037 in milliseconds since 1970-01-01 00:00:00 UTC, each as likely as any other.
std::vector<std::int64_t> moments();

// Whole and fractional seconds, from one second to three years, every length as likely; three decimals.
std::vector<double> durations();

// A text of 4,096 + `nLength` - 1 characters, so that every place below 4,096 starts a text of `nLength`. Letters and
// blanks, and in `nPercent` of a hundred characters one of `sMarked`.
std::wstring markedText(std::size_t nLength, unsigned nPercent, const std::wstring& sMarked);

// The places 0 to 4,095.
std::vector<std::size_t> textPlaces();

}  // namespace tov

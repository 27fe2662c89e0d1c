#pragma once

#include <cstdint>

#include "webbedrock/export.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// The decimal digits of doubles and integers, rounded for display.
//
// Both functions replace the contents of `tBuffer` by digits without sign, point or leading zeros before the point, and
// return the number of digits that stand left of the point. Every fraction place is there, so that this number is never
// negative: 0.05 with two fraction digits is "05" and 0. The digits of zero, and of what rounds to zero, are
// `nFractionDigits` times "0" and 0.
//
// Bounds: more than 65,536 fraction digits count as 65,536, a power of ten beyond +-65,536 as +-65,536. So a result has
// at most some 131,400 digits, and its last 61,440 integer digits are right whatever the power. No heap unless the
// buffer has to grow. Any thread.
class WEBFORMAT_EXPORT FloatingPointUtils
{
public:
    // The magnitude of `fValue` is rounded to `nMaxSignificantDigits` significant digits (of its exact binary value: to
    // nearest, exact ties to even), the point moves by `nPower10` places, and the decimal digits are rounded to
    // `nFractionDigits` places after the point, halves away from zero. With 15 significant digits and two fraction
    // digits: 1234.5 -> "123450", 4; 1.005 -> "101", 1; 2.675 -> "268", 1.
    //
    // `nMaxSignificantDigits` below 1 counts as 1; from 767 on the digits are exact. The sign is ignored. NaN and
    // infinite values count as zero: the caller shows them otherwise.
    static int getDoubleDigitsWithMaxSignficantDigits(StringBufferBaseTemplate<char>& tBuffer, double fValue,
                                                      unsigned nFractionDigits, int nPower10,
                                                      int nMaxSignificantDigits);

    // The digits of `nMagnitude` x 10^nPower10, exact but for the rounding to `nFractionDigits` places (halves away
    // from zero): 1250, 1, -3 -> "13", 1 (1.3); 7, 2, 0 -> "700", 1.
    static int getIntegerDigits(StringBufferBaseTemplate<char>& tBuffer, std::uint64_t nMagnitude,
                                unsigned nFractionDigits, int nPower10);
};

}  // namespace tov

#pragma once

#include <cstdint>
#include <string_view>

#include "project/webformat/numericprogram.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// What the walk over a program's steps asks of a value beyond its digits, for one value type.
struct NumericValueOperations
{
    static constexpr std::int64_t knOutside = -1;

    // The whole part of value x numerator / denominator where that lies from `nLeast` to `nMost`, else knOutside.
    std::int64_t (*wholePartWithin)(const void* pValue, std::uint64_t nNumerator, std::uint64_t nDenominator,
                                    std::int64_t nLeast, std::int64_t nMost);
    // Hands floor(numerator x magnitude) / denominator to the duration formatter.
    void (*formatDuration)(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue,
                           const NumericProgram::Special& tSpecial);
};

// One value, ready for the walk: its digits and the way back to the value itself.
struct NumericRendering
{
    std::string_view sDigits;                       // no sign, no point, trimmed
    int nDecimalPoint = 0;                          // digits left of the point
    bool bInfinite = false;                         // "INF" stands for the digits
    const NumericProgram::Scale* pScale = nullptr;  // the scale chosen for the value
    const void* pValue = nullptr;                   // signed
    const NumericValueOperations* pOperations = nullptr;
};

// Walks the steps of a section and appends what they write. The one walk for all value types; allocates only if the
// buffer has to grow.
void renderNumericSection(StringBufferBaseTemplate<wchar_t>& tBuffer, const NumericProgram& tProgram,
                          const NumericProgram::Section& tSection, const NumericRendering& tRendering);

// How many of the digits remain when the trailing zeros of optional fraction digits are dropped.
std::size_t trimmedLength(std::string_view sDigits, int nDecimalPoint, std::uint32_t nMinFractionDigits);

}  // namespace tov

#pragma once

#include <cstdint>

#include "webbedrock/string.h"

namespace tov {

// What a caller may ask of a numeric formatter beyond its definition; `WebValueFormatDefinition::FormatParameters`.
struct NumericFormatParameters
{
    enum MinMaxDigitOverride
    {
        kNoZeroOverride = 0,  // digit counts of 0 and 0 mean "not given"
        kZeroOverride = 1     // they mean no fraction digits
    };

    std::uint32_t nMinDigit = 0;  // minimum fraction digits
    std::uint32_t nMaxDigit = 0;  // maximum fraction digits
    MinMaxDigitOverride eMinMaxDigitOverride = kNoZeroOverride;
    String sScaleFactor;  // scale name to impose ("million", "auto"); empty: none
};

}  // namespace tov

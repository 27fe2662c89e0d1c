#pragma once

// Decimal numbers as people and shortest conversions write them. Internal to this library's sources.

#include <cstdint>
#include <string_view>

#include "webbedrock/stringbuffer.h"

namespace tov {

// What a text says: sign, digits x 10^exponent. Digits past 10,001 are told apart from zeros only: one "1" behind the
// others stands for them, which is all that rounding to 10,000 digits needs.
struct DecimalText
{
    bool m_bNegative = false;
    bool m_bInfinite = false;
    std::int64_t m_nExponent = 0;
    StringBufferTemplate<char, 128> m_tDigits;  // without leading zeros; empty for zero
};

inline constexpr std::size_t kMaxCoefficientDigits = 10000;

// Reads the grammar that CorvidNumber::fromString documents; false when the text does not follow it.
bool parseDecimalText(std::wstring_view sText, DecimalText& tResult);
bool parseDecimalText(std::string_view sText, DecimalText& tResult);

}  // namespace tov

#pragma once

// What the text side of the decimals asks of their arithmetic side. Internal to this library's sources.

#include <cstdint>
#include <string_view>

#include "corefacade/corvidnumber.h"

namespace tov {

struct CorvidNumberAccess
{
    static constexpr std::size_t kStorageBytes = CorvidNumber::kStorageBytes;
    static constexpr std::size_t kStorageAlignment = CorvidNumber::kStorageAlignment;

    static void* storage(CorvidNumber& tNumber) { return tNumber.m_aStorage; }
    static const void* storage(const CorvidNumber& tNumber) { return tNumber.m_aStorage; }

    // The number `sDigits` x 10^nExponent within its bounds. `sDigits` is empty (zero) or does not begin with "0".
    static CorvidNumber fromDigits(std::string_view sDigits, std::int64_t nExponent, bool bNegative);

    // What a number is besides the digits of its coefficient.
    struct Shape
    {
        int m_nExponent;
        bool m_bNegative;
        bool m_bInfinite;
    };

    // Appends the digits of the coefficient without leading zeros; none for zero and infinite numbers.
    static Shape appendDigits(const CorvidNumber& tNumber, StringBufferBaseTemplate<char>& tDigits);
};

}  // namespace tov

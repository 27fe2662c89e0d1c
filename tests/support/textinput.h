#pragma once

#include <cstddef>
#include <cstdint>

#include "webbedrock/string.h"

namespace tov {

// A fuzzer's bytes as text, a character a byte: most of the meaning of markup is in ASCII. The upper bytes stand for
// characters that encoders treat in their own ways. The text ends at its first byte 0, as the values of texts do.
inline String textOfBytes(const std::uint8_t* pData, std::size_t nSize)
{
    constexpr std::uint32_t kUpper[16] = {0x2027, 0x2028, 0x2029, 0xD7FF, 0xD800,   0xDC00,   0xDFFF, 0xE000,
                                          0xFFFD, 0xFFFE, 0xFFFF, 0x7F,   0x10FFFF, 0x110000, 0x4E2D, 0xFFFFFFFF};
    String sText;
    for (std::size_t nAt = 0; nAt < nSize && pData[nAt] != 0; ++nAt)
        sText.push_back(static_cast<wchar_t>(pData[nAt] < 0xF0 ? pData[nAt] : kUpper[pData[nAt] & 0xF]));
    return sText;
}

}  // namespace tov

#pragma once

#include <cstdint>

namespace tov {

// A binary value: bytes that somebody else owns. `pBytes` may be null when `nBytes` is 0.
struct RawValue
{
    std::uint64_t nBytes = 0;
    const unsigned char* pBytes = nullptr;
};

}  // namespace tov

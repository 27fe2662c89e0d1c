#include <cstdint>
#include <cstdlib>

#include "corefacade/imagesizedeterminer.h"

// Any bytes: either an image with both sides, or nothing changed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    constexpr unsigned long kUntouched = 0x123456789ABCDEF;
    tov::ImageSizeDeterminer::ImageType eType = tov::ImageSizeDeterminer::kBMP;
    unsigned long nWidth = kUntouched;
    unsigned long nHeight = kUntouched;
    const bool bImage = tov::ImageSizeDeterminer::determineTypeAndSizesOfBuffer(pData, nSize, eType, nWidth, nHeight);
    const bool bSized = nWidth - 1 < 0xFFFFFFFF && nHeight - 1 < 0xFFFFFFFF;
    const bool bUntouched = nWidth == kUntouched && nHeight == kUntouched && eType == tov::ImageSizeDeterminer::kBMP;
    if (bImage ? !bSized : !bUntouched)
        std::abort();
    return 0;
}

#pragma once

#include "webbedrock/export.h"

namespace tov {

// Recognises images by their first bytes and reads their size from the header; nothing is decoded.
//
// Example: the 24 bytes that start a PNG file of 16 by 8 pixels -> true, kPNG, 16, 8
class WEBFORMAT_EXPORT ImageSizeDeterminer
{
public:
    enum ImageType
    {
        kGIF = 0,
        kJPEG = 1,
        kPNG = 2,
        kTIFF = 3,
        kBMP = 4
    };

    // True when the `nSize` bytes at `pData` start as an image of a known type; then the outputs are its type and its
    // width and height in pixels. The bytes may be anything: truncated, lying about lengths and offsets, or null with
    // size 0. An image without a width or a height (0) is not one. On false the outputs keep their values.
    //
    // GIF: 87a and 89a, the logical screen. JPEG: the first frame header. PNG: the IHDR chunk. TIFF: the first
    // directory, either byte order, sizes of one BYTE, SHORT or LONG. BMP: core and info headers; the height of a
    // top-down bitmap counts without its sign. Reads each byte at most a few times; any thread.
    static bool determineTypeAndSizesOfBuffer(const unsigned char* pData, unsigned long nSize, ImageType& eType,
                                              unsigned long& nWidth, unsigned long& nHeight);
};

}  // namespace tov

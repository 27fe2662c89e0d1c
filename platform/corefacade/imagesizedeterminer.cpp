#include "corefacade/imagesizedeterminer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tov {

namespace {

// Bytes that may end anywhere: what lies past the end reads as nothing.
class Bytes
{
public:
    Bytes(const unsigned char* pData, std::size_t nSize) : m_pData(pData), m_nSize(nSize) {}

    bool startsWith(std::string_view sMagic, std::size_t nAt = 0) const
    {
        return has(nAt, sMagic.size()) &&
               std::equal(sMagic.begin(), sMagic.end(), m_pData + nAt,
                          [](char tLeft, unsigned char tRight) { return static_cast<unsigned char>(tLeft) == tRight; });
    }

    std::optional<std::uint32_t> little(std::size_t nAt, std::size_t nBytes) const
    {
        return number(nAt, nBytes, false);
    }
    std::optional<std::uint32_t> big(std::size_t nAt, std::size_t nBytes) const { return number(nAt, nBytes, true); }

    std::optional<std::uint32_t> number(std::size_t nAt, std::size_t nBytes, bool bBigEndian) const
    {
        if (!has(nAt, nBytes))
            return std::nullopt;
        std::uint32_t nValue = 0;
        for (std::size_t n = 0; n < nBytes; ++n)
            nValue = nValue << 8 | m_pData[bBigEndian ? nAt + n : nAt + nBytes - 1 - n];
        return nValue;
    }

private:
    bool has(std::size_t nAt, std::size_t nBytes) const { return nAt <= m_nSize && nBytes <= m_nSize - nAt; }

    const unsigned char* m_pData;
    std::size_t m_nSize;
};

struct Size
{
    std::optional<std::uint32_t> m_nWidth;
    std::optional<std::uint32_t> m_nHeight;

    bool isKnown() const { return m_nWidth.value_or(0) != 0 && m_nHeight.value_or(0) != 0; }
};

Size sizeOfGif(const Bytes& tBytes)
{
    if (!tBytes.startsWith("GIF87a") && !tBytes.startsWith("GIF89a"))
        return {};
    return {tBytes.little(6, 2), tBytes.little(8, 2)};
}

// The frame headers SOF0 to SOF15; between them lie the tables DHT, JPG and DAC.
bool isFrameHeader(std::uint32_t nMarker)
{
    return nMarker >= 0xC0 && nMarker <= 0xCF && nMarker != 0xC4 && nMarker != 0xC8 && nMarker != 0xCC;
}

// Markers without a length: TEM, RST0 to RST7 and SOI.
bool standsAlone(std::uint32_t nMarker)
{
    return nMarker == 0x01 || (nMarker >= 0xD0 && nMarker <= 0xD8);
}

// No frame header comes after the end of the image or the start of its data; 0xFF00 is no marker at all.
bool endsHeaders(std::uint32_t nMarker)
{
    return nMarker == 0x00 || nMarker == 0xD9 || nMarker == 0xDA;
}

Size sizeOfFrame(const Bytes& tBytes, std::size_t nSegment)
{
    constexpr std::uint32_t kLeastLength = 8;
    if (tBytes.big(nSegment, 2).value_or(0) < kLeastLength)
        return {};
    return {tBytes.big(nSegment + 5, 2), tBytes.big(nSegment + 3, 2)};
}

Size sizeOfJpeg(const Bytes& tBytes)
{
    if (!tBytes.startsWith("\xFF\xD8"))
        return {};
    std::size_t nAt = 2;
    while (tBytes.big(nAt, 1) == 0xFFU)
    {
        // Any number of fill bytes may stand before the marker's code.
        while (tBytes.big(nAt, 1) == 0xFFU)
            ++nAt;
        const std::uint32_t nMarker = tBytes.big(nAt, 1).value_or(0);
        ++nAt;
        if (isFrameHeader(nMarker))
            return sizeOfFrame(tBytes, nAt);
        if (endsHeaders(nMarker))
            return {};
        if (standsAlone(nMarker))
            continue;
        const std::uint32_t nLength = tBytes.big(nAt, 2).value_or(0);
        if (nLength < 2)
            return {};
        nAt += nLength;
    }
    return {};
}

Size sizeOfPng(const Bytes& tBytes)
{
    using namespace std::string_view_literals;
    constexpr std::uint32_t kLargestSide = 0x7FFFFFFF;
    if (!tBytes.startsWith("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"sv))
        return {};
    const Size tSize{tBytes.big(16, 4), tBytes.big(20, 4)};
    if (tSize.m_nWidth > kLargestSide || tSize.m_nHeight > kLargestSide)
        return {};
    return tSize;
}

// The value of a directory entry that is one BYTE, SHORT or LONG.
std::optional<std::uint32_t> entryValue(const Bytes& tBytes, std::size_t nEntry, bool bBigEndian)
{
    if (tBytes.number(nEntry + 4, 4, bBigEndian) != 1U)
        return std::nullopt;
    switch (tBytes.number(nEntry + 2, 2, bBigEndian).value_or(0))
    {
    case 1: return tBytes.number(nEntry + 8, 1, bBigEndian);
    case 3: return tBytes.number(nEntry + 8, 2, bBigEndian);
    case 4: return tBytes.number(nEntry + 8, 4, bBigEndian);
    default: return std::nullopt;
    }
}

Size sizeOfTiff(const Bytes& tBytes)
{
    using namespace std::string_view_literals;
    constexpr std::uint32_t kImageWidth = 256;
    constexpr std::uint32_t kImageLength = 257;
    constexpr std::size_t kEntryBytes = 12;
    const bool bBigEndian = tBytes.startsWith("MM\0*"sv);
    if (!bBigEndian && !tBytes.startsWith("II*\0"sv))
        return {};
    const std::size_t nDirectory = tBytes.number(4, 4, bBigEndian).value_or(0);
    const std::uint32_t nEntries = tBytes.number(nDirectory, 2, bBigEndian).value_or(0);
    Size tSize;
    for (std::uint32_t n = 0; n < nEntries; ++n)
    {
        const std::size_t nEntry = nDirectory + 2 + n * kEntryBytes;
        const std::uint32_t nTag = tBytes.number(nEntry, 2, bBigEndian).value_or(0);
        if (nTag == kImageWidth && !tSize.m_nWidth)
            tSize.m_nWidth = entryValue(tBytes, nEntry, bBigEndian);
        else if (nTag == kImageLength && !tSize.m_nHeight)
            tSize.m_nHeight = entryValue(tBytes, nEntry, bBigEndian);
    }
    return tSize;
}

// The headers that are in use: OS/2 2 short and long, Windows 3 with and without masks, 4 and 5.
bool isInfoHeader(std::uint32_t nHeaderBytes)
{
    constexpr std::uint32_t kInfoHeaders[] = {16, 40, 52, 56, 64, 108, 124};
    return std::find(std::begin(kInfoHeaders), std::end(kInfoHeaders), nHeaderBytes) != std::end(kInfoHeaders);
}

Size sizeOfBmp(const Bytes& tBytes)
{
    constexpr std::uint32_t kCoreHeader = 12;
    constexpr std::uint32_t kSignBit = 0x80000000;
    if (!tBytes.startsWith("BM"))
        return {};
    const std::uint32_t nHeaderBytes = tBytes.little(14, 4).value_or(0);
    if (nHeaderBytes == kCoreHeader)
        return {tBytes.little(18, 2), tBytes.little(20, 2)};
    if (!isInfoHeader(nHeaderBytes))
        return {};
    Size tSize{tBytes.little(18, 4), tBytes.little(22, 4)};
    if (tSize.m_nWidth.value_or(0) >= kSignBit)
        return {};
    // A negative height says that the rows are stored from the top; the least one is its own complement.
    if (tSize.m_nHeight.value_or(0) >= kSignBit)
        tSize.m_nHeight = ~*tSize.m_nHeight + 1;
    return tSize;
}

struct Reader
{
    ImageSizeDeterminer::ImageType m_eType;
    Size (*m_pSizeOf)(const Bytes&);
};

constexpr Reader kReaders[] = {
    {ImageSizeDeterminer::kGIF, &sizeOfGif}, {ImageSizeDeterminer::kJPEG, &sizeOfJpeg},
    {ImageSizeDeterminer::kPNG, &sizeOfPng}, {ImageSizeDeterminer::kTIFF, &sizeOfTiff},
    {ImageSizeDeterminer::kBMP, &sizeOfBmp},
};

}  // namespace

bool ImageSizeDeterminer::determineTypeAndSizesOfBuffer(const unsigned char* pData, unsigned long nSize,
                                                        ImageType& eType, unsigned long& nWidth, unsigned long& nHeight)
{
    const Bytes tBytes(pData, pData == nullptr ? 0 : nSize);
    for (const Reader& tReader : kReaders)
    {
        const Size tSize = tReader.m_pSizeOf(tBytes);
        if (!tSize.isKnown())
            continue;
        eType = tReader.m_eType;
        nWidth = *tSize.m_nWidth;
        nHeight = *tSize.m_nHeight;
        return true;
    }
    return false;
}

}  // namespace tov

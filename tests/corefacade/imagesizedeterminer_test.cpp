#include "corefacade/imagesizedeterminer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tov {

namespace {

using namespace std::string_literals;

struct Found
{
    bool m_bImage = false;
    int m_eType = -1;
    unsigned long m_nWidth = 0;
    unsigned long m_nHeight = 0;

    friend bool operator==(const Found&, const Found&) = default;
    friend std::ostream& operator<<(std::ostream& tStream, const Found& tFound)
    {
        return tStream << tFound.m_bImage << " type " << tFound.m_eType << " " << tFound.m_nWidth << "x"
                       << tFound.m_nHeight;
    }
};

constexpr Found kNoImage;

// Reads a copy that ends where the bytes end, so that a sanitizer sees the first byte too many.
Found determine(const std::string& sBytes)
{
    const std::unique_ptr<unsigned char[]> pCopy(new unsigned char[sBytes.size()]);
    std::copy(sBytes.begin(), sBytes.end(), pCopy.get());
    Found tFound;
    ImageSizeDeterminer::ImageType eType = ImageSizeDeterminer::kGIF;
    tFound.m_bImage = ImageSizeDeterminer::determineTypeAndSizesOfBuffer(pCopy.get(), sBytes.size(), eType,
                                                                         tFound.m_nWidth, tFound.m_nHeight);
    if (tFound.m_bImage)
        tFound.m_eType = eType;
    return tFound;
}

std::string little(std::uint32_t nValue, int nBytes)
{
    std::string sBytes;
    for (int n = 0; n < nBytes; ++n)
        sBytes += static_cast<char>(nValue >> (8 * n));
    return sBytes;
}

std::string big(std::uint32_t nValue, int nBytes)
{
    const std::string sLittle = little(nValue, nBytes);
    return std::string(sLittle.rbegin(), sLittle.rend());
}

std::string gif(std::uint32_t nWidth, std::uint32_t nHeight)
{
    return "GIF89a" + little(nWidth, 2) + little(nHeight, 2);
}

std::string png(std::uint32_t nWidth, std::uint32_t nHeight)
{
    return "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"s + big(nWidth, 4) + big(nHeight, 4);
}

// A segment of JPEG: its marker's code, its length and what it holds.
std::string segment(std::uint32_t nMarker, const std::string& sContent)
{
    return "\xFF" + big(nMarker, 1) + big(static_cast<std::uint32_t>(sContent.size() + 2), 2) + sContent;
}

std::string frame(std::uint32_t nMarker, std::uint32_t nWidth, std::uint32_t nHeight)
{
    return segment(nMarker, "\x08" + big(nHeight, 2) + big(nWidth, 2) + "\x01\x01\x11\0"s);
}

const std::string ksJpegStart = "\xFF\xD8";

std::string bmp(std::uint32_t nHeaderBytes, std::uint32_t nWidth, std::uint32_t nHeight)
{
    const int nBytes = nHeaderBytes == 12 ? 2 : 4;
    return "BM" + std::string(12, '\0') + little(nHeaderBytes, 4) + little(nWidth, nBytes) + little(nHeight, nBytes);
}

struct Entry
{
    std::uint32_t nTag;
    std::uint32_t nType;
    std::uint32_t nCount;
    std::uint32_t nValue;
};

std::string tiff(bool bBigEndian, const std::vector<Entry>& vEntries, std::uint32_t nOffset = 8)
{
    const auto number = [bBigEndian](std::uint32_t nValue, int nBytes)
    { return bBigEndian ? big(nValue, nBytes) : little(nValue, nBytes); };
    std::string sBytes = (bBigEndian ? "MM" : "II") + number(42, 2) + number(nOffset, 4);
    sBytes += number(static_cast<std::uint32_t>(vEntries.size()), 2);
    for (const Entry& tEntry : vEntries)
    {
        const int nValueBytes = tEntry.nType == 1 ? 1 : tEntry.nType == 3 ? 2 : 4;
        sBytes += number(tEntry.nTag, 2) + number(tEntry.nType, 2) + number(tEntry.nCount, 4) +
                  number(tEntry.nValue, nValueBytes) + std::string(static_cast<std::size_t>(4 - nValueBytes), '\0');
    }
    return sBytes;
}

struct Row
{
    int nLine;
    std::string sBytes;
    Found tExpected;
};

constexpr Found found(ImageSizeDeterminer::ImageType eType, unsigned long nWidth, unsigned long nHeight)
{
    return {true, eType, nWidth, nHeight};
}

const Row kRows[] = {
    {__LINE__, "", kNoImage},
    {__LINE__, "just some text that is no image", kNoImage},
    {__LINE__, "\0\xFF"s, kNoImage},

    {__LINE__, gif(16, 8), found(ImageSizeDeterminer::kGIF, 16, 8)},
    {__LINE__, "GIF87a" + little(65535, 2) + little(1, 2), found(ImageSizeDeterminer::kGIF, 65535, 1)},
    {__LINE__, "GIF88a" + little(16, 2) + little(8, 2), kNoImage},
    {__LINE__, "gif89a" + little(16, 2) + little(8, 2), kNoImage},
    {__LINE__, gif(0, 8), kNoImage},
    {__LINE__, gif(16, 0), kNoImage},
    {__LINE__, gif(16, 8).substr(0, 9), kNoImage},

    {__LINE__, png(16, 8), found(ImageSizeDeterminer::kPNG, 16, 8)},
    {__LINE__, png(0x7FFFFFFF, 1), found(ImageSizeDeterminer::kPNG, 0x7FFFFFFF, 1)},
    {__LINE__, png(0x80000000, 1), kNoImage},  // sides have 31 bits
    {__LINE__, png(1, 0xFFFFFFFF), kNoImage},
    {__LINE__, png(0, 8), kNoImage},
    {__LINE__, png(16, 0), kNoImage},
    {__LINE__, png(16, 8).substr(0, 23), kNoImage},
    {__LINE__, "\x89PNG\n\x1A\n"s + png(16, 8).substr(8), kNoImage},  // a transfer that lost the return
    {__LINE__, png(16, 8).replace(12, 4, "IDAT"), kNoImage},

    {__LINE__, ksJpegStart + frame(0xC0, 16, 8), found(ImageSizeDeterminer::kJPEG, 16, 8)},
    {__LINE__, ksJpegStart + frame(0xC2, 640, 480), found(ImageSizeDeterminer::kJPEG, 640, 480)},
    {__LINE__, ksJpegStart + frame(0xCF, 65535, 65535), found(ImageSizeDeterminer::kJPEG, 65535, 65535)},
    {__LINE__, ksJpegStart + segment(0xE0, "JFIF\0"s) + segment(0xDB, std::string(65, 'q')) + frame(0xC1, 3, 4),
     found(ImageSizeDeterminer::kJPEG, 3, 4)},
    // The three codes among the frame headers that are tables.
    {__LINE__, ksJpegStart + frame(0xC4, 1, 1) + frame(0xC8, 1, 1) + frame(0xCC, 1, 1) + frame(0xC0, 5, 6),
     found(ImageSizeDeterminer::kJPEG, 5, 6)},
    {__LINE__, ksJpegStart + "\xFF\xFF\xFF" + frame(0xC0, 16, 8), found(ImageSizeDeterminer::kJPEG, 16, 8)},
    {__LINE__, ksJpegStart + "\xFF\x01\xFF\xD0" + frame(0xC0, 16, 8), found(ImageSizeDeterminer::kJPEG, 16, 8)},
    {__LINE__, ksJpegStart, kNoImage},
    {__LINE__, ksJpegStart + "\xFF", kNoImage},
    {__LINE__, ksJpegStart + "\xFF\xC0", kNoImage},
    {__LINE__, ksJpegStart + frame(0xC0, 16, 8).substr(0, 8), kNoImage},
    {__LINE__, ksJpegStart + frame(0xC0, 0, 8), kNoImage},
    {__LINE__, ksJpegStart + frame(0xC0, 16, 0), kNoImage},
    {__LINE__, ksJpegStart + "\xFF\xC0\0\x07\x08\0\x08\0\x10"s, kNoImage},  // a frame too short for its size
    {__LINE__, ksJpegStart + "\xFF\xE0\0\0"s + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + "\xFF\xE0\0\x01"s + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + "\xFF\xE0\xFF\xFF"s + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + "\xFF\0"s + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + segment(0xDA, "scan") + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + "\xFF\xD9" + frame(0xC0, 16, 8), kNoImage},
    {__LINE__, ksJpegStart + "junk" + frame(0xC0, 16, 8), kNoImage},

    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}), found(ImageSizeDeterminer::kTIFF, 16, 8)},
    {__LINE__, tiff(true, {{256, 3, 1, 16}, {257, 3, 1, 8}}), found(ImageSizeDeterminer::kTIFF, 16, 8)},
    {__LINE__, tiff(false, {{254, 4, 1, 0}, {256, 4, 1, 0xFFFFFFFF}, {257, 4, 1, 70000}}),
     found(ImageSizeDeterminer::kTIFF, 0xFFFFFFFF, 70000)},
    {__LINE__, tiff(true, {{257, 4, 1, 70000}, {256, 1, 1, 200}}), found(ImageSizeDeterminer::kTIFF, 200, 70000)},
    {__LINE__, tiff(true, {{256, 3, 1, 16}, {256, 3, 1, 99}, {257, 3, 1, 8}}),
     found(ImageSizeDeterminer::kTIFF, 16, 8)},
    {__LINE__, tiff(false, {{256, 3, 1, 16}}), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 2, 16}, {257, 3, 1, 8}}), kNoImage},   // two widths
    {__LINE__, tiff(false, {{256, 11, 1, 16}, {257, 3, 1, 8}}), kNoImage},  // a width in floating point
    {__LINE__, tiff(false, {{256, 3, 1, 0}, {257, 3, 1, 8}}), kNoImage},
    {__LINE__, tiff(false, {}), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}, 0xFFFFFFFF), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}, 0xFFFFFFFE), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}, 0), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}).substr(0, 33), found(ImageSizeDeterminer::kTIFF, 16, 8)},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}).substr(0, 31), kNoImage},
    {__LINE__, tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}).replace(8, 2, "\xFF\xFF"),
     found(ImageSizeDeterminer::kTIFF, 16, 8)},  // 65,535 entries, two of them there
    {__LINE__, "II\x2B\0"s + tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}).substr(4), kNoImage},
    {__LINE__, "II\0*"s + tiff(false, {{256, 3, 1, 16}, {257, 3, 1, 8}}).substr(4), kNoImage},
    {__LINE__, "II*\0"s, kNoImage},

    {__LINE__, bmp(40, 16, 8), found(ImageSizeDeterminer::kBMP, 16, 8)},
    {__LINE__, bmp(124, 70000, 1), found(ImageSizeDeterminer::kBMP, 70000, 1)},
    {__LINE__, bmp(12, 16, 8), found(ImageSizeDeterminer::kBMP, 16, 8)},
    {__LINE__, bmp(12, 65535, 40000), found(ImageSizeDeterminer::kBMP, 65535, 40000)},  // unsigned 16 bits
    {__LINE__, bmp(40, 16, static_cast<std::uint32_t>(-8)), found(ImageSizeDeterminer::kBMP, 16, 8)},
    {__LINE__, bmp(40, 16, 0x80000000), found(ImageSizeDeterminer::kBMP, 16, 0x80000000)},
    {__LINE__, bmp(40, static_cast<std::uint32_t>(-16), 8), kNoImage},
    {__LINE__, bmp(40, 0x80000000, 8), kNoImage},
    {__LINE__, bmp(40, 0, 8), kNoImage},
    {__LINE__, bmp(40, 16, 0), kNoImage},
    {__LINE__, bmp(41, 16, 8), kNoImage},
    {__LINE__, bmp(40, 16, 8).substr(0, 25), kNoImage},
    {__LINE__, bmp(12, 16, 8).substr(0, 21), kNoImage},
    {__LINE__, "BMW is no bitmap but a text that begins like one", kNoImage},
};

TEST(ImageSizeDeterminer, RecognisesFiveKindsOfImagesAndTheirSizes)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(determine(tRow.sBytes), tRow.tExpected) << "row at line " << tRow.nLine;
}

TEST(ImageSizeDeterminer, LeavesTheOutputsAloneWhenItFindsNoImage)
{
    for (const Row& tRow : kRows)
    {
        ImageSizeDeterminer::ImageType eType = ImageSizeDeterminer::kBMP;
        unsigned long nWidth = 123;
        unsigned long nHeight = 456;
        const auto* pData = reinterpret_cast<const unsigned char*>(tRow.sBytes.data());
        if (ImageSizeDeterminer::determineTypeAndSizesOfBuffer(pData, tRow.sBytes.size(), eType, nWidth, nHeight))
            continue;
        EXPECT_EQ(eType, ImageSizeDeterminer::kBMP) << "row at line " << tRow.nLine;
        EXPECT_EQ(nWidth, 123U) << "row at line " << tRow.nLine;
        EXPECT_EQ(nHeight, 456U) << "row at line " << tRow.nLine;
    }
}

TEST(ImageSizeDeterminer, TakesNoBytesForNoImage)
{
    ImageSizeDeterminer::ImageType eType{};
    unsigned long nWidth = 0;
    unsigned long nHeight = 0;
    EXPECT_FALSE(ImageSizeDeterminer::determineTypeAndSizesOfBuffer(nullptr, 0, eType, nWidth, nHeight));
}

TEST(ImageSizeDeterminer, ReadsNothingPastTheEndOfTruncatedAndBrokenImages)
{
    std::mt19937 tRandom(5);
    int nImages = 0;
    for (const Row& tRow : kRows)
    {
        for (std::size_t nLength = 0; nLength <= tRow.sBytes.size(); ++nLength)
            nImages += determine(tRow.sBytes.substr(0, nLength)).m_bImage;
        for (int n = 0; n < 200 && !tRow.sBytes.empty(); ++n)
        {
            std::string sBroken = tRow.sBytes;
            sBroken[tRandom() % sBroken.size()] = static_cast<char>(tRandom());
            nImages += determine(sBroken).m_bImage;
        }
    }
    EXPECT_GT(nImages, 0);
}

TEST(ImageSizeDeterminer, WalksMegabytesOfSegmentsOnce)
{
    std::string sBytes = ksJpegStart;
    while (sBytes.size() < 8 * 1024 * 1024)
        sBytes += std::string("\xFF\xE1\0\x02", 4);
    EXPECT_EQ(determine(sBytes), kNoImage);
    EXPECT_EQ(determine(sBytes + frame(0xC0, 16, 8)), found(ImageSizeDeterminer::kJPEG, 16, 8));
    EXPECT_EQ(determine(ksJpegStart + std::string(8 * 1024 * 1024, '\xFF')), kNoImage);
}

}  // namespace

}  // namespace tov

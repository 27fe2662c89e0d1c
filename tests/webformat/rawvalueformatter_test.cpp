#include "webformat/rawvalueformatter.h"

#include <gtest/gtest.h>

#include <vector>

#include "corefacade/rawvalue.h"
#include "support/allocationcounter.h"
#include "support/decoders.h"

namespace tov {
namespace {

using Bytes = std::vector<unsigned char>;
using Types = ValueFormatterTypes;

WebValueFormatterHandle rawFormatter(Types::OutputType eOutput = Types::kHTML)
{
    return new RawValueFormatter(eOutput);
}

String format(const Bytes& vBytes, Types::OutputType eOutput = Types::kHTML)
{
    const RawValue tValue{vBytes.size(), vBytes.data()};
    return rawFormatter(eOutput)->formatAsString(&tValue);
}

const Bytes& pngOf16By8()
{
    static const Bytes s_vBytes = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0, 0, 0, 13,
                                   'I',  'H', 'D', 'R', 0,    0,    0,    16,   0, 0, 0, 8};
    return s_vBytes;
}

struct Row
{
    int nLine;
    Bytes vBytes;
    const wchar_t* pExpected;
};

const Row kRows[] = {
    {__LINE__, {}, L""},
    {__LINE__, {0x00, 0xFF}, L"00FF"},
    {__LINE__, {0x0A}, L"0A"},
    {__LINE__, {0xDE, 0xAD, 0xBE, 0xEF}, L"DEADBEEF"},
    {__LINE__, {'G', 'I', 'F'}, L"474946"},  // no image yet
    {__LINE__, pngOf16By8(), L"<img width=16 height=8 src=\"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAABAAAAAI\">"},
    {__LINE__,
     {'G', 'I', 'F', '8', '9', 'a', 3, 0, 5, 0, 0, 0, 0},
     L"<img width=3 height=5 src=\"data:image/gif;base64,R0lGODlhAwAFAAAAAA==\">"},
    {__LINE__,
     {0xFF, 0xD8, 0xFF, 0xC0, 0, 17, 8, 0, 21, 0, 34, 3, 1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1},
     L"<img width=34 height=21 src=\"data:image/jpeg;base64,/9j/wAARCAAVACIDASIAAhEBAxEB\">"},
    {__LINE__,
     {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 7, 0, 0, 0, 9, 0, 0, 0, 1, 0, 24, 0},
     L"<img width=7 height=9 src=\"data:image/bmp;base64,Qk0AAAAAAAAAADYAAAAoAAAABwAAAAkAAAABABgA\">"},
    {__LINE__,
     {'I', 'I', '*', 0, 8, 0, 0, 0, 2, 0, 0, 1,  3, 0, 1, 0, 0, 0, 11,
      0,   0,   0,   1, 1, 3, 0, 1, 0, 0, 0, 13, 0, 0, 0, 0, 0, 0, 0},
     L"<img width=11 height=13 src=\"data:image/tiff;base64,SUkqAAgAAAACAAABAwABAAAACwAAAAEBAwABAAAADQAAAAAAAAA=\">"},
};

TEST(RawValueFormatter, WritesImagesAsDataUrlsAndOtherBytesAsDigits)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(format(tRow.vBytes), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(RawValueFormatter, WritesTheSameForEveryOutput)
{
    for (int nOutput = Types::kText; nOutput < Types::kLastType; ++nOutput)
    {
        const auto eOutput = static_cast<Types::OutputType>(nOutput);
        for (const Row& tRow : kRows)
            EXPECT_EQ(format(tRow.vBytes, eOutput), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(rawFormatter(eOutput)->outputType(), eOutput);
    }
}

TEST(RawValueFormatter, WritesNothingForANullValueOrARecordWithoutBytes)
{
    EXPECT_EQ(rawFormatter()->formatAsString(nullptr), L"");
    const RawValue tEmpty;
    EXPECT_EQ(rawFormatter()->formatAsString(&tEmpty), L"");
    const RawValue tNoBytes{7, nullptr};
    EXPECT_EQ(rawFormatter()->formatAsString(&tNoBytes), L"");
}

TEST(RawValueFormatter, WritesTheLargestSizesThatAnImageCanState)
{
    Bytes vBytes = pngOf16By8();
    for (std::size_t i = 16; i < 24; ++i)
        vBytes[i] = i % 4 == 0 ? 0x7F : 0xFF;
    EXPECT_EQ(format(vBytes).substr(0, 43), L"<img width=2147483647 height=2147483647 src");
}

TEST(RawValueFormatter, LosesNoByteOfLongValues)
{
    for (const std::size_t nBytes : {63u, 64u, 65u, 127u, 128u, 1000u, 100001u, 100002u, 100003u})
    {
        Bytes vBytes(nBytes);
        for (std::size_t i = 0; i < nBytes; ++i)
            vBytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
        EXPECT_EQ(decodeHex(format(vBytes)), vBytes) << nBytes;

        Bytes vImage = pngOf16By8();
        vImage.insert(vImage.end(), vBytes.begin(), vBytes.end());
        const String sStart = L"<img width=16 height=8 src=\"data:image/png;base64,";
        const String sImage = format(vImage);
        ASSERT_TRUE(sImage.starts_with(sStart) && sImage.ends_with(L"\">")) << nBytes;
        EXPECT_EQ(decodeBase64(sImage.substr(sStart.size(), sImage.size() - sStart.size() - 2)), vImage) << nBytes;
    }
}

TEST(RawValueFormatter, DescribesItself)
{
    EXPECT_EQ(rawFormatter()->GetCustomFormatString(), L"");
    EXPECT_EQ(rawFormatter()->valueStorageType(), SQLDataType::kStorageRawValue);
}

TEST(RawValueFormatter, WritesIntoFreeRoomWithoutAllocating)
{
    const WebValueFormatterHandle hFormatter = rawFormatter();
    const RawValue tImage{pngOf16By8().size(), pngOf16By8().data()};
    const RawValue tDigits{3, pngOf16By8().data()};
    StringBufferTemplate<wchar_t, 1000> tBuffer;
    const AllocationCounter tCounter;
    hFormatter->formatToBuffer(tBuffer, &tImage);
    hFormatter->formatToBuffer(tBuffer, &tDigits);
    EXPECT_EQ(tCounter.count(), 0u);
}

}  // namespace
}  // namespace tov

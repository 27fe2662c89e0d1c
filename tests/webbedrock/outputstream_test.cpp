#include "webbedrock/outputstream.h"

#include <gtest/gtest.h>

#include <string>

#include "support/collected.h"

namespace tov {

namespace {

using namespace std::string_literals;

TEST(OutputStream, WritesNumbersLittleEndian)
{
    struct Row
    {
        int nLine;
        std::uint32_t nValue;
        std::string sExpected;
    };
    const Row kRows[] = {
        {__LINE__, 0, "\0\0\0\0"s},
        {__LINE__, 1, "\x01\0\0\0"s},
        {__LINE__, 0x12345678, "\x78\x56\x34\x12"s},
        {__LINE__, 0xFFFFFFFF, "\xFF\xFF\xFF\xFF"s},
        {__LINE__, 0x80000000, "\0\0\0\x80"s},
    };
    for (const Row& tRow : kRows)
    {
        MemoryOutputStream tStream;
        tStream.writeUInt32(tRow.nValue);
        EXPECT_EQ(tStream.bytes(), tRow.sExpected) << "row at line " << tRow.nLine;
    }
}

TEST(OutputStream, WritesABoolAsOneByte)
{
    MemoryOutputStream tStream;
    tStream.writeBool(true);
    tStream.writeBool(false);
    EXPECT_EQ(tStream.bytes(), "\x01\0"s);
}

TEST(OutputStream, WritesBytesInOrder)
{
    MemoryOutputStream tStream;
    tStream.writeByte(0xFE);
    tStream.write("a\0b", 3);
    tStream.write("", 0);
    tStream.writeByte(0);
    EXPECT_EQ(tStream.bytes(),
              "\xFE"
              "a\0b\0"s);
}

TEST(OutputStream, WritesAStringAsItsByteCountAndUtf8)
{
    struct Row
    {
        int nLine;
        std::wstring_view sText;
        std::string sExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"", "\0\0\0\0"s},
        {__LINE__, L"ab", "\x02\0\0\0ab"s},
        {__LINE__, L"\u20AC", "\x03\0\0\0\xE2\x82\xAC"s},
        {__LINE__, L"\U0001F600", "\x04\0\0\0\xF0\x9F\x98\x80"s},
        {__LINE__, std::wstring_view(L"a\0b", 3), "\x03\0\0\0a\0b"s},
    };
    for (const Row& tRow : kRows)
    {
        MemoryOutputStream tStream;
        tStream.writeString(tRow.sText);
        EXPECT_EQ(tStream.bytes(), tRow.sExpected) << "row at line " << tRow.nLine;
    }
}

TEST(OutputStream, WritesTheCountOfALongStringInFourBytes)
{
    MemoryOutputStream tStream;
    tStream.writeString(std::wstring(0x010203, L'x'));
    std::string sExpected = "\x03\x02\x01\0"s;
    sExpected.append(0x010203, 'x');
    EXPECT_EQ(tStream.bytes(), sExpected);
}

TEST(OutputStream, AStringOverItsLimitIsAnAssertionAndWrittenEmpty)
{
    struct Row
    {
        int nLine;
        std::wstring_view sText;
        std::uint32_t nLimit;
        std::size_t nAssertions;
        std::string sExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"abc", 3, 0, "\x03\0\0\0abc"s},
        {__LINE__, L"abcd", 3, 1, "\0\0\0\0"s},
        {__LINE__, L"\u20AC", 3, 0, "\x03\0\0\0\xE2\x82\xAC"s},  // bytes are limited, not characters
        {__LINE__, L"\u20AC", 2, 1, "\0\0\0\0"s},
        {__LINE__, L"", 0, 0, "\0\0\0\0"s},
    };
    for (const Row& tRow : kRows)
    {
        const CollectedAssertions tAssertions;
        MemoryOutputStream tStream;
        tStream.writeString(tRow.sText, tRow.nLimit);
        EXPECT_EQ(tStream.bytes(), tRow.sExpected) << "row at line " << tRow.nLine;
        ASSERT_EQ(tAssertions.count(), tRow.nAssertions) << "row at line " << tRow.nLine;
        for (const CollectedAssertion& tAssertion : tAssertions.all())
        {
            EXPECT_EQ(tAssertion.sExpression, "nBytes <= nLimit");
            EXPECT_EQ(tAssertion.sSource, "webbedrock/outputstream");
        }
    }
}

}  // namespace

}  // namespace tov

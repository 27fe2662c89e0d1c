#include "tools/webformat/jsonvalues.h"

#include <gtest/gtest.h>

#include "tools/webformat/inputerror.h"
#include "tools/webformat/names.h"
#include "webbedrock/encoding.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

std::string shown(const TypedValue& tValue)
{
    const void* pValue = tValue.pointer();
    const auto number = [](auto nValue) { return std::to_string(nValue); };
    switch (tValue.storage())
    {
    case SQLDataType::kStorageDouble:
    {
        char aText[64];
        std::snprintf(aText, sizeof aText, "%.17g", *static_cast<const double*>(pValue));
        return aText;
    }
    case SQLDataType::kStorageInt32: return number(*static_cast<const int*>(pValue));
    case SQLDataType::kStorageUInt32: return number(*static_cast<const unsigned*>(pValue));
    case SQLDataType::kStorageInt64: return number(*static_cast<const long*>(pValue));
    case SQLDataType::kStorageUInt64: return number(*static_cast<const unsigned long*>(pValue));
    case SQLDataType::kStorageCorvidNumber: return static_cast<const CorvidNumber*>(pValue)->toString();
    case SQLDataType::kStorageWChar: return toUtf8(static_cast<const wchar_t*>(pValue));
    case SQLDataType::kStorageRawValue:
    {
        const auto* pRaw = static_cast<const RawValue*>(pValue);
        return std::to_string(pRaw->nBytes) + ":" +
               std::string(reinterpret_cast<const char*>(pRaw->pBytes), pRaw->nBytes);
    }
    case SQLDataType::kStorageTimeStamp:
    {
        const auto* p = static_cast<const DateTime*>(pValue);
        return number(p->year()) + "/" + number(p->month()) + "/" + number(p->day()) + " " + number(p->hour()) + "." +
               number(p->minute()) + "." + number(p->second()) + "+" + number(p->nanoseconds());
    }
    default: return pValue ? "unknown storage" : "null";
    }
}

std::string fromText(const char* pType, const char* pStorage, const std::string& sText)
{
    try
    {
        return shown(valueFromText(typeFromNames(pType, pStorage), sText));
    }
    catch (const InputError& tError)
    {
        return tError.what();
    }
}

struct Row
{
    int nLine;
    const char* pType;
    const char* pStorage;
    std::string sText;
    std::string sExpected;
};

}  // namespace

TEST(ValueFromText, ReadsEveryStorage)
{
    const Row aRows[] = {
        {__LINE__, "double", "", "12.5", "12.5"},
        {__LINE__, "double", "", "-.5", "-0.5"},
        {__LINE__, "double", "", "+5.", "5"},
        {__LINE__, "double", "", "1e-9", "1.0000000000000001e-09"},
        {__LINE__, "double", "", "NaN", "nan"},
        {__LINE__, "double", "", "INF", "inf"},
        {__LINE__, "double", "", "-INF", "-inf"},
        {__LINE__, "double", "", "4.9406564584124654e-324", "4.9406564584124654e-324"},
        {__LINE__, "integer", "", "-2147483648", "-2147483648"},
        {__LINE__, "integer", "", "+7", "7"},
        {__LINE__, "integer", "double", "2.5", "2.5"},
        {__LINE__, "unsignedinteger", "", "4294967295", "4294967295"},
        {__LINE__, "bigint", "", "9223372036854775807", "9223372036854775807"},
        {__LINE__, "unsignedbigint", "", "18446744073709551615", "18446744073709551615"},
        {__LINE__, "bigint", "corvidnumber", "9223372036854775808", "9223372036854775808"},
        {__LINE__, "numeric", "", "-123456789012345678901234567890.123456789",
         "-123456789012345678901234567890.123456789"},
        {__LINE__, "numeric", "", "-INF", "-INF"},
        {__LINE__, "varchar", "", "", ""},
        {__LINE__, "varchar", "", "a\xC3\xA9", "a\xC3\xA9"},
        {__LINE__, "varbinary", "", "AP8=", std::string("2:\0\xFF", 4)},
        {__LINE__, "varbinary", "", "", "0:"},
        {__LINE__, "date", "", "2024-02-29", "2024/2/29 0.0.0+0"},
        {__LINE__, "date", "", "-0044-03-15", "-44/3/15 0.0.0+0"},
        {__LINE__, "date", "", "12024-03-05", "12024/3/5 0.0.0+0"},
        {__LINE__, "time", "", "07:08:09.5", "1970/1/1 7.8.9+500000000"},
        {__LINE__, "time", "", "23:59:59", "1970/1/1 23.59.59+0"},
        {__LINE__, "timestamp", "", "2024-03-05 07:08:09.123456789", "2024/3/5 7.8.9+123456789"},
        {__LINE__, "timestamp", "", "2024-03-05T07:08:09", "2024/3/5 7.8.9+0"},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(fromText(tRow.pType, tRow.pStorage, tRow.sText), tRow.sExpected) << "row at line " << tRow.nLine;
}

TEST(ValueFromText, SaysWhatItFoundAndWhatItExpected)
{
    const Row aRows[] = {
        {__LINE__, "double", "", "12x", "found \"12x\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "", "found \"\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "nan", "found \"nan\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "infinity", "found \"infinity\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "0x10", "found \"0x10\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", " 5", "found \" 5\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "+-5", "found \"+-5\", expected a number, NaN, INF or -INF"},
        {__LINE__, "double", "", "1e999", "found \"1e999\", expected a number whose magnitude a double can hold"},
        {__LINE__, "integer", "", "2147483648",
         "found \"2147483648\", expected a whole number from -2147483648 to 2147483647"},
        {__LINE__, "integer", "", "1.0", "found \"1.0\", expected a whole number from -2147483648 to 2147483647"},
        {__LINE__, "unsignedinteger", "", "-1", "found \"-1\", expected a whole number from 0 to 4294967295"},
        {__LINE__, "numeric", "", "1,5", "found \"1,5\", expected a decimal number"},
        {__LINE__, "numeric", "", "NaN", "found \"NaN\", expected a decimal number"},
        {__LINE__, "varchar", "", std::string("a\0b", 3), "found the character U+0000, expected text without it"},
        {__LINE__, "varchar", "", "\xFF", "found bytes that are not UTF-8, expected text"},
        {__LINE__, "varbinary", "", "AP8", "found \"AP8\", expected base64"},
        {__LINE__, "varbinary", "", "AP9=", "found \"AP9=\", expected base64"},  // bits behind the last byte
        {__LINE__, "varbinary", "", "A===", "found \"A===\", expected base64"},
        {__LINE__, "varbinary", "", "A=B=", "found \"A=B=\", expected base64"},
        {__LINE__, "date", "", "2023-02-29", "found \"2023-02-29\", expected a date such as 2024-03-05"},
        {__LINE__, "date", "", "2024-13-01", "found \"2024-13-01\", expected a date such as 2024-03-05"},
        {__LINE__, "date", "", "2024-00-01", "found \"2024-00-01\", expected a date such as 2024-03-05"},
        {__LINE__, "date", "", "24-03-05", "found \"24-03-05\", expected a date such as 2024-03-05"},
        {__LINE__, "date", "", "2024-03-05 00:00:00",
         "found \"2024-03-05 00:00:00\", expected a date such as 2024-03-05"},
        {__LINE__, "time", "", "24:00:00", "found \"24:00:00\", expected a time such as 07:08:09.5"},
        {__LINE__, "time", "", "07:08:09.", "found \"07:08:09.\", expected a time such as 07:08:09.5"},
        {__LINE__, "time", "", "07:08:09.1234567890",
         "found \"07:08:09.1234567890\", expected a time such as 07:08:09.5"},
        {__LINE__, "timestamp", "", "2024-03-05",
         "found \"2024-03-05\", expected a timestamp such as 2024-03-05 07:08:09.5"},
        {__LINE__, "unknown", "", "x", "found \"x\", expected a null, the only value of this type"},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(fromText(tRow.pType, tRow.pStorage, tRow.sText), tRow.sExpected) << "row at line " << tRow.nLine;
}

TEST(ValueFromJson, TakesNumbersTextsAndEncodedBytes)
{
    const Row aRows[] = {
        {__LINE__, "double", "", "1.5", "1.5"},
        {__LINE__, "double", "", "\"1.5\"", "1.5"},
        {__LINE__, "double", "", "\"NaN\"", "nan"},
        {__LINE__, "double", "", "null", "null"},
        {__LINE__, "double", "", "true", "found a boolean, expected a number, NaN, INF or -INF"},
        {__LINE__, "unsignedbigint", "", "18446744073709551615", "18446744073709551615"},
        {__LINE__, "numeric", "", "1.00000000000000000000000000000000001", "1.00000000000000000000000000000000001"},
        {__LINE__, "varchar", "", "\"a\"", "a"},
        {__LINE__, "varchar", "", "1", "found a number, expected text"},
        {__LINE__, "date", "", "20240305", "found a number, expected a date such as 2024-03-05"},
        {__LINE__, "varbinary", "", "{\"hex\":\"4A4b\"}", "2:JK"},
        {__LINE__, "varbinary", "", "{\"base64\":\"Sks=\"}", "2:JK"},
        {__LINE__, "varbinary", "", "{\"hex\":\"4\"}", "found \"4\", expected pairs of hexadecimal digits"},
        {__LINE__, "varbinary", "", "{\"hex\":\"4g\"}", "found \"4g\", expected pairs of hexadecimal digits"},
        {__LINE__, "varbinary", "", "\"Sks=\"", R"(found a string, expected {"hex": "..."} or {"base64": "..."})"},
        {__LINE__, "varbinary", "", "{\"hex\":\"\",\"base64\":\"\"}",
         R"(found an object, expected {"hex": "..."} or {"base64": "..."})"},
    };
    for (const Row& tRow : aRows)
    {
        std::string sFound;
        try
        {
            sFound = shown(valueFromJson(typeFromNames(tRow.pType, tRow.pStorage), JsonValue::parse(tRow.sText)));
        }
        catch (const InputError& tError)
        {
            sFound = tError.what();
        }
        EXPECT_EQ(sFound, tRow.sExpected) << "row at line " << tRow.nLine;
    }
}

TEST(DecodeBase64, InvertsTheEncoder)
{
    std::string sBytes;
    for (int nByte = 0; nByte < 256; ++nByte)
    {
        const String sEncoded =
            encodeAsString(B2TEncodingBase64(), reinterpret_cast<const unsigned char*>(sBytes.data()), sBytes.size());
        EXPECT_EQ(decodeBase64(toUtf8(sEncoded)), sBytes);
        sBytes += static_cast<char>(nByte * 7);
    }
}

}  // namespace tov

#include "jsonvalues.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

bool isDigit(char nByte)
{
    return nByte >= '0' && nByte <= '9';
}

[[noreturn]] void fail(std::string_view sFound, const std::string& sExpected)
{
    throw InputError("found " + quotedForMessage(sFound) + ", expected " + sExpected);
}

// Reads a text from front to back; each step says whether it found what it was asked for.
class Scanner
{
public:
    explicit Scanner(std::string_view sText) : m_sText(sText) {}

    bool atEnd() const { return m_nAt == m_sText.size(); }

    bool take(char nByte)
    {
        if (atEnd() || m_sText[m_nAt] != nByte)
            return false;
        ++m_nAt;
        return true;
    }

    // From `nLeast` to `nMost` digits, all that stand here; the number that they make.
    bool takeNumber(std::size_t nLeast, std::size_t nMost, unsigned& nValue, std::size_t* pnDigits = nullptr)
    {
        nValue = 0;
        std::size_t nDigits = 0;
        for (; !atEnd() && isDigit(m_sText[m_nAt]) && nDigits < nMost; ++m_nAt, ++nDigits)
            nValue = nValue * 10 + static_cast<unsigned>(m_sText[m_nAt] - '0');
        if (pnDigits)
            *pnDigits = nDigits;
        return nDigits >= nLeast;
    }

private:
    std::string_view m_sText;
    std::size_t m_nAt = 0;
};

unsigned daysOfMonth(long nYear, unsigned nMonth)
{
    constexpr std::array<unsigned, 12> aDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool bLeap = nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
    return aDays[nMonth - 1] + (nMonth == 2 && bLeap ? 1 : 0);
}

bool takeDate(Scanner& tScanner, DateTime& tValue)
{
    const bool bBeforeChrist = tScanner.take('-');
    unsigned nYear = 0;
    unsigned nMonth = 0;
    unsigned nDay = 0;
    const bool bRead = tScanner.takeNumber(4, 9, nYear) && tScanner.take('-') && tScanner.takeNumber(2, 2, nMonth) &&
                       tScanner.take('-') && tScanner.takeNumber(2, 2, nDay);
    const int nSigned = bBeforeChrist ? -static_cast<int>(nYear) : static_cast<int>(nYear);
    if (!bRead || nMonth < 1 || nMonth > 12 || nDay < 1 || nDay > daysOfMonth(nSigned, nMonth))
        return false;
    tValue.setDate(nSigned, nMonth, nDay);
    return true;
}

bool takeFraction(Scanner& tScanner, unsigned& nNanoseconds)
{
    std::size_t nDigits = 0;
    if (!tScanner.takeNumber(1, 9, nNanoseconds, &nDigits))
        return false;
    for (; nDigits < 9; ++nDigits)
        nNanoseconds *= 10;
    return true;
}

bool takeTime(Scanner& tScanner, DateTime& tValue)
{
    unsigned nHour = 0;
    unsigned nMinute = 0;
    unsigned nSecond = 0;
    unsigned nNanoseconds = 0;
    if (!tScanner.takeNumber(2, 2, nHour) || !tScanner.take(':') || !tScanner.takeNumber(2, 2, nMinute) ||
        !tScanner.take(':') || !tScanner.takeNumber(2, 2, nSecond))
        return false;
    if (tScanner.take('.') && !takeFraction(tScanner, nNanoseconds))
        return false;
    if (nHour > 23 || nMinute > 59 || nSecond > 59)
        return false;
    tValue.setTime(nHour, nMinute, nSecond, nNanoseconds);
    return true;
}

TypedValue calendarValue(const SQLDataType& tType, std::string_view sText)
{
    Scanner tScanner(sText);
    DateTime tValue;
    bool bRead = false;
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryDate: bRead = takeDate(tScanner, tValue); break;
    case SQLDataType::kPrimaryTime: bRead = takeTime(tScanner, tValue); break;
    default:
        bRead = takeDate(tScanner, tValue) && (tScanner.take(' ') || tScanner.take('T')) && takeTime(tScanner, tValue);
    }
    if (!bRead || !tScanner.atEnd())
        fail(sText, expectedValue(tType));
    return TypedValue(tValue);
}

std::string_view withoutPlus(std::string_view sText)
{
    const bool bPlus = sText.size() > 1 && sText[0] == '+' && sText[1] != '-';
    return bPlus ? sText.substr(1) : sText;
}

// from_chars also takes "nan" and "inf" in any case, which are no numbers here.
bool startsAsNumber(std::string_view sText)
{
    const std::string_view sMagnitude = sText.substr(!sText.empty() && sText[0] == '-' ? 1 : 0);
    return !sMagnitude.empty() && (isDigit(sMagnitude[0]) || sMagnitude[0] == '.');
}

TypedValue doubleValue(std::string_view sText)
{
    if (sText == "NaN")
        return TypedValue(std::numeric_limits<double>::quiet_NaN());
    if (sText == "INF" || sText == "-INF")
        return TypedValue(sText[0] == '-' ? -HUGE_VAL : HUGE_VAL);
    const std::string_view sNumber = withoutPlus(sText);
    double fValue = 0;
    const auto [pEnd, eError] = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), fValue);
    if (!startsAsNumber(sNumber) || eError == std::errc::invalid_argument || pEnd != sNumber.data() + sNumber.size())
        fail(sText, expectedValue(SQLDataType(SQLDataType::kDouble)));
    if (eError == std::errc::result_out_of_range)
        fail(sText, "a number whose magnitude a double can hold");
    return TypedValue(fValue);
}

template <class Integer>
TypedValue integerValue(const SQLDataType& tType, std::string_view sText)
{
    const std::string_view sNumber = withoutPlus(sText);
    Integer nValue = 0;
    const auto [pEnd, eError] = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), nValue);
    if (eError != std::errc() || pEnd != sNumber.data() + sNumber.size())
        fail(sText, expectedValue(tType));
    return TypedValue(nValue);
}

TypedValue decimalValue(std::string_view sText)
{
    std::optional<CorvidNumber> tValue = CorvidNumber::fromString(sText);
    if (!tValue)
        fail(sText, "a decimal number");
    return TypedValue(std::move(*tValue));
}

TypedValue textValue(std::string_view sText)
{
    if (sText.find('\0') != std::string_view::npos)
        throw InputError("found the character U+0000, expected text without it");
    std::optional<String> sWide = fromUtf8(sText);
    if (!sWide)
        throw InputError("found bytes that are not UTF-8, expected text");
    return TypedValue(std::move(*sWide));
}

TypedValue bytesValue(std::optional<std::string> sBytes, std::string_view sFound, const char* pExpected)
{
    if (!sBytes)
        fail(sFound, pExpected);
    return TypedValue::ofBytes(std::move(*sBytes));
}

TypedValue binaryFromJson(const JsonValue& tValue)
{
    const JsonValue* pHex = tValue.find("hex");
    const JsonValue* pBase64 = tValue.find("base64");
    const JsonValue* pText = pHex ? pHex : pBase64;
    if (!pText || (pHex && pBase64) || pText->kind() != JsonValue::kString)
        throw InputError("found " + std::string(tValue.kindName()) +
                         R"(, expected {"hex": "..."} or {"base64": "..."})");
    const std::string& sText = pText->text();
    return pHex ? bytesValue(decodeHex(sText), sText, "pairs of hexadecimal digits")
                : bytesValue(decodeBase64(sText), sText, "base64");
}

int base64Digit(char nByte)
{
    if (nByte >= 'A' && nByte <= 'Z')
        return nByte - 'A';
    if (nByte >= 'a' && nByte <= 'z')
        return nByte - 'a' + 26;
    if (isDigit(nByte))
        return nByte - '0' + 52;
    return nByte == '+' ? 62 : nByte == '/' ? 63 : -1;
}

int hexDigit(char nByte)
{
    if (isDigit(nByte))
        return nByte - '0';
    const char nLower = static_cast<char>(nByte | 0x20);
    return nLower >= 'a' && nLower <= 'f' ? nLower - 'a' + 10 : -1;
}

}  // namespace

const char* expectedValue(const SQLDataType& tType)
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryDate: return "a date such as 2024-03-05";
    case SQLDataType::kPrimaryTime: return "a time such as 07:08:09.5";
    case SQLDataType::kPrimaryTimeStamp: return "a timestamp such as 2024-03-05 07:08:09.5";
    case SQLDataType::kPrimaryText: return "text";
    case SQLDataType::kPrimaryBinary: return "base64";
    default: break;
    }
    switch (tType.storageType())
    {
    case SQLDataType::kStorageDouble: return "a number, NaN, INF or -INF";
    case SQLDataType::kStorageInt32: return "a whole number from -2147483648 to 2147483647";
    case SQLDataType::kStorageUInt32: return "a whole number from 0 to 4294967295";
    case SQLDataType::kStorageInt64: return "a whole number from -9223372036854775808 to 9223372036854775807";
    case SQLDataType::kStorageUInt64: return "a whole number from 0 to 18446744073709551615";
    case SQLDataType::kStorageCorvidNumber: return "a decimal number";
    case SQLDataType::kStorageWChar: return "text";
    case SQLDataType::kStorageRawValue: return "base64";
    case SQLDataType::kStorageTimeStamp: return "a timestamp such as 2024-03-05 07:08:09.5";
    default: return "a null, the only value of this type";
    }
}

TypedValue valueFromText(const SQLDataType& tType, std::string_view sText)
{
    switch (tType.storageType())
    {
    case SQLDataType::kStorageDouble: return doubleValue(sText);
    case SQLDataType::kStorageInt32: return integerValue<int>(tType, sText);
    case SQLDataType::kStorageUInt32: return integerValue<unsigned>(tType, sText);
    case SQLDataType::kStorageInt64: return integerValue<long>(tType, sText);
    case SQLDataType::kStorageUInt64: return integerValue<unsigned long>(tType, sText);
    case SQLDataType::kStorageCorvidNumber: return decimalValue(sText);
    case SQLDataType::kStorageWChar: return textValue(sText);
    case SQLDataType::kStorageRawValue: return bytesValue(decodeBase64(sText), sText, "base64");
    case SQLDataType::kStorageTimeStamp: return calendarValue(tType, sText);
    default: fail(sText, expectedValue(tType));
    }
}

TypedValue valueFromJson(const SQLDataType& tType, const JsonValue& tValue)
{
    if (tValue.isNull())
        return TypedValue();
    if (tType.storageType() == SQLDataType::kStorageRawValue)
        return binaryFromJson(tValue);
    const bool bText =
        tType.storageType() == SQLDataType::kStorageWChar || tType.storageType() == SQLDataType::kStorageTimeStamp;
    if (tValue.kind() != JsonValue::kString && (bText || tValue.kind() != JsonValue::kNumber))
        throw InputError("found " + std::string(tValue.kindName()) + ", expected " + expectedValue(tType));
    return valueFromText(tType, tValue.text());
}

std::optional<std::string> decodeHex(std::string_view sText)
{
    if (sText.size() % 2 != 0)
        return std::nullopt;
    std::string sBytes;
    sBytes.reserve(sText.size() / 2);
    for (std::size_t nAt = 0; nAt < sText.size(); nAt += 2)
    {
        const int nHigh = hexDigit(sText[nAt]);
        const int nLow = hexDigit(sText[nAt + 1]);
        if (nHigh < 0 || nLow < 0)
            return std::nullopt;
        sBytes += static_cast<char>(nHigh * 16 + nLow);
    }
    return sBytes;
}

std::optional<std::string> decodeBase64(std::string_view sText)
{
    if (sText.size() % 4 != 0)
        return std::nullopt;
    std::size_t nDigits = sText.size();
    while (nDigits > 0 && sText.size() - nDigits < 2 && sText[nDigits - 1] == '=')
        --nDigits;
    std::string sBytes;
    sBytes.reserve(nDigits / 4 * 3 + 2);
    unsigned nBits = 0;
    for (std::size_t nAt = 0; nAt < nDigits; ++nAt)
    {
        const int nDigit = base64Digit(sText[nAt]);
        if (nDigit < 0)
            return std::nullopt;
        nBits = (nBits << 6 | static_cast<unsigned>(nDigit)) & 0xFFFFFF;
        // Every digit but the first of four completes a byte.
        if (nAt % 4 != 0)
            sBytes += static_cast<char>(nBits >> (6 - nAt % 4 * 2) & 0xFF);
    }
    // The bits behind the last byte must be zero: one text for each value.
    const std::size_t nUnused = nDigits % 4 == 0 ? 0 : nDigits % 4 == 2 ? 4 : 2;
    if ((nBits & ((1U << nUnused) - 1)) != 0)
        return std::nullopt;
    return sBytes;
}

}  // namespace tov

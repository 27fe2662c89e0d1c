#include "support/decoders.h"

#include <array>
#include <utility>

namespace tov {

namespace {

struct Entity
{
    std::wstring_view sName;
    wchar_t nChar;
};

constexpr std::array<Entity, 6> kEntities = {
    {{L"amp", L'&'}, {L"lt", L'<'}, {L"gt", L'>'}, {L"quot", L'"'}, {L"#39", L'\''}, {L"nbsp", L' '}}};

std::optional<wchar_t> entityChar(std::wstring_view sName)
{
    for (const Entity& tEntity : kEntities)
    {
        if (tEntity.sName == sName)
            return tEntity.nChar;
    }
    return std::nullopt;
}

std::optional<unsigned> digitIn(std::wstring_view sDigits, wchar_t nChar)
{
    const std::size_t nAt = sDigits.find(nChar);
    if (nAt == std::wstring_view::npos)
        return std::nullopt;
    return static_cast<unsigned>(nAt);
}

// Reads `nDigits` hexadecimal digits.
std::optional<std::uint32_t> hexNumber(std::wstring_view sText, std::size_t nDigits)
{
    if (sText.size() < nDigits)
        return std::nullopt;
    std::uint32_t nNumber = 0;
    for (const wchar_t nChar : sText.substr(0, nDigits))
    {
        const std::optional<unsigned> tDigit = digitIn(L"0123456789ABCDEF", nChar);
        if (!tDigit)
            return std::nullopt;
        nNumber = nNumber * 16 + *tDigit;
    }
    return nNumber;
}

bool endsJavaLiteral(wchar_t nChar)
{
    return nChar == L'"' || nChar == L'\'' || nChar == L'\n' || nChar == L'\r' || nChar == 0x2028 || nChar == 0x2029;
}

// The character of the escape whose letter stands at the start of `sText`, which is moved behind it.
std::optional<wchar_t> readJavaEscape(std::wstring_view& sText)
{
    if (sText.empty())
        return std::nullopt;
    const wchar_t nLetter = sText.front();
    sText.remove_prefix(1);
    switch (nLetter)
    {
    case L'\\': return L'\\';
    case L'n': return L'\n';
    case L'r': return L'\r';
    case L't': return L'\t';
    case L'b': return L'\b';
    case L'f': return L'\f';
    case L'u': break;
    default: return std::nullopt;
    }
    const std::optional<std::uint32_t> tCode = hexNumber(sText, 4);
    if (!tCode)
        return std::nullopt;
    sText.remove_prefix(4);
    return static_cast<wchar_t>(*tCode);
}

constexpr std::wstring_view kBase64Digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Reads one group of four, of which the last `nPadding` are padding.
bool decodeGroup(std::wstring_view sGroup, std::size_t nPadding, std::vector<unsigned char>& vBytes)
{
    std::uint32_t nBits = 0;
    for (std::size_t nAt = 0; nAt < 4; ++nAt)
    {
        const std::optional<unsigned> tDigit = nAt < 4 - nPadding ? digitIn(kBase64Digits, sGroup[nAt]) : 0u;
        if (!tDigit)
            return false;
        nBits = nBits << 6 | *tDigit;
    }
    for (std::size_t nByte = 0; nByte < 3 - nPadding; ++nByte)
        vBytes.push_back(static_cast<unsigned char>(nBits >> (16 - 8 * nByte)));
    return (nBits & ((1u << (8 * nPadding)) - 1)) == 0;
}

}  // namespace

// Production by production, as the standard has them.
bool isXMLCharacter(std::uint32_t nCode)
{
    return nCode == 0x9 || nCode == 0xA || nCode == 0xD || (nCode >= 0x20 && nCode <= 0xD7FF) ||
           (nCode >= 0xE000 && nCode <= 0xFFFD) || (nCode >= 0x10000 && nCode <= 0x10FFFF);
}

std::optional<String> decodeMarkup(std::wstring_view sText, bool bAttribute)
{
    String sResult;
    while (!sText.empty())
    {
        const wchar_t nChar = sText.front();
        sText.remove_prefix(1);
        const bool bQuote = nChar == L'"' || nChar == L'\'';
        if (nChar == L'<' || nChar == L'>' || (bAttribute && bQuote))
            return std::nullopt;
        if (nChar != L'&')
        {
            sResult.push_back(nChar);
            continue;
        }
        const std::size_t nEnd = sText.find(L';');
        const std::optional<wchar_t> tChar = entityChar(sText.substr(0, nEnd));
        if (nEnd == std::wstring_view::npos || !tChar)
            return std::nullopt;
        sResult.push_back(*tChar);
        sText.remove_prefix(nEnd + 1);
    }
    return sResult;
}

std::optional<String> decodeJavaLiteral(std::wstring_view sText)
{
    String sResult;
    while (!sText.empty())
    {
        const wchar_t nChar = sText.front();
        sText.remove_prefix(1);
        const std::optional<wchar_t> tChar = nChar == L'\\' ? readJavaEscape(sText) : nChar;
        if (!tChar || (nChar != L'\\' && endsJavaLiteral(nChar)))
            return std::nullopt;
        sResult.push_back(*tChar);
    }
    return sResult;
}

std::optional<String> decodeSQLLiteral(std::wstring_view sText)
{
    String sResult;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        const bool bDoubled = nAt + 1 < sText.size() && sText[nAt + 1] == L'\'';
        if (sText[nAt] == L'\0' || (sText[nAt] == L'\'' && !bDoubled))
            return std::nullopt;
        sResult.push_back(sText[nAt]);
        nAt += sText[nAt] == L'\'' ? 1 : 0;
    }
    return sResult;
}

std::optional<std::vector<unsigned char>> decodeHex(std::wstring_view sText)
{
    std::vector<unsigned char> vBytes;
    for (; !sText.empty(); sText.remove_prefix(2))
    {
        const std::optional<std::uint32_t> tByte = hexNumber(sText, 2);
        if (!tByte)
            return std::nullopt;
        vBytes.push_back(static_cast<unsigned char>(*tByte));
    }
    return vBytes;
}

std::optional<std::vector<unsigned char>> decodeBase64(std::wstring_view sText)
{
    if (sText.size() % 4 != 0)
        return std::nullopt;
    std::vector<unsigned char> vBytes;
    for (; !sText.empty(); sText.remove_prefix(4))
    {
        std::size_t nPadding = 0;
        while (sText.size() == 4 && nPadding < 2 && sText[3 - nPadding] == L'=')
            ++nPadding;
        if (!decodeGroup(sText.substr(0, 4), nPadding, vBytes))
            return std::nullopt;
    }
    return vBytes;
}

}  // namespace tov

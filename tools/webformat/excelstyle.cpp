#include "excelstyle.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

bool isNameCharacter(wchar_t nCharacter)
{
    return (nCharacter >= L'a' && nCharacter <= L'z') || (nCharacter >= L'0' && nCharacter <= L'9') ||
           nCharacter == L'-';
}

bool isName(std::wstring_view sText)
{
    return !sText.empty() && std::all_of(sText.begin(), sText.end(), &isNameCharacter);
}

bool isAsciiLetterOrDigit(wchar_t nCharacter)
{
    return (nCharacter >= L'A' && nCharacter <= L'Z') || (nCharacter != L'-' && isNameCharacter(nCharacter));
}

bool isHexDigit(wchar_t nCharacter)
{
    return (nCharacter >= L'0' && nCharacter <= L'9') || (nCharacter >= L'a' && nCharacter <= L'f') ||
           (nCharacter >= L'A' && nCharacter <= L'F');
}

// A backslash takes every ASCII character that is no letter or digit out of the grammar of style sheets and of HTML
// ("</style"). Controls have no such form, and spreadsheets know none of the apostrophe: they stand as four digits.
// What would be read as one more digit stands as its own number, too; the blank that may end a number is a blank to
// some.
std::string cssString(std::wstring_view sText)
{
    constexpr char aHex[] = "0123456789abcdef";
    std::string sResult = "'";
    bool bNumber = false;
    for (const wchar_t nCharacter : sText)
    {
        bNumber = nCharacter < 0x20 || nCharacter == 0x7F || nCharacter == L'\'' || (bNumber && isHexDigit(nCharacter));
        if (bNumber)
        {
            // U+0000 has no escape in a style sheet: it reads as the replacement character anyway.
            sResult.append("\\00").append(1, aHex[nCharacter >> 4 & 15]).append(1, aHex[nCharacter & 15]);
            continue;
        }
        if (nCharacter < 0x80 && !isAsciiLetterOrDigit(nCharacter))
            sResult += '\\';
        sResult += toUtf8(std::wstring_view(&nCharacter, 1));
    }
    return sResult + "'";
}

// The character of "lt", "#39" or "#x27"; 0 for anything else.
wchar_t entityCharacter(std::wstring_view sName)
{
    constexpr std::array<std::pair<std::wstring_view, wchar_t>, 5> aNamed = {
        {{L"amp", L'&'}, {L"lt", L'<'}, {L"gt", L'>'}, {L"quot", L'"'}, {L"apos", L'\''}}};
    for (const auto& [sEntity, nCharacter] : aNamed)
        if (sName == sEntity)
            return nCharacter;
    if (sName.size() < 2 || sName.size() > 8 || sName[0] != L'#')
        return 0;
    const bool bHex = sName[1] == L'x' || sName[1] == L'X';
    const std::string sDigits = toUtf8(sName.substr(bHex ? 2 : 1));
    if (sDigits.empty() ||
        sDigits.find_first_not_of(bHex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
        return 0;
    const unsigned long nValue = std::stoul(sDigits, nullptr, bHex ? 16 : 10);
    return nValue <= 0x10FFFF ? static_cast<wchar_t>(nValue) : 0;
}

// The library's styles escape an apostrophe and a backslash of the pattern by a backslash. One at the end stands for
// itself.
String withoutStyleEscapes(std::wstring_view sText)
{
    String sResult;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        if (sText[nAt] == L'\\' && nAt + 1 < sText.size())
            ++nAt;
        sResult += sText[nAt];
    }
    return sResult;
}

// The colour in capitals: not all spreadsheets know it otherwise in a page. What stands in quotes is text.
String withCapitalColour(String sPattern)
{
    constexpr std::wstring_view sColour = L"[red]";
    bool bQuoted = false;
    for (std::size_t nAt = 0; nAt < sPattern.size(); ++nAt)
    {
        bQuoted = bQuoted != (sPattern[nAt] == L'"');
        if (!bQuoted && sPattern[nAt] == L'\\')
            ++nAt;
        else if (!bQuoted && sPattern.compare(nAt, sColour.size(), sColour) == 0)
            sPattern.replace(nAt, sColour.size(), L"[RED]");
    }
    return sPattern;
}

}  // namespace

bool dividesByThousands(std::wstring_view sMsoStyle)
{
    const String sPattern = withoutStyleEscapes(withoutEntities(sMsoStyle));
    bool bQuoted = false;
    bool bDigit = false;
    for (std::size_t nAt = 0; nAt < sPattern.size(); ++nAt)
    {
        const wchar_t nNext = nAt + 1 < sPattern.size() ? sPattern[nAt + 1] : L'\0';
        bQuoted = bQuoted != (sPattern[nAt] == L'"');
        if (!bQuoted && sPattern[nAt] == L'\\')
            ++nAt;
        else if (!bQuoted && sPattern[nAt] == L',' && bDigit && nNext != L'#' && nNext != L'0')
            return true;
        bDigit = !bQuoted && (sPattern[nAt] == L'#' || sPattern[nAt] == L'0');
    }
    return false;
}

String withoutEntities(std::wstring_view sText)
{
    constexpr std::size_t knLongestName = 8;
    String sResult;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        const std::wstring_view sRest = sText.substr(nAt + 1, knLongestName + 1);
        const std::size_t nEnd = sText[nAt] == L'&' ? sRest.find(L';') : std::wstring_view::npos;
        const wchar_t nCharacter = nEnd == std::wstring_view::npos ? 0 : entityCharacter(sRest.substr(0, nEnd));
        sResult += nCharacter ? nCharacter : sText[nAt];
        nAt += nCharacter ? nEnd + 1 : 0;
    }
    return sResult;
}

std::string excelDeclaration(std::wstring_view sMsoStyle)
{
    const std::size_t nColon = sMsoStyle.find(L':');
    if (nColon == std::wstring_view::npos || !isName(sMsoStyle.substr(0, nColon)))
        return std::string();
    const std::string sName = toUtf8(sMsoStyle.substr(0, nColon + 1));
    std::wstring_view sValue = sMsoStyle.substr(nColon + 1);
    if (!sValue.empty() && sValue.back() == L';')
        sValue.remove_suffix(1);
    if (isName(sValue))
        return sName + toUtf8(sValue);
    if (sValue.size() < 2 || sValue.front() != L'\'' || sValue.back() != L'\'')
        return std::string();
    return sName +
           cssString(withCapitalColour(withoutStyleEscapes(withoutEntities(sValue.substr(1, sValue.size() - 2)))));
}

}  // namespace tov

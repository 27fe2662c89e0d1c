#include "xml/xmltext.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "webbedrock/string.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

bool isAllowed(wchar_t nChar)
{
    const char32_t nCode = static_cast<char32_t>(nChar);
    return nCode >= 0x20 ? nCode != 0xFFFE && nCode != 0xFFFF : nCode == '\t' || nCode == '\n' || nCode == '\r';
}

struct Range
{
    char32_t nFirst;
    char32_t nLast;
};

constexpr Range kNameStarts[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                                 {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                                 {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                                 {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kFurtherNameCharacters[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t n>
bool isIn(const Range (&aRanges)[n], wchar_t nChar)
{
    const char32_t nCode = static_cast<char32_t>(nChar);
    return std::any_of(std::begin(aRanges), std::end(aRanges),
                       [nCode](const Range& tRange) { return nCode >= tRange.nFirst && nCode <= tRange.nLast; });
}

bool isNameCharacter(wchar_t nChar)
{
    return isIn(kNameStarts, nChar) || isIn(kFurtherNameCharacters, nChar);
}

}  // namespace

bool isXmlName(std::wstring_view sText)
{
    return !sText.empty() && isIn(kNameStarts, sText.front()) &&
           std::all_of(sText.begin(), sText.end(), &isNameCharacter);
}

std::string xmlText(std::wstring_view sText)
{
    // Surrogates and numbers past Unicode are replaced by toUtf8.
    String sAllowed(sText);
    for (wchar_t& nChar : sAllowed)
        if (!isAllowed(nChar))
            nChar = 0xFFFD;
    return toUtf8(sAllowed);
}

std::string xmlQuotedText(std::wstring_view sText)
{
    std::string sQuoted;
    for (const char nByte : xmlText(sText))
    {
        switch (nByte)
        {
        case '&': sQuoted += "&amp;"; break;
        case '<': sQuoted += "&lt;"; break;
        case '"': sQuoted += "&quot;"; break;
        case '\t': sQuoted += "&#9;"; break;
        case '\n': sQuoted += "&#10;"; break;
        case '\r': sQuoted += "&#13;"; break;
        default: sQuoted += nByte; break;
        }
    }
    return sQuoted;
}

}  // namespace tov

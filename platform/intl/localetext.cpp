#include "intl/localetext.h"

#include <algorithm>

namespace tov {

namespace {

constexpr wchar_t kReplacement = L'\uFFFD';

bool isLeadSurrogate(char16_t tUnit)
{
    return tUnit >= 0xD800 && tUnit <= 0xDBFF;
}
bool isTrailSurrogate(char16_t tUnit)
{
    return tUnit >= 0xDC00 && tUnit <= 0xDFFF;
}

}  // namespace

String fromUtf16(std::u16string_view sText)
{
    String sResult;
    sResult.reserve(sText.size());
    for (std::size_t n = 0; n < sText.size(); ++n)
    {
        const char16_t tUnit = sText[n];
        if (isLeadSurrogate(tUnit) && n + 1 < sText.size() && isTrailSurrogate(sText[n + 1]))
            sResult += static_cast<wchar_t>(0x10000 + ((tUnit - 0xD800) << 10) + (sText[++n] - 0xDC00));
        else if (isLeadSurrogate(tUnit) || isTrailSurrogate(tUnit))
            sResult += kReplacement;
        else
            sResult += static_cast<wchar_t>(tUnit);
    }
    return sResult;
}

bool isBidiMark(wchar_t tChar)
{
    return tChar == 0x200E || tChar == 0x200F || tChar == 0x061C || (tChar >= 0x202A && tChar <= 0x202E) ||
           (tChar >= 0x2066 && tChar <= 0x2069);
}

bool isBlank(wchar_t tChar)
{
    return tChar == 0x20 || tChar == 0xA0 || tChar == 0x2007 || tChar == 0x202F;
}

String withoutBidiMarks(std::wstring_view sText)
{
    String sResult(sText);
    std::erase_if(sResult, isBidiMark);
    return sResult;
}

String withPlainBlanks(std::wstring_view sText)
{
    String sResult = withoutBidiMarks(sText);
    std::replace_if(sResult.begin(), sResult.end(), isBlank, L' ');
    return sResult;
}

std::wstring_view trimBlanks(std::wstring_view sText)
{
    while (!sText.empty() && isBlank(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && isBlank(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

}  // namespace tov

#include "project/webformat/excelliterals.h"

#include <algorithm>

namespace tov {

namespace {

bool isControl(wchar_t nChar)
{
    return nChar < L' ' || nChar == 0x7F;
}

std::size_t utf16Length(std::wstring_view sText)
{
    const auto nSupplementary = std::count_if(sText.begin(), sText.end(), [](wchar_t nChar) { return nChar > 0xFFFF; });
    return sText.size() + static_cast<std::size_t>(nSupplementary);
}

void appendQuoted(String& sExcel, std::wstring_view sLiteral)
{
    bool bOpen = false;
    for (const wchar_t nChar : sLiteral)
    {
        const bool bEscape = nChar == L'"' || nChar == L'\\';
        if (bOpen == bEscape)
            sExcel += L'"';
        bOpen = !bEscape;
        if (bEscape)
            sExcel += L'\\';
        sExcel += nChar;
    }
    if (bOpen)
        sExcel += L'"';
}

}  // namespace

void appendExcelLiteral(String& sExcel, std::wstring_view sLiteral, std::wstring_view sBare)
{
    if (sLiteral.find_first_not_of(sBare) == std::wstring_view::npos)
        sExcel += sLiteral;
    else
        appendQuoted(sExcel, sLiteral);
}

std::optional<String> checkedExcelPattern(String sExcel)
{
    if (utf16Length(sExcel) > kLongestExcelPattern || std::any_of(sExcel.begin(), sExcel.end(), isControl))
        return std::nullopt;
    return sExcel;
}

}  // namespace tov

#include "utilities/stringutils.h"

#include <algorithm>
#include <charconv>

namespace tov {

namespace {

constexpr std::wstring_view kBlanks = L"\t\n\v\f\r ";

// From here on more digits change nothing: the longest double has 767 significant digits and needs no exponent.
constexpr int kMostDigits = 1100;

wchar_t lower(wchar_t nChar)
{
    return nChar >= L'A' && nChar <= L'Z' ? nChar + (L'a' - L'A') : nChar;
}

}  // namespace

void StringUtils::appendDouble(StringBufferBaseTemplate<wchar_t>& tBuffer, double dValue, int nSignificantDigits)
{
    char aText[kMostDigits + 32];
    const int nDigits = nSignificantDigits < 0 ? 6 : std::clamp(nSignificantDigits, 1, kMostDigits);
    const std::to_chars_result tResult =
        std::to_chars(std::begin(aText), std::end(aText), dValue, std::chars_format::general, nDigits);
    const std::size_t nLength = static_cast<std::size_t>(tResult.ptr - aText);
    if (!tBuffer.reserveFree(nLength))
        return;
    std::copy(aText, tResult.ptr, tBuffer.freePlace());
    tBuffer.advance(nLength);
}

String StringUtils::doubleAsString(double dValue, int nSignificantDigits)
{
    StringBufferTemplate<wchar_t, 63> tBuffer;
    appendDouble(tBuffer, dValue, nSignificantDigits);
    return tBuffer.toString();
}

bool StringUtils::equalsIgnoreCase(std::wstring_view sLeft, std::wstring_view sRight)
{
    return sLeft.size() == sRight.size() && startsWithIgnoreCase(sLeft, sRight);
}

bool StringUtils::startsWithIgnoreCase(std::wstring_view sText, std::wstring_view sStart)
{
    return sText.size() >= sStart.size() &&
           std::equal(sStart.begin(), sStart.end(), sText.begin(),
                      [](wchar_t nLeft, wchar_t nRight) { return lower(nLeft) == lower(nRight); });
}

int StringUtils::compareIgnoreCase(std::wstring_view sLeft, std::wstring_view sRight)
{
    const std::size_t nCommon = std::min(sLeft.size(), sRight.size());
    for (std::size_t i = 0; i < nCommon; ++i)
    {
        const wchar_t nLeft = lower(sLeft[i]);
        const wchar_t nRight = lower(sRight[i]);
        if (nLeft != nRight)
            return nLeft < nRight ? -1 : 1;
    }
    return sLeft.size() == sRight.size() ? 0 : sLeft.size() < sRight.size() ? -1 : 1;
}

std::wstring_view StringUtils::trim(std::wstring_view sText)
{
    const std::size_t nFirst = sText.find_first_not_of(kBlanks);
    if (nFirst == std::wstring_view::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(kBlanks) - nFirst + 1);
}

bool StringUtils::isBlank(std::wstring_view sText)
{
    return sText.find_first_not_of(kBlanks) == std::wstring_view::npos;
}

String StringUtils::replaceAll(std::wstring_view sText, std::wstring_view sFrom, std::wstring_view sTo)
{
    if (sFrom.empty())
        return String(sText);
    String sResult;
    std::size_t nAt = 0;
    for (std::size_t nFound; (nFound = sText.find(sFrom, nAt)) != std::wstring_view::npos; nAt = nFound + sFrom.size())
    {
        sResult += sText.substr(nAt, nFound - nAt);
        sResult += sTo;
    }
    sResult += sText.substr(nAt);
    return sResult;
}

}  // namespace tov

#include "xml/lexical.h"

namespace tov::lexical {

namespace {

constexpr std::wstring_view kBlanks = L" \t\n\r";

// The magnitude of a run of digits; no value where there is none, something else, or more than 2^63 - 1.
std::optional<std::int64_t> parseDigits(std::wstring_view sDigits)
{
    if (sDigits.empty())
        return std::nullopt;
    std::int64_t nValue = 0;
    for (const wchar_t nChar : sDigits)
    {
        if (nChar < L'0' || nChar > L'9' || __builtin_mul_overflow(nValue, 10, &nValue) ||
            __builtin_add_overflow(nValue, nChar - L'0', &nValue))
            return std::nullopt;
    }
    return nValue;
}

}  // namespace

std::wstring_view trim(std::wstring_view sText)
{
    const std::size_t nFirst = sText.find_first_not_of(kBlanks);
    if (nFirst == std::wstring_view::npos)
        return {};
    return sText.substr(nFirst, sText.find_last_not_of(kBlanks) - nFirst + 1);
}

std::optional<std::int64_t> parseInteger(std::wstring_view sText, std::int64_t nLeast, std::int64_t nMost)
{
    std::wstring_view sDigits = trim(sText);
    const bool bNegative = sDigits.starts_with(L'-');
    if (bNegative || sDigits.starts_with(L'+'))
        sDigits.remove_prefix(1);
    const std::optional<std::int64_t> tMagnitude = parseDigits(sDigits);
    if (!tMagnitude)
        return std::nullopt;
    const std::int64_t nValue = bNegative ? -*tMagnitude : *tMagnitude;
    if (nValue < nLeast || nValue > nMost)
        return std::nullopt;
    return nValue;
}

std::optional<bool> parseBool(std::wstring_view sText)
{
    const std::wstring_view sValue = trim(sText);
    if (sValue == L"true" || sValue == L"1")
        return true;
    if (sValue == L"false" || sValue == L"0")
        return false;
    return std::nullopt;
}

}  // namespace tov::lexical

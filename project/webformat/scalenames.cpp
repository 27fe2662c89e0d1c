#include "project/webformat/scalenames.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tov {

namespace {

// The short-scale names from 10^3 on, in steps of a thousand.
constexpr std::array<std::wstring_view, 13> kShortScale = {
    L"thousand",   L"million",   L"billion",   L"trillion",  L"quadrillion", L"quintillion", L"sextillion",
    L"septillion", L"octillion", L"nonillion", L"decillion", L"undecillion", L"duodecillion"};

struct Prefix
{
    std::wstring_view sText;
    int nPower;
};

constexpr std::array<Prefix, 2> kPrefixes = {{{L"ten-", 1}, {L"hundred-", 2}}};

std::optional<std::size_t> indexOfShortScale(std::wstring_view sName)
{
    const auto tFound = std::find(kShortScale.begin(), kShortScale.end(), sName);
    if (tFound == kShortScale.end())
        return std::nullopt;
    return static_cast<std::size_t>(tFound - kShortScale.begin());
}

}  // namespace

int scaleNumberOfName(std::wstring_view sName)
{
    int nPrefix = 0;
    for (const Prefix& tPrefix : kPrefixes)
    {
        if (sName.starts_with(tPrefix.sText))
        {
            sName.remove_prefix(tPrefix.sText.size());
            nPrefix = tPrefix.nPower;
            break;
        }
    }
    const std::optional<std::size_t> tIndex = indexOfShortScale(sName);
    // The largest name has no "ten-" or "hundred-" form.
    if (!tIndex || (nPrefix != 0 && *tIndex == kShortScale.size() - 1))
        return 0;
    return -(3 * static_cast<int>(*tIndex + 1) + nPrefix);
}

int scaleNumberByPosition(const Locale& tLocale, std::size_t nPosition, String& sIndicator)
{
    const auto& vScales = tLocale.getScaleFactors();
    if (nPosition >= vScales.size())
        return 0;
    sIndicator = vScales[nPosition].sIndicator;
    return scaleNumberOfName(vScales[nPosition].sName);
}

String indicatorOfScaleName(const Locale& tLocale, std::wstring_view sName)
{
    for (const auto& tScale : tLocale.getScaleFactors())
    {
        if (tScale.sName == sName)
            return tScale.sIndicator;
    }
    return String();
}

}  // namespace tov

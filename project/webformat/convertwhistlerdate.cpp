#include <algorithm>

#include "utilities/stringutils.h"
#include "webbedrock/handlecache.h"
#include "webformat/convertwhistlerformat.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/convertwhistlerformat";

struct Replacement
{
    std::wstring_view sFrom;
    std::wstring_view sTo;
};

// Where an "m" is a month. The order is part of the rules. No replacement makes a new match of its own search text, and
// no two matches of one text overlap, so that a single pass replaces what searching again from the start would.
//
// Kept: behind "mmmm" there is no "mmmmm" left to find, and "yy/mm" has nothing to do the second time.
constexpr Replacement kMonths[] = {
    {L"mmmm", L"MMMM"},   {L"mmmmm", L"MMMMM"}, {L"yy/mm", L"yy/MM"}, {L"mm/yy", L"MM/yy"}, {L"yy-mm", L"yy-MM"},
    {L"mm-yy", L"MM-yy"}, {L"yy/mm", L"yy/MM"}, {L"m/yy", L"M/yy"},   {L"yy/m", L"yy/M"},   {L"d/mm", L"d/MM"},
    {L"mm/d", L"MM/d"},   {L"d/m", L"d/M"},     {L"m/d", L"M/d"},
};

String withMonths(String sFormat)
{
    for (const Replacement& tReplacement : kMonths)
        sFormat = StringUtils::replaceAll(sFormat, tReplacement.sFrom, tReplacement.sTo);
    return sFormat;
}

// Kept: with "TT", which no date pattern knows, upper-case designators become the letters themselves.
bool replaceDesignators(String& sFormat)
{
    constexpr std::wstring_view kLower = L"am/pm";
    constexpr std::wstring_view kUpper = L"AM/PM";
    const bool bFound = sFormat.find(kLower) != String::npos || sFormat.find(kUpper) != String::npos;
    sFormat = StringUtils::replaceAll(sFormat, kLower, L"tt");
    sFormat = StringUtils::replaceAll(sFormat, kUpper, L"TT");
    return bFound;
}

// "h:mm" becomes "H:mm" over five characters: the one behind it is lost, which is kept.
String with24HourClock(const String& sFormat)
{
    constexpr std::wstring_view kHour = L"h:mm";
    constexpr std::size_t nReplaced = 5;
    const String sTwoDigits = StringUtils::replaceAll(sFormat, L"hh:mm", L"HH:mm");
    String sResult;
    std::size_t nAt = 0;
    for (std::size_t nFound; (nFound = sTwoDigits.find(kHour, nAt)) != String::npos;)
    {
        sResult.append(sTwoDigits, nAt, nFound - nAt).append(L"H:mm");
        nAt = std::min(nFound + nReplaced, sTwoDigits.size());
    }
    return sResult.append(sTwoDigits, nAt);
}

String converted(const String& sFormat)
{
    String sPattern = withMonths(sFormat);
    return replaceDesignators(sPattern) ? sPattern : with24HourClock(sPattern);
}

// Made at the first conversion and never destroyed: values may be formatted while static objects go away.
HandleCache<const WebValueFormatDefinition>& cache()
{
    static auto& s_tCache =
        *new HandleCache<const WebValueFormatDefinition>(WebConvertWhistlerFormat::knMaxCachedDateFormats);
    return s_tCache;
}

}  // namespace

WebValueFormatDefinitionHandle WebConvertWhistlerFormat::ConvertDateFormat(const String& sFormat)
{
    if (WebValueFormatDefinitionHandle hKnown = cache().find(sFormat); !hKnown.isNull())
        return hKnown;
    return cache().insert(sFormat, WEBFORMAT_NEW(kSource) WebCustomFormatDefinition(converted(sFormat)));
}

}  // namespace tov

#include "corefacade/zonenames.h"

#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/tzfmt.h>
#include <unicode/tznames.h>
#include <unicode/ucal.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>
#include <unicode/ures.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

namespace tov {

namespace {

constexpr std::size_t kMaxNameLength = 63;

bool isPlain(wchar_t c)
{
    return c >= 0x20 && c < 0x7F;
}

// ASCII text that is short enough to be a name or a tag; anything else is none.
std::optional<std::string> plainText(std::wstring_view sText)
{
    if (sText.empty() || sText.size() > kMaxNameLength || !std::all_of(sText.begin(), sText.end(), isPlain))
        return std::nullopt;
    std::string sPlain;
    for (const wchar_t c : sText)
        sPlain += static_cast<char>(c);
    return sPlain;
}

String toString(const icu::UnicodeString& sText)
{
    String sResult;
    for (std::int32_t n = 0; n < sText.length(); n = sText.moveIndex32(n, 1))
        sResult += static_cast<wchar_t>(sText.char32At(n));
    return sResult;
}

// Whether there are names in the language of a locale. Where there are none they would be those of the process's
// default locale.
bool hasNames(const char* pLocaleId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    ures_close(ures_open(U_ICUDATA_NAME "-zone", pLocaleId, &eStatus));
    return U_SUCCESS(eStatus) && eStatus != U_USING_DEFAULT_WARNING;
}

icu::Locale localeOf(std::wstring_view sLanguageTag)
{
    std::string sTag = plainText(sLanguageTag).value_or("");
    std::replace(sTag.begin(), sTag.end(), '_', '-');
    char aId[ULOC_FULLNAME_CAPACITY];
    std::int32_t nParsed = 0;
    UErrorCode eStatus = U_ZERO_ERROR;
    uloc_forLanguageTag(sTag.c_str(), aId, sizeof aId, &nParsed, &eStatus);
    const bool bWhole = U_SUCCESS(eStatus) && eStatus != U_STRING_NOT_TERMINATED_WARNING &&
                        static_cast<std::size_t>(nParsed) == sTag.size() && aId[0];
    icu::Locale tLocale = icu::Locale::createFromName(bWhole && hasNames(aId) ? aId : "en");
    tLocale.setKeywordValue("numbers", "latn", eStatus);
    return tLocale;
}

std::unique_ptr<icu::TimeZone> knownZone(std::wstring_view sId)
{
    const std::string sPlain = plainText(sId).value_or("");
    std::unique_ptr<icu::TimeZone> pZone(icu::TimeZone::createTimeZone(icu::UnicodeString(sPlain.c_str(), -1, US_INV)));
    return pZone && *pZone != icu::TimeZone::getUnknown() ? std::move(pZone) : nullptr;
}

bool hasOffset(const icu::TimeZone& tZone, UDate nMoment, std::int32_t nOffset)
{
    std::int32_t nRaw = 0;
    std::int32_t nSavings = 0;
    UErrorCode eStatus = U_ZERO_ERROR;
    tZone.getOffset(nMoment, false, nRaw, nSavings, eStatus);
    return U_SUCCESS(eStatus) && nRaw + nSavings == nOffset * 1000;
}

// "PT". Where a language has no such name the library offers that of a place ("France Time"), which is none.
icu::UnicodeString genericName(const icu::TimeZoneFormat& tFormat, const icu::TimeZone& tZone, UDate nMoment)
{
    icu::UnicodeString sName;
    icu::UnicodeString sPlace;
    icu::UnicodeString sOffset;
    UErrorCode eStatus = U_ZERO_ERROR;
    tFormat.format(UTZFMT_STYLE_GENERIC_SHORT, tZone, nMoment, sName);
    tFormat.format(UTZFMT_STYLE_GENERIC_LOCATION, tZone, nMoment, sPlace);
    std::int32_t nRaw = 0;
    std::int32_t nSavings = 0;
    tZone.getOffset(nMoment, false, nRaw, nSavings, eStatus);
    tFormat.formatOffsetShortLocalizedGMT(nRaw + nSavings, sOffset, eStatus);
    return U_SUCCESS(eStatus) && sName != sPlace && sName != sOffset ? sName : icu::UnicodeString();
}

icu::UnicodeString standardName(const icu::TimeZoneFormat& tFormat, const icu::TimeZone& tZone, UDate nMoment)
{
    icu::UnicodeString sId;
    icu::UnicodeString sCanonicalId;
    icu::UnicodeString sName;
    UErrorCode eStatus = U_ZERO_ERROR;
    icu::TimeZone::getCanonicalID(tZone.getID(sId), sCanonicalId, eStatus);
    if (U_SUCCESS(eStatus))
        tFormat.getTimeZoneNames()->getDisplayName(sCanonicalId, UTZNM_SHORT_STANDARD, nMoment, sName);
    return sName.isBogus() ? icu::UnicodeString() : sName;
}

// "GMT-5", "GMT+5:30": what is left where the names' library itself fails.
String plainOffsetName(std::int32_t nOffset)
{
    const int nMinutes = std::abs(nOffset) / 60;
    String sName = L"GMT";
    if (nMinutes != 0)
        sName += (nOffset < 0 ? L'-' : L'+') + std::to_wstring(nMinutes / 60);
    if (nMinutes % 60 != 0)
        sName += (nMinutes % 60 < 10 ? L":0" : L":") + std::to_wstring(nMinutes % 60);
    return sName;
}

}  // namespace

String zoneShortName(std::wstring_view sId, std::int64_t nUtcSeconds, std::int32_t nOffset,
                     std::wstring_view sLanguageTag)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::unique_ptr<icu::TimeZoneFormat> pFormat(
        icu::TimeZoneFormat::createInstance(localeOf(sLanguageTag), eStatus));
    if (U_FAILURE(eStatus) || !pFormat)
        return plainOffsetName(nOffset);
    const UDate nMoment = static_cast<UDate>(nUtcSeconds) * 1000;
    icu::UnicodeString sName;
    if (const auto pZone = knownZone(sId); pZone && hasOffset(*pZone, nMoment, nOffset))
    {
        sName = genericName(*pFormat, *pZone, nMoment);
        if (sName.isEmpty())
            sName = standardName(*pFormat, *pZone, nMoment);
    }
    if (sName.isEmpty())
        pFormat->formatOffsetShortLocalizedGMT(nOffset * 1000, sName, eStatus);
    return U_SUCCESS(eStatus) && !sName.isEmpty() ? toString(sName) : plainOffsetName(nOffset);
}

String zoneOfWindowsName(std::wstring_view sName)
{
    const std::optional<std::string> sPlain = plainText(sName);
    if (!sPlain)
        return {};
    icu::UnicodeString sId;
    UErrorCode eStatus = U_ZERO_ERROR;
    icu::TimeZone::getIDForWindowsID(icu::UnicodeString(sPlain->c_str(), -1, US_INV), nullptr, sId, eStatus);
    return U_SUCCESS(eStatus) ? toString(sId) : String();
}

}  // namespace tov

#include "intl/currencylookup.h"

#include <algorithm>

#include "intl/currencydata.h"
#include "intl/localerecord.h"
#include "intl/localetaglookup.h"
#include "webbedrock/handlecache.h"

namespace tov {

namespace {

constexpr std::wstring_view kLocalePrefix = L"loc:";
constexpr std::wstring_view kInternationalPrefix = L"int:";
constexpr std::size_t kCodeLength = 3;

// Far more than there are locales and codes: the cache's keys are tags in canonical form, a finite set.
constexpr std::size_t kMostCurrencies = 65536;

HandleCache<const Currency>& cache()
{
    static HandleCache<const Currency>& s_tCache = *new HandleCache<const Currency>(kMostCurrencies);
    return s_tCache;
}

bool isAsciiLetter(wchar_t nChar)
{
    return (nChar >= L'A' && nChar <= L'Z') || (nChar >= L'a' && nChar <= L'z');
}

// In upper case; empty for text that is no currency's code.
std::string codeOf(std::wstring_view sText)
{
    if (sText.size() != kCodeLength || !std::all_of(sText.begin(), sText.end(), isAsciiLetter))
        return std::string();
    std::string sCode(sText.begin(), sText.end());
    for (char& nChar : sCode)
        nChar = static_cast<char>(nChar & ~0x20);
    return isCurrencyCode(sCode) ? sCode : std::string();
}

// `sName` is what `pRead` takes; both are known to the locale data.
CurrencyHandle findOrRead(const String& sCanonicalTag, const std::string& sName,
                          CurrencyHandle (*pRead)(const std::string&))
{
    if (CurrencyHandle hKnown = cache().find(sCanonicalTag); !hKnown.isNull())
        return hKnown;
    const CurrencyHandle hRead = pRead(sName);
    return hRead.isNull() ? hRead : cache().insert(sCanonicalTag, hRead);
}

CurrencyHandle currencyOfCode(std::wstring_view sPrefix, std::wstring_view sText,
                              CurrencyHandle (*pRead)(const std::string&))
{
    const std::string sCode = codeOf(sText);
    if (sCode.empty())
        return CurrencyHandle();
    return findOrRead(String(sPrefix).append(sCode.begin(), sCode.end()), sCode, pRead);
}

}  // namespace

std::size_t rememberedCurrencies()
{
    return cache().size();
}

CurrencyLookup::CurrencyLookup() = default;

CurrencyLookup::~CurrencyLookup() = default;

CurrencyLookup& CurrencyLookup::getInstance()
{
    static CurrencyLookup& s_tLookup = *new CurrencyLookup;
    return s_tLookup;
}

CurrencyHandle CurrencyLookup::currencyOfLocale(std::wstring_view sLocaleTag)
{
    const std::optional<Locale> tLocale = LocaleTagLookup::lookup(sLocaleTag);
    if (!tLocale)
        return CurrencyHandle();
    return findOrRead(String(kLocalePrefix) + tLocale->tag(), tLocale->record().sId, &readLocaleCurrency);
}

CurrencyHandle CurrencyLookup::lookupCurrencyTag(const String& sTag) const
{
    // Most tags are in canonical form.
    if (CurrencyHandle hKnown = cache().find(sTag); !hKnown.isNull())
        return hKnown;
    const std::wstring_view sText = sTag;
    if (sText.starts_with(kLocalePrefix))
        return currencyOfLocale(sText.substr(kLocalePrefix.size()));
    if (sText.starts_with(kInternationalPrefix))
        return currencyOfCode(kInternationalPrefix, sText.substr(kInternationalPrefix.size()),
                              &readInternationalCurrency);
    return currencyOfCode(L"", sText, &readCurrency);
}

std::vector<String> CurrencyLookup::currencyCodes() const
{
    std::vector<String> vCodes;
    for (const std::string& sCode : allCurrencyCodes())
        vCodes.emplace_back(sCode.begin(), sCode.end());
    return vCodes;
}

}  // namespace tov

#pragma once

#include <string_view>
#include <vector>

#include "intl/currency.h"

namespace tov {

// Finds the currency of a tag.
//
//   tag = "loc:" locale      ; the currency of that locale's region, with its symbol and layouts there
//       / "int:" code        ; the ISO 4217 code itself is the symbol
//       / code               ; the currency's own (narrow) symbol
//
// Example: "loc:de-DE" -> symbol "€", layout "# $"; "int:EUR" -> "EUR", "$ #"; "EUR" -> "€", "$#".
//
// Codes and locales count in either case, the prefixes in lower case; a locale is found as `LocaleTagLookup` finds it.
// Anything else is unknown: a locale that names no region ("loc:de") and one whose region has no currency
// ("loc:en-001") too. Codes of former currencies are known.
//
// A currency is made once (some 50 microseconds, and the locale's record where that is new) and then shared; only known
// tags are remembered, however they are written. Any thread.
class WEBFORMAT_EXPORT CurrencyLookup
{
public:
    static CurrencyLookup& getInstance();

    // The currency; a null handle for an unknown tag.
    CurrencyHandle lookupCurrencyTag(const String& sTag) const;

    // All ISO 4217 codes that are known, sorted: "AED", "AFN", ...
    std::vector<String> currencyCodes() const;

    CurrencyLookup(const CurrencyLookup&) = delete;
    CurrencyLookup& operator=(const CurrencyLookup&) = delete;

private:
    CurrencyLookup();
    ~CurrencyLookup();

    static CurrencyHandle currencyOfLocale(std::wstring_view sLocaleTag);
};

}  // namespace tov

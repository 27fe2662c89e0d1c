#pragma once

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
// Codes count in either case. Anything else is unknown. A currency is made once and then shared; only known tags are
// remembered. Any thread.
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
};

}  // namespace tov

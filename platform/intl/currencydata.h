#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "intl/currency.h"

namespace tov {

// The ISO 4217 code of the currency in use in the likely region of a known locale ("en_US" -> "USD"), "XXX" where there
// is none (Antarctica, the world).
std::string regionCurrencyCode(const std::string& sId);

// The narrow symbol of a currency in a known locale, without direction marks; "root" for the one that it has anywhere.
String narrowCurrencySymbol(const std::string& sCode, const std::string& sId);

// Whether an upper-case code of three letters is that of a currency, of today or of former times.
bool isCurrencyCode(const std::string& sCode);

// All codes that are, sorted.
std::vector<std::string> allCurrencyCodes();

// The currency of the region of a known locale as it is written there. Null for a locale that names no region and for a
// region without a currency.
CurrencyHandle readLocaleCurrency(const std::string& sId);

// The currency of a code that is one: "$#" with its own symbol, or "$ #" with the code as its symbol.
CurrencyHandle readCurrency(const std::string& sCode);
CurrencyHandle readInternationalCurrency(const std::string& sCode);

// How many currencies the lookup remembers so far; for tests and monitoring.
std::size_t rememberedCurrencies();

}  // namespace tov

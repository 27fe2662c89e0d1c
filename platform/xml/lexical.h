#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "webbedrock/export.h"

// Values as XML Schema writes them. The blanks of XML (space, tab, line feed, carriage return) around a value do not
// count.
namespace tov::lexical {

// The text without the blanks at both ends.
WEBFORMAT_EXPORT std::wstring_view trim(std::wstring_view sText);

// Decimal digits with an optional sign, from `nLeast` to `nMost`: L" -4 " -> -4. Anything else: no value.
WEBFORMAT_EXPORT std::optional<std::int64_t> parseInteger(std::wstring_view sText, std::int64_t nLeast,
                                                          std::int64_t nMost);

// "true" or "1", "false" or "0", in lower case. Anything else: no value.
WEBFORMAT_EXPORT std::optional<bool> parseBool(std::wstring_view sText);

}  // namespace tov::lexical

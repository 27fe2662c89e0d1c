#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "webbedrock/string.h"

namespace tov {

// The longest pattern that Excel takes, in UTF-16 units.
inline constexpr std::size_t kLongestExcelPattern = 255;

// Appends a literal as Excel shows it: as it stands where it holds nothing but `sBare`, otherwise between double
// quotes; double quotes and backslashes of the text stand outside the quoted pieces, each behind a backslash.
//
//   kg   ->  "kg"          a"b  ->  "a"\""b"
void appendExcelLiteral(String& sExcel, std::wstring_view sLiteral, std::wstring_view sBare);

// The pattern, or no value for one that Excel cannot hold: too long, or with a control character.
std::optional<String> checkedExcelPattern(String sExcel);

}  // namespace tov

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// A numeric format string of the older notation and what it stands for.
struct OldNumericFormat
{
    enum Kind : std::uint32_t
    {
        kNumber = 0,
        kCurrency = 1,
        kPercent = 2
    };

    String sPattern;
    Kind eKind;
    bool bCommas;
    std::uint32_t nMinDigits;
    std::uint32_t nMaxDigits;
    // Of strings with a negative section only: "red" or "", and what stands before and behind a negative number.
    std::optional<String> tColour;
    std::optional<String> tNegativePrefix;
    std::optional<String> tNegativeSuffix;
};

// All 504 strings, each one once. They follow one rule: three kinds, each without and with commas, each in six negative
// styles, each with fourteen variants of digits:
//
//   string   = positive [ ";" negative ]
//   positive = digits / "$" digits / digits "%"                                    ; number, currency, percent
//   negative = "[red]" positive / ["[red]"] "(" positive ")" / ["[red]"] "-" positive
//   digits   = "#" / "#0" / "#0." 1*6"0" / "##." 1*6"#"                            ; with commas "#,##" before the last
//
// Row 0 is "#", row 14 "#;[red]#", row 87 "#,##0.00", row 503 "#,###.######%;[red]-#,###.######%". Made at the first
// call. Any thread.
const std::vector<OldNumericFormat>& oldNumericFormats();

// The row of a string (all of it; case counts), or null.
const OldNumericFormat* findOldNumericFormat(const String& sPattern);

}  // namespace tov

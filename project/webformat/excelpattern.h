#pragma once

#include "webbedrock/string.h"

namespace tov {

class KTWUILanguage;
class Locale;

// The Excel number-format pattern under which a spreadsheet shows cell values as a formatter of `sPattern` shows the
// values that they stand for; empty where Excel has no such pattern. Patterns of dates (see `isDatePattern`) go to
// `excelDatePatternOf`; the rest is about numbers.
//
//   #,##0.00;[red](#,##0.00)    ->  #,##0.00;[red](#,##0.00)
//   ??.0## kg                   ->  00.0##" kg"
//   [$:EUR]0;-[$:EUR]0;n/a      ->  [$EUR]0;-[$EUR]0
//   0.0[scale-name:million]     ->  0.0"M"         the cell holds millions
//   #,##0,                      ->  #,##0,         the cell holds the value
//   0%%                         ->  0%             the cell holds the value, 0%: a hundredth of it
//
// The first two sections are taken: the third is for nulls, that of Excel for zeros. Excel keeps the decimal point of
// "#.##" where the formatter drops it; the patterns of number definitions have the same difference.
//
// There is no Excel pattern for patterns that choose the scale for each value, that split a number into places of
// other bases ("[%60]"), that hold a day, month, time or duration, that show a fraction without an integer part (Excel
// would show the integer part too), that group and fill with zeros past the thousands ("0,000": Excel would group the
// zeros), for a negative section whose power of ten cannot be told in commas and percent
// signs, for control characters, for results of more than 255 UTF-16 units, and for patterns of
// text.
//
// Time and memory are linear in the length of the pattern. Any thread.
String excelPatternOf(const String& sPattern, const Locale& tLocale, const KTWUILanguage& tLanguage);

// An Excel pattern as it stands between the apostrophes of a style in an HTML page: & < > and " as entities, an
// apostrophe and a backslash escaped for the style.
//
//   0"'s <x>"  ->  0&quot;\&#39;s &lt;x&gt;&quot;
String escapedForStyle(const String& sExcelPattern);

}  // namespace tov

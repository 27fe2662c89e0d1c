#pragma once

#include <string_view>

#include "webbedrock/string.h"

namespace tov {

class KTWUILanguage;
class Locale;

// Whether a pattern of a definition, which does not say for which type it is, is one of dates: it holds a token of the
// date language, and nothing that only the other languages have.
//
//   dd.MM.yyyy    yes
//   0 days        no: a placeholder for digits makes it one of numbers
//   ss.000        yes: these are digits of a second
//   "day"         no: quoted text says nothing
//   at @          no: the sign for a text's value
//   [FMT:time]    no: numbers have a bracket of that name, too
bool isDatePattern(std::wstring_view sSection);

// The Excel number-format pattern under which a spreadsheet shows serial dates as a date formatter of `sPattern` shows
// the values; empty where Excel has no such pattern.
//
//   dd.MM.yyyy HH:mm        ->  dd.mm.yyyy hh:mm
//   h:mm:ss tt              ->  h:mm:ss AM/PM
//   "at" HH:mm:ss.000       ->  "at "hh:mm:ss.000
//   [FMT:dateShort]         ->  m/d/yyyy           a predefined format alone: its own Excel pattern, where it has one
//   [FMT:dateShort] HH:mm   ->  m/d/yyyy hh:mm     elsewhere the locale's
//
// Excel reads "m" as a minute behind an hour or before a second, and as a month elsewhere: there is no pattern where
// that is not what is meant. It shows the twelve-hour clock exactly where the half of the day is shown, at most three
// digits of a second's fraction, and all of them. It has no one-digit year, no upper-case or one-letter day, no era,
// and no other locale's names.
String excelDatePatternOf(const String& sPattern, const Locale& tLocale, const KTWUILanguage& tLanguage);

}  // namespace tov

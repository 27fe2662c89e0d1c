#pragma once

#include <vector>

#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "webbedrock/string.h"

namespace tov {

// One line about a pattern: a piece of it, what it does in words, and an example value rendered by the pattern up to
// there.
struct ExplanationLine
{
    String sPattern;
    String sWords;
    String sExample;
};

// Explain a pattern of each language for text output: a line for each item and one for the whole, in numeric patterns
// one for each section. Text templates are explained for HTML, too, where they have a section for it, and their section
// for null and empty values last.
//
// Example: explainNumericPattern(L"0.00", ...) -> {"0", "optional digits, integer place 2 upwards", "1234568"}, {"0",
// "required digit, integer place 1", "1234568"}, {".", "decimal separator, where fraction digits follow", "1234568"},
// ...
std::vector<ExplanationLine> explainNumericPattern(const String& sPattern, const Locale& tLocale,
                                                   const KTWUILanguage& tLanguage);

// Example: "d MMM" -> {"d", "day", "5"}, {" ", "the text \" \"", "5 "}, {"MMM", "short name of the month", "5 Mar"},
// {"d MMM", "for dates, times and timestamps", "5 Mar"}
std::vector<ExplanationLine> explainDatePattern(const String& sPattern, const Locale& tLocale,
                                                const KTWUILanguage& tLanguage);

// Example: "hh:mm" -> {"hh", "hours", "26"}, {":", "the text \":\"", "26:"}, {"mm", "minutes ...", "26:03"}, ...
std::vector<ExplanationLine> explainDurationPattern(const String& sPattern, const Locale& tLocale,
                                                    const KTWUILanguage& tLanguage);

// Example: "a@" -> {"a", "the text \"a\"", "a"}, {"@", "the value", "aR&D <b>team 7</b>"}, {"a@", "in plain text", ...}
std::vector<ExplanationLine> explainTextPattern(const String& sPattern, const Locale& tLocale,
                                                const KTWUILanguage& tLanguage);

}  // namespace tov

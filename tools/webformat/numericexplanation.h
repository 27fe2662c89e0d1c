#pragma once

#include <string>
#include <vector>

#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "webbedrock/string.h"

namespace tov {

// One line about a pattern: a piece of it, what it does in words, and an example value rendered by the section up to
// there.
struct ExplanationLine
{
    String sPattern;
    String sWords;
    String sExample;
};

// Explains a numeric pattern: a line for each item of each section, then one for the section as a whole.
//
// Example: "0.00" -> {"0", "optional digits from integer place 2 upwards", "1234568"}, {"0", "required digit, integer
// place 1", "1234568"}, {".", "decimal separator, where fraction digits follow", "1234568"}, ...
std::vector<ExplanationLine> explainNumericPattern(const String& sPattern, const Locale& tLocale,
                                                   const KTWUILanguage& tLanguage);

}  // namespace tov

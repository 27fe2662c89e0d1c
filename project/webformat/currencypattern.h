#pragma once

#include "intl/currency.h"
#include "project/webformat/numericdefinitionpattern.h"
#include "webformat/numericformatter.h"

namespace tov {

// What a definition says about how amounts are shown.
struct CurrencyPatternSettings
{
    const String& sCurrencyTag;
    NumberSettings tNumber;
    WebNumberFormatDefinitionBase::NegativeFormat eNegativeFormat;
};

// The numeric pattern that shows amounts in the currency of a tag, positive and negative section: "loc:en-US", commas,
// 2 digits, minus -> "[$:$]#,##0.00;-[$:$]#,##0.00". Where the tag is unknown the locale's overriding one counts; where
// that is unknown too the log gets the critical error "Unknown Currency Tag " + the tag of the settings, and the
// pattern is empty.
String buildCurrencyPattern(const CurrencyPatternSettings& tSettings, const Locale& tLocale,
                            ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

// The pattern for a currency that has been found. A null handle throws InvalidHandleException.
String patternOfCurrency(const CurrencyHandle& hCurrency, const NumberSettings& tNumber,
                         WebNumberFormatDefinitionBase::NegativeFormat eNegativeFormat,
                         ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

}  // namespace tov

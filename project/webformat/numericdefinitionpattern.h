#pragma once

#include <cstdint>

#include "webformat/numericformatter.h"

namespace tov {

// How the number itself is written, whatever stands around it.
struct NumberSettings
{
    bool bCommas;
    std::uint32_t nMinDigits;
    std::uint32_t nMaxDigits;
    const String& sScaleName;  // "million", "auto"; empty: none
    std::int32_t nScale;       // the power of ten where there is no scale name
};

// Those of a definition, which they refer to.
NumberSettings numberSettingsOf(const WebNumberFormatDefinitionBase& tDefinition);

// The positive pattern: commas, 1 to 3 digits, no scale -> "#,##0.0##". At most sixteen required and sixteen optional
// fraction digits, whatever is asked for.
String positivePattern(const NumberSettings& tSettings);

// The whole pattern of a number definition, negative section included: "#,##0.00;(#,##0.00)". A negative style that is
// none raises the assertion "false" (source webformat/numericformatters) and adds no section.
String numberPattern(const WebNumberFormatDefinitionBase& tDefinition, const Locale& tLocale,
                     ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

// The same with the locale's percent sign in its place: "#0.00%;-#0.00%".
String percentPattern(const WebPercentFormatDefinition& tDefinition, const Locale& tLocale,
                      ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

}  // namespace tov

#pragma once

#include "webformat/numericformatter.h"

namespace tov {

// The positive pattern of a definition: commas, 1 to 3 digits, no scale -> "#,##0.0##". At most sixteen required and
// sixteen optional fraction digits, whatever the definition asks for.
String positivePattern(const WebNumberFormatDefinitionBase& tDefinition);

// The whole pattern of a number definition, negative section included: "#,##0.00;(#,##0.00)". A negative style that is
// none raises the assertion "false" (source webformat/numericformatters) and adds no section.
String numberPattern(const WebNumberFormatDefinitionBase& tDefinition, const Locale& tLocale,
                     ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

// The same with the locale's percent sign in its place: "#0.00%;-#0.00%".
String percentPattern(const WebPercentFormatDefinition& tDefinition, const Locale& tLocale,
                      ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

}  // namespace tov

#pragma once

#include <cstdint>

#include "webformat/numericformatter.h"

namespace tov {

// What a definition says about how amounts are shown.
struct CurrencyPatternSettings
{
    const String& sCurrencyTag;
    bool bCommas;
    std::uint32_t nMaxDigits;
    std::uint32_t nMinDigits;
    const String& sScaleName;  // "million", "auto"; empty: none
    std::int32_t nScale;       // the power of ten where there is no scale name
    WebNumberFormatDefinitionBase::NegativeFormat eNegativeFormat;
};

// The numeric pattern that shows amounts in the currency of a tag, negative section included; its symbol stands in a
// bracket "[$:" symbol "]". Empty where the currency is unknown, and while the family of currencies is not there none
// is known.
String buildCurrencyPattern(const CurrencyPatternSettings& tSettings, const Locale& tLocale,
                            ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage);

}  // namespace tov

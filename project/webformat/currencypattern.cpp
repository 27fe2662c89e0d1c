#include "project/webformat/currencypattern.h"

namespace tov {

// No currency is known.
String buildCurrencyPattern(const CurrencyPatternSettings&, const Locale&, ValueFormatterTypes::OutputType,
                            const KTWUILanguage&)
{
    return String();
}

}  // namespace tov

#include "project/webformat/numericsubformatters.h"

#include "webformat/dateformatters.h"
#include "webformat/durationformatters.h"

namespace tov {

namespace {

template <class T>
class OwnFactories final : public NumericSubFormatterSource
{
public:
    WebValueFormatterHandle timeFormatter(int nStyle, const Locale& tLocale, const KTWUILanguage& tLanguage,
                                          ValueFormatterTypes::OutputType eOutput) const override
    {
        return WebDateFormatter::CreateDefaultDateFormatter(static_cast<WebDateFormatDefinition::Type>(nStyle), tLocale,
                                                            tLanguage, eOutput);
    }

    WebValueFormatterHandle durationFormatter(const String& sPattern, const Locale& tLocale,
                                              const KTWUILanguage& tLanguage, ValueFormatterTypes::OutputType eOutput,
                                              ValueFormatterTypes::OutputType eParseOutput) const override
    {
        return DurationFormatter<T>::ParseCustomFormat(sPattern, tLocale, eOutput, tLanguage, eParseOutput);
    }
};

}  // namespace

template <class T>
const NumericSubFormatterSource& ownSubFormatters()
{
    static constinit const OwnFactories<T> s_tFactories;
    return s_tFactories;
}

template const NumericSubFormatterSource& ownSubFormatters<double>();
template const NumericSubFormatterSource& ownSubFormatters<int>();
template const NumericSubFormatterSource& ownSubFormatters<unsigned int>();
template const NumericSubFormatterSource& ownSubFormatters<long>();
template const NumericSubFormatterSource& ownSubFormatters<unsigned long>();
template const NumericSubFormatterSource& ownSubFormatters<CorvidNumber>();

}  // namespace tov

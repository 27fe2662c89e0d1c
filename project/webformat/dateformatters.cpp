#include "webformat/dateformatters.h"

namespace tov {

WebValueFormatterHandle WebDateFormatter::CreateFormatter(const WebValueFormatDefinitionHandle&, const Locale&,
                                                          const KTWUILanguage&, OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebDateFormatter::CreateFormatterTZ(const WebValueFormatDefinitionHandle&, const Locale&,
                                                            const TimeZoneResolver&, const String&,
                                                            const KTWUILanguage&, OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebDateFormatter::CreateDefaultDateFormatter(WebDateFormatDefinition::Type, const Locale&,
                                                                     const KTWUILanguage&, OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebDateFormatter::CreateDefaultDateFormatterTZ(WebDateFormatDefinition::Type, const Locale&,
                                                                       const TimeZoneResolver&, const String&,
                                                                       const KTWUILanguage&, OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebDateFormatter::ParseCustomFormat(const String&, const Locale&, const KTWUILanguage&,
                                                            OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebDateFormatter::ParseCustomFormatTZ(const String&, const Locale&, const KTWUILanguage&,
                                                              const TimeZoneResolver&, const String&, OutputType)
{
    return nullptr;
}

}  // namespace tov

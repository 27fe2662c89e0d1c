#pragma once

#include "webformat/numericformatter.h"

namespace tov {

// The factories of the formatters for numbers of one storage.
struct NumericFamily
{
    using OutputType = ValueFormatterTypes::OutputType;
    using FormatAs = NumericFormatter<double>::FormatAs;

    SQLDataType::StorageType eStorage;
    WebValueFormatterHandle (*pParseCustomFormat)(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                                  const KTWUILanguage& tLanguage);
    WebValueFormatterHandle (*pCreateFormatter)(const WebValueFormatDefinition& tDefinition, const Locale& tLocale,
                                                OutputType eOutput, const KTWUILanguage& tLanguage);
    WebValueFormatterHandle (*pCreateDefaultFormatter)(FormatAs eFormatAs, const Locale& tLocale, OutputType eOutput,
                                                       const WebValueFormatDefinition::FormatParameters& tParameters,
                                                       const KTWUILanguage& tLanguage);
};

// The family of a storage: kStorageInt64 -> that of NumericFormatter<long>. Null for a storage that holds no numbers.
const NumericFamily* numericFamilyFor(SQLDataType::StorageType eStorage);

}  // namespace tov

#include "numericfamilies.h"

#include <algorithm>

namespace tov {

namespace {

template <class T>
WebValueFormatterHandle createDefaultFormatter(NumericFamily::FormatAs eFormatAs, const Locale& tLocale,
                                               ValueFormatterTypes::OutputType eOutput,
                                               const WebValueFormatDefinition::FormatParameters& tParameters,
                                               const KTWUILanguage& tLanguage)
{
    return NumericFormatter<T>::CreateDefaultFormatter(static_cast<typename NumericFormatter<T>::FormatAs>(eFormatAs),
                                                       tLocale, eOutput, tParameters, tLanguage);
}

template <class T>
constexpr NumericFamily familyOf(SQLDataType::StorageType eStorage)
{
    return {eStorage, &NumericFormatter<T>::ParseCustomFormat, &NumericFormatter<T>::CreateFormatter,
            &createDefaultFormatter<T>};
}

constexpr NumericFamily kFamilies[] = {
    familyOf<double>(SQLDataType::kStorageDouble),        familyOf<int>(SQLDataType::kStorageInt32),
    familyOf<unsigned int>(SQLDataType::kStorageUInt32),  familyOf<long>(SQLDataType::kStorageInt64),
    familyOf<unsigned long>(SQLDataType::kStorageUInt64), familyOf<CorvidNumber>(SQLDataType::kStorageCorvidNumber),
};

}  // namespace

const NumericFamily* numericFamilyFor(SQLDataType::StorageType eStorage)
{
    const NumericFamily* pFamily =
        std::find_if(std::begin(kFamilies), std::end(kFamilies),
                     [=](const NumericFamily& tFamily) { return tFamily.eStorage == eStorage; });
    return pFamily == std::end(kFamilies) ? nullptr : pFamily;
}

}  // namespace tov

#include "defaultformats.h"
#include "numericfamilies.h"
#include "webbedrock/assertion.h"
#include "webformat/dateformatters.h"
#include "webformat/formatterconfig.h"
#include "webformat/rawvalueformatter.h"
#include "webformat/textformatter.h"
#include "webformat/valueformatter.h"

namespace tov {

namespace {

using FormatParameters = WebValueFormatDefinition::FormatParameters;
using OutputType = ValueFormatterTypes::OutputType;
using WebValueFormatDefinitionCopy = Handle<WebValueFormatDefinition, WebValueFormatDefinition>;

constexpr char kSource[] = "webformat/valueformatter";

WebValueFormatterHandle unsupported(int nLine)
{
    Assertion::handleFailure("false", kSource, nLine);
    return nullptr;
}

WebValueFormatterHandle newRawValueFormatter(OutputType eOutput)
{
    return WEBFORMAT_NEW(kSource) RawValueFormatter(eOutput);
}

// Imposes a scale on a definition that can carry one; others stay as they are.
void imposeScaleFactor(WebValueFormatDefinition& tDefinition, const String& sScaleFactor)
{
    if (auto* pNumber = dynamic_cast<WebNumberFormatDefinitionBase*>(&tDefinition))
        pNumber->setScaleFactor(sScaleFactor);
    else if (auto* pCustom = dynamic_cast<WebCustomFormatDefinition*>(&tDefinition))
        pCustom->setParameter(L"scaleFactor", sScaleFactor);
}

// The caller's definition may be shared, so the scale goes into a copy. Null stays null.
WebValueFormatDefinitionCopy copyWithScale(const WebValueFormatDefinitionHandle& hDefinition,
                                           const String& sScaleFactor)
{
    if (hDefinition.isNull())
        return nullptr;
    WebValueFormatDefinitionCopy hCopy = hDefinition->clone();
    if (!sScaleFactor.empty() && !hCopy.isNull())
        imposeScaleFactor(*hCopy, sScaleFactor);
    return hCopy;
}

// 64-bit integers are shown by custom and CSV formatters only.
bool isServedForDisplay(SQLDataType::StorageType eStorage)
{
    return eStorage != SQLDataType::kStorageInt64 && eStorage != SQLDataType::kStorageUInt64;
}

WebValueFormatterHandle numericFormatter(const SQLDataType& tType, const WebValueFormatDefinitionHandle& hDefinition,
                                         const Locale& tLocale, OutputType eOutput, const FormatParameters& tParameters,
                                         const KTWUILanguage& tLanguage)
{
    const SQLDataType::StorageType eStorage = tType.storageType();
    const NumericFamily* pFamily = numericFamilyFor(eStorage);
    if (!pFamily || !isServedForDisplay(eStorage))
        return unsupported(__LINE__);
    const WebValueFormatDefinitionCopy hCopy = copyWithScale(hDefinition, tParameters.sScaleFactor);
    if (hCopy.isNull())
    {
        const auto eFormatAs = tType.primaryType() == SQLDataType::kPrimaryInteger
                                   ? NumericFormatter<double>::kDisplayAsInteger
                                   : NumericFormatter<double>::kDisplayAsReal;
        return pFamily->pCreateDefaultFormatter(eFormatAs, tLocale, eOutput, tParameters, tLanguage);
    }
    // Kept: definitions of unsigned columns are read in the default language, whatever the caller's.
    const bool bDefaultLanguage = eStorage == SQLDataType::kStorageUInt32;
    return pFamily->pCreateFormatter(*hCopy, tLocale, eOutput,
                                     bDefaultLanguage ? KTWUILanguage::kDefaultLanguage : tLanguage);
}

WebValueFormatterHandle dateFormatter(WebDateFormatDefinition::Type eDefault,
                                      const WebValueFormatDefinitionHandle& hDefinition, const Locale& tLocale,
                                      const KTWUILanguage& tLanguage, OutputType eOutput)
{
    if (hDefinition.isNull())
        return WebDateFormatter::CreateDefaultDateFormatter(eDefault, tLocale, tLanguage, eOutput);
    return WebDateFormatter::CreateFormatter(hDefinition, tLocale, tLanguage, eOutput);
}

WebValueFormatterHandle timeStampFormatter(const WebValueFormatDefinitionHandle& hDefinition, const Locale& tLocale,
                                           const TimeZoneResolver& tResolver, const String& sDisplayTimeZone,
                                           const KTWUILanguage& tLanguage, OutputType eOutput)
{
    if (hDefinition.isNull())
        return WebDateFormatter::CreateDefaultDateFormatterTZ(WebDateFormatDefinition::kShortTimeStamp, tLocale,
                                                              tResolver, sDisplayTimeZone, tLanguage, eOutput);
    return WebDateFormatter::CreateFormatterTZ(hDefinition, tLocale, tResolver, sDisplayTimeZone, tLanguage, eOutput);
}

WebValueFormatterHandle customNumericFormatter(const SQLDataType& tType, const String& sPattern, const Locale& tLocale,
                                               OutputType eOutput, const KTWUILanguage& tLanguage)
{
    const NumericFamily* pFamily = numericFamilyFor(tType.storageType());
    return pFamily ? pFamily->pParseCustomFormat(sPattern, tLocale, eOutput, tLanguage) : unsupported(__LINE__);
}

// Null: real numbers of that storage are not exported.
const wchar_t* csvRealFormat(SQLDataType::StorageType eStorage)
{
    switch (eStorage)
    {
    case SQLDataType::kStorageDouble:
    case SQLDataType::kStorageInt32:
    case SQLDataType::kStorageUInt32: return ksBlah;
    case SQLDataType::kStorageCorvidNumber: return ksCorvidNumberFullPrecision;
    default: return nullptr;
    }
}

WebValueFormatterHandle csvNumericFormatter(const SQLDataType& tType, const wchar_t* pPattern, const Locale& tLocale,
                                            OutputType eOutput)
{
    if (!pPattern)
        return unsupported(__LINE__);
    return customNumericFormatter(tType, pPattern, tLocale, eOutput, KTWUILanguage::kDefaultLanguage);
}

WebValueFormatterHandle csvDateFormatter(const wchar_t* pPattern, const Locale& tLocale, OutputType eOutput)
{
    return WebDateFormatter::ParseCustomFormat(pPattern, tLocale, KTWUILanguage::kDefaultLanguage, eOutput);
}

FormatParameters parametersOf(unsigned nMinDigit, unsigned nMaxDigit)
{
    FormatParameters tParameters;
    tParameters.nMinDigit = nMinDigit;
    tParameters.nMaxDigit = nMaxDigit;
    return tParameters;
}

}  // namespace

WebValueFormatterHandle WebValueFormatter::getFormatter(const SQLDataType& tType,
                                                        const WebValueFormatDefinitionHandle& hDefinition,
                                                        const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                        OutputType eOutput, const FormatParameters& tParameters,
                                                        const KTWUILanguage& tLanguage, const String& sDisplayTimeZone)
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryBinary: return newRawValueFormatter(eOutput);
    case SQLDataType::kPrimaryText: return WebTextFormatter::CreateTextFormatter(hDefinition, tLocale, eOutput);
    case SQLDataType::kPrimaryDate:
        return dateFormatter(WebDateFormatDefinition::kShortDate, hDefinition, tLocale, tLanguage, eOutput);
    case SQLDataType::kPrimaryTime:
        return dateFormatter(WebDateFormatDefinition::kTime, hDefinition, tLocale, tLanguage, eOutput);
    case SQLDataType::kPrimaryTimeStamp:
        return timeStampFormatter(hDefinition, tLocale, tResolver, sDisplayTimeZone, tLanguage, eOutput);
    case SQLDataType::kPrimaryInteger:
    case SQLDataType::kPrimaryFloating:
    case SQLDataType::kPrimaryCorvidNumber:
        return numericFormatter(tType, hDefinition, tLocale, eOutput, tParameters, tLanguage);
    default: return unsupported(__LINE__);
    }
}

WebValueFormatterHandle WebValueFormatter::GetFormatter(const SQLDataType& tType,
                                                        const WebValueFormatDefinitionHandle& hDefinition,
                                                        const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                        OutputType eOutput, unsigned nMinDigit, unsigned nMaxDigit,
                                                        const KTWUILanguage& tLanguage, const String& sDisplayTimeZone)
{
    return getFormatter(tType, hDefinition, tLocale, tResolver, eOutput, parametersOf(nMinDigit, nMaxDigit), tLanguage,
                        sDisplayTimeZone);
}

WebValueFormatterHandle WebValueFormatter::GetDefaultFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                               OutputType eOutput, unsigned nMinDigit,
                                                               unsigned nMaxDigit, const KTWUILanguage& tLanguage)
{
    return GetFormatter(tType, nullptr, tLocale, TimeZoneResolver(), eOutput, nMinDigit, nMaxDigit, tLanguage, ksBlank);
}

WebValueFormatterHandle WebValueFormatter::GetDefaultFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                               OutputType eOutput, const FormatParameters& tParameters,
                                                               const KTWUILanguage& tLanguage)
{
    return getFormatter(tType, nullptr, tLocale, TimeZoneResolver(), eOutput, tParameters, tLanguage, ksBlank);
}

WebValueFormatterHandle WebValueFormatter::GetDefaultFormatterTZ(const SQLDataType& tType, const Locale& tLocale,
                                                                 const KTWUILanguage& tLanguage,
                                                                 const TimeZoneResolver& tResolver,
                                                                 const String& sDisplayTimeZone, OutputType eOutput)
{
    if (tType.primaryType() != SQLDataType::kPrimaryTimeStamp)
        return GetDefaultFormatter(tType, tLocale, eOutput, 0, 0, tLanguage);
    const WebValueFormatDefinitionHandle hDefinition = WEBFORMAT_NEW(kSource)
        WebDateFormatDefinition(WebDateFormatDefinition::kShortTimeStamp, sDisplayTimeZone, String());
    return GetFormatter(tType, hDefinition, tLocale, tResolver, eOutput, 0, 0, tLanguage, String());
}

WebValueFormatterHandle WebValueFormatter::GetInputFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                             OutputType eOutput, unsigned nMinDigit, unsigned nMaxDigit,
                                                             const KTWUILanguage& tLanguage)
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryBinary:
    case SQLDataType::kPrimaryText:
        return GetDefaultFormatter(tType, tLocale, eOutput, 0, 0, KTWUILanguage::kDefaultLanguage);
    case SQLDataType::kPrimaryDate:
        return WebDateFormatter::CreateDefaultDateFormatter(WebDateFormatDefinition::kInputDate, tLocale, tLanguage,
                                                            eOutput);
    case SQLDataType::kPrimaryTime:
        return WebDateFormatter::CreateDefaultDateFormatter(WebDateFormatDefinition::kInputTime, tLocale, tLanguage,
                                                            eOutput);
    case SQLDataType::kPrimaryTimeStamp:
        return WebDateFormatter::CreateDefaultDateFormatter(WebDateFormatDefinition::kInputTimeStamp, tLocale,
                                                            tLanguage, eOutput);
    case SQLDataType::kPrimaryInteger:
    case SQLDataType::kPrimaryFloating:
    case SQLDataType::kPrimaryCorvidNumber:
        return GetDefaultFormatter(tType, tLocale, eOutput, nMinDigit, nMaxDigit, tLanguage);
    default: return unsupported(__LINE__);
    }
}

WebValueFormatterHandle WebValueFormatter::GetInputFormatterTZ(const SQLDataType& tType, const Locale& tLocale,
                                                               const TimeZoneResolver& tResolver,
                                                               const String& sDisplayTimeZone, OutputType eOutput,
                                                               const KTWUILanguage& tLanguage)
{
    if (tType.primaryType() != SQLDataType::kPrimaryTimeStamp)
        return GetInputFormatter(tType, tLocale, eOutput, 0, 0, tLanguage);
    return WebDateFormatter::CreateDefaultDateFormatterTZ(WebDateFormatDefinition::kInputTimeStamp, tLocale, tResolver,
                                                          sDisplayTimeZone, tLanguage, eOutput);
}

WebValueFormatterHandle WebValueFormatter::GetCustomFormatterTZ(const SQLDataType& tType, const String& sPattern,
                                                                const Locale& tLocale,
                                                                const TimeZoneResolver& tResolver, OutputType eOutput,
                                                                const KTWUILanguage& tLanguage,
                                                                const String& sDisplayTimeZone)
{
    switch (tType.category())
    {
    case SQLDataType::kCatNumber: return customNumericFormatter(tType, sPattern, tLocale, eOutput, tLanguage);
    case SQLDataType::kCatText:
    case SQLDataType::kCatBinary: return WebTextFormatter::ParseCustomFormat(sPattern, tLocale, eOutput);
    case SQLDataType::kCatCalendar:
        return WebDateFormatter::ParseCustomFormatTZ(sPattern, tLocale, tLanguage, tResolver, sDisplayTimeZone,
                                                     eOutput);
    default: return unsupported(__LINE__);
    }
}

WebValueFormatterHandle WebValueFormatter::GetCustomFormatter(const SQLDataType& tType, const String& sPattern,
                                                              const Locale& tLocale, OutputType eOutput,
                                                              const KTWUILanguage& tLanguage)
{
    return GetCustomFormatterTZ(tType, sPattern, tLocale, TimeZoneResolver(), eOutput, tLanguage, ksBlank);
}

WebValueFormatterHandle WebValueFormatter::GetCSVFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                           OutputType eOutput)
{
    switch (tType.primaryType())
    {
    case SQLDataType::kPrimaryBinary: return newRawValueFormatter(eOutput);
    case SQLDataType::kPrimaryText: return WebTextFormatter::ParseCustomFormat(s_ksSQLVarCharFormat, tLocale, eOutput);
    case SQLDataType::kPrimaryDate: return csvDateFormatter(ksCSVDateFormat, tLocale, eOutput);
    case SQLDataType::kPrimaryTime: return csvDateFormatter(s_ksXmlTimeFormat, tLocale, eOutput);
    case SQLDataType::kPrimaryTimeStamp: return csvDateFormatter(ksCSVDateTimeFormat, tLocale, eOutput);
    case SQLDataType::kPrimaryInteger: return csvNumericFormatter(tType, s_ksNoPrecision, tLocale, eOutput);
    case SQLDataType::kPrimaryFloating:
    case SQLDataType::kPrimaryCorvidNumber:
        return csvNumericFormatter(tType, csvRealFormat(tType.storageType()), tLocale, eOutput);
    default: return unsupported(__LINE__);
    }
}

WebValueFormatterHandle WebValueFormatter::GetTypedLiteralFormatter(const SQLDataType& tType, OutputType eOutput)
{
    return FormatterConfig::getInstance().typedLiteralFormatter(tType, eOutput);
}

WebValueFormatterHandle WebValueFormatter::getXmlValueFormatter(const SQLDataType& tType, OutputType eOutput)
{
    return FormatterConfig::getInstance().xmlValueFormatter(tType, eOutput);
}

WebValueFormatDefinitionHandle WebValueFormatter::GetDefaultFormatDefinition(const SQLDataType&)
{
    return nullptr;
}

}  // namespace tov

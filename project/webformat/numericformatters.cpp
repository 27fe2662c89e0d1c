#include <algorithm>

#include "intl/currencylookup.h"
#include "intl/locale.h"
#include "project/webformat/currencypattern.h"
#include "project/webformat/defaultformats.h"
#include "project/webformat/numericdefinitionpattern.h"
#include "project/webformat/numericinfo.h"
#include "utilities/stringutils.h"
#include "webbedrock/assertion.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/formatterconfig.h"
#include "webformat/numericformatterimpl.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/numericformatterimpl";

// The most fraction digits of the two predefined real definitions.
constexpr unsigned kRealDigits = 2;
constexpr unsigned kFullPrecisionDigits = 17;

constexpr unsigned kUnknownCurrencyDigits = 2;

WebNumberFormatDefinition realDefinition()
{
    return WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, kRealDigits, kRealDigits);
}

WebNumberFormatDefinition fullPrecisionDefinition()
{
    return WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 1, kFullPrecisionDigits);
}

// What a caller asks for on top of a predefined definition; without digits of its own the type's precision is the most.
void applyParameters(WebNumberFormatDefinition& tDefinition, const NumericFormatParameters& tParameters,
                     unsigned nPrecision)
{
    if (!StringUtils::isBlank(tParameters.sScaleFactor))
        tDefinition.setScaleFactor(tParameters.sScaleFactor);
    const bool bDigitsGiven = tParameters.nMinDigit != 0 || tParameters.nMaxDigit != 0 ||
                              tParameters.eMinMaxDigitOverride == NumericFormatParameters::kZeroOverride;
    if (bDigitsGiven)
    {
        tDefinition.setMinDigits(tParameters.nMinDigit);
        tDefinition.setMaxDigits(tParameters.nMaxDigit);
    }
    else
    {
        tDefinition.setMaxDigits(nPrecision);
    }
}

String integerPattern(const NumericFormatParameters& tParameters)
{
    if (StringUtils::isBlank(tParameters.sScaleFactor))
        return ksDefaultIntegerFormat;
    return ksDefaultIntegerFormat + (L"[scale-name:" + tParameters.sScaleFactor + L"]");
}

String currencyPattern(const WebNumberFormatDefinitionBase& tDefinition, const String& sCurrencyTag,
                       const Locale& tLocale, ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    const CurrencyPatternSettings tSettings{sCurrencyTag, numberSettingsOf(tDefinition),
                                            tDefinition.GetNegativeFormat()};
    return buildCurrencyPattern(tSettings, tLocale, eOutput, tLanguage);
}

// A custom definition leaves digits and grouping to the currency.
String customCurrencyPattern(const WebCustomFormatDefinition& tDefinition, const Locale& tLocale,
                             ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    const String& sTag = tLocale.overridingCurrencyTag();
    const CurrencyHandle hCurrency = CurrencyLookup::getInstance().lookupCurrencyTag(sTag);
    const std::uint32_t nDigits = hCurrency.isNull() ? kUnknownCurrencyDigits : hCurrency->getDefaultDigits();
    const bool bGrouping = !hCurrency.isNull() && hCurrency->hasGrouping();
    const String sScaleName = tDefinition.getParameterByName(L"scaleFactor");
    const CurrencyPatternSettings tSettings{
        sTag, {bGrouping, nDigits, nDigits, sScaleName, 0}, WebNumberFormatDefinitionBase::kMinus};
    return buildCurrencyPattern(tSettings, tLocale, eOutput, tLanguage);
}

// Amounts of an unknown currency, which has no pattern, are shown as integers.
template <class T>
WebValueFormatterHandle currencyFormatter(const String& sPattern, const Locale& tLocale,
                                          ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage,
                                          ValueFormatterTypes::ExcelEvalauteFormatMask eExcelMask)
{
    if (sPattern.empty())
        return NumericFormatter<T>::CreateDefaultFormatter(NumericFormatter<T>::kDisplayAsInteger, tLocale, eOutput,
                                                           NumericFormatParameters(), tLanguage);
    return NumericFormatter<T>::ParseCustomFormat(sPattern, tLocale, eOutput, tLanguage, eExcelMask);
}

}  // namespace

template <class T>
NumericFormatter<T>::NumericFormatter() : WebValueFormatter(NumericInfo<T>::kStorage)
{
}

template <class T>
NumericFormatter<T>::~NumericFormatter() = default;

template <class T>
WebValueFormatterHandle NumericFormatter<T>::ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                               OutputType eOutput, const KTWUILanguage& tLanguage)
{
    return ParseCustomFormat(sPattern, tLocale, eOutput, tLanguage, kEvaluateFormatGlobal);
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                               OutputType eOutput, const KTWUILanguage& tLanguage,
                                                               ExcelEvalauteFormatMask eExcelMask)
{
    return WebValueFormatterHandle(
        WEBFORMAT_NEW(kSource) NumericFormatterImpl<T>(sPattern, tLocale, eOutput, kLastType, tLanguage, eExcelMask));
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebNumberFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    return ParseCustomFormat(numberPattern(tDefinition, tLocale, eOutput, tLanguage), tLocale, eOutput, tLanguage);
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebPercentFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    return ParseCustomFormat(percentPattern(tDefinition, tLocale, eOutput, tLanguage), tLocale, eOutput, tLanguage);
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebCurrencyFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    return currencyFormatter<T>(currencyPattern(tDefinition, tDefinition.CurrencyTag(), tLocale, eOutput, tLanguage),
                                tLocale, eOutput, tLanguage, kEvaluateFormatGlobal);
}

// The tag of the row comes with the locale; the definition's own says nothing here.
template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebConditionalCurrencyFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    return currencyFormatter<T>(
        currencyPattern(tDefinition, tLocale.overridingCurrencyTag(), tLocale, eOutput, tLanguage), tLocale, eOutput,
        tLanguage, kEvaluateFormatRowWiseCondCurr);
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebCustomFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    if (!tDefinition.isConditionalCurrencyFormat())
        return ParseCustomFormat(tDefinition.GetCustomFormat(), tLocale, eOutput, tLanguage);
    return currencyFormatter<T>(customCurrencyPattern(tDefinition, tLocale, eOutput, tLanguage), tLocale, eOutput,
                                tLanguage, kEvaluateFormatRowWiseCondCurr);
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateFormatter(const WebValueFormatDefinition& tDefinition,
                                                             const Locale& tLocale, OutputType eOutput,
                                                             const KTWUILanguage& tLanguage)
{
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(&tDefinition))
        return CreateFormatter(*pCustom, tLocale, eOutput, tLanguage);
    if (const auto* pNumber = dynamic_cast<const WebNumberFormatDefinition*>(&tDefinition))
        return CreateFormatter(*pNumber, tLocale, eOutput, tLanguage);
    if (const auto* pConditional = dynamic_cast<const WebConditionalCurrencyFormatDefinition*>(&tDefinition))
        return CreateFormatter(*pConditional, tLocale, eOutput, tLanguage);
    if (const auto* pCurrency = dynamic_cast<const WebCurrencyFormatDefinition*>(&tDefinition))
        return CreateFormatter(*pCurrency, tLocale, eOutput, tLanguage);
    if (const auto* pPercent = dynamic_cast<const WebPercentFormatDefinition*>(&tDefinition))
        return CreateFormatter(*pPercent, tLocale, eOutput, tLanguage);
    // The conversion never answers with a definition of the older notation.
    if (const auto* pWhistler = dynamic_cast<const WebWhistlerFormatDefinition*>(&tDefinition))
        return CreateFormatter(*WebConvertWhistlerFormat::ConvertNumericFormat(*pWhistler), tLocale, eOutput,
                               tLanguage);
    return WebValueFormatterHandle();
}

template <class T>
WebValueFormatterHandle NumericFormatter<T>::CreateDefaultFormatter(
    FormatAs eFormatAs, const Locale& tLocale, OutputType eOutput,
    const WebValueFormatDefinition::FormatParameters& tParameters, const KTWUILanguage& tLanguage)
{
    if (eFormatAs == kDisplayAsInteger)
        return ParseCustomFormat(integerPattern(tParameters), tLocale, eOutput, tLanguage);
    if (eFormatAs != kDisplayAsReal && eFormatAs != kDisplayAsRealFullPrecision)
    {
        Assertion::handleFailure("not expected", kSource, __LINE__);
        return WebValueFormatterHandle();
    }
    WebNumberFormatDefinition tDefinition = eFormatAs == kDisplayAsReal ? realDefinition() : fullPrecisionDefinition();
    applyParameters(tDefinition, tParameters, getPrecision(eFormatAs));
    return CreateFormatter(tDefinition, tLocale, eOutput, tLanguage);
}

template <class T>
unsigned NumericFormatter<T>::getPrecision(FormatAs eFormatAs)
{
    const int nMaximum = FormatterConfig::maxSignificantDigitsSource().load(std::memory_order_relaxed);
    const unsigned nCap = static_cast<unsigned>(std::max(nMaximum, 0));
    switch (eFormatAs)
    {
    case kDisplayAsInteger: return NumericInfo<T>::precision(0, nCap);
    case kDisplayAsRealFullPrecision: return NumericInfo<T>::precision(kFullPrecisionDigits, nCap);
    default: return NumericInfo<T>::precision(kRealDigits, nCap);
    }
}

template <class T>
SQLDataType::StorageType NumericFormatter<T>::storageTypeForNumericType()
{
    return NumericInfo<T>::kStorage;
}

template class NumericFormatter<double>;
template class NumericFormatter<int>;
template class NumericFormatter<unsigned int>;
template class NumericFormatter<long>;
template class NumericFormatter<unsigned long>;
template class NumericFormatter<CorvidNumber>;

}  // namespace tov

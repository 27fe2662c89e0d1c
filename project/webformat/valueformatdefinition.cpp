#include "webformat/valueformatdefinition.h"

#include "project/webformat/definitionsettings.h"
#include "project/webformat/enumnames.h"
#include "webbedrock/assertion.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"
#include "xml/domhelper.h"
#include "xml/schemas.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/valueformatdefinition";

using DefType = WebValueFormatDefinition::DefType;

constexpr EnumNames kTypeNames({
    EnumName<DefType>{WebValueFormatDefinition::kNone, L"none"},
    {WebValueFormatDefinition::kCustomFormat, L"custom"},
    {WebValueFormatDefinition::kTextFormat, L"text"},
    {WebValueFormatDefinition::kNumberFormat, L"number"},
    {WebValueFormatDefinition::kDateFormat, L"date"},
    {WebValueFormatDefinition::kWhistlerFormat, L"whistler"},
    {WebValueFormatDefinition::kCurrencyFormat, L"currency"},
    {WebValueFormatDefinition::kPercentFormat, L"percent"},
    {WebValueFormatDefinition::kDatetimeFormat, L"datetime"},
    {WebValueFormatDefinition::kTimeFormat, L"time"},
    {WebValueFormatDefinition::kConditionalCurrencyFormat, L"conditionalcurrency"},
});

// A definition of a type with the settings that it has before anything is read; null for none.
WebValueFormatDefinition* newDefinition(DefType eType)
{
    constexpr auto kMinus = WebNumberFormatDefinitionBase::kMinus;
    switch (eType)
    {
    case WebValueFormatDefinition::kNone: return nullptr;
    case WebValueFormatDefinition::kCustomFormat: return WEBFORMAT_NEW(kSource) WebCustomFormatDefinition;
    case WebValueFormatDefinition::kTextFormat: return WEBFORMAT_NEW(kSource) WebTextFormatDefinition;
    case WebValueFormatDefinition::kNumberFormat:
        return WEBFORMAT_NEW(kSource) WebNumberFormatDefinition(kMinus, true, 0, 0);
    case WebValueFormatDefinition::kDateFormat:
        return WEBFORMAT_NEW(kSource) WebDateFormatDefinition(WebDateFormatDefinition::kShortDate);
    case WebValueFormatDefinition::kWhistlerFormat: return WEBFORMAT_NEW(kSource) WebWhistlerFormatDefinition;
    case WebValueFormatDefinition::kCurrencyFormat:
        return WEBFORMAT_NEW(kSource) WebCurrencyFormatDefinition(String(), kMinus, false, 0, 0);
    case WebValueFormatDefinition::kPercentFormat:
        return WEBFORMAT_NEW(kSource) WebPercentFormatDefinition(kMinus, false, 0, 0);
    case WebValueFormatDefinition::kDatetimeFormat:
        return WEBFORMAT_NEW(kSource) WebDateFormatDefinition(WebDateFormatDefinition::kShortTimeStamp);
    case WebValueFormatDefinition::kTimeFormat:
        return WEBFORMAT_NEW(kSource) WebDateFormatDefinition(WebDateFormatDefinition::kTime);
    case WebValueFormatDefinition::kConditionalCurrencyFormat:
        return WEBFORMAT_NEW(kSource) WebConditionalCurrencyFormatDefinition(String(), kMinus, false, 0, 0, String());
    default: Assertion::handleFailure("false", kSource, __LINE__); return nullptr;
    }
}

}  // namespace

constinit const wchar_t* const WebValueFormatDefinition::ksMsoNumberFormat = L"mso-number-format:'";
constinit const wchar_t* const WebValueFormatDefinition::ksQuotedPercent = L"&quot;%&quot;";

WebValueFormatDefinition::~WebValueFormatDefinition() = default;

void WebValueFormatDefinition::populateCurrencyTagColumnFormulaIfApplies(String&) const {}

String WebValueFormatDefinition::streamableDefinitionNameImpl() const
{
    return typeName(GetDefType());
}

OwnedDefinitionHandle WebValueFormatDefinition::DynamicReadXML(const XmlElement& tElement)
{
    const OwnedDefinitionHandle hDefinition(newDefinition(typeFromName(DOMHelper::getXsiType(tElement, L"none"))));
    if (!hDefinition.isNull())
        hDefinition->readXml(tElement);
    return hDefinition;
}

XmlElement& WebValueFormatDefinition::setDataFormatElement(XmlElement& tParent,
                                                           const WebValueFormatDefinitionHandle& hDef)
{
    WEBFORMAT_ASSERT(kSource, !hDef.isNull());
    // Asked for its name first, so that a null handle throws before anything is written.
    const String sType = hDef->streamableDefinitionName();
    XmlElement& tElement = DOMHelper::forceElement(tParent, schemas::Report::kqnDataFormat);
    DOMHelper::setXsiType(tElement, schemas::Report::kTovNamespace, sType);
    hDef->populateDataFormat(tElement);
    return tElement;
}

int WebValueFormatDefinition::CompareDefinitions(const WebValueFormatDefinitionHandle& hLeft,
                                                 const WebValueFormatDefinitionHandle& hRight)
{
    if (hLeft.isNull() || hRight.isNull())
        return threeWay(!hLeft.isNull(), !hRight.isNull());
    if (const int nOrder = threeWay(hLeft->GetDefType(), hRight->GetDefType()))
        return nOrder;
    return hLeft->CompareLikeDefinition(*hRight);
}

DefType WebValueFormatDefinition::typeFromName(std::wstring_view sName)
{
    return kTypeNames.valueOf(sName).value_or(kNone);
}

const wchar_t* WebValueFormatDefinition::typeName(DefType eType)
{
    return kTypeNames.nameOf(eType);
}

String WebValueFormatDefinition::getFormatPattern(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                  FormatPattern ePattern) const
{
    return getMsoFormatPatternImpl(tLocale, tLanguage, ePattern);
}

void WebValueFormatDefinition::writeToStream(OutputStream& tStream) const
{
    tStream.writeString(streamableDefinitionName());
    writeToStreamImpl(tStream);
}

String WebValueFormatDefinition::streamableDefinitionName() const
{
    return streamableDefinitionNameImpl();
}

String WebValueFormatDefinition::msoStyleOfPattern(const Locale& tLocale, const KTWUILanguage& tLanguage) const
{
    const String sPattern = getFormatPattern(tLocale, tLanguage, kFormatPatternNormal);
    return sPattern.empty() ? sPattern : ksMsoNumberFormat + sPattern + L"';";
}

}  // namespace tov

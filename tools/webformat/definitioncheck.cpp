#include "definitioncheck.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "intl/currencylookup.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"
#include "webformat/timezoneresolver.h"
#include "xml/domhelper.h"
#include "xml/lexical.h"
#include "xml/schemas.h"
#include "zonesettings.h"

namespace tov {

namespace {

using DefType = WebValueFormatDefinition::DefType;

std::vector<String> typeNames()
{
    std::vector<String> vNames;
    for (int nType = WebValueFormatDefinition::kNone; nType < WebValueFormatDefinition::kLastDef; ++nType)
        vNames.emplace_back(WebValueFormatDefinition::typeName(static_cast<DefType>(nType)));
    return vNames;
}

std::vector<String> negativeNames()
{
    std::vector<String> vNames;
    for (int nFormat = 0; nFormat < WebNumberFormatDefinitionBase::kNegativeFormatEnd_; ++nFormat)
        vNames.emplace_back(WebNumberFormatDefinitionBase::negativeFormatName(
            static_cast<WebNumberFormatDefinitionBase::NegativeFormat>(nFormat)));
    return vNames;
}

// The name that a definition has for its setting of that name.
String settingOf(const WebValueFormatDefinition& tDefinition, const wchar_t* pName)
{
    for (const FormatDefinitionSetting& tSetting : tDefinition.settings())
        if (tSetting.sName == pName && std::holds_alternative<String>(tSetting.tValue))
            return std::get<String>(tSetting.tValue);
    return String();
}

template <class Definition>
std::vector<String> namesOfTypes(int nEnd, const wchar_t* pAttribute)
{
    std::vector<String> vNames;
    for (int nType = 0; nType < nEnd; ++nType)
        vNames.push_back(settingOf(Definition(static_cast<typename Definition::Type>(nType)), pAttribute));
    return vNames;
}

bool isOneOf(const String& sName, const std::vector<String>& vNames)
{
    return std::find(vNames.begin(), vNames.end(), sName) != vNames.end();
}

// Checks the attributes of one data-format element.
class Checker
{
public:
    Checker(const XmlElement& tElement, const Locale& tLocale, const std::string& sFile)
        : m_tElement(tElement), m_tLocale(tLocale), m_sFile(sFile)
    {
    }

    void check();

private:
    DefType checkType() const;
    void checkChildren(DefType eType) const;
    void checkValue(const XmlAttribute& tAttribute) const;
    void checkNumber(const XmlAttribute& tAttribute, std::int64_t nLeast, std::int64_t nMost) const;
    void checkPattern(const XmlAttribute& tAttribute) const;
    void checkCurrency(const XmlAttribute& tAttribute) const;
    void checkNegative(const XmlAttribute& tAttribute) const;
    void checkDate(const XmlAttribute& tAttribute) const;
    void checkScale(const XmlAttribute& tAttribute) const;
    void checkZone(const XmlAttribute& tAttribute, const String& sZone) const;
    void require(std::initializer_list<const wchar_t*> vNames) const;
    [[noreturn]] void fail(const XmlAttribute& tAttribute, const std::string& sExpected) const;

    const XmlElement& m_tElement;
    const Locale& m_tLocale;
    const std::string& m_sFile;
};

std::vector<String> attributesOf(DefType eType)
{
    std::vector<String> vNumber = {L"minDigits", L"maxDigits", L"commas", L"negativeType", L"scaleFactor", L"scale"};
    switch (eType)
    {
    case WebValueFormatDefinition::kCustomFormat: return {L"customFormat", L"displayTimeZone"};
    case WebValueFormatDefinition::kTextFormat: return {L"textFormat"};
    case WebValueFormatDefinition::kWhistlerFormat: return {L"whistlerFormat"};
    case WebValueFormatDefinition::kDateFormat:
    case WebValueFormatDefinition::kDatetimeFormat:
    case WebValueFormatDefinition::kTimeFormat: return {L"biFormat", L"predefinedFormat", L"displayTimeZone"};
    case WebValueFormatDefinition::kCurrencyFormat:
    case WebValueFormatDefinition::kConditionalCurrencyFormat: vNumber.emplace_back(L"currencyTag"); return vNumber;
    case WebValueFormatDefinition::kNumberFormat:
    case WebValueFormatDefinition::kPercentFormat: return vNumber;
    default: return {};
    }
}

void Checker::check()
{
    const DefType eType = checkType();
    checkAttributeNames(m_tElement, attributesOf(eType), m_sFile);
    for (const XmlAttribute& tAttribute : m_tElement.attributes())
        if (tAttribute.sNamespace.empty())
            checkValue(tAttribute);
    checkChildren(eType);
    if (eType == WebValueFormatDefinition::kCustomFormat)
        require({L"customFormat"});
    if (eType == WebValueFormatDefinition::kWhistlerFormat)
        require({L"whistlerFormat"});
    if (eType == WebValueFormatDefinition::kCurrencyFormat && m_tElement.getAttributeOr(L"currencyTag").empty())
        throw InputError(placeIn(m_sFile, m_tElement.place()),
                         "found no currency, expected the attribute \"currencyTag\"");
    if (eType == WebValueFormatDefinition::kDateFormat || eType == WebValueFormatDefinition::kDatetimeFormat ||
        eType == WebValueFormatDefinition::kTimeFormat)
        require({L"biFormat", L"predefinedFormat"});
}

DefType Checker::checkType() const
{
    const XmlAttribute* pType = m_tElement.findAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType);
    const std::vector<String> vNames = typeNames();
    if (!pType)
        throw InputError(placeIn(m_sFile, m_tElement.place()),
                         "found no attribute \"xsi:type\", expected one that names " + alternatives(vNames));
    const String sName = DOMHelper::getXsiType(m_tElement, L"");
    if (!isOneOf(sName, vNames))
        fail(*pType, alternatives(vNames));
    return WebValueFormatDefinition::typeFromName(sName);
}

void Checker::checkChildren(DefType eType) const
{
    const bool bTagColumn = eType == WebValueFormatDefinition::kConditionalCurrencyFormat;
    for (const XmlElement& tChild : m_tElement.children())
        if (!bTagColumn || !tChild.hasName(schemas::Report::kqnCurrencyTagColumn))
            throw InputError(placeIn(m_sFile, tChild.place()), "found the element " +
                                                                   quotedForMessage(toUtf8(tChild.localName())) +
                                                                   ", expected none of that name here");
    if (!bTagColumn)
        return;
    const XmlElement* pExpression =
        m_tElement.findPath({schemas::Report::kqnCurrencyTagColumn, schemas::Expression::kqnExpr});
    if (!pExpression || lexical::trim(pExpression->text()).empty())
        throw InputError(
            placeIn(m_sFile, m_tElement.place()),
            "found no tag column, expected the elements \"tov:currencyTagColumn\" and in it \"tovx:expr\"");
}

void Checker::checkValue(const XmlAttribute& tAttribute) const
{
    const String& sName = tAttribute.sLocalName;
    if (sName == L"minDigits" || sName == L"maxDigits")
        checkNumber(tAttribute, 0, std::numeric_limits<std::uint32_t>::max());
    else if (sName == L"scale")
        checkNumber(tAttribute, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    else if (sName == L"commas" && !lexical::parseBool(tAttribute.sValue))
        fail(tAttribute, "true or false");
    else if (sName == L"negativeType")
        checkNegative(tAttribute);
    else if (sName == L"biFormat")
        checkDate(tAttribute);
    else if (sName == L"scaleFactor")
        checkScale(tAttribute);
    else if (sName == L"displayTimeZone")
        checkZone(tAttribute, tAttribute.sValue);
    else if (sName == L"customFormat" || sName == L"predefinedFormat")
        checkPattern(tAttribute);
    else if (sName == L"currencyTag")
        checkCurrency(tAttribute);
    else if (sName == L"textFormat")
    {
        const auto vNames =
            namesOfTypes<WebTextFormatDefinition>(WebTextFormatDefinition::kTextTypeEnd_, L"textFormat");
        if (!isOneOf(tAttribute.sValue, vNames))
            fail(tAttribute, alternatives(vNames));
    }
}

void Checker::checkPattern(const XmlAttribute& tAttribute) const
{
    checkZone(tAttribute, TimeZoneResolver::getTimeZoneFromFormatString(tAttribute.sValue));
    const WebCustomFormatDefinition tDefinition(tAttribute.sValue);
    String sTagColumn;
    tDefinition.checkAndpopulateCurrencyTagColumnFormula(sTagColumn);
    if (tDefinition.isConditionalCurrencyFormat() &&
        (tAttribute.sValue.back() != L']' || lexical::trim(sTagColumn).empty()))
        fail(tAttribute, "a pattern or \"[$:currencyTagColumn=\", the name of a column of the data and \"]\"");
}

// The library would show whole numbers.
void Checker::checkCurrency(const XmlAttribute& tAttribute) const
{
    if (!tAttribute.sValue.empty() && CurrencyLookup::getInstance().lookupCurrencyTag(tAttribute.sValue).isNull())
        fail(tAttribute, "a currency tag such as \"loc:en-US\", \"int:EUR\" or \"USD\"");
}

void Checker::checkNumber(const XmlAttribute& tAttribute, std::int64_t nLeast, std::int64_t nMost) const
{
    if (!lexical::parseInteger(tAttribute.sValue, nLeast, nMost))
        fail(tAttribute, "a whole number from " + std::to_string(nLeast) + " to " + std::to_string(nMost));
}

// Older spellings are read too; what is unknown reads as the first style.
void Checker::checkNegative(const XmlAttribute& tAttribute) const
{
    using Base = WebNumberFormatDefinitionBase;
    const bool bFirst = tAttribute.sValue == Base::negativeFormatName(Base::kMinus) || tAttribute.sValue == L"-";
    if (!bFirst && Base::negativeFormatFromName(tAttribute.sValue) == Base::kMinus)
        fail(tAttribute, alternatives(negativeNames()));
}

void Checker::checkDate(const XmlAttribute& tAttribute) const
{
    constexpr auto eUnknown = WebDateFormatDefinition::kDateTypeEnd_;
    if (!tAttribute.sValue.empty() &&
        WebDateFormatDefinition::GetTypeFromString(tAttribute.sValue, eUnknown) == eUnknown)
        fail(tAttribute, alternatives(namesOfTypes<WebDateFormatDefinition>(eUnknown, L"biFormat")));
}

void Checker::checkScale(const XmlAttribute& tAttribute) const
{
    std::vector<String> vNames = {L"none", L"auto", L"first", L"second"};
    // A scale that the locale has no short name for would leave the values as they are.
    for (const Locale::ScaleFactor& tScale : m_tLocale.getScaleFactors())
        vNames.push_back(tScale.sName);
    if (!tAttribute.sValue.empty() && !isOneOf(tAttribute.sValue, vNames))
        fail(tAttribute, alternatives(vNames));
}

void Checker::checkZone(const XmlAttribute& tAttribute, const String& sZone) const
{
    if (!sZone.empty() && !isZoneOrDefault(sZone))
        fail(tAttribute, kpExpectedZone);
}

void Checker::require(std::initializer_list<const wchar_t*> vNames) const
{
    for (const wchar_t* pName : vNames)
        if (const String* pValue = m_tElement.getAttribute(pName); pValue && !pValue->empty())
            return;
    throw InputError(
        placeIn(m_sFile, m_tElement.place()),
        "found no pattern, expected the attribute " + alternatives(std::vector<String>(vNames.begin(), vNames.end())));
}

void Checker::fail(const XmlAttribute& tAttribute, const std::string& sExpected) const
{
    failAttribute(tAttribute, m_sFile, sExpected);
}

}  // namespace

void failAttribute(const XmlAttribute& tAttribute, const std::string& sFile, const std::string& sExpected)
{
    throw InputError(placeIn(sFile, tAttribute.tPlace), toUtf8(tAttribute.sLocalName) + ": found " +
                                                            quotedForMessage(toUtf8(tAttribute.sValue)) +
                                                            ", expected " + sExpected);
}

InputPlace placeIn(const std::string& sFile, const XmlPlace& tPlace)
{
    return {sFile, static_cast<std::size_t>(tPlace.nLine), static_cast<std::size_t>(tPlace.nColumn)};
}

std::string alternatives(const std::vector<String>& vNames)
{
    std::string sResult;
    for (std::size_t nAt = 0; nAt < vNames.size(); ++nAt)
    {
        const bool bLast = nAt + 1 == vNames.size();
        sResult += (nAt == 0 ? "" : bLast ? " or " : ", ") + quotedForMessage(toUtf8(vNames[nAt]));
    }
    return sResult.empty() ? "none" : sResult;
}

void checkAttributeNames(const XmlElement& tElement, const std::vector<String>& vNames, const std::string& sFile)
{
    for (const XmlAttribute& tAttribute : tElement.attributes())
        if (tAttribute.sNamespace.empty() && !isOneOf(tAttribute.sLocalName, vNames))
            throw InputError(placeIn(sFile, tAttribute.tPlace), "found the attribute " +
                                                                    quotedForMessage(toUtf8(tAttribute.sLocalName)) +
                                                                    ", expected " + alternatives(vNames));
}

void checkDataFormat(const XmlElement& tElement, const Locale& tLocale, const std::string& sFile)
{
    Checker(tElement, tLocale, sFile).check();
}

}  // namespace tov

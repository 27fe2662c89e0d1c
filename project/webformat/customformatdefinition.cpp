#include "project/webformat/definitionsettings.h"
#include "project/webformat/excelpattern.h"
#include "utilities/stringutils.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/valueformatdefinition";

constexpr std::wstring_view kCustomFormatAttribute = L"customFormat";
constexpr std::wstring_view kDisplayTimeZoneAttribute = L"displayTimeZone";
constexpr std::wstring_view kTimeZoneMarker = L"[TZ:";
constexpr std::wstring_view kConditionalCurrencyMarker = L"[$:currencyTagColumn=";

// A pattern as the attributes hold it: without its time-zone marker, and the zone's name where the marker is closed.
struct SplitPattern
{
    std::wstring_view sPattern;
    std::optional<std::wstring_view> tDisplayTimeZone;
};

// Kept: what stands behind the marker is dropped. A marker that came out of the attributes is always the end.
SplitPattern split(std::wstring_view sPattern)
{
    const std::size_t nMarker = sPattern.find(kTimeZoneMarker);
    if (nMarker == std::wstring_view::npos)
        return {sPattern, std::nullopt};
    const std::size_t nName = nMarker + kTimeZoneMarker.size();
    const std::size_t nClose = sPattern.find(L']', nName);
    SplitPattern tSplit{sPattern.substr(0, nMarker), std::nullopt};
    if (nClose != std::wstring_view::npos)
        tSplit.tDisplayTimeZone = StringUtils::trim(sPattern.substr(nName, nClose - nName));
    return tSplit;
}

}  // namespace

WebCustomFormatDefinition::WebCustomFormatDefinition(String sCustomFormat) : m_sCustomFormat(std::move(sCustomFormat))
{
}

void WebCustomFormatDefinition::readXml(const XmlElement& tElement)
{
    m_sCustomFormat = tElement.getAttributeOr(kCustomFormatAttribute);
    const String sDisplayTimeZone = tElement.getAttributeOr(kDisplayTimeZoneAttribute);
    if (!sDisplayTimeZone.empty())
        m_sCustomFormat.append(kTimeZoneMarker).append(sDisplayTimeZone).append(L"]");
}

WebCustomFormatDefinition::DefType WebCustomFormatDefinition::GetDefType() const
{
    return kCustomFormat;
}

OwnedDefinitionHandle WebCustomFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebCustomFormatDefinition(*this));
}

String WebCustomFormatDefinition::getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const
{
    return msoStyleOfPattern(tLocale, tLanguage);
}

void WebCustomFormatDefinition::populateCurrencyTagColumnFormulaIfApplies(String& sFormula) const
{
    checkAndpopulateCurrencyTagColumnFormula(sFormula);
}

// The extra parameters take no part.
int WebCustomFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    return threeWay(m_sCustomFormat, static_cast<const WebCustomFormatDefinition&>(tOther).m_sCustomFormat);
}

void WebCustomFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    const SplitPattern tSplit = split(m_sCustomFormat);
    tElement.setAttribute(kCustomFormatAttribute, tSplit.sPattern);
    if (tSplit.tDisplayTimeZone)
        tElement.setAttribute(kDisplayTimeZoneAttribute, *tSplit.tDisplayTimeZone);
    else
        tElement.removeAttribute(kDisplayTimeZoneAttribute);
}

void WebCustomFormatDefinition::writeToStreamImpl(OutputStream& tStream) const
{
    tStream.writeString(m_sCustomFormat);
}

// A conditional currency has no pattern: the spreadsheet writer asks for the tag column instead.
String WebCustomFormatDefinition::getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                          FormatPattern ePattern) const
{
    if (isConditionalCurrencyFormat())
        return String();
    const String sPattern = excelPatternOf(m_sCustomFormat, tLocale, tLanguage);
    return ePattern == kFormatPatternExcel ? sPattern : escapedForStyle(sPattern);
}

std::vector<FormatDefinitionSetting> WebCustomFormatDefinition::settings() const
{
    const SplitPattern tSplit = split(m_sCustomFormat);
    std::vector<FormatDefinitionSetting> vSettings = {
        {String(kCustomFormatAttribute), String(tSplit.sPattern)},
        {String(kDisplayTimeZoneAttribute), String(tSplit.tDisplayTimeZone.value_or(L""))},
    };
    for (const auto& [sName, sValue] : m_tExtraParameters)
        vSettings.push_back({sName, sValue});
    return vSettings;
}

bool WebCustomFormatDefinition::isConditionalCurrencyFormat() const
{
    return m_sCustomFormat.starts_with(kConditionalCurrencyMarker);
}

String WebCustomFormatDefinition::getParameterByName(const String& sName) const
{
    const auto tParameter = m_tExtraParameters.find(sName);
    return tParameter == m_tExtraParameters.end() ? String() : tParameter->second;
}

void WebCustomFormatDefinition::setParameter(const String& sName, const String& sValue)
{
    m_tExtraParameters.emplace(sName, sValue);
}

void WebCustomFormatDefinition::checkAndpopulateCurrencyTagColumnFormula(String& sFormula) const
{
    if (!isConditionalCurrencyFormat())
        return;
    std::wstring_view sExpression = m_sCustomFormat;
    sExpression.remove_prefix(kConditionalCurrencyMarker.size());
    sExpression = sExpression.substr(0, sExpression.empty() ? 0 : sExpression.size() - 1);  // the closing "]"
    if (sExpression.size() >= 2 && sExpression.starts_with(L'\'') && sExpression.ends_with(L'\''))
        sExpression = sExpression.substr(1, sExpression.size() - 2);
    sFormula = sExpression;
}

}  // namespace tov

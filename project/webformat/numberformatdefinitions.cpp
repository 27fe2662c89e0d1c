#include <algorithm>

#include "project/webformat/currencypattern.h"
#include "project/webformat/definitionsettings.h"
#include "project/webformat/enumnames.h"
#include "utilities/stringutils.h"
#include "webbedrock/assertion.h"
#include "webformat/numericformatter.h"
#include "xml/domhelper.h"
#include "xml/schemas.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/numericformatters";

constexpr std::wstring_view kMinDigitsAttribute = L"minDigits";
constexpr std::wstring_view kMaxDigitsAttribute = L"maxDigits";
constexpr std::wstring_view kCommasAttribute = L"commas";
constexpr std::wstring_view kNegativeTypeAttribute = L"negativeType";
constexpr std::wstring_view kScaleFactorAttribute = L"scaleFactor";
constexpr std::wstring_view kScaleAttribute = L"scale";
constexpr std::wstring_view kCurrencyTagAttribute = L"currencyTag";
constexpr std::wstring_view kCurrencyTagColumnElement = L"currencyTagColumn";

// What a definition that gives no digits is read as.
constexpr std::uint32_t kDefaultDigits = 2;

// A longer run of digits is no legal Excel pattern, and digit counts come from outside.
constexpr std::uint32_t kLongestDigitRun = 255;

constexpr wchar_t ksPercent[] = L"%";
constexpr std::wstring_view kSignBeforeNumber = L"%#";

using NegativeFormat = WebNumberFormatDefinitionBase::NegativeFormat;

// The current names first, then the older spellings.
constexpr EnumNames kNegativeFormatNames({
    EnumName<NegativeFormat>{WebNumberFormatDefinitionBase::kMinus, L"minus"},
    {WebNumberFormatDefinitionBase::kRed, L"red"},
    {WebNumberFormatDefinitionBase::kParens, L"paren"},
    {WebNumberFormatDefinitionBase::kRedParens, L"redParen"},
    {WebNumberFormatDefinitionBase::kRedMinus, L"redMinus"},
    {WebNumberFormatDefinitionBase::kMinus, L"-"},
    {WebNumberFormatDefinitionBase::kRed, L"[red]"},
    {WebNumberFormatDefinitionBase::kParens, L"()"},
    {WebNumberFormatDefinitionBase::kRedParens, L"[red]()"},
    {WebNumberFormatDefinitionBase::kRedMinus, L"[red]-"},
});

void appendDigitRun(StringBufferBaseTemplate<wchar_t>& tBuffer, wchar_t nDigit, std::uint32_t nCount)
{
    tBuffer.appendRepeated(nDigit, std::min(nCount, kLongestDigitRun));
}

// ".", the digits that are always shown and those that are shown where they say something; nothing for none of either.
void appendFraction(StringBufferBaseTemplate<wchar_t>& tBuffer, std::uint32_t nRequired, std::uint32_t nOptional)
{
    if (nRequired == 0 && nOptional == 0)
        return;
    tBuffer.append(L'.');
    appendDigitRun(tBuffer, L'0', nRequired);
    appendDigitRun(tBuffer, L'#', nOptional);
}

bool isParenthesised(NegativeFormat eFormat)
{
    return eFormat == WebNumberFormatDefinitionBase::kParens || eFormat == WebNumberFormatDefinitionBase::kRedParens;
}

}  // namespace

WebNumberFormatDefinitionBase::WebNumberFormatDefinitionBase(NegativeFormat eFormat, bool bCommas,
                                                             std::uint32_t nMinDigits, std::uint32_t nMaxDigits)
    : m_bCommas(bCommas), m_nMinDigits(nMinDigits), m_nMaxDigits(nMaxDigits), m_eFormat(eFormat)
{
}

void WebNumberFormatDefinitionBase::setScientificNotationLimits(std::uint32_t nNegativeLimit,
                                                                std::uint32_t nPositiveLimit)
{
    m_nNegativeScaleLimit = nNegativeLimit;
    m_nPositiveScaleLimit = nPositiveLimit;
}

void WebNumberFormatDefinitionBase::readXml(const XmlElement& tElement)
{
    ReadXMLAttributes(tElement);
}

void WebNumberFormatDefinitionBase::ReadXMLAttributes(const XmlElement& tElement)
{
    m_nMinDigits = tElement.getUnsignedAttribute(kMinDigitsAttribute, kDefaultDigits);
    m_nMaxDigits = tElement.getUnsignedAttribute(kMaxDigitsAttribute, kDefaultDigits);
    m_bCommas = tElement.getBoolAttribute(kCommasAttribute, false);
    m_eFormat = negativeFormatFromName(tElement.getAttributeOr(kNegativeTypeAttribute));
    m_sScaleFactor = tElement.getAttributeOr(kScaleFactorAttribute);
    m_nScale = tElement.getIntAttribute(kScaleAttribute, 0);
}

// The scale factor is not written: a caller may have imposed it on a definition that is stored without one.
void WebNumberFormatDefinitionBase::populateDataFormat(XmlElement& tElement) const
{
    tElement.setUnsignedAttribute(kMinDigitsAttribute, m_nMinDigits);
    tElement.setUnsignedAttribute(kMaxDigitsAttribute, m_nMaxDigits);
    tElement.setBoolAttribute(kCommasAttribute, m_bCommas);
    kNegativeFormatNames.writeAttribute(tElement, kNegativeTypeAttribute, m_eFormat, kSource);
    if (m_nScale != 0)
        tElement.setIntAttribute(kScaleAttribute, m_nScale);
    else
        tElement.removeAttribute(kScaleAttribute);
}

// The scale factor takes no part.
int WebNumberFormatDefinitionBase::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    const auto tKey = [](const WebNumberFormatDefinitionBase& tDefinition)
    {
        return std::make_tuple(tDefinition.m_bCommas, static_cast<int>(tDefinition.m_eFormat), tDefinition.m_nMinDigits,
                               tDefinition.m_nMaxDigits, tDefinition.m_nScale, tDefinition.m_nPositiveScaleLimit,
                               tDefinition.m_nNegativeScaleLimit);
    };
    return threeWay(tKey(*this), tKey(static_cast<const WebNumberFormatDefinitionBase&>(tOther)));
}

void WebNumberFormatDefinitionBase::writeToStreamImpl(OutputStream& tStream) const
{
    tStream.writeUInt32(m_nMinDigits);
    tStream.writeUInt32(m_nMaxDigits);
    tStream.writeBool(m_bCommas);
    tStream.writeByte(static_cast<std::uint8_t>(m_eFormat));
}

String WebNumberFormatDefinitionBase::getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const
{
    return msoStyleOfPattern(tLocale, tLanguage);
}

String WebNumberFormatDefinitionBase::getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                              FormatPattern) const
{
    StringBufferTemplate<wchar_t, 256> tBuffer;
    if (!msoFormat(tBuffer, tLocale, tLanguage) || !msoNegativeFormat(tBuffer, tLocale, tLanguage))
        return String();
    return tBuffer.toString();
}

std::vector<FormatDefinitionSetting> WebNumberFormatDefinitionBase::settings() const
{
    return {
        {String(kCommasAttribute), m_bCommas},
        {String(kMinDigitsAttribute), std::int64_t{m_nMinDigits}},
        {String(kMaxDigitsAttribute), std::int64_t{m_nMaxDigits}},
        {String(kNegativeTypeAttribute), String(negativeFormatName(m_eFormat))},
        {String(kScaleAttribute), std::int64_t{m_nScale}},
        {String(kScaleFactorAttribute), m_sScaleFactor},
    };
}

bool WebNumberFormatDefinitionBase::msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale&,
                                              const KTWUILanguage&) const
{
    tBuffer.append(m_bCommas ? L"#,##0" : L"0");
    if (m_nMaxDigits > m_nMinDigits)
        appendFraction(tBuffer, m_nMinDigits, m_nMaxDigits - m_nMinDigits);
    else
        appendFraction(tBuffer, m_nMinDigits, 0);
    return true;
}

bool WebNumberFormatDefinitionBase::msoNegativeFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                                                      const KTWUILanguage& tLanguage) const
{
    // Excel writes a minus sign of its own.
    if (m_eFormat == kMinus || m_eFormat >= kNegativeFormatEnd_)
        return true;
    const bool bParens = isParenthesised(m_eFormat);
    tBuffer.append(bParens ? L"_);" : L";");  // "_)": a space as wide as the parenthesis, so that digits line up
    if (m_eFormat != kParens)
        tBuffer.append(L"[red]");
    if (m_eFormat == kRedMinus)
        tBuffer.append(L'-');
    if (bParens)
        tBuffer.append(L'(');
    if (!msoFormat(tBuffer, tLocale, tLanguage))
        return false;
    if (bParens)
        tBuffer.append(L')');
    return true;
}

NegativeFormat WebNumberFormatDefinitionBase::negativeFormatFromName(std::wstring_view sName)
{
    return kNegativeFormatNames.valueOf(sName).value_or(kMinus);
}

const wchar_t* WebNumberFormatDefinitionBase::negativeFormatName(NegativeFormat eFormat)
{
    return kNegativeFormatNames.nameOf(eFormat);
}

WebValueFormatDefinition::DefType WebNumberFormatDefinition::GetDefType() const
{
    return kNumberFormat;
}

OwnedDefinitionHandle WebNumberFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebNumberFormatDefinition(*this));
}

WebValueFormatDefinition::DefType WebPercentFormatDefinition::GetDefType() const
{
    return kPercentFormat;
}

OwnedDefinitionHandle WebPercentFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebPercentFormatDefinition(*this));
}

bool WebPercentFormatDefinition::msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                                           const KTWUILanguage&) const
{
    const bool bSignFirst = tLocale.getInfo(Locale::kPercentSymbolLocation).starts_with(kSignBeforeNumber);
    if (bSignFirst)
        tBuffer.append(m_nScale != 0 ? ksPercent : ksQuotedPercent);
    tBuffer.append(L'0');
    // Kept: a maximum below the minimum is not guarded against; the difference wraps and its run is the longest one.
    appendFraction(tBuffer, m_nMinDigits, m_nMaxDigits - m_nMinDigits);
    if (!bSignFirst)
        tBuffer.append(ksPercent);
    return true;
}

WebCurrencyFormatDefinition::WebCurrencyFormatDefinition(const String& sCurrencyTag, NegativeFormat eFormat,
                                                         bool bCommas, std::uint32_t nMinDigits,
                                                         std::uint32_t nMaxDigits)
    : WebNumberFormatDefinitionBase(eFormat, bCommas, nMinDigits, nMaxDigits), m_sCurrencyTag(sCurrencyTag)
{
}

void WebCurrencyFormatDefinition::readXml(const XmlElement& tElement)
{
    ReadXMLAttributes(tElement);
    m_sCurrencyTag = tElement.getAttributeOr(kCurrencyTagAttribute);
}

WebValueFormatDefinition::DefType WebCurrencyFormatDefinition::GetDefType() const
{
    return kCurrencyFormat;
}

OwnedDefinitionHandle WebCurrencyFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebCurrencyFormatDefinition(*this));
}

int WebCurrencyFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    if (const int nOrder = WebNumberFormatDefinitionBase::CompareLikeDefinition(tOther))
        return nOrder;
    return threeWay(m_sCurrencyTag, static_cast<const WebCurrencyFormatDefinition&>(tOther).m_sCurrencyTag);
}

void WebCurrencyFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    WebNumberFormatDefinitionBase::populateDataFormat(tElement);
    tElement.setAttribute(kCurrencyTagAttribute, m_sCurrencyTag);
}

void WebCurrencyFormatDefinition::writeToStreamImpl(OutputStream& tStream) const
{
    WebNumberFormatDefinitionBase::writeToStreamImpl(tStream);
    tStream.writeString(m_sCurrencyTag);
}

std::vector<FormatDefinitionSetting> WebCurrencyFormatDefinition::settings() const
{
    std::vector<FormatDefinitionSetting> vSettings = WebNumberFormatDefinitionBase::settings();
    vSettings.push_back({String(kCurrencyTagAttribute), m_sCurrencyTag});
    return vSettings;
}

bool WebCurrencyFormatDefinition::msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                                            const KTWUILanguage& tLanguage) const
{
    const CurrencyPatternSettings tSettings{m_sCurrencyTag, numberSettingsOf(*this), m_eFormat};
    const String sPattern = buildCurrencyPattern(tSettings, tLocale, ValueFormatterTypes::kText, tLanguage);
    tBuffer.append(StringUtils::replaceAll(sPattern, L"$:", L"$"));  // the symbol's bracket as Excel has it
    return !sPattern.empty();
}

bool WebCurrencyFormatDefinition::msoNegativeFormat(StringBufferBaseTemplate<wchar_t>&, const Locale&,
                                                    const KTWUILanguage&) const
{
    return true;
}

WebConditionalCurrencyFormatDefinition::WebConditionalCurrencyFormatDefinition(const String& sCurrencyTag,
                                                                               NegativeFormat eFormat, bool bCommas,
                                                                               std::uint32_t nMinDigits,
                                                                               std::uint32_t nMaxDigits,
                                                                               const String& sCurrencyTagColumn)
    : WebCurrencyFormatDefinition(sCurrencyTag, eFormat, bCommas, nMinDigits, nMaxDigits),
      m_sCurrencyTagColumn(sCurrencyTagColumn)
{
}

void WebConditionalCurrencyFormatDefinition::readXml(const XmlElement& tElement)
{
    WebCurrencyFormatDefinition::readXml(tElement);
    const XmlElement* const pCurrColumnFormat =
        tElement.findPath({schemas::Report::kqnCurrencyTagColumn, schemas::Expression::kqnExpr});
    WEBFORMAT_ASSERT(kSource, pCurrColumnFormat);
    if (pCurrColumnFormat)
        m_sCurrencyTagColumn = pCurrColumnFormat->innerText();
}

WebValueFormatDefinition::DefType WebConditionalCurrencyFormatDefinition::GetDefType() const
{
    return kConditionalCurrencyFormat;
}

OwnedDefinitionHandle WebConditionalCurrencyFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebConditionalCurrencyFormatDefinition(*this));
}

void WebConditionalCurrencyFormatDefinition::populateCurrencyTagColumnFormulaIfApplies(String& sFormula) const
{
    sFormula = m_sCurrencyTagColumn;
}

int WebConditionalCurrencyFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    if (const int nOrder = WebCurrencyFormatDefinition::CompareLikeDefinition(tOther))
        return nOrder;
    const auto& tLike = static_cast<const WebConditionalCurrencyFormatDefinition&>(tOther);
    return threeWay(m_sCurrencyTagColumn, tLike.m_sCurrencyTagColumn);
}

void WebConditionalCurrencyFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    WebCurrencyFormatDefinition::populateDataFormat(tElement);
    XmlElement& tColumn = DOMHelper::forceElement(tElement, schemas::Report::kqnCurrencyTagColumn);
    XmlElement& tExpression = DOMHelper::forceElement(tColumn, schemas::Expression::kqnExpr);
    const XmlQualifiedName tType = schemas::Expression::kqnSqlExpression;
    DOMHelper::setXsiType(tExpression, tType.pNamespace, tType.pLocalName);
    tExpression.setInnerText(m_sCurrencyTagColumn);
}

void WebConditionalCurrencyFormatDefinition::writeToStreamImpl(OutputStream& tStream) const
{
    WebCurrencyFormatDefinition::writeToStreamImpl(tStream);
    tStream.writeString(m_sCurrencyTagColumn);
}

std::vector<FormatDefinitionSetting> WebConditionalCurrencyFormatDefinition::settings() const
{
    std::vector<FormatDefinitionSetting> vSettings = WebCurrencyFormatDefinition::settings();
    vSettings.push_back({String(kCurrencyTagColumnElement), m_sCurrencyTagColumn});
    return vSettings;
}

bool WebConditionalCurrencyFormatDefinition::msoFormat(StringBufferBaseTemplate<wchar_t>&, const Locale&,
                                                       const KTWUILanguage&) const
{
    return false;
}

const String& WebConditionalCurrencyFormatDefinition::getCurrencyTagColumn() const
{
    return m_sCurrencyTagColumn;
}

}  // namespace tov

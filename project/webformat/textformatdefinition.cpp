#include <algorithm>
#include <iterator>

#include "project/webformat/definitionsettings.h"
#include "project/webformat/enumnames.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/valueformatdefinition";

constexpr std::wstring_view kWhistlerFormatAttribute = L"whistlerFormat";
constexpr std::wstring_view ksTextFormat = L"textFormat";

using TextType = WebTextFormatDefinition::Type;

constexpr EnumNames kTextTypeNames({
    EnumName<TextType>{WebTextFormatDefinition::kPlainText, L"plain"},
    {WebTextFormatDefinition::kPlainNBSPText, L"plainNBSP"},
    {WebTextFormatDefinition::kHTML, L"html"},
    {WebTextFormatDefinition::kHypertextLinkPrependHttp, L"hyperLinkHTTP"},
    {WebTextFormatDefinition::kHypertextLink, L"hyperLink"},
    {WebTextFormatDefinition::kMailToAddress, L"mailTo"},
    {WebTextFormatDefinition::kImageURL, L"imageURL"},
});

// The text patterns that the types stand for, in the order of the types.
constexpr const wchar_t* s_ksTypeCustomFormats[] = {
    L"@",
    L"@[html]@N",
    L"@[html]@H",
    LR"("http://"@[html]"<a href=\"http://"@H"\">"@"</a>")",
    LR"(@[html]"<a href=\""@H"\">"@"</a>")",
    LR"(@[html]"<a href=\"mailto:"@H"\">"@"</a>")",
    LR"(@[html]"<img src=\""@H"\">")",
};
static_assert(std::size(s_ksTypeCustomFormats) == WebTextFormatDefinition::kTextTypeEnd_);

}  // namespace

WebWhistlerFormatDefinition::WebWhistlerFormatDefinition(String sFormat) : m_sCustomFormat(std::move(sFormat)) {}

void WebWhistlerFormatDefinition::readXml(const XmlElement& tElement)
{
    m_sCustomFormat = tElement.getAttributeOr(kWhistlerFormatAttribute);
}

WebWhistlerFormatDefinition::DefType WebWhistlerFormatDefinition::GetDefType() const
{
    return kWhistlerFormat;
}

OwnedDefinitionHandle WebWhistlerFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebWhistlerFormatDefinition(*this));
}

String WebWhistlerFormatDefinition::getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const
{
    return getFormatPattern(tLocale, tLanguage, kFormatPatternNormal);
}

int WebWhistlerFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    return threeWay(m_sCustomFormat, static_cast<const WebWhistlerFormatDefinition&>(tOther).m_sCustomFormat);
}

void WebWhistlerFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    tElement.setAttribute(kWhistlerFormatAttribute, m_sCustomFormat);
}

void WebWhistlerFormatDefinition::writeToStreamImpl(OutputStream&) const {}

String WebWhistlerFormatDefinition::getMsoFormatPatternImpl(const Locale&, const KTWUILanguage&, FormatPattern) const
{
    return String();
}

std::vector<FormatDefinitionSetting> WebWhistlerFormatDefinition::settings() const
{
    return {{String(kWhistlerFormatAttribute), m_sCustomFormat}};
}

WebTextFormatDefinition::WebTextFormatDefinition(Type eType) : m_eType(eType) {}

void WebTextFormatDefinition::readXml(const XmlElement& tElement)
{
    m_eType = kTextTypeNames.valueOf(tElement.getAttributeOr(ksTextFormat)).value_or(kPlainText);
}

WebTextFormatDefinition::DefType WebTextFormatDefinition::GetDefType() const
{
    return kTextFormat;
}

OwnedDefinitionHandle WebTextFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebTextFormatDefinition(*this));
}

String WebTextFormatDefinition::getMsoStyle(const Locale&, const KTWUILanguage&) const
{
    return L"mso-number-format:'@'";
}

int WebTextFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    return threeWay(static_cast<int>(m_eType),
                    static_cast<int>(static_cast<const WebTextFormatDefinition&>(tOther).m_eType));
}

void WebTextFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    kTextTypeNames.writeAttribute(tElement, ksTextFormat, m_eType, kSource);
}

void WebTextFormatDefinition::writeToStreamImpl(OutputStream& tStream) const
{
    tStream.writeByte(static_cast<std::uint8_t>(m_eType));
}

String WebTextFormatDefinition::getMsoFormatPatternImpl(const Locale&, const KTWUILanguage&, FormatPattern) const
{
    return String();
}

std::vector<FormatDefinitionSetting> WebTextFormatDefinition::settings() const
{
    return {{String(ksTextFormat), String(kTextTypeNames.nameOf(m_eType))}};
}

WebValueFormatDefinitionHandle WebTextFormatDefinition::LookupStandardFormat(const String& sPattern)
{
    const auto tFound = std::find(std::begin(s_ksTypeCustomFormats), std::end(s_ksTypeCustomFormats), sPattern);
    if (tFound == std::end(s_ksTypeCustomFormats))
        return WebValueFormatDefinitionHandle(WEBFORMAT_NEW(kSource) WebCustomFormatDefinition(sPattern));
    const auto eType = static_cast<Type>(tFound - std::begin(s_ksTypeCustomFormats));
    return WebValueFormatDefinitionHandle(WEBFORMAT_NEW(kSource) WebTextFormatDefinition(eType));
}

const wchar_t* WebTextFormatDefinition::standardPattern(Type eType)
{
    const auto nType = static_cast<std::size_t>(eType);
    return s_ksTypeCustomFormats[nType < std::size(s_ksTypeCustomFormats) ? nType : 0];
}

}  // namespace tov

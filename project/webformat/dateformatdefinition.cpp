#include "project/webformat/definitionsettings.h"
#include "project/webformat/enumnames.h"
#include "webbedrock/assertion.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/dateformatters";

constexpr std::wstring_view kBiFormatAttribute = L"biFormat";
constexpr std::wstring_view kPredefinedFormatAttribute = L"predefinedFormat";
constexpr std::wstring_view kDisplayTimeZoneAttribute = L"displayTimeZone";

using DateType = WebDateFormatDefinition::Type;

// The current names first, then the older ones.
constexpr EnumNames kDateTypeNames({
    EnumName<DateType>{WebDateFormatDefinition::kShortDate, L"dateShort"},
    {WebDateFormatDefinition::kLongDate, L"dateLong"},
    {WebDateFormatDefinition::kInputDate, L"dateInput"},
    {WebDateFormatDefinition::kTime, L"time"},
    {WebDateFormatDefinition::kTimeHourMin, L"timeHourMin"},
    {WebDateFormatDefinition::kInputTime, L"timeInput"},
    {WebDateFormatDefinition::kInputTimeHourMin, L"timeInputHourMin"},
    {WebDateFormatDefinition::kShortTimeStamp, L"timeStampShort"},
    {WebDateFormatDefinition::kLongTimeStamp, L"timeStampLong"},
    {WebDateFormatDefinition::kInputTimeStamp, L"timeStampInput"},
    {WebDateFormatDefinition::kODBCDate, L"dateODBC"},
    {WebDateFormatDefinition::kODBCTime, L"timeODBC"},
    {WebDateFormatDefinition::kODBCTimeStamp, L"timeStampODBC"},
    {WebDateFormatDefinition::kTypedODBCDate, L"dateTyped"},
    {WebDateFormatDefinition::kTypedODBCTime, L"timeTyped"},
    {WebDateFormatDefinition::kTypedODBCTimeStamp, L"timeStampTyped"},
    {WebDateFormatDefinition::kTimeHour, L"timeHour"},
    {WebDateFormatDefinition::kDateYearMonth, L"dateYearMonth"},
    {WebDateFormatDefinition::kTimeWFractionalSeconds, L"timeWFracSecs"},
    {WebDateFormatDefinition::kShortTimeStampWFractionalSeconds, L"timeStampShortWFracSecs"},
    {WebDateFormatDefinition::kPredefinedDate, L"predefinedFormat"},
    {WebDateFormatDefinition::kShortDate, L"ShortDate"},
    {WebDateFormatDefinition::kShortDate, L"date"},
    {WebDateFormatDefinition::kLongDate, L"LongDate"},
    {WebDateFormatDefinition::kShortTimeStamp, L"ShortDateTime"},
    {WebDateFormatDefinition::kShortTimeStamp, L"timeStamp"},
    {WebDateFormatDefinition::kLongTimeStamp, L"LongDateTime"},
    {WebDateFormatDefinition::kODBCDate, L"ODBCDate"},
    {WebDateFormatDefinition::kODBCTime, L"ODBCTime"},
    {WebDateFormatDefinition::kODBCTimeStamp, L"ODBCTimeStamp"},
    {WebDateFormatDefinition::kPredefinedDate, L"predefined"},
});

// The Excel patterns of the types that have one.
constexpr EnumNames kExcelPatterns({
    EnumName<DateType>{WebDateFormatDefinition::kShortDate, L"m/d/yyyy"},
    {WebDateFormatDefinition::kLongDate, L"[$-F800]dddd, mmmm dd, yyyy"},
    {WebDateFormatDefinition::kODBCDate, L"yyyy-m-d"},
    {WebDateFormatDefinition::kShortTimeStamp, L"m/d/yyyy h:mm:ss AM"},
    {WebDateFormatDefinition::kLongTimeStamp, L"dddd, mmmm dd, yyyy h:mm:ss AM"},
    {WebDateFormatDefinition::kODBCTimeStamp, L"yyyy-mm-dd hh:mm:ss"},
    {WebDateFormatDefinition::kODBCTime, L"hh:mm:ss"},
});

}  // namespace

WebDateFormatDefinition::WebDateFormatDefinition(Type eType) : m_eType(eType) {}

WebDateFormatDefinition::WebDateFormatDefinition(Type eType, String sDisplayTimeZone, String sPredefinedFormat)
    : m_eType(eType), m_sDisplayTimeZone(std::move(sDisplayTimeZone)), m_sPredefinedFormat(std::move(sPredefinedFormat))
{
}

// Kept: a pattern of its own is read only where no type is named, though it is written beside one.
void WebDateFormatDefinition::readXml(const XmlElement& tElement)
{
    const String sType = tElement.getAttributeOr(kBiFormatAttribute);
    if (sType.empty())
    {
        const String sPredefinedFormat = tElement.getAttributeOr(kPredefinedFormatAttribute);
        WEBFORMAT_ASSERT(kSource, !sPredefinedFormat.empty());
        m_eType = kPredefinedDate;
        m_sPredefinedFormat = sPredefinedFormat;
    }
    else
    {
        m_eType = GetTypeFromString(sType, kShortDate);
    }
    m_sDisplayTimeZone = tElement.getAttributeOr(kDisplayTimeZoneAttribute);
}

WebValueFormatDefinition::DefType WebDateFormatDefinition::GetDefType() const
{
    return kDateFormat;
}

OwnedDefinitionHandle WebDateFormatDefinition::clone() const
{
    return OwnedDefinitionHandle(WEBFORMAT_NEW(kSource) WebDateFormatDefinition(*this));
}

String WebDateFormatDefinition::getMsoStyle(const Locale&, const KTWUILanguage&) const
{
    return L"mso-format-number:date";
}

int WebDateFormatDefinition::CompareLikeDefinition(const WebValueFormatDefinition& tOther) const
{
    return threeWay(static_cast<int>(m_eType),
                    static_cast<int>(static_cast<const WebDateFormatDefinition&>(tOther).m_eType));
}

void WebDateFormatDefinition::populateDataFormat(XmlElement& tElement) const
{
    kDateTypeNames.writeAttribute(tElement, kBiFormatAttribute, m_eType, kSource);
    setOptionalAttribute(tElement, kDisplayTimeZoneAttribute, m_sDisplayTimeZone);
    setOptionalAttribute(tElement, kPredefinedFormatAttribute, m_sPredefinedFormat);
}

void WebDateFormatDefinition::writeToStreamImpl(OutputStream& tStream) const
{
    tStream.writeByte(static_cast<std::uint8_t>(m_eType));
}

String WebDateFormatDefinition::getMsoFormatPatternImpl(const Locale&, const KTWUILanguage&,
                                                        FormatPattern ePattern) const
{
    return ePattern == kFormatPatternExcel ? kExcelPatterns.nameOf(m_eType) : String();
}

std::vector<FormatDefinitionSetting> WebDateFormatDefinition::settings() const
{
    return {
        {String(kBiFormatAttribute), String(kDateTypeNames.nameOf(m_eType))},
        {String(kDisplayTimeZoneAttribute), m_sDisplayTimeZone},
        {String(kPredefinedFormatAttribute), m_sPredefinedFormat},
    };
}

WebDateFormatDefinition::Type WebDateFormatDefinition::GetTypeFromString(std::wstring_view sName, Type eDefault)
{
    return kDateTypeNames.valueOf(sName).value_or(eDefault);
}

}  // namespace tov

#include "webformat/timestampformatter.h"

#include "corefacade/dateutils.h"
#include "corefacade/timezoneregistry.h"
#include "utilities/messagefilesregistry.h"
#include "utilities/textmessageformatter.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/timestampformatter";
constexpr std::wstring_view kZoneToken = L"TZ";
constexpr std::wstring_view kShortNameMessage = L"zoneShortName/";

}  // namespace

TimeStampFormatter::TimeStampFormatter(const Locale& tLocale, const KTWUILanguage& tLanguage, const String& sPattern,
                                       const TimeZoneResolver& tResolver, const String& sDisplayTimeZone,
                                       OutputType eOutput)
    : m_nDataOffset(tResolver.getDataOffset())
{
    auto* const pFormatter = WEBFORMAT_NEW(kSource) StandardDateFormatter(tLocale, tLanguage, sPattern, eOutput);
    m_hFormatter = Handle<const StandardDateFormatter, const StandardDateFormatter>(pFormatter);
    // Kept: the first "TZ" goes wherever it stands, in a bracket too, and asks for the zone's name.
    String sDatePattern = sPattern;
    const std::size_t nToken = sDatePattern.find(kZoneToken);
    const bool bZoneAskedFor = nToken != String::npos;
    if (bZoneAskedFor)
        sDatePattern.erase(nToken, kZoneToken.size());
    pFormatter->addCustomFormat(sDatePattern, tLocale, eOutput);
    findDisplayZone(sPattern, tResolver, sDisplayTimeZone, bZoneAskedFor);
}

TimeStampFormatter::~TimeStampFormatter() = default;

void TimeStampFormatter::findDisplayZone(const String& sPattern, const TimeZoneResolver& tResolver,
                                         const String& sDisplayTimeZone, bool bZoneAskedFor)
{
    if (!TimeZone::isValidOffset(m_nDataOffset))
        return;
    const String sZone = tResolver.resolveDisplayTimeZone(
        sDisplayTimeZone.empty() ? TimeZoneResolver::getTimeZoneFromFormatString(sPattern) : sDisplayTimeZone);
    if (sZone == TimeZone::kIDUnknown)
        return;
    m_bConvert = TimeZoneRegistry::getInstance().findTimeZone(sZone, TimeZoneRegistry::kIdentifier, m_tDisplayTimeZone);
    m_bShowTimeZone = m_bConvert && bZoneAskedFor;
    if (m_bShowTimeZone)
        m_sTimeZoneText = zoneText(tResolver);
}

String TimeStampFormatter::zoneText(const TimeZoneResolver& tResolver) const
{
    const String& sLanguage = tResolver.language().GetTag();
    const MessageTableHandle hMessages = tResolver.messageTable().isNull()
                                             ? MessageFilesRegistry::getInstance().getMessageTable()
                                             : tResolver.messageTable();
    StringBufferTemplate<wchar_t, 63> tText;
    TextMessageFormatter(hMessages, sLanguage)
        .FormatBuffer(tText, String(kShortNameMessage) + m_tDisplayTimeZone.getId(), L"{0}",
                      {m_tDisplayTimeZone.getShortName(sLanguage)});
    return ConvertLiteral(tText.toString(), kText, outputType());
}

ValueFormatterTypes::OutputType TimeStampFormatter::outputType() const
{
    return m_hFormatter->outputType();
}

String TimeStampFormatter::GetCustomFormatString() const
{
    return m_hFormatter->GetCustomFormatString();
}

DateTime TimeStampFormatter::displayedTime(const DateTime& tValue) const
{
    return m_bConvert ? DateUtils::convertTimeZoneTime(tValue, m_nDataOffset, m_tDisplayTimeZone) : tValue;
}

void TimeStampFormatter::FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const
{
    m_hFormatter->FormatValue(tBuffer, displayedTime(tValue));
    if (m_bShowTimeZone)
        tBuffer.append(m_sTimeZoneText);
}

void TimeStampFormatter::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    if (pValue)
        FormatValue(tBuffer, *static_cast<const DateTime*>(pValue));
    else
        m_hFormatter->impl_formatToBuffer(tBuffer, pValue);
}

}  // namespace tov

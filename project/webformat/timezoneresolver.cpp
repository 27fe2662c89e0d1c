#include "webformat/timezoneresolver.h"

#include "corefacade/timezoneregistry.h"
#include "utilities/stringutils.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

constexpr std::wstring_view kDefault = L"default";
constexpr std::wstring_view kZoneBracket = L"[TZ:";

TimeZone zoneOf(const String& sName)
{
    return TimeZoneRegistry::getInstance().findTimeZone(sName, TimeZoneRegistry::kIdentifier);
}

}  // namespace

TimeZoneResolver::TimeZoneResolver()
    : m_nMetaDataOffset(TimeZone::knUTCOffsetUnknown), m_tLanguage(KTWUILanguage::kDefaultLanguage)
{
}

TimeZoneResolver::TimeZoneResolver(const SessionTimeZonesHandle& hSession, const KTWUILanguage& tLanguage,
                                   const MessageTableHandle& hMessages)
    : m_nMetaDataOffset(0), m_hSessionTimeZones(hSession), m_tLanguage(tLanguage), m_hMessageTable(hMessages)
{
}

int TimeZoneResolver::getDefaultDataOffset() const
{
    return m_hSessionTimeZones.isNull() ? TimeZone::knUTCOffsetUnknown : m_hSessionTimeZones->getDefaultDataOffset();
}

int TimeZoneResolver::getDataOffset() const
{
    return TimeZone::isValidOffset(m_nMetaDataOffset) ? m_nMetaDataOffset : getDefaultDataOffset();
}

String TimeZoneResolver::resolveDisplayTimeZone(const String& sName) const
{
    if (!sName.empty() && sName != kDefault)
        return sName;
    if (m_hSessionTimeZones.isNull())
        return TimeZone::kIDUnknown;
    String sConsistent = m_hSessionTimeZones->getConsistentDisplayTimeZone();
    if (!sConsistent.empty())
        return sConsistent;
    return m_sDisplayVariable.empty() ? m_hSessionTimeZones->getUserPreferredTimeZone().getId() : m_sDisplayVariable;
}

String TimeZoneResolver::resolveDisplayTimeZone(const WebValueFormatDefinitionHandle& hDefinition) const
{
    return resolveDisplayTimeZone(hDefinition.isNull() ? String() : getTimeZoneFromFormatDef(*hDefinition));
}

String TimeZoneResolver::getTimeZoneFromFormatString(std::wstring_view sPattern)
{
    const std::size_t nBracket = sPattern.find(kZoneBracket);
    if (nBracket == std::wstring_view::npos)
        return String();
    const std::size_t nStart = nBracket + kZoneBracket.size();
    const std::size_t nEnd = sPattern.find(L']', nStart);
    if (nEnd == std::wstring_view::npos)
        return String();
    return String(StringUtils::trim(sPattern.substr(nStart, nEnd - nStart)));
}

String TimeZoneResolver::getTimeZoneFromFormatDef(const WebValueFormatDefinition& tDefinition)
{
    if (const auto* pDate = dynamic_cast<const WebDateFormatDefinition*>(&tDefinition))
        return pDate->getDisplayTimeZone();
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(&tDefinition))
        return getTimeZoneFromFormatString(pCustom->GetCustomFormat());
    return String();
}

int TimeZoneResolver::getDisplayOffset(TimeZone::DstState eState, const String& sName) const
{
    return zoneOf(resolveDisplayTimeZone(sName)).getUtcOffset(eState);
}

int TimeZoneResolver::getDisplayOffset(const DateTime& tMoment, const String& sName) const
{
    return zoneOf(resolveDisplayTimeZone(sName)).getUtcOffset(tMoment);
}

int TimeZoneResolver::displayToDataOffset(int nDisplayOffset) const
{
    const int nDataOffset = getDataOffset();
    const bool bKnown = TimeZone::isValidOffset(nDataOffset) && TimeZone::isValidOffset(nDisplayOffset);
    return bKnown ? nDataOffset - nDisplayOffset : 0;
}

int TimeZoneResolver::getDisplayToDataOffset(TimeZone::DstState eState, const String& sName) const
{
    return displayToDataOffset(getDisplayOffset(eState, sName));
}

int TimeZoneResolver::getDisplayToDataOffset(const DateTime& tMoment, const String& sName) const
{
    return displayToDataOffset(getDisplayOffset(tMoment, sName));
}

TimeZone TimeZoneResolver::getGeneralDisplayTimeZone() const
{
    if (!m_sDisplayVariable.empty())
        return zoneOf(m_sDisplayVariable);
    if (m_hSessionTimeZones.isNull())
        return TimeZone::kServerOS;
    const TimeZone& tPreferred = m_hSessionTimeZones->getUserPreferredTimeZone();
    return tPreferred.getId() == TimeZone::kIDUnknown ? TimeZone::kServerOS : tPreferred;
}

}  // namespace tov

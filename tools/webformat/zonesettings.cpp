#include "zonesettings.h"

#include "corefacade/timezoneregistry.h"
#include "utilities/messagefilesregistry.h"
#include "webformat/sessiontimezones.h"
#include "xml/lexical.h"

namespace tov {

std::optional<int> dataOffsetFromText(std::wstring_view sText)
{
    if (sText == L"unknown")
        return TimeZone::knUTCOffsetUnknown;
    const std::optional<std::int64_t> nMinutes = lexical::parseInteger(sText, -1080, 1080);
    return nMinutes ? std::optional<int>(static_cast<int>(*nMinutes)) : std::nullopt;
}

bool isZoneOrDefault(std::wstring_view sText)
{
    TimeZone tZone;
    return sText == L"default" ||
           TimeZoneRegistry::getInstance().findTimeZone(sText, TimeZoneRegistry::kIdentifier, tZone);
}

TimeZoneResolver resolverOf(const ZoneSettings& tSettings, const KTWUILanguage& tLanguage)
{
    Handle<SessionTimeZones> hSession(new SessionTimeZones);
    if (tSettings.sDisplayTimeZone != L"default")
        hSession->setDisplaySessionVar(tSettings.sDisplayTimeZone);
    const bool bConfigured = TimeZone::isValidOffset(hSession->getDefaultDataOffset());
    const int nUnstated = tSettings.sDisplayTimeZone.empty() || bConfigured ? TimeZone::knUTCOffsetUnknown : 0;
    TimeZoneResolver tResolver(hSession, tLanguage, MessageFilesRegistry::getInstance().getMessageTable());
    tResolver.setMetaDataOffset(tSettings.nDataOffset.value_or(nUnstated));
    return tResolver;
}

}  // namespace tov

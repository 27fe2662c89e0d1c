#include "batchzones.h"

#include <algorithm>
#include <array>

#include "inputerror.h"
#include "jsonvalues.h"
#include "utilities/messagefilesregistry.h"
#include "webformat/sessiontimezones.h"

namespace tov {

namespace {

constexpr std::array<const char*, 4> kaZoneKeys = {"dataOffset", "displayTimeZone", "session", "displayVariable"};

int dataOffsetOf(const JsonValue& tValue)
{
    if (tValue.kind() == JsonValue::kString && tValue.text() == "unknown")
        return TimeZone::knUTCOffsetUnknown;
    const SQLDataType tType(SQLDataType::kInteger);
    if (tValue.kind() != JsonValue::kNumber)
        throw InputError(
            "\"dataOffset\": found " +
            (tValue.kind() == JsonValue::kString ? quotedForMessage(tValue.text()) : std::string(tValue.kindName())) +
            ", expected a number of minutes or \"unknown\"");
    return *static_cast<const int*>(valueFromText(tType, tValue.text()).pointer());
}

SessionTimeZonesHandle sessionOf(const JsonValue& tValue)
{
    if (tValue.kind() != JsonValue::kObject)
        throw InputError("\"session\": found " + std::string(tValue.kindName()) + ", expected an object");
    const BatchRequest tKeys(tValue);
    Handle<SessionTimeZones> hSession(new SessionTimeZones);
    hSession->setDataOffsetSessionVar(tKeys.wideText("dataOffset", {}));
    hSession->setDisplaySessionVar(tKeys.wideText("display", {}));
    hSession->setUserTimeZonePref(tKeys.wideText("userPref", {}));
    hSession->setUserSessionVar(tKeys.wideText("userVar", {}));
    hSession->setUserBrowser(tKeys.wideText("browser", {}));
    return hSession;
}

bool hasZoneKey(const BatchRequest& tRequest)
{
    return std::any_of(kaZoneKeys.begin(), kaZoneKeys.end(), [&](const char* pKey) { return tRequest.isGiven(pKey); });
}

TimeZoneResolver resolverOf(const BatchRequest& tRequest)
{
    if (!hasZoneKey(tRequest))
        return TimeZoneResolver();
    const SessionTimeZonesHandle hSession =
        tRequest.isGiven("session") ? sessionOf(*tRequest.find("session")) : SessionTimeZonesHandle();
    TimeZoneResolver tResolver(hSession, tRequest.language(), MessageFilesRegistry::getInstance().getMessageTable());
    if (tRequest.isGiven("dataOffset"))
        tResolver.setMetaDataOffset(dataOffsetOf(*tRequest.find("dataOffset")));
    tResolver.setDisplayVariable(tRequest.wideText("displayVariable", {}));
    return tResolver;
}

int fallbackOf(const BatchRequest& tRequest)
{
    const std::string sName = tRequest.text("fallback", "default");
    if (sName != "default" && sName != "unknown")
        throw InputError("\"fallback\": found " + quotedForMessage(sName) + ", expected unknown or default");
    return sName == "default" ? TimeZone::knUTCOffsetUseDefault : TimeZone::knUTCOffsetUnknown;
}

}  // namespace

BatchZones::BatchZones(const BatchRequest& tRequest)
    : bGiven(hasZoneKey(tRequest)),
      tResolver(resolverOf(tRequest)),
      sDisplayTimeZone(tRequest.wideText("displayTimeZone", {}))
{
}

void answerOffset(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const int nOffset = SessionTimeZones::offsetFromText(tRequest.requiredWideText("text"), fallbackOf(tRequest));
    if (nOffset == TimeZone::knUTCOffsetUnknown)
        tResponse.add("offset", "unknown");
    else if (nOffset == TimeZone::knUTCOffsetUseDefault)
        tResponse.add("offset", "default");
    else
        tResponse.add("offset", nOffset);
}

}  // namespace tov

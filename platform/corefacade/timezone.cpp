#include "corefacade/timezone.h"

#include <chrono>

#include "corefacade/civiltime.h"
#include "corefacade/timezoneregistry.h"
#include "corefacade/zonenames.h"
#include "corefacade/zonerecords.h"

namespace tov {

namespace {

std::int64_t secondsNow()
{
    using std::chrono::seconds;
    return std::chrono::floor<seconds>(std::chrono::system_clock::now()).time_since_epoch().count();
}

int toMinutes(std::int32_t nSeconds)
{
    return (nSeconds + (nSeconds < 0 ? -30 : 30)) / 60;
}

}  // namespace

constinit const TimeZone TimeZone::kUnknown;
constinit const TimeZone TimeZone::kServerOS{ServerTag()};

const ZoneRecord* TimeZone::serverRecord()
{
    return &TimeZoneRegistry::getInstance().serverRecord();
}

const String& TimeZone::getId() const
{
    static const String& s_sUnknown = *new String(kIDUnknown);
    const ZoneRecord* const pRecord = record();
    return pRecord ? pRecord->sId : s_sUnknown;
}

int TimeZone::getUtcOffset(DstState eState) const
{
    const ZoneRecord* const pRecord = record();
    if (!pRecord)
        return knUTCOffsetUnknown;
    const ZoneRules::Offsets tOffsets = pRecord->pRules->offsetsAround(secondsNow());
    return toMinutes(eState == kDaylightTime ? tOffsets.nDaylight : tOffsets.nStandard);
}

int TimeZone::getUtcOffset(const DateTime& tCivil) const
{
    const ZoneRecord* const pRecord = record();
    return pRecord ? toMinutes(pRecord->pRules->offsetAtCivil(secondsFromCivil(tCivil))) : knUTCOffsetUnknown;
}

String TimeZone::getShortName(std::wstring_view sLanguageTag) const
{
    const ZoneRecord* const pRecord = record();
    if (!pRecord)
        return kIDUnknown;
    const std::int64_t nNow = secondsNow();
    return zoneShortName(pRecord->sId, nNow, pRecord->pRules->offsetAt(nNow), sLanguageTag);
}

int TimeZone::offsetSecondsAt(std::int64_t nUtcSeconds) const
{
    const ZoneRecord* const pRecord = record();
    return pRecord ? pRecord->pRules->offsetAt(nUtcSeconds) : 0;
}

bool operator==(const TimeZone& tLeft, const TimeZone& tRight)
{
    return tLeft.getId() == tRight.getId();
}

}  // namespace tov

#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include "corefacade/datetime.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

struct ZoneRecord;

// A time zone: its identifier, its rules for every year and its short name in a language.
//
// Example:  TimeZone tZone;
//           TimeZoneRegistry::getInstance().findTimeZone(L"america/new_york", TimeZoneRegistry::kIdentifier, tZone);
//           tZone.getId()                                        -> "America/New_York"
//           tZone.getUtcOffset(DateTime(2024, 7, 1, 12))         -> -240
//           tZone.getShortName(L"en-US")                         -> "ET"
//           DateUtils::convertTimeZoneTime(DateTime(2024, 7, 1, 12), 0, tZone) -> 2024-07-01 08:00:00
//
// A small handle on an immutable record that lives as long as the process; zones come from `TimeZoneRegistry`. Copies
// are cheap. Offsets are minutes east of UTC unless a name says seconds. Any thread, without a lock.
class WEBFORMAT_EXPORT TimeZone
{
public:
    enum DstState
    {
        kStandardTime = 0,
        kDaylightTime = 1
    };

    // No zone: its identifier is `kIDUnknown`. Constant-initialised: static objects of other files may use both while
    // they are built.
    static const TimeZone kUnknown;
    // The zone of the system: the identifier in the environment's TZ, which may begin with ":", where TZ is not set the
    // zone that /etc/localtime is. UTC where that is no zone of the system's list (rules written out in TZ are none).
    // Found out on first use, then kept; its identifier is the found zone's own.
    static const TimeZone kServerOS;

    static constexpr const wchar_t* kIDUnknown = L"Unknown";

    // Two special values in place of an offset.
    static constexpr int knUTCOffsetUnknown = std::numeric_limits<int>::min();
    static constexpr int knUTCOffsetUseDefault = knUTCOffsetUnknown + 1;

    // Whether an offset is one: from -1080 to 1080 minutes (18 hours).
    static constexpr bool isValidOffset(int nMinutes) { return nMinutes >= -1080 && nMinutes <= 1080; }

    // As `kUnknown`.
    constexpr TimeZone() noexcept = default;

    constexpr bool isUnknown() const { return !m_pRecord && !m_bServer; }

    // The identifier as the zone data list it ("America/New_York", "US/Pacific"), "GMT+05:30" of a fixed offset,
    // "UTC", or `kIDUnknown`. The reference stays good.
    const String& getId() const;

    // The offset by the rules of the present year: daylight time is the one further east, whatever the zone's data call
    // it (Dublin: 0 and 60). Both are the present offset in a zone that does not change its clocks. An offset with
    // seconds is rounded to the nearest minute. The unknown zone gives `knUTCOffsetUnknown`.
    int getUtcOffset(DstState eState) const;

    // The offset at the moment at which the zone's clocks show `tCivil`, to the nearest minute. A civil time that they
    // skip or show twice is read with the earlier of the two offsets: New York's 2024-11-03 01:30 and 2024-03-10 02:30
    // give -240 and -300. The unknown zone gives `knUTCOffsetUnknown`.
    int getUtcOffset(const DateTime& tCivil) const;

    // The short name by which the language (a BCP 47 tag, "_" and any case too) calls the zone at present: the generic
    // one ("PT"), else that of standard time ("UTC"), else the present offset ("GMT-5", "UTC+1" in French). Names are
    // used only where their source and the zone data agree about the present offset. Digits are ASCII. An unknown
    // language counts as English; the unknown zone gives `kIDUnknown`. Costs some microseconds and allocates: ask once
    // for a formatter, not once for a value.
    String getShortName(std::wstring_view sLanguageTag) const;

    // Seconds east of UTC at a moment, in seconds since 1970-01-01 00:00:00 UTC: exact, for any moment; a table lookup,
    // no allocation. The rules go on for ever as they are. The unknown zone gives 0.
    int offsetSecondsAt(std::int64_t nUtcSeconds) const;

    // The same identifier.
    friend WEBFORMAT_EXPORT bool operator==(const TimeZone& tLeft, const TimeZone& tRight);

private:
    friend class DateUtils;
    friend class TimeZoneRegistry;
    struct ServerTag
    {
    };
    constexpr explicit TimeZone(ServerTag) noexcept : m_bServer(true) {}
    constexpr explicit TimeZone(const ZoneRecord& tRecord) noexcept : m_pRecord(&tRecord) {}
    // Null of the unknown zone.
    const ZoneRecord* record() const { return m_bServer ? serverRecord() : m_pRecord; }
    static const ZoneRecord* serverRecord();

    const ZoneRecord* m_pRecord = nullptr;  // null: unknown, or the server's
    bool m_bServer = false;
};

}  // namespace tov

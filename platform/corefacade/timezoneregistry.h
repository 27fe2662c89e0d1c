#pragma once

#include <string_view>
#include <vector>

#include "corefacade/timezone.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// The time zones that the system's zone data list, found by name.
//
// Example:  TimeZone tZone;
//           tRegistry.findTimeZone(L"us/pacific", TimeZoneRegistry::kIdentifier, tZone)              -> "US/Pacific"
//           tRegistry.findTimeZone(L"GMT-5", TimeZoneRegistry::kIdentifier, tZone)                   -> "GMT-05:00"
//           tRegistry.findTimeZone(L"Tokyo Standard Time", TimeZoneRegistry::kWindowsName, tZone)    -> "Asia/Tokyo"
//
// The data are those of the system (/usr/share/zoneinfo, or the folder that the environment's TZDIR names). A name is
// compared with their list before any file is opened, so that no name reaches the file system as it was given. Without
// data, UTC, GMT and fixed offsets are all there is; one line in the log says so. A zone is read on its first use, a
// few hundred microseconds, and kept; names that are not found are not remembered. Any thread; zones are read outside
// any lock.
class WEBFORMAT_EXPORT TimeZoneRegistry
{
public:
    enum NameKind
    {
        kIdentifier = 1,
        kWindowsName = 2
    };

    // Reads the list on first use.
    static const TimeZoneRegistry& getInstance();

    // kIdentifier, whatever the case of its letters:
    //
    //     name    = listed / fixed
    //     listed  = an identifier of the zone data, links included ("EST", "US/Pacific", "Etc/GMT+5")
    //     fixed   = "UTC" / "GMT" / ("UTC" / "GMT") ("+" / "-") 1*2DIGIT [":" 2DIGIT]
    //
    // A listed identifier goes before a fixed offset. The minutes of a fixed offset are 0 to 59, the whole at most 18
    // hours; the sign is that of the clocks ("GMT-5" is five hours west, as "Etc/GMT+5" is).
    //
    // kWindowsName: "Pacific Standard Time", in exactly that case; the zone of the name's principal place.
    //
    // False: there is no such zone, or its data cannot be read; `tZone` is unchanged.
    bool findTimeZone(std::wstring_view sName, NameKind eKind, TimeZone& tZone) const;
    // The same, `TimeZone::kUnknown` where there is none.
    TimeZone findTimeZone(std::wstring_view sName, NameKind eKind) const;

    // Every listed identifier, links included, in the order of their letters without regard to case.
    const std::vector<String>& allIds() const;

    TimeZoneRegistry(const TimeZoneRegistry&) = delete;
    TimeZoneRegistry& operator=(const TimeZoneRegistry&) = delete;

private:
    friend class TimeZone;
    TimeZoneRegistry();
    // The zone of TZ or /etc/localtime, read once.
    const ZoneRecord& serverRecord() const;

    std::vector<String> m_vIds;
};

}  // namespace tov

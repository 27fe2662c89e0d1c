#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "corefacade/zonelist.h"
#include "corefacade/zonerules.h"
#include "webbedrock/string.h"

namespace tov {

// What a `TimeZone` is a handle on.
struct ZoneRecord
{
    String sId;
    const ZoneRules* pRules;  // never null; shared by a zone and its links
};

// The records of all zones, each built on first use and kept: as many as the list has names and offsets have minutes,
// whatever is asked for. Built outside any lock; where threads build the same one, the first stays. Any thread.
class ZoneRecords
{
public:
    // Reads the list of the zone data's folder. Without one, a line is logged and the list stays empty.
    ZoneRecords();

    const ZoneList& list() const { return m_tList; }

    // The record of a listed zone; null where its data cannot be read.
    const ZoneRecord* listed(std::size_t nIndex) const;

    // The record of an offset from -1080 to 1080 minutes: "GMT+05:30", "GMT" of 0.
    const ZoneRecord& fixed(int nMinutes) const;

    // UTC without any zone data.
    const ZoneRecord& utc() const { return m_tUtc; }

    // The zone of TZ or /etc/localtime; UTC where that is no listed zone.
    const ZoneRecord& server() const;

private:
    static constexpr int kMaxMinutes = 1080;

    struct Entry
    {
        std::atomic<const ZoneRecord*> pRecord{nullptr};
        std::atomic<const ZoneRules*> pRules{nullptr};  // of zones only, not of links
    };

    const ZoneRules* rules(std::size_t nIndex) const;

    const std::string m_sFolder;
    const ZoneList m_tList;
    const std::unique_ptr<Entry[]> m_pEntries;
    const ZoneRules m_tUtcRules;
    const ZoneRecord m_tUtc;
    mutable std::array<std::atomic<const ZoneRecord*>, 2 * kMaxMinutes + 1> m_aFixed{};
    mutable std::atomic<const ZoneRecord*> m_pServer{nullptr};
};

}  // namespace tov

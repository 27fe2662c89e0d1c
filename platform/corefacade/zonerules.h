#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tov {

// A stretch of time in which a zone's offset stays the same; it ends where the next begins.
struct ZoneRange
{
    std::int64_t nStart = 0;   // seconds since 1970-01-01 00:00:00 UTC
    std::int32_t nOffset = 0;  // seconds east of UTC
    bool bDaylight = false;    // what the zone's data call daylight time
};

// The offsets of a zone at every moment: ranges in order, and an index of buckets of 97 days that leads from a moment
// to its range without a search.
//
// Where clocks change by a rule for ever, the table goes 400 years past the last change that is written out, and later
// moments are looked up a multiple of 400 years earlier: the calendar, weekdays included, repeats after 400 years.
// Immutable once built; any thread.
class ZoneRules
{
public:
    // One offset at all times.
    explicit ZoneRules(std::int32_t nOffset);

    // `vRanges` in order, the first from the beginning of time (its start is not looked at), at most 32,767. Where
    // `bRepeats`, the last range begins exactly where the last 400 years begin again.
    ZoneRules(std::vector<ZoneRange> vRanges, bool bRepeats);

    // Seconds east of UTC at a moment; any moment.
    std::int32_t offsetAt(std::int64_t nUtcSeconds) const { return m_vRanges[indexAt(folded(nUtcSeconds))].nOffset; }

    // Seconds east of UTC at the moment at which clocks show `nCivilSeconds` (a civil time read as if it were UTC).
    // What they skip or show twice has the offset before the change.
    std::int32_t offsetAtCivil(std::int64_t nCivilSeconds) const;

    // The offsets of standard and daylight time by the rules in force at a moment: of the range that holds it and of
    // the next one, if that begins within a year and one of them is daylight time.
    struct Offsets
    {
        std::int32_t nStandard;
        std::int32_t nDaylight;
    };
    Offsets offsetsAround(std::int64_t nUtcSeconds) const;

private:
    static constexpr int kBucketBits = 23;

    void buildBuckets();
    // A moment at or after the last change of a rule that repeats, moved into the table.
    std::int64_t folded(std::int64_t nSeconds) const
    {
        return nSeconds < m_nFoldFrom ? nSeconds : foldedBack(nSeconds);
    }
    std::int64_t foldedBack(std::int64_t nSeconds) const;

    std::size_t indexAt(std::int64_t nSeconds) const
    {
        const std::int64_t nInside = std::clamp(nSeconds, m_nFirst, m_nLast);
        const auto nBucket = static_cast<std::size_t>((nInside - m_nFirst) >> kBucketBits);
        const std::size_t nIndex = m_vBuckets[nBucket];
        // A bucket holds one change or none but where a zone changes its clocks more often than four times a year.
        if (m_vBuckets[nBucket + 1] - nIndex <= 1)
            return nIndex + (nInside >= m_vRanges[nIndex + 1].nStart ? 1 : 0);
        return searchedIndex(nIndex, nInside);
    }
    std::size_t searchedIndex(std::size_t nIndex, std::int64_t nSeconds) const;

    std::vector<ZoneRange> m_vRanges;       // and one behind the last that nothing reaches
    std::vector<std::uint16_t> m_vBuckets;  // the range in force when the bucket begins
    std::int64_t m_nFirst = 0;              // the second before the first change
    std::int64_t m_nLast = 0;               // the last change
    std::int64_t m_nFoldFrom;
};

}  // namespace tov

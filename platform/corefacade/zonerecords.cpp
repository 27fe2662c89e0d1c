#include "corefacade/zonerecords.h"

#include <cctz/civil_time.h>
#include <cctz/time_zone.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>
#include <vector>

#include "corefacade/civiltime.h"
#include "corefacade/serverzone.h"
#include "webbedrock/logger.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using Moment = cctz::time_point<cctz::seconds>;

std::string zoneFolder()
{
    const char* const pFolder = std::getenv("TZDIR");
    return pFolder && *pFolder ? pFolder : "/usr/share/zoneinfo";
}

ZoneList readList(const std::string& sFolder)
{
    constexpr std::size_t kMaxList = 4 * 1024 * 1024;
    ZoneList tList = ZoneList::fromText(readSmallFile(sFolder + "/tzdata.zi", kMaxList));
    if (tList.all().empty())
        Logger::log(Logger::kWarning, L"There are no time zone data; only UTC and fixed offsets are known");
    return tList;
}

// The first to store an object under a place keeps it; others drop theirs.
template <class T, class Built>
const T& storeFirst(std::atomic<const T*>& pPlace, std::unique_ptr<const Built> pBuilt)
{
    const T* pStored = nullptr;
    if (pPlace.compare_exchange_strong(pStored, pBuilt.get(), std::memory_order_acq_rel, std::memory_order_acquire))
        return *pBuilt.release();
    return *pStored;
}

ZoneRange rangeFrom(const cctz::time_zone& tZone, const Moment& tStart)
{
    const cctz::time_zone::absolute_lookup tLookup = tZone.lookup(tStart);
    return {tStart.time_since_epoch().count(), tLookup.offset, tLookup.is_dst};
}

// All changes of offset or of daylight time that are written out or extended over 400 years.
std::vector<ZoneRange> readRanges(const cctz::time_zone& tZone)
{
    constexpr std::size_t kMaxRanges = 32000;
    const cctz::civil_second tEpoch(1970, 1, 1);
    Moment tMoment = Moment::min();
    std::vector<ZoneRange> vRanges{rangeFrom(tZone, tMoment)};
    cctz::time_zone::civil_transition tChange;
    while (vRanges.size() < kMaxRanges && tZone.next_transition(tMoment, &tChange))
    {
        tMoment = Moment(cctz::seconds(tChange.from - tEpoch - vRanges.back().nOffset));
        const ZoneRange tRange = rangeFrom(tZone, tMoment);
        // A change of the abbreviation alone is none.
        if (tRange.nOffset != vRanges.back().nOffset || tRange.bDaylight != vRanges.back().bDaylight)
            vRanges.push_back(tRange);
    }
    return vRanges;
}

std::unique_ptr<const ZoneRules> readRules(const std::string& sId)
{
    cctz::time_zone tZone;
    if (!cctz::load_time_zone(sId, &tZone))
        return nullptr;
    std::vector<ZoneRange> vRanges = readRanges(tZone);
    // No place was ever further from UTC: such data are damaged.
    constexpr std::int32_t kFurthest = 26 * 3600;
    if (std::any_of(vRanges.begin(), vRanges.end(),
                    [](const ZoneRange& tRange) { return std::abs(tRange.nOffset) >= kFurthest; }))
        return nullptr;
    // Data are written out for a century at most: later changes come from a rule that goes on for ever.
    constexpr std::int64_t kRulesOnly = daysFromCivil(2300, 1, 1) * kSecondsPerDay;
    const bool bRepeats = vRanges.back().nStart > kRulesOnly;
    return std::make_unique<const ZoneRules>(std::move(vRanges), bRepeats);
}

void appendTwoDigits(String& sText, int nValue)
{
    sText += static_cast<wchar_t>(L'0' + nValue / 10);
    sText += static_cast<wchar_t>(L'0' + nValue % 10);
}

String fixedId(int nMinutes)
{
    String sId = L"GMT";
    if (nMinutes == 0)
        return sId;
    sId += nMinutes < 0 ? L'-' : L'+';
    appendTwoDigits(sId, std::abs(nMinutes) / 60);
    sId += L':';
    appendTwoDigits(sId, std::abs(nMinutes) % 60);
    return sId;
}

// The rules of a fixed offset lie beside its record.
struct FixedRecord : ZoneRecord
{
    explicit FixedRecord(int nMinutes) : ZoneRecord{fixedId(nMinutes), &tRules}, tRules(nMinutes * 60) {}
    FixedRecord(const FixedRecord&) = delete;
    FixedRecord& operator=(const FixedRecord&) = delete;

    const ZoneRules tRules;
};

}  // namespace

ZoneRecords::ZoneRecords()
    : m_sFolder(zoneFolder()),
      m_tList(readList(m_sFolder)),
      m_pEntries(std::make_unique<Entry[]>(m_tList.all().size())),
      m_tUtcRules(0),
      m_tUtc{L"UTC", &m_tUtcRules}
{
}

const ZoneRules* ZoneRecords::rules(std::size_t nIndex) const
{
    std::atomic<const ZoneRules*>& pPlace = m_pEntries[nIndex].pRules;
    if (const ZoneRules* const pStored = pPlace.load(std::memory_order_acquire))
        return pStored;
    std::unique_ptr<const ZoneRules> pBuilt = readRules(toUtf8(m_tList.all()[nIndex].sId));
    return pBuilt ? &storeFirst(pPlace, std::move(pBuilt)) : nullptr;
}

const ZoneRecord* ZoneRecords::listed(std::size_t nIndex) const
{
    std::atomic<const ZoneRecord*>& pPlace = m_pEntries[nIndex].pRecord;
    if (const ZoneRecord* const pStored = pPlace.load(std::memory_order_acquire))
        return pStored;
    const ZoneList::Zone& tZone = m_tList.all()[nIndex];
    const ZoneRules* const pRules = rules(tZone.nTarget);
    if (!pRules)
        return nullptr;
    return &storeFirst(pPlace, std::make_unique<const ZoneRecord>(ZoneRecord{tZone.sId, pRules}));
}

const ZoneRecord& ZoneRecords::fixed(int nMinutes) const
{
    std::atomic<const ZoneRecord*>& pPlace = m_aFixed[static_cast<std::size_t>(nMinutes + kMaxMinutes)];
    if (const ZoneRecord* const pStored = pPlace.load(std::memory_order_acquire))
        return *pStored;
    return storeFirst(pPlace, std::make_unique<const FixedRecord>(nMinutes));
}

const ZoneRecord& ZoneRecords::server() const
{
    if (const ZoneRecord* const pStored = m_pServer.load(std::memory_order_acquire))
        return *pStored;
    const std::size_t nIndex = findServerZone(m_tList, m_sFolder, "/etc/localtime");
    const ZoneRecord* const pFound = nIndex < m_tList.all().size() ? listed(nIndex) : nullptr;
    const ZoneRecord* pStored = nullptr;
    // The environment may change while threads ask for the first time: one answer stays.
    if (!m_pServer.compare_exchange_strong(pStored, pFound ? pFound : &m_tUtc, std::memory_order_acq_rel))
        return *pStored;
    return pFound ? *pFound : m_tUtc;
}

}  // namespace tov

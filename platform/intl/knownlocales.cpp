#include "intl/knownlocales.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <set>

namespace tov {

namespace {

std::set<std::string> availableIds()
{
    // The locale that everything falls back to is known even where the data are missing.
    std::set<std::string> tIds{"en_US"};
    for (int n = 0; n < uloc_countAvailable(); ++n)
        tIds.insert(uloc_getAvailable(n));
    tIds.erase("root");
    return tIds;
}

}  // namespace

const KnownLocales& KnownLocales::instance()
{
    static const KnownLocales& s_tKnownLocales = *new KnownLocales;
    return s_tKnownLocales;
}

KnownLocales::KnownLocales()
{
    const std::set<std::string> tIds = availableIds();
    m_nSize = tIds.size();
    m_pEntries = std::make_unique<Entry[]>(m_nSize);
    std::size_t n = 0;
    for (const std::string& sId : tIds)
        m_pEntries[n++].sId = sId;
}

std::optional<std::size_t> KnownLocales::indexOf(std::string_view sId) const
{
    const Entry* const pBegin = m_pEntries.get();
    const Entry* const pEnd = pBegin + m_nSize;
    const Entry* const pFound =
        std::lower_bound(pBegin, pEnd, sId, [](const Entry& tEntry, std::string_view s) { return tEntry.sId < s; });
    if (pFound == pEnd || pFound->sId != sId)
        return std::nullopt;
    return static_cast<std::size_t>(pFound - pBegin);
}

const LocaleRecord& KnownLocales::record(std::size_t nIndex, MonthNames eMonths) const
{
    const Entry& tEntry = m_pEntries[nIndex];
    std::atomic<const LocaleRecord*>& tPlace = tEntry.tRecords[static_cast<int>(eMonths)];
    const LocaleRecord* pStored = tPlace.load(std::memory_order_acquire);
    if (pStored)
        return *pStored;
    auto pBuilt = std::make_unique<const LocaleRecord>(buildLocaleRecord(tEntry.sId, eMonths));
    if (tPlace.compare_exchange_strong(pStored, pBuilt.get(), std::memory_order_acq_rel, std::memory_order_acquire))
        return *pBuilt.release();
    return *pStored;
}

}  // namespace tov

#include "corefacade/zonerules.h"

#include <limits>
#include <utility>

#include "corefacade/civiltime.h"

namespace tov {

namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

}  // namespace

ZoneRules::ZoneRules(std::int32_t nOffset) : ZoneRules({ZoneRange{0, nOffset, false}}, false) {}

ZoneRules::ZoneRules(std::vector<ZoneRange> vRanges, bool bRepeats)
    : m_vRanges(std::move(vRanges)), m_nFoldFrom(bRepeats ? m_vRanges.back().nStart : kNever)
{
    m_nLast = m_vRanges.size() > 1 ? m_vRanges.back().nStart : 0;
    m_nFirst = m_vRanges.size() > 1 ? m_vRanges[1].nStart - 1 : 0;
    m_vRanges.push_back({kNever, m_vRanges.back().nOffset, m_vRanges.back().bDaylight});
    m_vRanges.shrink_to_fit();
    buildBuckets();
}

void ZoneRules::buildBuckets()
{
    const auto nBuckets = static_cast<std::size_t>((m_nLast - m_nFirst) >> kBucketBits) + 1;
    m_vBuckets.reserve(nBuckets + 1);
    std::size_t nIndex = 0;
    for (std::size_t nBucket = 0; nBucket <= nBuckets; ++nBucket)
    {
        const std::int64_t nStart = m_nFirst + (static_cast<std::int64_t>(nBucket) << kBucketBits);
        nIndex = searchedIndex(nIndex, nStart);
        m_vBuckets.push_back(static_cast<std::uint16_t>(nIndex));
    }
}

std::size_t ZoneRules::searchedIndex(std::size_t nIndex, std::int64_t nSeconds) const
{
    while (nSeconds >= m_vRanges[nIndex + 1].nStart)
        ++nIndex;
    return nIndex;
}

std::int64_t ZoneRules::foldedBack(std::int64_t nSeconds) const
{
    return m_nFoldFrom - kSecondsPer400Years + (nSeconds - m_nFoldFrom) % kSecondsPer400Years;
}

std::int32_t ZoneRules::offsetAtCivil(std::int64_t nCivilSeconds) const
{
    // No zone is further than this from UTC, so that the range that holds the moment is this one or one before.
    constexpr std::int64_t kFurthest = 2 * kSecondsPerDay;
    const std::int64_t nLatest = folded(std::min(nCivilSeconds, kNever - kFurthest) + kFurthest);
    const std::int64_t nCivil = nLatest - kFurthest;
    std::size_t nIndex = indexAt(nLatest);
    // Both a skipped and a repeated civil time end where the later of the two clocks shows the change.
    while (nIndex > 0 &&
           nCivil < m_vRanges[nIndex].nStart + std::max(m_vRanges[nIndex - 1].nOffset, m_vRanges[nIndex].nOffset))
        --nIndex;
    return m_vRanges[nIndex].nOffset;
}

ZoneRules::Offsets ZoneRules::offsetsAround(std::int64_t nUtcSeconds) const
{
    constexpr std::int64_t kYear = 366 * kSecondsPerDay;
    const std::int64_t nMoment = folded(nUtcSeconds);
    const ZoneRange* const pNow = &m_vRanges[indexAt(nMoment)];
    const ZoneRange* const pNext = pNow + 1;
    const bool bChanges = nMoment >= pNext->nStart - kYear && (pNow->bDaylight || pNext->bDaylight);
    if (!bChanges)
        return {pNow->nOffset, pNow->nOffset};
    return {std::min(pNow->nOffset, pNext->nOffset), std::max(pNow->nOffset, pNext->nOffset)};
}

}  // namespace tov

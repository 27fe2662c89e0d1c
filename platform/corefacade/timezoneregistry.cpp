#include "corefacade/timezoneregistry.h"

#include <optional>

#include "corefacade/zonenames.h"
#include "corefacade/zonerecords.h"
#include "utilities/stringutils.h"

namespace tov {

namespace {

const ZoneRecords& records()
{
    static const ZoneRecords& s_tRecords = *new ZoneRecords;
    return s_tRecords;
}

// The number of one or two digits at the front of `sText`, which is cut off; no value where there are fewer than
// `nAtLeast`.
std::optional<int> takeNumber(std::wstring_view& sText, std::size_t nAtLeast)
{
    std::size_t nDigits = 0;
    int nValue = 0;
    for (; nDigits < std::min<std::size_t>(2, sText.size()) && sText[nDigits] >= L'0' && sText[nDigits] <= L'9';
         ++nDigits)
        nValue = nValue * 10 + static_cast<int>(sText[nDigits] - L'0');
    sText.remove_prefix(nDigits);
    return nDigits >= nAtLeast ? std::optional(nValue) : std::nullopt;
}

// ("+" / "-") 1*2DIGIT [":" 2DIGIT]
std::optional<int> parseOffset(std::wstring_view sText)
{
    if (sText.empty() || (sText[0] != L'+' && sText[0] != L'-'))
        return std::nullopt;
    const bool bNegative = sText[0] == L'-';
    sText.remove_prefix(1);
    const std::optional<int> nHours = takeNumber(sText, 1);
    std::optional<int> nMinutes = 0;
    if (sText.starts_with(L':'))
    {
        sText.remove_prefix(1);
        nMinutes = takeNumber(sText, 2);
    }
    if (!nHours || !nMinutes || !sText.empty() || *nMinutes > 59)
        return std::nullopt;
    const int nOffset = *nHours * 60 + *nMinutes;
    if (!TimeZone::isValidOffset(nOffset))
        return std::nullopt;
    return bNegative ? -nOffset : nOffset;
}

const ZoneRecord* findFixed(std::wstring_view sName)
{
    constexpr std::size_t kPrefix = 3;
    const bool bUtc = StringUtils::startsWithIgnoreCase(sName, L"UTC");
    if (!bUtc && !StringUtils::startsWithIgnoreCase(sName, L"GMT"))
        return nullptr;
    if (sName.size() == kPrefix)
        return bUtc ? &records().utc() : &records().fixed(0);
    const std::optional<int> nOffset = parseOffset(sName.substr(kPrefix));
    return nOffset ? &records().fixed(*nOffset) : nullptr;
}

const ZoneRecord* findIdentifier(std::wstring_view sName)
{
    const std::size_t nIndex = records().list().find(sName);
    return nIndex < records().list().all().size() ? records().listed(nIndex) : findFixed(sName);
}

}  // namespace

const TimeZoneRegistry& TimeZoneRegistry::getInstance()
{
    static const TimeZoneRegistry& s_tRegistry = *new TimeZoneRegistry;
    return s_tRegistry;
}

TimeZoneRegistry::TimeZoneRegistry()
{
    m_vIds.reserve(records().list().all().size());
    for (const ZoneList::Zone& tZone : records().list().all())
        m_vIds.push_back(tZone.sId);
}

bool TimeZoneRegistry::findTimeZone(std::wstring_view sName, NameKind eKind, TimeZone& tZone) const
{
    const ZoneRecord* const pRecord =
        eKind == kWindowsName ? findIdentifier(zoneOfWindowsName(sName)) : findIdentifier(sName);
    if (pRecord)
        tZone = TimeZone(*pRecord);
    return pRecord != nullptr;
}

TimeZone TimeZoneRegistry::findTimeZone(std::wstring_view sName, NameKind eKind) const
{
    TimeZone tZone;
    findTimeZone(sName, eKind, tZone);
    return tZone;
}

const std::vector<String>& TimeZoneRegistry::allIds() const
{
    return m_vIds;
}

const ZoneRecord& TimeZoneRegistry::serverRecord() const
{
    return records().server();
}

}  // namespace tov

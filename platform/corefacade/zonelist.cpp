#include "corefacade/zonelist.h"

#include <algorithm>
#include <utility>

#include "utilities/stringutils.h"

namespace tov {

namespace {

constexpr std::size_t kMaxNameLength = 63;

struct Entry
{
    String sName;
    String sTarget;  // a zone's own name
};

bool isNameCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '+' ||
           c == '-';
}

bool isName(std::string_view sName)
{
    if (sName.empty() || sName.size() > kMaxNameLength)
        return false;
    bool bInPart = false;
    for (const char c : sName)
    {
        if (c == '/' ? !bInPart : !isNameCharacter(c))
            return false;
        bInPart = c != '/';
    }
    return bInPart;
}

// Cuts the text up to the delimiter from the front of `sText`.
std::string_view take(std::string_view& sText, char cDelimiter)
{
    const std::size_t nEnd = std::min(sText.find(cDelimiter), sText.size());
    const std::string_view sTaken = sText.substr(0, nEnd);
    sText.remove_prefix(std::min(nEnd + 1, sText.size()));
    return sTaken;
}

void addLine(std::vector<Entry>& vEntries, std::string_view sLine)
{
    const std::string_view sKeyword = take(sLine, ' ');
    if (sKeyword != "Z" && sKeyword != "L")
        return;
    const std::string_view sFirst = take(sLine, ' ');
    const std::string_view sName = sKeyword == "Z" ? sFirst : take(sLine, ' ');
    if (isName(sFirst) && isName(sName))
        vEntries.push_back({String(sName.begin(), sName.end()), String(sFirst.begin(), sFirst.end())});
}

bool isBefore(const Entry& tLeft, const Entry& tRight)
{
    return StringUtils::compareIgnoreCase(tLeft.sName, tRight.sName) < 0;
}

std::vector<Entry> readEntries(std::string_view sText)
{
    std::vector<Entry> vEntries;
    while (!sText.empty())
        addLine(vEntries, take(sText, '\n'));
    std::stable_sort(vEntries.begin(), vEntries.end(), isBefore);
    const auto isSame = [](const Entry& tLeft, const Entry& tRight) { return !isBefore(tLeft, tRight); };
    vEntries.erase(std::unique(vEntries.begin(), vEntries.end(), isSame), vEntries.end());
    return vEntries;
}

// The entry of the zone that a name leads to through links to links, or null.
const Entry* followLinks(const std::vector<Entry>& vEntries, const Entry* pEntry)
{
    constexpr int kMaxLinks = 8;
    for (int n = 0; n < kMaxLinks; ++n)
    {
        if (pEntry->sTarget == pEntry->sName)
            return pEntry;
        const auto tFound = std::lower_bound(vEntries.begin(), vEntries.end(), Entry{pEntry->sTarget, {}}, isBefore);
        if (tFound == vEntries.end() || tFound->sName != pEntry->sTarget)
            return nullptr;
        pEntry = &*tFound;
    }
    return nullptr;
}

}  // namespace

ZoneList ZoneList::fromText(std::string_view sText)
{
    std::vector<Entry> vEntries = readEntries(sText);
    std::erase_if(vEntries, [vAll = vEntries](const Entry& tEntry) { return !followLinks(vAll, &tEntry); });
    ZoneList tList;
    tList.m_vZones.reserve(vEntries.size());
    for (const Entry& tEntry : vEntries)
        tList.m_vZones.push_back(
            {tEntry.sName, static_cast<std::size_t>(followLinks(vEntries, &tEntry) - vEntries.data())});
    return tList;
}

std::size_t ZoneList::find(std::wstring_view sName) const
{
    const auto tFound = std::lower_bound(m_vZones.begin(), m_vZones.end(), sName,
                                         [](const Zone& tZone, std::wstring_view s)
                                         { return StringUtils::compareIgnoreCase(tZone.sId, s) < 0; });
    if (tFound == m_vZones.end() || !StringUtils::equalsIgnoreCase(tFound->sId, sName))
        return m_vZones.size();
    return static_cast<std::size_t>(tFound - m_vZones.begin());
}

}  // namespace tov

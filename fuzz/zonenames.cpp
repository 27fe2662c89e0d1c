#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "corefacade/dateutils.h"
#include "corefacade/timezoneregistry.h"
#include "corefacade/zonelist.h"
#include "webbedrock/utf8.h"

namespace {

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

// Whatever zone a name leads to is found again by its identifier, has sane offsets and changes a value by no more.
void checkName(const tov::String& sName, tov::TimeZoneRegistry::NameKind eKind)
{
    const tov::TimeZoneRegistry& tRegistry = tov::TimeZoneRegistry::getInstance();
    tov::TimeZone tZone;
    require(tRegistry.findTimeZone(sName, eKind, tZone) != tZone.isUnknown());
    if (tZone.isUnknown())
        return;
    require(tRegistry.findTimeZone(tZone.getId(), tov::TimeZoneRegistry::kIdentifier) == tZone);
    const tov::DateTime tValue(2024, 2, 29, 23, 59, 59);
    const tov::DateTime tShown = tov::DateUtils::convertTimeZoneTime(tValue, 0, tZone);
    const std::int64_t nMoment = tov::DateUtils::DateTimeToCRTtime(tValue);
    require(tov::DateUtils::DateTimeToCRTtime(tShown) - nMoment == tZone.offsetSecondsAt(nMoment));
    require(tov::TimeZone::isValidOffset(tZone.getUtcOffset(tValue)));
}

// A list made of any bytes holds names that stay inside a folder, and links that lead to zones.
void checkList(std::string_view sText)
{
    const tov::ZoneList tList = tov::ZoneList::fromText(sText);
    for (std::size_t n = 0; n < tList.all().size(); ++n)
    {
        const tov::ZoneList::Zone& tZone = tList.all()[n];
        require(!tZone.sId.empty() && tZone.sId.front() != L'/' && tZone.sId.find(L'.') == tov::String::npos);
        require(tList.find(tZone.sId) == n);
        require(tList.all()[tZone.nTarget].nTarget == tZone.nTarget);
    }
}

}  // namespace

// The bytes are a list of zones, a name of either kind, and a language.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view sBytes(reinterpret_cast<const char*>(pData), nSize);
    checkList(sBytes);
    const tov::String sName = tov::fromUtf8(sBytes).value_or(tov::String(sBytes.begin(), sBytes.end()));
    checkName(sName, tov::TimeZoneRegistry::kIdentifier);
    checkName(sName, tov::TimeZoneRegistry::kWindowsName);
    static const tov::TimeZone s_tZone =
        tov::TimeZoneRegistry::getInstance().findTimeZone(L"America/New_York", tov::TimeZoneRegistry::kIdentifier);
    require(!s_tZone.getShortName(sName).empty());
    return 0;
}

#include "webformat/sessiontimezones.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include "corefacade/timezoneregistry.h"
#include "utilities/config.h"
#include "utilities/pathfilter.h"
#include "utilities/stringutils.h"

namespace tov {

namespace {

constexpr PathFilter kpfDefaultDataOffset(L"TimeZone/DefaultDataOffset");
constexpr PathFilter kpfDefaultUserPreferred(L"TimeZone/DefaultUserPreferred");
constexpr PathFilter kpfDefaultDataDisplay(L"TimeZone/DefaultDataDisplay");

constexpr std::wstring_view kDefault = L"default";
constexpr std::wstring_view kGMT = L"GMT";

// More than any offset in use; keeps sums of hours and minutes inside an int.
constexpr int kLargestNumber = 9'999'999;

struct ConfiguredZones
{
    int nDataOffset = TimeZone::knUTCOffsetUnknown;
    String sUserPreferred;
    String sDataDisplay;
};

// The process's defaults: whole snapshots, so that a reload never shows half of its values.
class STZConfig
{
public:
    static STZConfig& getInstance()
    {
        static STZConfig& s_tConfig = *new STZConfig;
        return s_tConfig;
    }

    std::shared_ptr<const ConfiguredZones> zones() const
    {
        const std::lock_guard tLock(m_tMutex);
        return m_pZones;
    }

private:
    STZConfig() { m_tConfig.init(*this, &STZConfig::loadConfig); }

    bool loadConfig(const ConfigReader& tReader, EConfig)
    {
        const auto pZones = std::make_shared<ConfiguredZones>();
        pZones->nDataOffset =
            SessionTimeZones::offsetFromText(tReader.getText(kpfDefaultDataOffset), TimeZone::knUTCOffsetUnknown);
        pZones->sUserPreferred = tReader.getText(kpfDefaultUserPreferred);
        pZones->sDataDisplay = tReader.getText(kpfDefaultDataDisplay);
        const std::lock_guard tLock(m_tMutex);
        m_pZones = pZones;
        return true;
    }

    mutable std::mutex m_tMutex;
    std::shared_ptr<const ConfiguredZones> m_pZones = std::make_shared<const ConfiguredZones>();
    Config<STZConfig> m_tConfig;
};

// Bound at load, so that a reader that is there already is read once.
[[maybe_unused]] const bool s_bBound = (STZConfig::getInstance(), true);

// A sign and the digits up to the first other character; 0 where there are none.
int leadingNumber(std::wstring_view sText)
{
    const bool bNegative = sText.starts_with(L'-');
    if (bNegative || sText.starts_with(L'+'))
        sText.remove_prefix(1);
    int nNumber = 0;
    for (const wchar_t nChar : sText)
    {
        if (nChar < L'0' || nChar > L'9')
            break;
        nNumber = std::min(nNumber * 10 + static_cast<int>(nChar - L'0'), kLargestNumber);
    }
    return bNegative ? -nNumber : nNumber;
}

int offsetOfHoursAndMinutes(std::wstring_view sText, std::size_t nColon)
{
    const std::size_t nGMT = sText.find(kGMT);
    const std::size_t nStart = nGMT == std::wstring_view::npos ? 0 : nGMT + kGMT.size();
    const int nHours = leadingNumber(nStart < nColon ? sText.substr(nStart, nColon - nStart) : std::wstring_view());
    const int nMinutes = leadingNumber(sText.substr(nColon + 1));
    return nHours >= 1 ? nHours * 60 + nMinutes : nHours * 60 - nMinutes;
}

}  // namespace

SessionTimeZones::SessionTimeZones()
{
    m_tGuts.updateUserPreferredTimeZone();
}

SessionTimeZones::~SessionTimeZones() = default;

void SessionTimeZones::setUserTimeZonePref(const String& sName)
{
    m_tGuts.m_sUserWebcatPref = sName;
    m_tGuts.updateUserPreferredTimeZone();
}

void SessionTimeZones::setUserSessionVar(const String& sName)
{
    m_tGuts.m_sUserSessionVar = sName;
    m_tGuts.updateUserPreferredTimeZone();
}

void SessionTimeZones::setUserBrowser(const String& sName)
{
    m_tGuts.m_sUserBrowser = sName;
    m_tGuts.updateUserPreferredTimeZone();
}

void SessionTimeZones::setDataOffsetSessionVar(const String& sText)
{
    m_tGuts.m_nDataOffsetSessionVar = offsetFromText(sText, TimeZone::knUTCOffsetUseDefault);
}

String SessionTimeZones::getConsistentDisplayTimeZone() const
{
    return m_tGuts.m_sDisplaySessionVar.empty() ? STZConfig::getInstance().zones()->sDataDisplay
                                                : m_tGuts.m_sDisplaySessionVar;
}

int SessionTimeZones::getDefaultDataOffset() const
{
    return TimeZone::isValidOffset(m_tGuts.m_nDataOffsetSessionVar) ? m_tGuts.m_nDataOffsetSessionVar
                                                                    : STZConfig::getInstance().zones()->nDataOffset;
}

int SessionTimeZones::offsetFromText(std::wstring_view sText, int nFallback)
{
    if (sText.empty() || StringUtils::equalsIgnoreCase(sText, kDefault))
        return nFallback;
    if (StringUtils::equalsIgnoreCase(sText, L"unknown"))
        return TimeZone::knUTCOffsetUseDefault;
    const std::size_t nColon = sText.find(L':');
    return nColon == std::wstring_view::npos ? leadingNumber(sText) : offsetOfHoursAndMinutes(sText, nColon);
}

void SessionTimeZones::Guts::updateUserPreferredTimeZone()
{
    String sCandidate = STZConfig::getInstance().zones()->sUserPreferred;
    if (!m_sUserWebcatPref.empty() && m_sUserWebcatPref != kDefault)
        sCandidate = m_sUserWebcatPref;
    else if (!m_sUserSessionVar.empty())
        sCandidate = m_sUserSessionVar;
    else if (!m_sUserBrowser.empty())
        sCandidate = m_sUserBrowser;
    const TimeZoneRegistry& tRegistry = TimeZoneRegistry::getInstance();
    const bool bFound = !sCandidate.empty() &&
                        (tRegistry.findTimeZone(sCandidate, TimeZoneRegistry::kIdentifier, m_tUserPreferredTimeZone) ||
                         tRegistry.findTimeZone(sCandidate, TimeZoneRegistry::kWindowsName, m_tUserPreferredTimeZone));
    if (!bFound)
        m_tUserPreferredTimeZone = TimeZone::kUnknown;
}

}  // namespace tov

#pragma once

#include <string_view>

#include "corefacade/timezone.h"
#include "webbedrock/export.h"
#include "webbedrock/handle.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/string.h"

namespace tov {

class SessionTimeZones;

using SessionTimeZonesHandle = Handle<const SessionTimeZones, const SessionTimeZones>;

// The time zone settings of one user session, and the configured defaults of the process.
//
// Example:  Handle<SessionTimeZones> hSession = new SessionTimeZones;
//           hSession->setUserBrowser(L"Europe/Paris");
//           hSession->setDataOffsetSessionVar(L"GMT-05:30");
//           hSession->getUserPreferredTimeZone().getId()   -> "Europe/Paris"
//           hSession->getDefaultDataOffset()               -> -330
//
// The defaults come from the host's configuration: the texts of "TimeZone/DefaultDataOffset" (an offset as
// `offsetFromText` reads it), "TimeZone/DefaultUserPreferred" and "TimeZone/DefaultDataDisplay" (names of zones). A
// reload changes them for what is asked from then on; a preferred zone is found anew when a setting of its session
// changes.
//
// The owning session calls the setters before it shares the object; then any number of threads may read. An unknown
// name is no error: the zone is `TimeZone::kUnknown`.
class WEBFORMAT_EXPORT SessionTimeZones : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    SessionTimeZones();
    ~SessionTimeZones() override;

    // The sources of the user's preferred zone, in the order in which they count; an empty text is none, and so is
    // "default" as a stored preference. Names are identifiers or Windows names.
    void setUserTimeZonePref(const String& sName);
    void setUserSessionVar(const String& sName);
    void setUserBrowser(const String& sName);

    // The zone in which the session shows all data; empty: none.
    void setDisplaySessionVar(const String& sName) { m_tGuts.m_sDisplaySessionVar = sName; }
    // The offset in which the session's data are stored, see `offsetFromText`.
    void setDataOffsetSessionVar(const String& sText);

    const TimeZone& getUserPreferredTimeZone() const { return m_tGuts.m_tUserPreferredTimeZone; }
    // The session's display zone, else the configured one, else empty.
    String getConsistentDisplayTimeZone() const;
    // Minutes east of UTC: the session's, else the configured; `TimeZone::knUTCOffsetUnknown` where neither is known.
    int getDefaultDataOffset() const;

    // Minutes east of UTC: "-60" -> -60, "GMT+05:30" -> 330, "GMT-05:30" -> -330.
    //
    // An empty text and "default" give `nFallback`, "unknown" `TimeZone::knUTCOffsetUseDefault`, both in any case. A
    // text without a colon is a number of minutes (what is no number reads as 0); with one, hours stand before it,
    // behind the first "GMT" where there is one, and minutes behind it. Kept: hours of 0 and less subtract the minutes,
    // so that "GMT+00:30" is -30.
    static int offsetFromText(std::wstring_view sText, int nFallback);

private:
    struct Guts
    {
        TimeZone m_tUserPreferredTimeZone = TimeZone::kUnknown;
        int m_nDataOffsetSessionVar = TimeZone::knUTCOffsetUseDefault;
        String m_sDisplaySessionVar;
        String m_sUserWebcatPref;
        String m_sUserSessionVar;
        String m_sUserBrowser;

        void updateUserPreferredTimeZone();
    };

    Guts m_tGuts;
};

}  // namespace tov

#pragma once

#include <string_view>

#include "corefacade/datetime.h"
#include "corefacade/timezone.h"
#include "intl/ktwuilanguage.h"
#include "utilities/messagetable.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webformat/sessiontimezones.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

// Decides, for one formatting request, with which offset its timestamps are stored and in which zone they are shown.
//
// Example:  TimeZoneResolver tResolver(hSession, tLanguage, MessageTableHandle());
//           tResolver.setMetaDataOffset(0);
//           tResolver.getDataOffset()                                -> 0
//           tResolver.resolveDisplayTimeZone(L"Europe/Paris")        -> "Europe/Paris"
//
// One made by default knows no session and no offset: values are shown as they are stored. Built per request and then
// only read; any number of threads may read one. Offsets are minutes east of UTC.
class WEBFORMAT_EXPORT TimeZoneResolver
{
public:
    TimeZoneResolver();
    // `hSession` and `hMessages` may be null; the offset of the request's metadata is 0 until it is set.
    TimeZoneResolver(const SessionTimeZonesHandle& hSession, const KTWUILanguage& tLanguage,
                     const MessageTableHandle& hMessages);

    // The data offset that the request's metadata state; an offset that is not valid: none.
    void setMetaDataOffset(int nOffset) { m_nMetaDataOffset = nOffset; }
    // The display zone that a variable of the request names; empty: none.
    void setDisplayVariable(const String& sName) { m_sDisplayVariable = sName; }

    // The metadata's offset where it is valid, else the session's default, else `TimeZone::knUTCOffsetUnknown`.
    int getDataOffset() const;
    int getDefaultDataOffset() const;

    // The name of the zone to show values in; the first that there is of: `sName` (other than "default"); without a
    // session `TimeZone::kIDUnknown`; the session's display zone or the configured one; the display variable; the
    // identifier of the user's preferred zone.
    String resolveDisplayTimeZone(const String& sName) const;
    // The same for the zone that a definition names; a null definition names none.
    String resolveDisplayTimeZone(const WebValueFormatDefinitionHandle& hDefinition) const;

    // The zone that a pattern names: "yyyy[TZ: EST ]" -> "EST"; empty where there is no such bracket.
    static String getTimeZoneFromFormatString(std::wstring_view sPattern);
    // The zone that a date or custom definition names; empty for any other.
    static String getTimeZoneFromFormatDef(const WebValueFormatDefinition& tDefinition);

    // The offset of the zone that `sName` resolves to; `TimeZone::knUTCOffsetUnknown` for an unknown zone.
    int getDisplayOffset(TimeZone::DstState eState, const String& sName) const;
    int getDisplayOffset(const DateTime& tMoment, const String& sName) const;
    // Data offset minus display offset; 0 unless both are known.
    int getDisplayToDataOffset(TimeZone::DstState eState, const String& sName) const;
    int getDisplayToDataOffset(const DateTime& tMoment, const String& sName) const;

    // The zone for what has no column of its own: the display variable's (unknown where there is no such zone), else
    // the user's preferred one, else that of the server.
    TimeZone getGeneralDisplayTimeZone() const;

    const KTWUILanguage& language() const { return m_tLanguage; }
    const MessageTableHandle& messageTable() const { return m_hMessageTable; }

private:
    int displayToDataOffset(int nDisplayOffset) const;

    String m_sDisplayVariable;
    int m_nMetaDataOffset;
    SessionTimeZonesHandle m_hSessionTimeZones;
    KTWUILanguage m_tLanguage;
    MessageTableHandle m_hMessageTable;
};

}  // namespace tov

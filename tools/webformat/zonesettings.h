#pragma once

#include <optional>
#include <string_view>

#include "intl/ktwuilanguage.h"
#include "webbedrock/string.h"
#include "webformat/timezoneresolver.h"

namespace tov {

// What a report or the command line says about the zones of timestamps.
struct ZoneSettings
{
    // Minutes east of UTC with which the values are stored, or `TimeZone::knUTCOffsetUnknown`; none: as the host's
    // configuration says.
    std::optional<int> nDataOffset;
    // The zone to show them in where nothing nearer names one; empty: as the host's configuration says.
    String sDisplayTimeZone;
};

// "unknown", or minutes from -1080 to 1080; no value for anything else.
std::optional<int> dataOffsetFromText(std::wstring_view sText);

// Whether the text names a zone, or says "default": whatever counts where no zone is named.
bool isZoneOrDefault(std::wstring_view sText);

// What the two expect, for messages.
constexpr const char* kpExpectedDataOffset = "a whole number of minutes from -1080 to 1080, or \"unknown\"";
constexpr const char* kpExpectedZone =
    "a known time zone such as \"America/New_York\" (see: webformat list time-zones)";

// A resolver for these settings, with the message table of the process. A zone without any data offset, here or in the
// configuration, means values that are stored in UTC.
TimeZoneResolver resolverOf(const ZoneSettings& tSettings, const KTWUILanguage& tLanguage);

}  // namespace tov

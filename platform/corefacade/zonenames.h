#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "webbedrock/string.h"

namespace tov {

// The short name of a zone at a moment in a language, as `TimeZone::getShortName` promises it. `nOffset`: the zone's
// offset at that moment in seconds, by its rules. Any thread.
String zoneShortName(std::wstring_view sId, std::int64_t nUtcSeconds, std::int32_t nOffset,
                     std::wstring_view sLanguageTag);

// The identifier that the principal place of a Windows name has; empty where there is no such name. Any thread.
String zoneOfWindowsName(std::wstring_view sName);

}  // namespace tov

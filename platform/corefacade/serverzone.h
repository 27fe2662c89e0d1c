#pragma once

#include <cstddef>
#include <string>

#include "corefacade/zonelist.h"

namespace tov {

// The index in the list of the zone that the system is set to: the identifier in TZ ("Europe/Berlin", ":Europe/Berlin",
// or the path of its file in the zone data's folder `sFolder`); without TZ, or where it names `sLocalTime` (the file
// "/etc/localtime"), the zone to which that file is a link, or whose data it holds. `tList.all().size()` where there is
// none: TZ is checked against the list and never opened as a file.
std::size_t findServerZone(const ZoneList& tList, const std::string& sFolder, const std::string& sLocalTime);

// The bytes of a regular file; nothing where it cannot be read or is larger than the limit.
std::string readSmallFile(const std::string& sPath, std::size_t nLimit);

}  // namespace tov

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// The identifiers that the source text of the zone data ("tzdata.zi") lists:
//
//     Z Europe/Berlin 0:53:28 - LMT 1893 Ap      -> a zone
//     L Europe/Berlin Arctic/Longyearbyen        -> a link, another name of a zone
//
// Names are letters, digits, "_", "+", "-" and "/", at most 63 characters, without an empty part: no name can lead a
// path out of the data's folder. Any other name, and a link to a zone that is not listed, is left out. Immutable; any
// thread.
class ZoneList
{
public:
    struct Zone
    {
        String sId;
        std::size_t nTarget;  // the index of the zone whose rules it has: a zone's own
    };

    // Linear in the text but for the sorting.
    static ZoneList fromText(std::string_view sText);

    // Ordered without regard to case; no two names differ in case only.
    const std::vector<Zone>& all() const { return m_vZones; }

    // The index of a name whatever the case of its letters; `all().size()` where it is not listed.
    std::size_t find(std::wstring_view sName) const;

private:
    std::vector<Zone> m_vZones;
};

}  // namespace tov

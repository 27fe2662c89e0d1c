#include "unknowntags.h"

#include <algorithm>
#include <cstdio>

namespace tov {

bool UnknownTagFilter::takes(const std::string& sTag)
{
    if (isFull() || std::find(m_vTags.begin(), m_vTags.end(), sTag) != m_vTags.end())
        return false;
    m_vTags.push_back(sTag);
    return true;
}

void UnknownTagWarnings::add(const std::vector<UnknownTag>& vUnknownTags)
{
    for (const UnknownTag& tUnknown : vUnknownTags)
    {
        if (!m_tFilter.takes(tUnknown.sTag))
            continue;
        if (m_tFilter.isFull())
            std::fprintf(stderr, "webformat: more currency tags are unknown; they are not named\n");
        else
            std::fprintf(stderr,
                         "webformat: %s: found %s, expected a currency tag such as \"loc:en-US\", \"int:EUR\" or "
                         "\"USD\"; its amounts are shown as whole numbers\n",
                         tUnknown.sPlace.c_str(), tUnknown.sTag.c_str());
    }
}

}  // namespace tov

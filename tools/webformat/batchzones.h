#pragma once

#include "batchrequest.h"
#include "webformat/timezoneresolver.h"

namespace tov {

// The time zone keys of a batch request: "dataOffset", "displayTimeZone", "session", "displayVariable".
struct BatchZones
{
    // Throws InputError for a key that holds what it cannot.
    explicit BatchZones(const BatchRequest& tRequest);

    bool bGiven;  // whether there is any of the keys; otherwise the resolver knows nothing
    TimeZoneResolver tResolver;
    String sDisplayTimeZone;
};

}  // namespace tov

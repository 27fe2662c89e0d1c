#pragma once

#include "webbedrock/export.h"

namespace tov
{

// Decides from which zone a timestamp is read and in which it is shown. One made by default knows no zone: values are
// shown as they are stored.
class WEBFORMAT_EXPORT TimeZoneResolver
{
public:
    TimeZoneResolver() = default;
};

}  // namespace tov

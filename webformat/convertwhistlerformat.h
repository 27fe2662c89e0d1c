#pragma once

#include <cstddef>

#include "webformat/valueformatdefinition.h"

namespace tov {

// Turns format strings of the older notation into custom definitions.
class WEBFORMAT_EXPORT WebConvertWhistlerFormat
{
public:
    // The most date formats that are remembered: formats come from outside, and a cache without an end would be a leak.
    static constexpr std::size_t knMaxCachedDateFormats = 65536;

    // The custom definition whose date pattern stands for `sFormat`, in which "m" is a month or a minute by what stands
    // beside it:
    //     d/m/yy h:mm     ->  d/M/yy H:mm
    //     h:mm am/pm      ->  h:mm tt
    //     h:mm AM/PM      ->  h:mm TT      kept: shows the letters "TT"
    //     h:mm:ss         ->  H:mmss       kept: without am/pm the character behind "h:mm" is lost
    //     mmmmm           ->  MMMMm        kept: a month name and a minute
    //
    // The same string always gives the same definition, as long as it is remembered. Time and memory are linear in the
    // length. Any thread; two threads may convert one string at once, and the first to finish decides for both.
    static WebValueFormatDefinitionHandle ConvertDateFormat(const String& sFormat);
};

}  // namespace tov

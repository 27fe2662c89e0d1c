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

    // The most numeric formats that are remembered.
    static constexpr std::size_t knMaxCachedNumericFormats = 65536;

    // The definition that stands for a numeric format string: one of the 504 strings of the older notation becomes a
    // number, currency or percent definition, any other string a custom definition of the same pattern:
    //     #,##0.00;[red](#,##0.00)  ->  number, grouped, 2 and 2 digits, red parentheses
    //     #0;[red]-#0               ->  number, ungrouped, 0 and 0 digits, red           kept: no minus
    //     $#,##0.00;($#,##0.00)     ->  currency "loc:en-US", grouped, 2 digits, minus   kept: no parentheses
    //     #0%;[red](#0%)            ->  percent, ungrouped, 0 and 0 digits, minus        kept: no style
    //     0.00                      ->  custom "0.00"
    // A string stands for itself only as a whole and in its own case. The result is never of the older notation.
    //
    // Caching, cost and threads as above.
    static WebValueFormatDefinitionHandle ConvertNumericFormat(const WebWhistlerFormatDefinition& tDefinition);

    // The definition that stands for a text format string: a text definition for the strings that a text type stands
    // for, otherwise a custom definition whose HTML section comes first:
    //     @N               ->  text type kPlainNBSPText
    //     "<b>"@;"-";"-"   ->  custom [html]"<b>"@;"-"[text]"-"
    //
    // Linear in the length; nothing is remembered. Any thread.
    static WebValueFormatDefinitionHandle ConvertTextFormat(const WebWhistlerFormatDefinition& tDefinition);
};

}  // namespace tov

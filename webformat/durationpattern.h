#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webformat/outputtypes.h"

namespace tov {

// One element of a duration pattern.
struct DurationFormat
{
    enum EDurationType : int
    {
        kDay = 0,
        kHour = 1,
        kMinute = 2,
        kSecond = 3,
        kSeparator = 4,  // quoted or escaped text
        kText = 5        // one bare character
    };

    // The unit that must not be zero for the element to be written.
    enum EOptionalBasedOn : int
    {
        kDayOpt = 0,
        kHourOpt = 1,
        kMinuteOpt = 2,
        kSecondOpt = 3,
        kRequired = 4  // always written
    };

    EDurationType eType = kText;
    EOptionalBasedOn eOptionalBasedOn = kRequired;
    // Units: the number of letters, 0 for one. Not used in writing: every unit has at least two digits.
    unsigned nPad = 0;
    // Texts: what is written, encoded for the output.
    String sText;
    // Where the element stands in the source text, half open; 0 and 0 for what no pattern asked for.
    std::uint32_t nSourceStart = 0;
    std::uint32_t nSourceEnd = 0;
};

// The elements of a duration pattern in order, the units that they show, and how the smallest of these is rounded.
class WEBFORMAT_EXPORT DurationFormatList
{
public:
    enum ERoundRule : int
    {
        kFloor = 0,  // kept: leaves doubles and decimals as they are, truncates whole numbers
        kCeil = 1,   // up
        kRound = 2   // to nearest, halves up
    };

    DurationFormatList() = default;
    DurationFormatList(const DurationFormatList&) = default;
    DurationFormatList(DurationFormatList&&) = default;
    DurationFormatList& operator=(const DurationFormatList&) = default;
    DurationFormatList& operator=(DurationFormatList&&) = default;
    virtual ~DurationFormatList();

    // Appends an element; a unit is one that the pattern has from then on.
    void addFormat(DurationFormat tFormat);

    // Whether `eUnit` is the smallest unit, the one that is rounded: no smaller one is shown. Never the second.
    bool needsRoundingRule(DurationFormat::EDurationType eUnit) const;

    std::vector<DurationFormat> m_vDurationFormats;
    bool m_bHasDay = false;
    bool m_bHasHour = false;
    bool m_bHasMinute = false;
    bool m_bHasSecond = false;
    ERoundRule m_eRoundRule = kFloor;
};

// The meaning of a duration pattern: its elements in order.
//
//   pattern  = *token
//   token    = day / hour / minute / second / round / quoted / escaped / bracket / literal
//   day      = 1*"d"
//   hour     = 1*"h"
//   minute   = 1*"m"
//   second   = 1*"s"
//   round    = "c" / "r"                     ; rounds the smallest unit up, or to nearest; the last one counts
//   quoted   = DQUOTE *any (DQUOTE / end)    ; a "\" in it drops out and takes the next character as it stands
//   escaped  = "\" any                       ; a "\" at the end shows nothing
//   bracket  = "[" content ("]" / end)       ; content is free of "]", so that a bracket in it runs to its end
//   content  = "opt:" *token                 ; an optional section
//            / *any                          ; anything else shows nothing
//   literal  = any other character           ; each is an element of its own
//
// Case counts in all of it. All literal text is encoded for the output, unless the section for that output wrote it.
//
// An optional section is written only if a unit is not zero: the second where its text holds "ss", else the minute for
// "mm", the hour for "hh", the day for "dd". Single letters do not count; a section without a doubled one is always
// written. A bracket in the section chooses anew for the text behind it.
//
// Example: "[opt:dd\"d\"]hh" is the elements kDay (kDayOpt, pad 2), kSeparator "d" (kDayOpt), kHour (kRequired, pad 2).
//
// Every text is a pattern: nothing is rejected. Time and memory are linear in its length, however brackets nest. Once
// parsed a pattern is read only, by any number of threads.
class WEBFORMAT_EXPORT DurationPattern
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    // Compiles `sPattern` for `eOutput`. With `eParseOutput` = kLastType the section for `eOutput` is picked out of a
    // pattern with variants first; any other value says that the pattern is such a section, written for that output
    // already.
    static DurationPattern parse(const String& sPattern, OutputType eOutput,
                                 OutputType eParseOutput = ValueFormatterTypes::kLastType);

    const DurationFormatList& formats() const& { return m_tFormats; }
    DurationFormatList&& formats() && { return std::move(m_tFormats); }

    // The text that the places refer to: the section for the output, or the whole pattern.
    const String& sourceText() const { return m_sSource; }

    // "kDay", "kHour", ..., "kDayOpt", ..., "kFloor", ...; an empty text for a value that is none of the enumeration.
    static const char* typeName(DurationFormat::EDurationType eType);
    static const char* basisName(DurationFormat::EOptionalBasedOn eBasis);
    static const char* roundRuleName(DurationFormatList::ERoundRule eRule);

private:
    friend class DurationPatternParser;

    DurationPattern() = default;

    DurationFormatList m_tFormats;
    String m_sSource;
};

}  // namespace tov

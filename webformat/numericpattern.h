#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webformat/valueformatter.h"

namespace tov {

// Makes the formatters of other families that a numeric pattern asks for in a bracket. The default asks those families'
// own factories; a test hands in a stand-in.
class WEBFORMAT_EXPORT NumericSubFormatterSource
{
public:
    virtual ~NumericSubFormatterSource();

    // The formatter of a time bracket: `nStyle` is 3 (time), 4 (hour and minute) or 16 (hour), the predefined date
    // type.
    virtual WebValueFormatterHandle timeFormatter(int nStyle, const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                  ValueFormatterTypes::OutputType eOutput) const = 0;
    // The formatter of a duration bracket; the whole pattern is the duration's own. `eParseOutput` as for
    // NumericPattern::parse.
    virtual WebValueFormatterHandle durationFormatter(const String& sPattern, const Locale& tLocale,
                                                      const KTWUILanguage& tLanguage,
                                                      ValueFormatterTypes::OutputType eOutput,
                                                      ValueFormatterTypes::OutputType eParseOutput) const = 0;
};

// The meaning of a numeric pattern: its sections, and the items of each in order.
//
//   pattern     = section *( ";" section )          ; positive (and zero), negative, null; further ones are kept
//   section     = *item
//   item        = placeholders / point / comma / percent / currency / quoted / escaped / bracket / literal
//   placeholders= 1*"#" / 1*"0" / 1*"?"             ; "?" is exactly "0"
//   point       = "."                               ; the first one; a second opens a quoted text
//   comma       = ","                               ; before a placeholder: grouping; elsewhere: divides by 1000
//   percent     = 1*"%"                             ; one sign; each further "%" multiplies by 100
//   currency    = "$" / "[$" *any "]"               ; "[$:text]" the text, other brackets the locale's symbol
//   quoted      = DQUOTE *any ( DQUOTE / end )      ; copied as it stands
//   escaped     = "\" any                           ; copied as it stands
//   bracket     = "[" content "]"                   ; without "]" the rest is literal
//   content     = "red" / "%" N / "MMM" / "MMMM" / "DDD" / "DDDD"
//               / "FMT:timeHourMin" / "FMT:timeHour" / "FMT:time" / "duration"   ; with a unit: "(min)", "(sec)", ...
//               / "scale-name:" name / "scale-decimal:" integer                  ; anything else is ignored
//   literal     = any other run of characters       ; encoded for the output
//
// Example: "#,##0.00" is one section with the items kOptional [-61444, -3), kOptional [-3, -1), kRequired [-1, 0),
// kDecimal, kRequired [0, 2), grouping set, 2 to 2 fraction digits.
//
// Every text is a pattern: nothing is rejected. Time and memory are linear in its length. A parsed pattern is
// immutable, owns all its texts in one buffer, and may be read by any number of threads.
class WEBFORMAT_EXPORT NumericPattern
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    struct Item
    {
        enum Type
        {
            kOptional = 0,
            kRequired = 1,
            kText = 2,
            kDecimal = 3,
            kDOWAbbrev = 4,
            kDOW = 5,
            kMonthAbbrev = 6,
            kMonth = 7,
            kColor = 8,
            kHour = 9,
            kHourMin = 10,
            kTime = 11,
            kDuration = 12,
            kIndicator = 13
        };

        Type eType = kText;
        // The digit positions of a placeholder run, half open: the units digit is [-1, 0), the first fraction digit [0,
        // 1).
        std::int32_t nStartDigit = 0;
        std::int32_t nEndDigit = 0;
        // The text of a kText item, encoded for the output; the name of a kColor item. See NumericPattern::text().
        std::uint32_t nTextStart = 0;
        std::uint32_t nTextLength = 0;
        // Where the item stands in the parsed pattern text, half open.
        std::uint32_t nSourceStart = 0;
        std::uint32_t nSourceEnd = 0;
        // Time and duration items show value x numerator / denominator.
        std::uint64_t nMultiplierNumerator = 0;
        std::uint64_t nMultiplierDenominator = 1;
        WebValueFormatterHandle hSubFormatter;
    };

    // One step of the mixed-radix display that "[%N]" asks for.
    struct Modulus
    {
        std::uint64_t nDiv = 1;
        std::uint64_t nMod = 0;  // 0: the quotient is not reduced
        std::uint64_t nMult = 1;
    };

    enum ScaleFactor
    {
        kNone = 0,
        kAuto = 1,  // chosen for each value
        kFixed = 2
    };

    struct Section
    {
        std::vector<Item> vDigits;  // integer part, then fraction part
        std::vector<Modulus> vMods;
        bool bDecimalSeen = false;
        bool bGrouping = false;
        bool bCurrency = false;
        bool bPercent = false;
        bool bScalingComma = false;
        bool bValidExcelPattern = true;  // of this section and all after it
        std::int32_t nPower10 = 0;       // the value is multiplied by ten to this power
        ScaleFactor eScaleFactor = kNone;
        String sScaleIndicator;
        std::uint32_t nMinFractionDigits = 0;
        std::uint32_t nMaxFractionDigits = 0;
        std::uint32_t nSourceStart = 0;  // where the section stands in the parsed pattern text, half open
        std::uint32_t nSourceEnd = 0;
    };

    // The leftmost position of the first run of a section: the digits above it are never shown.
    static constexpr std::int32_t knLeftmostDigit = -61440;

    // Compiles `sPattern` for `eOutput`. With `eParseOutput` = kLastType the section for `eOutput` is picked out of a
    // pattern with variants first; any other value says that the pattern is such a section, written for that output
    // already. `pSource` null: the families' own factories, durations as doubles. The pattern keeps no reference to its
    // arguments.
    static NumericPattern parse(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                const KTWUILanguage& tLanguage,
                                OutputType eParseOutput = ValueFormatterTypes::kLastType,
                                const NumericSubFormatterSource* pSource = nullptr);

    // At least one section, even for the empty pattern.
    const std::vector<Section>& sections() const { return m_vSections; }

    // The text that the items' places refer to: the section for the output, or the whole pattern.
    const String& sourceText() const { return m_sSource; }

    std::wstring_view text(const Item& tItem) const
    {
        return std::wstring_view(m_sTexts).substr(tItem.nTextStart, tItem.nTextLength);
    }

    // "kOptional", "kRequired", ...
    static const char* typeName(Item::Type eType);

private:
    friend class NumericPatternParser;

    NumericPattern() = default;

    String m_sSource;
    String m_sTexts;
    std::vector<Section> m_vSections;
};

}  // namespace tov

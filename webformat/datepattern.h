#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "intl/locale.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webformat/valueformatter.h"

namespace tov {

// The meaning of a date pattern: its elements in order.
//
//   pattern  = *token
//   token    = year / month / day / hour12 / hour24 / minute / second / fraction / ampm / era / zone
//            / quoted / escaped / bracket / literal
//   year     = 1*"y" / 1*"Y"       ; 1: year of the century, 2: two digits of it, 4: whole, other: four digits
//   month    = 1*"M"               ; 1: number, 2: two digits, 3: short name, more: full name
//   day      = 1*"d" / 1*"D"       ; 1: number, 2: two digits, 3: short day name, 4: full day name ("D": upper case),
//                                  ; 5: first letter of the short name, more: full name
//   hour12   = 1*"h"               ; here and in the next three: 1: number, more: two digits
//   hour24   = 1*"H"
//   minute   = 1*"m"
//   second   = 1*"s"
//   fraction = 1*"s" "." *("#" / "0")  ; seconds as the number that the pattern 1*"0" "." *("#" / "0") writes
//   ampm     = 1*"t"               ; the locale's text for the half of the day
//   era      = 2*"g"               ; a lone "g" is literal
//   zone     = "TZ"                ; shows nothing here; a "T" without "Z" is literal
//   quoted   = DQUOTE *any (DQUOTE / end)   ; a "\" in it drops out and takes the next character as it stands
//   escaped  = "\" any             ; a "\" at the end of the pattern shows nothing
//   bracket  = "[" content ("]" / end)
//   content  = "L:" name           ; from here on the names of that locale; without a name the first locale again
//            / "FMT:" name         ; the predefined format of that name; an unknown name is the short date
//            / *any                ; anything else shows nothing
//   literal  = any other character
//
// Case counts in all of it. All literal text is encoded for the output, unless the section for that output wrote it.
//
// Example: "d/MM" is the elements kDay (pad 0), kSeparator "/", kMonth (pad 2).
//
// Every text is a pattern: nothing is rejected. Time and memory are linear in its length; brackets in the pattern of a
// predefined format lead at most knMaxNesting formats deep. A pattern owns all its texts in one buffer; once shared it
// is read only, by any number of threads.
class WEBFORMAT_EXPORT DatePattern
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    enum EDateType : int
    {
        kYear = 0,
        kMonth = 1,
        kDay = 2,
        kHour12 = 3,
        kMinute = 4,
        kSecond = 5,
        kSecondWDecimal = 6,
        kSeparator = 7,
        kMonthAlpha = 8,
        kHour24 = 9,
        kAMPM = 10,
        kDOW = 11,
        kDOWAlpha = 12,
        kEra = 13,
        kSetLocale = 14,
        kResetLocale = 15
    };

    struct Element
    {
        EDateType eType = kSeparator;
        // Numbers: digits to write, 0 for as many as there are. Names: 3 is the short name, more the full one, less its
        // first character.
        std::uint32_t nPad = 0;
        bool bCaps = false;  // names: in upper case; kYear: the year of the century
        // kSeparator: the text, encoded for the output; kSecondWDecimal: the numeric pattern; kSetLocale: the name that
        // the pattern gave. See DatePattern::text().
        std::uint32_t nTextStart = 0;
        std::uint32_t nTextLength = 0;
        // Where the element stands in the source text, half open; 0 and 0 for what no pattern asked for. Elements of a
        // predefined format stand at its bracket.
        std::uint32_t nSourceStart = 0;
        std::uint32_t nSourceEnd = 0;
        // kSecondWDecimal: of secondFormatter(); kSetLocale: of newLocale().
        std::uint32_t nResource = 0;
    };

    static constexpr int knNoFraction = -1;
    static constexpr int knMaxFractionDigits = 9;
    static constexpr int knMaxNesting = 4;

    // An empty pattern for values in `tLocale`, whose numbers the fraction of the second is written in.
    DatePattern(const Locale& tLocale, OutputType eOutput);

    // Appends the elements of `sPattern`, of its section for `eOutput` where it has several. `tLocale` is the locale of
    // its predefined formats.
    void addCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput);

    // Append one element each.
    void addYear(std::size_t nCount);
    void addMonth(std::uint32_t nPad);
    void addDay(std::uint32_t nPad);
    void addHour(bool bIs24, std::uint32_t nPad);
    void addMinute(std::uint32_t nPad);
    void addSecond(std::uint32_t nPad);
    void addSecondWithDecimal(const String& sNumericPattern);
    void addAlphaMonth(bool bCaps, std::uint32_t nPad);
    void addAlphaDayOfWeek(bool bCaps, std::uint32_t nPad);
    void addDayOfWeek(std::uint32_t nPad);
    void addAmPm(bool bCaps, bool bTwo);
    void addEra();
    // `sText` is written as it stands: it is encoded already.
    void addSeparator(std::wstring_view sText);
    // Lengthens the last element where that is a kSeparator, otherwise appends one.
    void extendSeparator(std::wstring_view sText);
    void addSetLocale(const Locale& tLocale, std::wstring_view sName);
    void addResetLocale();
    // Any element at all; `sText`, `tLocale` and `hSecondFormatter` count for the types that have them.
    void addElement(const Element& tElement, std::wstring_view sText, const Locale& tLocale,
                    const WebValueFormatterHandle& hSecondFormatter);

    const std::vector<Element>& elements() const { return m_vElements; }

    // The digits that the fraction of the second is rounded to, 0 to 9; knNoFraction without one.
    int roundedFractionDigits() const { return m_nRoundFractSects; }

    // The text that the places refer to: the sections taken, one after the other.
    const String& sourceText() const { return m_sSource; }

    std::wstring_view text(const Element& tElement) const
    {
        return std::wstring_view(m_sTexts).substr(tElement.nTextStart, tElement.nTextLength);
    }
    const WebValueFormatterHandle& secondFormatter(const Element& tElement) const
    {
        return m_vSecondFormatters[tElement.nResource];
    }
    const Locale& newLocale(const Element& tElement) const { return m_vLocales[tElement.nResource]; }

    const Locale& locale() const { return m_tLocale; }
    OutputType outputType() const { return m_eOutput; }

    // "kYear", "kMonth", ...; an empty text for a value that is none of the enumeration.
    static const char* typeName(EDateType eType);

private:
    friend class DatePatternParser;

    Element& append(EDateType eType, std::uint32_t nPad = 0, bool bCaps = false);
    void setText(Element& tElement, std::wstring_view sText);

    Locale m_tLocale;
    OutputType m_eOutput;
    int m_nRoundFractSects = knNoFraction;
    String m_sSource;
    String m_sTexts;
    std::vector<Element> m_vElements;
    std::vector<Locale> m_vLocales;
    std::vector<WebValueFormatterHandle> m_vSecondFormatters;
};

}  // namespace tov

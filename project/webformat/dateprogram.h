#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

#include "webbedrock/stringbuffer.h"
#include "webformat/datepattern.h"

namespace tov {

// A date pattern in the form that renders: a step for each part of variable length, and with it the text of fixed
// length that follows, numbers of two digits included. Names, half-day texts and eras are resolved and encoded.
//
// Example: "dddd, yyyy-MM-dd" is the steps {name of the day, ", "} and {whole year, "-00-00" with the month at 1 and
// the day at 4}.
//
// Immutable; any number of threads may render through one program.
class DateProgram
{
public:
    // What of a value a step or a patch shows; the whole year apart, each is one byte.
    enum Field : std::uint8_t
    {
        kCentury,        // the third and fourth last digit of the year
        kYearOfCentury,  // the last two
        kMonth,
        kDay,
        kHour12,
        kHour24,
        kMinute,
        kSecond,
        kDayOfWeek,   // 0 for Monday
        kMonthIndex,  // 0 for January
        kHalfOfDay,   // 0 before noon
        kFieldEnd_
    };

    struct Step
    {
        enum Type : std::uint8_t
        {
            kText,    // nothing but the text
            kNumber,  // the field without padding
            kPadded,  // the last nDigits digits of the field
            kYear,    // the whole year without padding
            kYearPadded,
            kName,      // the name of the field's value in table nIndex
            kFraction,  // vFractions[nIndex]
            kTooLong    // more digits than a number may have
        };

        Type eType = kText;
        Field eField = kCentury;
        std::uint8_t nDigits = 0;
        std::uint32_t nIndex = 0;
        // The text that follows, and the numbers in it.
        std::uint32_t nTextStart = 0;
        std::uint32_t nTextLength = 0;
        std::uint32_t nFirstPatch = 0;
        std::uint32_t nPatches = 0;
        // Characters that the step may touch at most.
        std::uint32_t nRoom = 0;
    };

    // Two digits in a step's text.
    struct Patch
    {
        std::uint32_t nOffset;
        Field eField;
    };

    // Names of equal distance in the text. The last one is empty and stands for values that have none.
    struct NameTable
    {
        static constexpr std::size_t knNames = 13;

        std::uint32_t nStart = 0;
        std::uint32_t nStride = 0;  // a multiple of knBlock
        std::array<std::uint16_t, knNames> aLengths{};
    };

    // The second with its fraction.
    struct Fraction
    {
        WebValueFormatterHandle hFormatter;
        // A pattern of zeros, a point and placeholders is written here without the formatter.
        bool bPlain = false;
        std::uint8_t nIntegerDigits = 0;
        std::uint8_t nMinDigits = 0;
        std::uint8_t nMaxDigits = 0;
        String sPoint;
    };

    // Texts are copied in blocks of this many characters; the program's text ends in a block that is never shown.
    static constexpr std::size_t knBlock = 8;
    static constexpr unsigned knMaxDigits = 31;

    // `sMark` stands before and behind each value.
    DateProgram(const DatePattern& tPattern, std::wstring_view sMark);

    // Appends the value. Allocates only if the buffer has to grow; where memory runs out the buffer is as before.
    void render(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const;

private:
    friend class DateBinder;
    friend class DateWalk;

    String m_sTexts;
    std::vector<Step> m_vSteps;
    std::vector<Patch> m_vPatches;
    std::vector<NameTable> m_vNames;
    std::vector<Fraction> m_vFractions;
    bool m_bShowsDayOfWeek = false;
    const std::atomic<int>& m_nMaxSignificantDigits;
};

}  // namespace tov

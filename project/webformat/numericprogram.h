#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "intl/locale.h"
#include "project/webformat/straightline.h"
#include "webformat/numericpattern.h"

namespace tov {

// A numeric pattern in the form that renders: neighbouring texts merged, separators, colours and fixed scale names
// turned into text, everything that a value could make the renderer look up resolved. Immutable; holds all text in one
// buffer.
struct NumericProgram
{
    // What a step writes; its numbers mean what the type says.
    struct Step
    {
        enum Type : std::uint8_t
        {
            kText,       // text [nFirst, nLast)
            kPoint,      // the separator [nFirst, nLast), if a fraction digit remains
            kOptional,   // the digits of positions [nFirst, nLast) that the value has
            kRequired,   // the same; from `nRequired` on zeros where the value has none
            kIndicator,  // the indicator of the scale chosen for the value; text [nFirst, nLast) where none fits
            kSpecial     // the day, month, time or duration vSpecials[nFirst]
        };

        Type eType;
        std::int32_t nFirst;
        std::int32_t nLast;
        std::int32_t nRequired = 0;
    };

    // A bracket whose text comes from the value itself rather than from its digits.
    struct Special
    {
        NumericPattern::Item::Type eType;
        std::uint64_t nMultiplierNumerator;
        std::uint64_t nMultiplierDenominator;
        WebValueFormatterHandle hSubFormatter;
    };

    struct Section
    {
        std::vector<Step> vSteps;
        std::vector<NumericPattern::Modulus> vMods;
        NumericText tGroupSeparator;
        std::int32_t nPower10 = 0;
        std::uint32_t nMinFractionDigits = 0;
        std::uint32_t nMaxFractionDigits = 0;
        bool bGrouping = false;
        bool bAutoScale = false;
        bool bPercent = false;
        bool bScalingComma = false;
    };

    // One scale of the locale for the automatic choice: from 10^nThreshold on the value is multiplied by
    // 10^-nThreshold.
    struct Scale
    {
        int nThreshold;
        NumericText tIndicator;
    };

    // Only the positive, the negative and the null section can ever render.
    static constexpr std::size_t knSections = 3;

    // `sMinus` stands before negative values that have no section of their own.
    NumericProgram(const NumericPattern& tPattern, const Locale& tLocale, ValueFormatterTypes::OutputType eOutput,
                   std::wstring_view sMinus);

    std::wstring_view text(NumericText tText) const
    {
        return std::wstring_view(sTexts).substr(tText.nStart, tText.nLength);
    }

    String sTexts;  // and behind it room for reads of a whole block
    // The way of finite values, at 1 of negative ones, where both have common shapes.
    bool bStraight = false;
    StraightLine aStraight[2];
    std::vector<Section> vSections;
    std::vector<Special> vSpecials;
    std::vector<Scale> vScales;  // ordered by increasing magnitude; filled only where a section scales automatically
    Locale tLocale;              // day and month names
    ValueFormatterTypes::OutputType eOutput;
    bool bValidExcelPattern;

private:
    void findStraightLines(std::wstring_view sMinus);
};

}  // namespace tov

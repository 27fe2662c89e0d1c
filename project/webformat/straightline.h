#pragma once

// Numbers of the common shapes without the walk over a program's steps. Internal to the numeric engine.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tov {

struct NumericProgram;

// A piece of a program's text.
struct NumericText
{
    std::uint32_t nStart = 0;
    std::uint32_t nLength = 0;
};

// The groups of three digits as text, "000" to "999", four characters apart; behind the last there is room for a read
// of four characters from its third on.
extern const std::array<wchar_t, 4 * 1000 + 4> kDigitGroups;

// One section of a common shape: text, grouped or plain whole digits, a point with at most nine fraction digits, text.
//
// A straight line of stores that are too wide: each writes four or eight characters and the next begins where the text
// of the last ends, so that neither the number of groups nor the length of a text is a branch that could be guessed
// wrongly (which costs more than writing a whole number). Amounts take 2.7 times less time than by the walk over the
// steps.
struct StraightLine
{
    static constexpr unsigned knMostPlaces = 9;
    static constexpr std::size_t knBlock = 8;       // characters that texts are copied by
    static constexpr std::size_t knMostWhole = 32;  // characters of 20 digits in groups, and what is written too much

    NumericText tPrefix;
    NumericText tSuffix;
    bool bGrouped = false;
    wchar_t nSeparator = 0;
    wchar_t nPoint = 0;
    unsigned nPlaces = 0;       // fraction digits that are rounded to
    unsigned nLeastPlaces = 0;  // fraction digits that are written even where they are zeros at the end
    unsigned nDroppedZero = 0;  // 1: zero has no digit before the point

    // Whether a section has such a shape; then this is how it is written.
    bool recognise(const NumericProgram& tProgram, std::size_t nSection);

    std::size_t mostCharacters() const
    {
        return tPrefix.nLength + knMostWhole + 4 + knMostPlaces + tSuffix.nLength + 2 * knBlock;
    }

    // Writes `nWhole` + `nFraction` / 10^nPlaces; there is room for mostCharacters(), all of which may be overwritten.
    [[gnu::always_inline]] wchar_t* write(wchar_t* pTarget, const wchar_t* pTexts, std::uint64_t nWhole,
                                          std::uint32_t nFraction) const
    {
        pTarget = writeText(pTarget, pTexts + tPrefix.nStart, tPrefix.nLength);
        pTarget = nWhole < knThreeGroups ? writeShort(pTarget, static_cast<std::uint32_t>(nWhole))
                                         : writeLong(pTarget, nWhole);
        if (nPlaces != 0)
            pTarget = writeFraction(pTarget, nFraction);
        return writeText(pTarget, pTexts + tSuffix.nStart, tSuffix.nLength);
    }

private:
    static constexpr std::uint64_t knThreeGroups = 1'000'000'000;
    static constexpr unsigned knGroups = 7;  // of 64 bits

    static wchar_t* writeText(wchar_t* pTarget, const wchar_t* pText, std::size_t nLength)
    {
        std::size_t nAt = 0;
        do
        {
            std::memcpy(pTarget + nAt, pText + nAt, knBlock * sizeof(wchar_t));
            nAt += knBlock;
        } while (nAt < nLength);
        return pTarget + nLength;
    }

    static void writeGroup(wchar_t* pTarget, std::uint32_t nGroup)
    {
        std::memcpy(pTarget, &kDigitGroups[4 * nGroup], 4 * sizeof(wchar_t));
    }

    // The first group has no zeros in front.
    wchar_t* writeFirst(wchar_t* pTarget, std::uint32_t nGroup) const
    {
        const unsigned nDigits = 1U + (nGroup >= 10) + (nGroup >= 100) - (nGroup < nDroppedZero);
        std::memcpy(pTarget, &kDigitGroups[4 * nGroup + 3 - nDigits], 4 * sizeof(wchar_t));
        return pTarget + nDigits;
    }

    // Up to nine digits.
    wchar_t* writeShort(wchar_t* pTarget, std::uint32_t nWhole) const
    {
        const std::uint32_t nThousands = nWhole / 1000;
        const std::uint32_t aGroups[3] = {nWhole % 1000, nThousands % 1000, nThousands / 1000};
        const unsigned nMore = (nWhole >= 1000U) + (nWhole >= 1'000'000U);
        const wchar_t nGapText = nSeparator;
        const unsigned nGap = bGrouped;
        pTarget = writeFirst(pTarget, aGroups[nMore]);
        pTarget[0] = nGapText;
        writeGroup(pTarget + nGap, aGroups[nMore - (nMore != 0)]);
        pTarget[3 + nGap] = nGapText;
        writeGroup(pTarget + 3 + 2 * nGap, aGroups[0]);
        return pTarget + nMore * (3 + nGap);
    }

    wchar_t* writeLong(wchar_t* pTarget, std::uint64_t nWhole) const
    {
        // Groups behind the last are written too, before what comes next covers them: in front of the first there are
        // as many zeros.
        std::uint32_t aGroups[2 * knGroups - 1] = {};
        std::uint32_t* const pGroups = aGroups + knGroups - 1;
        const std::uint64_t nUpper = nWhole / knThreeGroups;
        const std::uint32_t nTop = static_cast<std::uint32_t>(nUpper / knThreeGroups);
        split(static_cast<std::uint32_t>(nWhole % knThreeGroups), pGroups);
        split(static_cast<std::uint32_t>(nUpper % knThreeGroups), pGroups + 3);
        pGroups[6] = nTop;
        const unsigned nMore = (nWhole >= 1000U) + (nWhole >= 1'000'000U) + (nUpper != 0) + (nUpper >= 1000U) +
                               (nUpper >= 1'000'000U) + (nTop != 0);
        const wchar_t nGapText = nSeparator;
        const unsigned nGap = bGrouped;
        pTarget = writeFirst(pTarget, pGroups[nMore]);
        wchar_t* const pEnd = pTarget + nMore * (3 + nGap);
        const std::uint32_t* pNext = pGroups + nMore;
        for (unsigned n = 1; n < knGroups; ++n, pTarget += 3 + nGap)
        {
            pTarget[0] = nGapText;
            writeGroup(pTarget + nGap, *--pNext);
        }
        return pEnd;
    }

    static void split(std::uint32_t nNineDigits, std::uint32_t* pGroups)
    {
        const std::uint32_t nThousands = nNineDigits / 1000;
        pGroups[0] = nNineDigits % 1000;
        pGroups[1] = nThousands % 1000;
        pGroups[2] = nThousands / 1000;
    }

    wchar_t* writeFraction(wchar_t* pTarget, std::uint32_t nFraction) const
    {
        pTarget[0] = nPoint;
        if (nPlaces <= 3)
        {
            writeGroup(pTarget + 1, nFraction * kSmallPowers[3 - nPlaces]);
        }
        else
        {
            std::uint32_t aGroups[3];
            split(nFraction * kSmallPowers[knMostPlaces - nPlaces], aGroups);
            writeGroup(pTarget + 1, aGroups[2]);
            writeGroup(pTarget + 4, aGroups[1]);
            writeGroup(pTarget + 7, aGroups[0]);
        }
        unsigned nShown = nPlaces;
        for (; nShown > nLeastPlaces && pTarget[nShown] == L'0'; --nShown)
            continue;
        return pTarget + (nShown == 0 ? 0 : nShown + 1);
    }

    static constexpr std::uint32_t kSmallPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
};

}  // namespace tov

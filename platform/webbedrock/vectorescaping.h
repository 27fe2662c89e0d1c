#pragma once

// The encoders' walk over a text in blocks of sixteen characters. Internal to this library's sources, tests, fuzz
// targets and benchmarks.

#include <array>
#include <cstddef>
#include <cstdint>

#include "webbedrock/escapetable.h"

namespace tov {

// The vectors that the walk knows: none, those of x86-64-v2 (16 bytes), those of x86-64-v3 (32 bytes).
enum class VectorLevel
{
    kPortable,
    kV2,
    kV3
};

// The widest that the processor has, and that was not ruled out.
VectorLevel vectorLevel();

// Rules out wider ones for the whole process: tests and fuzz targets hold the three to each other. Not while other
// threads encode.
void limitVectorLevel(VectorLevel eMost);

// What a vector looks for. It may find too much, which is looked at again, but never too little:
//
//   every character below U+0020 and from `nFirstHigh` on
//   the characters in `aByLowBits`, each at the place that its low four bits name
//   `nOther`, and the two characters `nPair` and `nPair` - 1
struct EscapeMarks
{
    static constexpr std::uint32_t knNever = 0x7FFFFFFF;

    std::array<std::uint8_t, 16> aByLowBits{};
    std::uint32_t nOther = 0;
    std::uint32_t nPair = 0;
    std::uint32_t nFirstHigh = knNever;

    // The marks of the characters below 128 that a table replaces. At most one of them finds its place taken.
    static constexpr EscapeMarks of(const EscapeTable& tTable, std::uint32_t nPair, std::uint32_t nFirstHigh)
    {
        EscapeMarks tMarks;
        // A place that nothing takes holds what never comes there; the first one is 0 for the upper bytes of all.
        for (unsigned nAt = 1; nAt < 16; ++nAt)
            tMarks.aByLowBits[nAt] = static_cast<std::uint8_t>(nAt - 1);
        std::array<bool, 16> aTaken{true};
        for (std::uint32_t nCode = 0x20; nCode < EscapeTable::knCodes; ++nCode)
        {
            if (tTable.classOf(nCode) == EscapeTable::knClean)
                continue;
            const std::uint32_t nAt = nCode % 16;
            if (aTaken[nAt])
                tMarks.nOther = nCode;
            else
                tMarks.aByLowBits[nAt] = static_cast<std::uint8_t>(nCode);
            aTaken[nAt] = true;
        }
        tMarks.nPair = nPair;
        tMarks.nFirstHigh = nFirstHigh;
        return tMarks;
    }
};

// What an encoder replaces: the table of the codes below 128, the class of a code from there up, and what vectors look
// for.
struct EscapeRule
{
    const EscapeTable& tTable;
    std::uint8_t (*pClassOfHigh)(std::uint32_t nCode);
    EscapeMarks tMarks;

    std::uint8_t classOf(wchar_t nChar) const
    {
        const std::uint32_t nCode = static_cast<std::uint32_t>(nChar);
        const std::uint8_t nClass = tTable.classOf(nCode);
        return nClass == EscapeTable::knAsk ? pClassOfHigh(nCode) : nClass;
    }

    std::size_t lengthOf(wchar_t nChar) const { return tTable.lengthOf(classOf(nChar)); }
};

// Where a walk has come to.
struct EscapeWalk
{
    const wchar_t* pSource;
    wchar_t* pTarget;
};

// The walk encodes block by block until the source ends or the target has too little room for the next one, up to
// `pTargetEnd`; what lies behind the result up to there may be overwritten. A block is stored as it is at once. The
// marks in it are then known together: the text of each is stored over it, and the rest of the block behind that once
// more. So clean text costs a comparison and a copy, and the only branch that can be guessed wrongly is on the number
// of marks in a block. At 432 characters this takes half of the time of a look at each, with and without marks.
EscapeWalk walkInBlocks(VectorLevel eLevel, const EscapeRule& tRule, EscapeWalk tWalk, const wchar_t* pSourceEnd,
                        const wchar_t* pTargetEnd);

// The exact number of characters that a text encodes to.
std::size_t measureInBlocks(VectorLevel eLevel, const EscapeRule& tRule, const wchar_t* pSource, std::size_t nSource);

}  // namespace tov

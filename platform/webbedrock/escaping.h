#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "webbedrock/encoding.h"
#include "webbedrock/vectorescaping.h"

namespace tov {

// The walk over a text that all encoders of characters share. `Rule` has
//   kTable          the table of the codes below 128
//   classOfHigh     the class of a code from 128 up
//   kMarks          what the vectors look for: all that is not clean, and perhaps more
//
// Whole blocks are left to vectors where the processor has them; what remains is looked at one by one. No function
// allocates.
template <class Rule>
class Escaper
{
public:
    // The exact number of characters that the text encodes to.
    static std::size_t measure(const wchar_t* pSource, std::size_t nSource)
    {
        return measureInBlocks(vectorLevel(), kRule, pSource, nSource);
    }

    static std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity)
    {
        const wchar_t* const pSourceEnd = pSource + nSource;
        const wchar_t* const pTargetEnd = pTarget + nCapacity;
        const EscapeWalk tWalk = walkBlocks({pSource, pTarget}, pSourceEnd, pTargetEnd);
        const std::size_t nRest = static_cast<std::size_t>(pSourceEnd - tWalk.pSource);
        if (!fits(tWalk.pSource, nRest, static_cast<std::size_t>(pTargetEnd - tWalk.pTarget)))
            return W2WEncoding::knTooSmall;
        return static_cast<std::size_t>(writeEach(tWalk.pSource, nRest, tWalk.pTarget, pTargetEnd) - pTarget);
    }

    // Appends the whole encoded text; the buffer grows at most once, and to no more than the text needs.
    static void append(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pSource, std::size_t nSource)
    {
        const wchar_t* const pSourceEnd = pSource + nSource;
        wchar_t* const pStart = tBuffer.freePlace();
        const EscapeWalk tWalk = walkBlocks({pSource, pStart}, pSourceEnd, pStart + freeOf(tBuffer));
        const std::size_t nRest = static_cast<std::size_t>(pSourceEnd - tWalk.pSource);
        LengthGuard tGuard{tBuffer, tBuffer.length()};
        tBuffer.advance(static_cast<std::size_t>(tWalk.pTarget - pStart));
        if (!fits(tWalk.pSource, nRest, freeOf(tBuffer)) && !tBuffer.reserveFree(measure(tWalk.pSource, nRest)))
            return;
        appendFitting(tBuffer, tWalk.pSource, pSourceEnd);
        tGuard.nLength = tBuffer.length();
    }

private:
    static constexpr EscapeRule kRule{Rule::kTable, &Rule::classOfHigh, Rule::kMarks};

    // Puts the buffer back to a length where something fails.
    struct LengthGuard
    {
        StringBufferBaseTemplate<wchar_t>& tBuffer;
        std::size_t nLength;

        ~LengthGuard() { tBuffer.truncate(nLength); }
    };

    static std::size_t freeOf(const StringBufferBaseTemplate<wchar_t>& tBuffer)
    {
        return tBuffer.capacity() - tBuffer.length();
    }

    static EscapeWalk walkBlocks(EscapeWalk tWalk, const wchar_t* pSourceEnd, const wchar_t* pTargetEnd)
    {
        return walkInBlocks(vectorLevel(), kRule, tWalk, pSourceEnd, pTargetEnd);
    }

    static bool fits(const wchar_t* pSource, std::size_t nSource, std::size_t nRoom)
    {
        return nSource <= nRoom / EscapeTable::knLongest || measure(pSource, nSource) <= nRoom;
    }

    static void appendFitting(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pSource,
                              const wchar_t* pSourceEnd)
    {
        wchar_t* const pStart = tBuffer.freePlace();
        const wchar_t* const pEnd = pStart + freeOf(tBuffer);
        const EscapeWalk tWalk = walkBlocks({pSource, pStart}, pSourceEnd, pEnd);
        wchar_t* const pTarget =
            writeEach(tWalk.pSource, static_cast<std::size_t>(pSourceEnd - tWalk.pSource), tWalk.pTarget, pEnd);
        tBuffer.advance(static_cast<std::size_t>(pTarget - pStart));
    }

    static std::uint8_t classOf(wchar_t nChar) { return kRule.classOf(nChar); }

    // Markup comes where nobody can foresee it, so that a branch on it costs more than a copy of some characters too
    // many.
    static wchar_t* writeEach(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, const wchar_t* pEnd)
    {
        std::size_t nAt = 0;
        for (; nAt < nSource && pEnd - pTarget >= static_cast<std::ptrdiff_t>(EscapeTable::knLongest); ++nAt)
        {
            const std::uint8_t nClass = classOf(pSource[nAt]);
            const wchar_t* const pText = Rule::kTable.textOf(nClass);
            std::copy_n(pText, EscapeTable::knLongest, pTarget);
            pTarget[0] = nClass == EscapeTable::knClean ? pSource[nAt] : pText[0];
            pTarget += Rule::kTable.lengthOf(nClass);
        }
        return writeExactly(pSource + nAt, nSource - nAt, pTarget);
    }

    // At the end of the room, where nothing too much may be written.
    static wchar_t* writeExactly(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget)
    {
        for (std::size_t nAt = 0; nAt < nSource; ++nAt)
        {
            const std::uint8_t nClass = classOf(pSource[nAt]);
            const wchar_t* const pText = nClass == EscapeTable::knClean ? pSource + nAt : Rule::kTable.textOf(nClass);
            pTarget = std::copy_n(pText, Rule::kTable.lengthOf(nClass), pTarget);
        }
        return pTarget;
    }
};

}  // namespace tov

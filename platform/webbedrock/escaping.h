#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "webbedrock/encoding.h"

namespace tov {

// Which characters an encoder replaces and by what. Built at compile time, read only.
//
// Every character belongs to a class: class 0 stands for itself, class n for the n-th text that was added. Codes below
// 128 have their class in a table; whatever lies above is in class `knAsk`, and the encoder's rule decides.
class EscapeTable
{
public:
    static constexpr std::uint32_t knCodes = 128;
    static constexpr std::uint8_t knClean = 0;
    static constexpr std::uint8_t knAsk = 255;
    static constexpr std::size_t knLongest = 6;  // characters that a text may have

    constexpr EscapeTable()
    {
        m_aClasses[knCodes] = knAsk;
        m_aTexts[knClean].nLength = 1;
    }

    // Adds a text of at most 6 characters (the empty one drops its characters) and returns its class.
    constexpr std::uint8_t addText(std::wstring_view sText)
    {
        const std::uint8_t nClass = m_nNextClass++;
        std::copy(sText.begin(), sText.end(), m_aTexts[nClass].aText.begin());
        m_aTexts[nClass].nLength = sText.size();
        return nClass;
    }

    // Puts `nCode` (below 128) into a class that was added.
    constexpr void assign(std::uint32_t nCode, std::uint8_t nClass) { m_aClasses[nCode] = nClass; }

    constexpr void add(std::uint32_t nCode, std::wstring_view sText) { assign(nCode, addText(sText)); }

    constexpr std::uint8_t classOf(std::uint32_t nCode) const { return m_aClasses[std::min(nCode, knCodes)]; }
    constexpr std::size_t lengthOf(std::uint8_t nClass) const { return m_aTexts[nClass].nLength; }
    constexpr const wchar_t* textOf(std::uint8_t nClass) const { return m_aTexts[nClass].aText.data(); }

private:
    struct Text
    {
        std::array<wchar_t, knLongest> aText{};
        std::size_t nLength = 0;
    };

    std::array<std::uint8_t, knCodes + 1> m_aClasses{};
    std::array<Text, 64> m_aTexts{};
    std::uint8_t m_nNextClass = knClean + 1;
};

// The walk over a text that all encoders of characters share. `Rule` has the table, `Rule::kTable`, and the class of a
// code from 128 up, `Rule::classOfHigh`.
//
// Clean text is looked at and copied eight characters at a time, without a branch on any one of them. No function
// allocates.
template <class Rule>
class Escaper
{
public:
    // How many characters at the start of the text stand for themselves.
    static std::size_t cleanPrefix(const wchar_t* pSource, std::size_t nSource)
    {
        std::size_t nAt = 0;
        while (nSource - nAt >= knBlock && isCleanBlock(pSource + nAt))
            nAt += knBlock;
        while (nAt < nSource && classOf(pSource[nAt]) == EscapeTable::knClean)
            ++nAt;
        return nAt;
    }

    // The exact number of characters that `write` writes.
    static std::size_t measure(const wchar_t* pSource, std::size_t nSource)
    {
        std::size_t nLength = 0;
        for (std::size_t nAt = 0; nAt < nSource; ++nAt)
            nLength += Rule::kTable.lengthOf(classOf(pSource[nAt]));
        return nLength;
    }

    // Writes the encoded text, for which there must be room up to `pEnd`, and returns the place behind it. What lies
    // between that and `pEnd` may be overwritten.
    static wchar_t* write(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, const wchar_t* pEnd)
    {
        for (; nSource >= knBlock; pSource += knBlock, nSource -= knBlock)
        {
            if (isCleanBlock(pSource))
                pTarget = std::copy_n(pSource, knBlock, pTarget);
            else
                pTarget = writeEach(pSource, knBlock, pTarget, pEnd);
        }
        return writeEach(pSource, nSource, pTarget, pEnd);
    }

    static std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity)
    {
        const bool bSurelyFits = nSource <= nCapacity / EscapeTable::knLongest;
        if (!bSurelyFits && measure(pSource, nSource) > nCapacity)
            return W2WEncoding::knTooSmall;
        return static_cast<std::size_t>(write(pSource, nSource, pTarget, pTarget + nCapacity) - pTarget);
    }

    // Appends the whole encoded text; the buffer grows at most once, and to no more than the text needs.
    static void append(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pSource, std::size_t nSource)
    {
        const std::size_t nClean = cleanPrefix(pSource, nSource);
        if (nClean == nSource)
        {
            tBuffer.append(pSource, nSource);
            return;
        }
        const std::size_t nFree = tBuffer.capacity() - tBuffer.length();
        const bool bSurelyFits = nSource <= nFree / EscapeTable::knLongest;
        if (!bSurelyFits && !tBuffer.reserveFree(nClean + measure(pSource + nClean, nSource - nClean)))
            return;
        wchar_t* const pStart = tBuffer.freePlace();
        const wchar_t* const pEnd = pStart + (tBuffer.capacity() - tBuffer.length());
        wchar_t* const pDirty = std::copy_n(pSource, nClean, pStart);
        tBuffer.advance(static_cast<std::size_t>(write(pSource + nClean, nSource - nClean, pDirty, pEnd) - pStart));
    }

private:
    static constexpr std::size_t knBlock = 8;

    static std::uint8_t classOf(wchar_t nChar)
    {
        const std::uint32_t nCode = static_cast<std::uint32_t>(nChar);
        const std::uint8_t nClass = Rule::kTable.classOf(nCode);
        return nClass == EscapeTable::knAsk ? Rule::classOfHigh(nCode) : nClass;
    }

    // Whether all of a block is below 128 and clean; anything else is looked at one by one.
    static bool isCleanBlock(const wchar_t* pSource)
    {
        std::uint8_t nClasses = EscapeTable::knClean;
#pragma GCC unroll 8
        for (std::size_t nAt = 0; nAt < knBlock; ++nAt)
            nClasses |= Rule::kTable.classOf(static_cast<std::uint32_t>(pSource[nAt]));
        return nClasses == EscapeTable::knClean;
    }

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

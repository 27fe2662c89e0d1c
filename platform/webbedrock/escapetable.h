#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

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
    static constexpr std::size_t knPadded = 8;   // characters that may be read of each text

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
        std::array<wchar_t, knPadded> aText{};
        std::size_t nLength = 0;
    };

    std::array<std::uint8_t, knCodes + 1> m_aClasses{};
    std::array<Text, 64> m_aTexts{};
    std::uint8_t m_nNextClass = knClean + 1;
};

}  // namespace tov

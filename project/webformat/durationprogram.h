#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "webformat/durationpattern.h"

namespace tov {

// A duration pattern in the form that renders: neighbouring texts that appear together merged, all text in one buffer,
// which may be read in whole blocks.
class DurationProgram
{
public:
    struct Step
    {
        bool bText;
        std::uint8_t nUnit;   // no text: kDay to kSecond
        std::uint8_t nBasis;  // kDayOpt to kRequired
        std::uint32_t nTextStart;
        std::uint32_t nTextLength;
    };

    // Characters; a power of two.
    static constexpr std::size_t knBlock = 4;

    DurationProgram();

    // Makes room for so many elements.
    void reserve(std::size_t nFormats);
    void append(const DurationFormat& tFormat);

    const std::vector<Step>& steps() const { return m_vSteps; }

    // Of nTextLength characters, readable up to the end of the last block.
    const wchar_t* text(const Step& tStep) const { return m_sTexts.data() + tStep.nTextStart; }

    // How many significant digits doubles are rounded to, as configured at present.
    int maxSignificantDigits() const { return m_nMaxSignificantDigits.load(std::memory_order_relaxed); }

private:
    void appendText(const DurationFormat& tFormat, std::uint8_t nBasis);

    std::vector<Step> m_vSteps;
    String m_sTexts = String(knBlock, L'\0');  // ends in a block that is never shown
    const std::atomic<int>& m_nMaxSignificantDigits;
};

}  // namespace tov

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "webformat/durationpattern.h"

namespace tov {

// A duration pattern in the form that renders: neighbouring texts that appear together merged, all text in one buffer.
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

    void append(const DurationFormat& tFormat);

    const std::vector<Step>& steps() const { return m_vSteps; }

    std::wstring_view text(const Step& tStep) const
    {
        return std::wstring_view(m_sTexts.data() + tStep.nTextStart, tStep.nTextLength);
    }

private:
    void appendText(const DurationFormat& tFormat, std::uint8_t nBasis);

    std::vector<Step> m_vSteps;
    String m_sTexts;
};

}  // namespace tov

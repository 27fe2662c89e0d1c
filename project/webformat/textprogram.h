#pragma once

#include <vector>

#include "project/webformat/texttreatments.h"

namespace tov {

// A section of a text template in the form that renders: neighbouring literals merged, all text in one buffer, nothing
// behind a reference that cuts.
class TextProgram
{
public:
    void append(const SubTextFormatter::Format& tFormat);

    // Appends the value, all of it or nothing. Allocates only if the buffer has to grow.
    void render(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue,
                ValueFormatterTypes::OutputType eOutput, const TextTreatments& tTreatments) const;

private:
    struct Step
    {
        enum Kind : std::uint8_t
        {
            kText,
            kWrapper,  // the text of an FO wrapper, left out inside another one
            kValue,    // the text closes the image element
            kCutValue
        };

        Kind eKind;
        SubTextFormatter::TextType eTextType;
        std::uint32_t nChars;  // kCutValue
        std::size_t nTextStart;
        std::size_t nTextLength;
    };

    void appendLiteral(std::wstring_view sText);
    void appendStep(Step::Kind eKind, const SubTextFormatter::Format& tFormat, std::wstring_view sText);

    std::wstring_view text(const Step& tStep) const
    {
        return std::wstring_view(m_sTexts).substr(tStep.nTextStart, tStep.nTextLength);
    }

    std::vector<Step> m_vSteps;
    String m_sTexts;
    bool m_bHasWrapper = false;
};

}  // namespace tov

#pragma once

#include <array>

#include "project/webformat/wholetextwriter.h"
#include "webformat/textformatterimpl.h"

namespace tov {

// How one kind of reference writes the value for one output.
struct TextTreatment
{
    enum Way
    {
        kUnchanged,
        kEncoded,
        kWithTags,      // bracket tags as HTML tags, then encoded
        kImageElement,  // an FO image element; values with bracket tags as kWithTags
        kWithoutHtml
    };

    Way eWay = kUnchanged;
    const W2WEncoding* pEncoding = nullptr;
};

// The treatments for one output, by SubTextFormatter::TextType.
struct TextTreatments
{
    std::array<TextTreatment, SubTextFormatter::kImage + 1> aByType;

    const TextTreatment& of(SubTextFormatter::TextType eType) const
    {
        const auto nType = static_cast<std::size_t>(eType);
        return aByType[nType < aByType.size() ? nType : 0];
    }
};

// The treatments for an output; what is no output type is answered as kText. They live as long as the process.
const TextTreatments& textTreatments(ValueFormatterTypes::OutputType eOutput);

// Writes a value; `sImageEnd` closes the image element.
void writeTreated(WholeTextWriter& tWriter, std::wstring_view sValue, const TextTreatment& tTreatment,
                  std::wstring_view sImageEnd);

}  // namespace tov

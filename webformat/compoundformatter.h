#pragma once

#include <vector>

#include "webformat/valueformatter.h"

namespace tov {

// Wraps another formatter in fixed text.
//
//   format  = *( "@" / quoted / literal )
//   quoted  = DQUOTE *any (DQUOTE / end)   ; a "\" in it takes the next character as it stands; at the very end it
//   stays literal = any other character
//
// Every "@" is the inner formatter's text for the value; everything else is encoded for the output.
//
// Example: "@ kg" around a formatter of numbers: 12.5 -> "12.5 kg".
//
// A null value is "&nbsp;" in HTML and nothing elsewhere; the inner formatter is not asked. Immutable; any number of
// threads may format through one object. Formatting allocates only if the buffer has to grow.
class WEBFORMAT_EXPORT CompoundFormatter : public WebValueFormatter
{
public:
    // Literal text, or, where it is empty, the place of the value.
    struct Part
    {
        String sText;
    };

    // Throws InvalidHandleException for a null `hInner`, which is shared.
    CompoundFormatter(const String& sFormat, const WebValueFormatterHandle& hInner, OutputType eOutput);
    ~CompoundFormatter() override;

    OutputType outputType() const override;
    String GetCustomFormatString() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

    // Appends the parts, with the value in its places; `pValue` is not null.
    virtual void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const;

    // A formatter of its own that shares the inner one.
    Handle<CompoundFormatter, CompoundFormatter> clone() const;

    const std::vector<Part>& parts() const { return m_vParts; }

private:
    CompoundFormatter(const CompoundFormatter& tOther);

    std::vector<Part> m_vParts;
    WebValueFormatterHandle m_hSubFormatter;
    String m_sCustomFormatString;
    OutputType m_eOutputType;
};

}  // namespace tov

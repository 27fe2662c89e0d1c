#pragma once

#include <cstddef>
#include <vector>

#include "webformat/valueformatter.h"

namespace tov {

// Wraps another formatter in fixed text.
//
//   format  = *( "@" / quoted / literal )
//   quoted  = DQUOTE *( "\" any / any but DQUOTE ) ( DQUOTE / end )   ; the "\" drops out; at the very end it stays
//   literal = any other character                                     ; a "\" out here, too
//
// Every "@" is the inner formatter's text for the value; everything else is encoded for the output.
//
// Example: "@ kg" around a formatter of numbers: 12.5 -> "12.5 kg"; `"a@b: "@` -> "a@b: 12.5".
//
// A null value is "&nbsp;" in HTML and nothing elsewhere; the inner formatter is not asked. Values are those of the
// inner formatter's storage. Immutable; any number of threads may format through one object. Formatting allocates only
// if the buffer has to grow; where memory runs out, the buffer keeps its old length.
class WEBFORMAT_EXPORT CompoundFormatter : public WebValueFormatter
{
public:
    // Literal text as it stands before it is encoded, or, where it is empty, the place of the value.
    struct Part
    {
        String sText;
    };

    // Throws InvalidHandleException for a null `hInner`, which is shared. Any string is a format: an empty one shows
    // nothing. Literals are encoded here, once; `kLastType` raises the assertion "unknown type" for each of them, and
    // for it and any value that is no output type they show nothing. Time and memory are linear in the format's length.
    CompoundFormatter(const String& sFormat, const WebValueFormatterHandle& hInner, OutputType eOutput);
    ~CompoundFormatter() override;

    OutputType outputType() const override;
    // The format as it was given.
    String GetCustomFormatString() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

    // Appends the parts, with the value in its places; `pValue` is not null.
    virtual void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const;

    // A formatter of its own that shares the inner one.
    Handle<CompoundFormatter, CompoundFormatter> clone() const;

    // The format in pieces. A quoted literal starts a part; bare characters join the part before them unless that is
    // the place of a value: `x"y"z@` is "x", "yz" and a place.
    const std::vector<Part>& parts() const { return m_vParts; }

private:
    CompoundFormatter(const CompoundFormatter& tOther);

    void addBareCharacter(wchar_t nChar);
    void addQuotedText(std::wstring_view sFormat, std::size_t& nAt);
    void compile();

    std::vector<Part> m_vParts;
    WebValueFormatterHandle m_hSubFormatter;
    String m_sCustomFormatString;
    OutputType m_eOutputType;
    // What formatting reads: all literals, encoded, one behind the other, and where among them the value stands.
    String m_sLiterals;
    std::vector<std::size_t> m_vValuePlaces;
};

}  // namespace tov

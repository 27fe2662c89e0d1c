#pragma once

#include "webbedrock/export.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/outputtypes.h"

namespace tov {

// Shortens long texts for display: a small value, made where it is used.
//
// Example: limit 5, kText: `abcdefgh` -> "abcde..."; limit 3, kHTML: `<b>abcdef</b>` -> `<span><b>abc</b>...</span>`
// and behind it the expander, a small element that carries the whole text for the page's script.
//
// kText writes the value without its markup, cut behind the limit. kHTML keeps the markup, counts visible characters
// (an entity of at most six characters counts as one) and closes what is open; values shorter than the limit are
// written whole in a span whose title is their text. All other outputs write nothing. Markup in a value is written as
// it stands: who formats text from outside encodes it first.
class WEBFORMAT_EXPORT TruncateFormatter
{
public:
    // `nLength` is the number of visible characters that are kept.
    TruncateFormatter(unsigned long nLength, ValueFormatterTypes::OutputType eOutput);

    // Appends the shortened text; a null text counts as empty. Linear in the text's length. Allocates only if the
    // buffer has to grow or where more than 32 tags are open at a time. Any thread.
    void formatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pText) const;

private:
    ValueFormatterTypes::OutputType m_eOutput;
    unsigned long m_nLength;
};

}  // namespace tov

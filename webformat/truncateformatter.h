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
// kText writes the value without its markup, cut behind the limit; kept: a text of exactly the limit gets the dots too.
// kHTML keeps the markup, counts visible characters (an entity of at most six characters counts as one) and closes what
// is open; values whose length with all markup is below the limit are written whole in a span whose title is their
// text. All other outputs write nothing. Markup in a value is written as it stands: who formats text from outside
// encodes it first.
class WEBFORMAT_EXPORT TruncateFormatter
{
public:
    // `nLength` is the number of visible characters that are kept, any number; 0 keeps nothing but the dots.
    TruncateFormatter(unsigned long nLength, ValueFormatterTypes::OutputType eOutput);

    // Appends the shortened text; a null text counts as empty. Linear in the text's length. Allocates only if the
    // buffer has to grow or where more than 32 tags are open at a time. Where memory runs out (std::bad_alloc) or the
    // buffer would become too long (its assertion), it keeps its old contents. Any thread.
    void formatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pText) const;

private:
    ValueFormatterTypes::OutputType m_eOutput;
    unsigned long m_nLength;
};

}  // namespace tov

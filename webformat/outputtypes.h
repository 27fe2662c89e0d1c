#pragma once

#include <cstddef>

#include "webbedrock/export.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// The kinds of document that values are written into, and the encoding of plain text for each of them.
class WEBFORMAT_EXPORT ValueFormatterTypes
{
public:
    // The values are fixed: they index tables. Any int may be held: what is no output type is answered as each function
    // says.
    enum OutputType : int
    {
        kText = 0,        // copied unchanged
        kHTML = 1,        // markup encoded, HTML mode
        kXML = 2,         // markup encoded, XML mode
        kJavaScript = 3,  // the inside of a JavaScript string literal
        kPDF = 4,         // as kXML: the page is XSL-FO
        kSQL = 5,         // copied unchanged
        kSQLLiteral = 6,  // the inside of an SQL string literal
        kXLSX = 7,        // as kXML
        kLastType = 8     // end marker, never a valid output type
    };

    // Whether the Excel format mask of a column is evaluated once or row by row.
    enum ExcelEvalauteFormatMask
    {
        kEvaluateFormatGlobal = 0,
        kEvaluateFormatRowWiseCondCurr = 1
    };

    // Appends `nLength` characters of `pText`, encoded for `eType`, to `tBuffer`; `pText` need not be terminated.
    //
    // Example: encodeToBufferOfType(tBuffer, kHTML, L"a<b", 3) appends "a&lt;b".
    //
    // kLastType raises the assertion "unknown type"; it and any value outside 0 to 8 append nothing. An empty text
    // appends nothing and does not grow the buffer. Allocates only if the buffer has to grow. Any thread, on buffers of
    // its own.
    static void encodeToBufferOfType(StringBufferBaseTemplate<wchar_t>& tBuffer, OutputType eType, const wchar_t* pText,
                                     std::size_t nLength);
};

}  // namespace tov

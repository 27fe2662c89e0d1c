#pragma once

#include "corefacade/sqldatatype.h"
#include "webbedrock/export.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// Values in a fixed form, the same in every locale: for logs, keys and messages.
class WEBFORMAT_EXPORT ValueFormatterUtils
{
public:
    // Appends the value as en-US plain text: dates, times and timestamps in their ODBC form, integers "#0", other
    // numbers by their type's default, text as it is. Binary values are the word "Binary" and are not read; a type that
    // is none of these is "Unknown".
    //
    // Example: an integer 1234 -> "1234"; a date -> "2024-03-05".
    //
    // Throws InvalidHandleException where no formatter serves the type's storage (64-bit integers). Any thread.
    static void valueToBuffer(const void* pValue, const SQLDataType& tType, StringBufferBaseTemplate<wchar_t>& tBuffer);
};

}  // namespace tov

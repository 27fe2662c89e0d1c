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
    // Null values append nothing, but for the two words. A type that is held in another storage than its own is read in
    // that storage. Throws InvalidHandleException, with the buffer as it was, where no formatter serves the storage:
    // 64-bit integers (with the factory's assertion "false"), texts and dates that are held as something else.
    //
    // The first call makes the formatters; later ones allocate only if the buffer has to grow. Any thread.
    static void valueToBuffer(const void* pValue, const SQLDataType& tType, StringBufferBaseTemplate<wchar_t>& tBuffer);
};

}  // namespace tov

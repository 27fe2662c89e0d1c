#pragma once

#include "webformat/valueformatter.h"

namespace tov {

// Makes the formatters that write a value into a drill-down request.
//
// Example: the text `a<b` for kHTML -> "a&lt;b"; a null text -> "*KT_NULL*", whatever the output.
class WEBFORMAT_EXPORT WebDrillValueFormatter
{
public:
    static const wchar_t* const ksTextNULL;  // "*KT_NULL*", written for a null text

    // A new formatter that only encodes the text for the output, for text types; the typed-literal formatter, shared,
    // for all others. Any thread.
    static WebValueFormatterHandle GetFormatter(const SQLDataType& tType, ValueFormatterTypes::OutputType eOutput);
};

}  // namespace tov

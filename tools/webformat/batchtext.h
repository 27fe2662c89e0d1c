#pragma once

#include "corefacade/sqldatatype.h"
#include "webformat/valueformatter.h"

namespace tov {

// Ways of writing values that are no formatters in the library, as formatters, so that a request treats all alike.

// The plain rendering of values of `tType`, the same in every locale and for every output.
WebValueFormatterHandle newPlainFormatter(const SQLDataType& tType);

// Texts cut to `nLength` visible characters.
WebValueFormatterHandle newTruncatingFormatter(unsigned long nLength, ValueFormatterTypes::OutputType eOutput);

}  // namespace tov

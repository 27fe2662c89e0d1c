#pragma once

#include "corefacade/corvidnumber.h"
#include "webformat/numericpattern.h"

namespace tov {

// The factories of the date and duration families, for a numeric pattern that shows values of type T. Lives as long as
// the process; any thread.
template <class T>
const NumericSubFormatterSource& ownSubFormatters();

extern template const NumericSubFormatterSource& ownSubFormatters<double>();
extern template const NumericSubFormatterSource& ownSubFormatters<int>();
extern template const NumericSubFormatterSource& ownSubFormatters<unsigned int>();
extern template const NumericSubFormatterSource& ownSubFormatters<long>();
extern template const NumericSubFormatterSource& ownSubFormatters<unsigned long>();
extern template const NumericSubFormatterSource& ownSubFormatters<CorvidNumber>();

}  // namespace tov

#pragma once

#include <string_view>

#include "intl/locale.h"

namespace tov {

// The power of ten of a scale name, negative: "thousand" -> -3, "ten-million" -> -7. Case counts; an unknown name: 0.
int scaleNumberOfName(std::wstring_view sName);

// The scale at a position (0 or 1) of the locale's list: its number, and its indicator in `sIndicator`. Where the list
// is shorter: 0, and `sIndicator` is left alone.
int scaleNumberByPosition(const Locale& tLocale, std::size_t nPosition, String& sIndicator);

// The indicator of the first scale of the locale with that name; empty when there is none.
String indicatorOfScaleName(const Locale& tLocale, std::wstring_view sName);

}  // namespace tov

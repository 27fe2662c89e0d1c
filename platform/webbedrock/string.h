#pragma once

#include <string>

namespace tov {

// All text is wide; a character is one 32-bit code point.
using String = std::wstring;
using KTWString = String;

static_assert(sizeof(wchar_t) == 4, "text is held as 32-bit characters");

}  // namespace tov

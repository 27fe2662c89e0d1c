#pragma once

#include "webbedrock/string.h"

namespace tov {

// Whether the language of a locale's tag is written from right to left: "ar-EG", "az-Arab", but not "he-Latn".
bool isRightToLeft(const String& sTag);

}  // namespace tov

#pragma once

#include <string>
#include <string_view>

namespace tov {

// The text in UTF-8, with U+FFFD in place of each character that XML does not allow.
std::string xmlText(std::wstring_view sText);

// The same as it stands between double quotes in a tag: L"a&\"" -> "a&amp;&quot;"; line breaks and tabs as references.
std::string xmlQuotedText(std::wstring_view sText);

// Whether the text is a name without a colon, as XML 1.0 (fifth edition) has them.
bool isXmlName(std::wstring_view sText);

}  // namespace tov

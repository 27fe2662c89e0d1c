#pragma once

#include <string>
#include <string_view>

#include "webbedrock/string.h"

namespace tov {

// The declaration of an Excel style for a style sheet: the library's style texts are made for a style attribute, where
// HTML entities are undone and a backslash escapes; here both are undone first and the pattern is written as a CSS
// string that nothing can leave. The colour red is written in capitals.
//
// Example: "mso-number-format:'0.0&quot;%&quot;';" -> "mso-number-format:'0\.0\"\%\"'"
//          "mso-number-format:'0;[red]0';" -> "mso-number-format:'0\;\[RED\]0'"
//
// An empty text for a style that is empty or is no declaration of one name and one value.
std::string excelDeclaration(std::wstring_view sMsoStyle);

// Whether a style's pattern has a comma behind its last digit, which divides the number that it shows by a thousand:
// "mso-number-format:'0.0,';", but not "mso-number-format:'#,##0';".
bool dividesByThousands(std::wstring_view sMsoStyle);

// Five named entities and the numeric ones undone: "a&lt;b&#39;" -> "a<b'". Anything else stays.
String withoutEntities(std::wstring_view sText);

}  // namespace tov

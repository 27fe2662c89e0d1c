#pragma once

#include <string_view>

#include "webbedrock/string.h"

namespace tov {

// UTF-16 text as wide text; a lone surrogate becomes U+FFFD.
String fromUtf16(std::u16string_view sText);

// The same for a text class with `getBuffer()` and `length()`.
template <class Utf16Text>
String wideText(const Utf16Text& sText)
{
    return fromUtf16({sText.getBuffer(), static_cast<std::size_t>(sText.length())});
}

// Marks that only steer the direction of text (U+200E, U+200F, U+061C, embeddings and isolates).
bool isBidiMark(wchar_t tChar);

// U+0020 and the blanks that do not break: U+00A0, U+2007 and U+202F.
bool isBlank(wchar_t tChar);

// A copy without the direction marks: "%\u200E" -> "%".
String withoutBidiMarks(std::wstring_view sText);

// A copy without the direction marks in which every blank is U+0020.
String withPlainBlanks(std::wstring_view sText);

// The text between its leading and trailing blanks.
std::wstring_view trimBlanks(std::wstring_view sText);

}  // namespace tov

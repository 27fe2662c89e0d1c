#pragma once

#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// Operations on text that depend on no locale. Case is that of the ASCII letters; every other character equals itself
// only.
class WEBFORMAT_EXPORT StringUtils
{
public:
    // `dValue` with `nSignificantDigits` significant decimal digits, as printf's "%.<n>g" writes it in the C locale:
    // 0.1 with 15 -> "0.1", 1e21 -> "1e+21", 1.0/3 with 3 -> "0.333"; "nan", "-nan", "inf" and "-inf". 0 digits count
    // as 1, a negative number as 6. The process's locale does not matter.
    static String doubleAsString(double dValue, int nSignificantDigits);
    // The same appended to a buffer, without any other memory.
    static void appendDouble(StringBufferBaseTemplate<wchar_t>& tBuffer, double dValue, int nSignificantDigits);

    static bool equalsIgnoreCase(std::wstring_view sLeft, std::wstring_view sRight);
    static bool startsWithIgnoreCase(std::wstring_view sText, std::wstring_view sStart);
    // Order of the texts with letters compared in lower case: negative, 0 or positive.
    static int compareIgnoreCase(std::wstring_view sLeft, std::wstring_view sRight);

    // Without the blanks (U+0009 to U+000D and U+0020) at both ends: L" a b " -> "a b". A part of `sText`.
    static std::wstring_view trim(std::wstring_view sText);
    // Whether the text is empty or holds nothing but those blanks.
    static bool isBlank(std::wstring_view sText);

    // `sText` with every `sFrom` replaced by `sTo`, from left to right, what was put in not looked at again:
    // (L"aaa", L"aa", L"b") -> "ba". An empty `sFrom` changes nothing. Time is linear in the text and the result for
    // the short `sFrom` of constants.
    static String replaceAll(std::wstring_view sText, std::wstring_view sFrom, std::wstring_view sTo);
};

}  // namespace tov

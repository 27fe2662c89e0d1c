#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// What a reader of encoded text makes of it, written without a look at the encoders: the tests' and the fuzzers'
// judges. No value means that the text would not be read as one value there: it would end the attribute or the literal,
// open a tag or be refused.

// Whether XML 1.0 allows the character in a document.
bool isXMLCharacter(std::uint32_t nCode);

// The character data of markup. Knows the entities amp, lt, gt, quot, #39 and nbsp; nbsp is read as a blank. With
// `bAttribute` a quote of either kind ends the value.
std::optional<String> decodeMarkup(std::wstring_view sText, bool bAttribute);

// The inside of a JavaScript string literal between quotes of either kind.
std::optional<String> decodeJavaLiteral(std::wstring_view sText);

// The inside of an SQL string literal.
std::optional<String> decodeSQLLiteral(std::wstring_view sText);

// Pairs of upper-case hexadecimal digits.
std::optional<std::vector<unsigned char>> decodeHex(std::wstring_view sText);

// Base64 with its padding; bits that no byte uses must be zero.
std::optional<std::vector<unsigned char>> decodeBase64(std::wstring_view sText);

}  // namespace tov

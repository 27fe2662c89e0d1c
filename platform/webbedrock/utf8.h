#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// UTF-8 text of `sText`: L"é" -> "\xC3\xA9". What is no scalar value (surrogates, above U+10FFFF) becomes U+FFFD.
WEBFORMAT_EXPORT std::string toUtf8(std::wstring_view sText);

// Appends the same to `sBytes`; allocates only if that has to grow.
WEBFORMAT_EXPORT void appendUtf8(std::string& sBytes, std::wstring_view sText);

// The characters of well-formed UTF-8: "\xC3\xA9" -> L"é". Overlong forms, surrogates, values above U+10FFFF and
// truncated sequences give no value; then `*pnBad`, where given, is the byte offset of the sequence that is not UTF-8.
WEBFORMAT_EXPORT std::optional<String> fromUtf8(std::string_view sBytes, std::size_t* pnBad = nullptr);

// Appends the same to `sText`, which allocates only if it has to grow; false, and the text as it was, for bytes that
// are not UTF-8.
WEBFORMAT_EXPORT bool appendFromUtf8(String& sText, std::string_view sBytes, std::size_t* pnBad = nullptr);

// Whether the bytes are well-formed UTF-8.
WEBFORMAT_EXPORT bool isUtf8(std::string_view sBytes, std::size_t* pnBad = nullptr);

}  // namespace tov

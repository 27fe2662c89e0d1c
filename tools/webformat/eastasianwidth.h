#pragma once

#include <cstddef>
#include <string_view>

namespace tov {

// How many columns of a fixed-width display a character takes: 2 for East Asian wide and full-width ones (ideographs,
// kana, Hangul, full-width forms, most emoji), 0 for combining marks, format characters and the vowels and finals of
// Hangul syllables written in parts, 1 for all others. Ambiguous characters count as 1. The table is that of
// Unicode 15.
std::size_t displayWidth(wchar_t nCharacter);

// The sum over the characters: L"日本 de" -> 7.
std::size_t displayWidth(std::wstring_view sText);

}  // namespace tov

#pragma once

#include <optional>
#include <string_view>

namespace tov {

// What the writers for paper need to know of characters. All tables are ranges of Unicode blocks; none depends on the
// fonts that are installed.

// Characters of one group are printed with one font: 0 for the scripts that one text font usually holds (Latin, Greek,
// Cyrillic, Hebrew, Armenian, Georgian, punctuation and currency), other numbers for Arabic, ideographs and kana,
// ideographs outside the basic plane, other characters outside it, Hangul, symbols, and each further script.
constexpr unsigned knArabicFontGroup = 1;
constexpr unsigned knSupplementaryFontGroup = 2;  // most emoji
unsigned fontGroupOf(wchar_t nCharacter);

// Whether the character belongs to the group of the one before it: combining marks and joiners.
bool continuesFontGroup(wchar_t nCharacter);

// How wide a character is in a condensed text font, in thousandths of the font size, rather too wide than too narrow:
// 0 for marks, 1000 for ideographs.
unsigned advanceOf(wchar_t nCharacter, bool bBold);

// Whether a line may break on both sides of the character, as it does around ideographs and kana.
bool breaksAnywhere(wchar_t nCharacter);

// Whether a word that is too long may be broken between the two: not before a mark, around a joiner or inside a
// conjunct of an Indic script.
bool mayBreakBetween(wchar_t nBefore, wchar_t nAfter);

// The character to print for one of the text: U+FFFD for controls without a glyph, a line end for U+0085, U+2028 and
// U+2029; none for what has no meaning on paper (variation selectors, tags, the joiner and the skin tones of emoji, the
// byte order mark, invisible operators, isolates, which FO has other means for).
std::optional<wchar_t> printedCharacter(wchar_t nBefore, wchar_t nCharacter);

enum class TextDirection
{
    kNeutral,
    kLeftToRight,
    kRightToLeft
};

// The direction of a character that has one of its own.
TextDirection directionOf(wchar_t nCharacter);

}  // namespace tov

#include "papertext.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "eastasianwidth.h"

namespace tov {

namespace {

struct Range
{
    std::uint32_t nFirst;
    std::uint32_t nLast;
    unsigned nGroup;
};

enum : unsigned
{
    kIdeographs = knSupplementaryFontGroup + 1,
    kRareIdeographs,
    kHangul,
    kSymbols,
    kBlocks  // and above: the number of a block of 128 characters
};

// Sorted. What stands between is of the group 0.
constexpr std::array<Range, 22> kaGroups = {{{0x0600, 0x06FF, knArabicFontGroup},
                                             {0x0750, 0x077F, knArabicFontGroup},
                                             {0x08A0, 0x08FF, knArabicFontGroup},
                                             {0x0900, 0x109F, kBlocks},
                                             {0x1100, 0x11FF, kHangul},
                                             {0x1200, 0x1CFF, kBlocks},
                                             {0x2300, 0x23FF, kSymbols},
                                             {0x25A0, 0x27BF, kSymbols},
                                             {0x2B00, 0x2BFF, kSymbols},
                                             {0x2D30, 0x2DDF, kBlocks},
                                             {0x2E80, 0x312F, kIdeographs},
                                             {0x3130, 0x318F, kHangul},
                                             {0x3190, 0xA4CF, kIdeographs},
                                             {0xA500, 0xABFF, kBlocks},
                                             {0xAC00, 0xD7FF, kHangul},
                                             {0xF900, 0xFAFF, kIdeographs},
                                             {0xFB50, 0xFDFF, knArabicFontGroup},
                                             {0xFE30, 0xFE4F, kIdeographs},
                                             {0xFE70, 0xFEFE, knArabicFontGroup},
                                             {0xFF00, 0xFFEF, kIdeographs},
                                             {0x10000, 0x1FFFF, knSupplementaryFontGroup},
                                             {0x20000, 0x3FFFF, kRareIdeographs}}};

// U+0020 to U+007E, in thousandths of the font size.
constexpr std::array<std::uint16_t, 95> kaAdvances = {
    285, 360, 413, 753, 572, 854, 701, 247, 351, 351, 449, 753, 285, 324, 285, 303, 572, 572, 572,
    572, 572, 572, 572, 572, 572, 572, 303, 303, 753, 753, 753, 477, 899, 615, 617, 628, 692, 568,
    517, 697, 676, 265, 265, 589, 500, 776, 672, 708, 542, 708, 625, 571, 549, 658, 615, 889, 616,
    549, 616, 351, 303, 351, 753, 449, 449, 551, 571, 494, 571, 553, 316, 571, 570, 250, 250, 520,
    250, 876, 570, 550, 571, 571, 369, 468, 352, 570, 532, 735, 532, 532, 472, 572, 303, 572, 753};

std::uint32_t codeOf(wchar_t nCharacter)
{
    return static_cast<std::uint32_t>(nCharacter);
}

bool isBetween(wchar_t nCharacter, std::uint32_t nFirst, std::uint32_t nLast)
{
    return codeOf(nCharacter) >= nFirst && codeOf(nCharacter) <= nLast;
}

bool isSkinTone(wchar_t nCharacter)
{
    return isBetween(nCharacter, 0x1F3FB, 0x1F3FF);
}

// The sign that joins the consonants around it.
bool isVirama(wchar_t nCharacter)
{
    return isBetween(nCharacter, 0x0900, 0x0D7F) && (codeOf(nCharacter) & 0x7F) == 0x4D;
}

// Vowels that are written, and stored, before the consonant that they follow in speech.
bool isLeadingVowel(wchar_t nCharacter)
{
    return isBetween(nCharacter, 0x0E40, 0x0E44) || isBetween(nCharacter, 0x0EC0, 0x0EC4);
}

bool isJoiner(wchar_t nCharacter)
{
    return isBetween(nCharacter, 0x200C, 0x200D) || nCharacter == 0x2060;
}

}  // namespace

unsigned fontGroupOf(wchar_t nCharacter)
{
    const auto tFound = std::lower_bound(kaGroups.begin(), kaGroups.end(), codeOf(nCharacter),
                                         [](const Range& tRange, std::uint32_t nCode) { return tRange.nLast < nCode; });
    if (tFound == kaGroups.end() || codeOf(nCharacter) < tFound->nFirst)
        return 0;
    return tFound->nGroup == kBlocks ? kBlocks + codeOf(nCharacter) / 128 : tFound->nGroup;
}

bool continuesFontGroup(wchar_t nCharacter)
{
    return isJoiner(nCharacter) || (nCharacter > 0x02FF && nCharacter != 0x200B && displayWidth(nCharacter) == 0);
}

unsigned advanceOf(wchar_t nCharacter, bool bBold)
{
    unsigned nAdvance = 700;
    if (isBetween(nCharacter, 0x20, 0x7E))
        nAdvance = kaAdvances[static_cast<std::size_t>(nCharacter - 0x20)];
    else if (nCharacter == 0x00A0)
        nAdvance = kaAdvances[0];
    else if (const std::size_t nWidth = displayWidth(nCharacter); nWidth != 1)
        nAdvance = nWidth == 0 ? 0 : 1000;
    else if (fontGroupOf(nCharacter) != 0)
        nAdvance = 850;
    return bBold ? nAdvance * 9 / 8 : nAdvance;
}

bool breaksAnywhere(wchar_t nCharacter)
{
    const unsigned nGroup = fontGroupOf(nCharacter);
    return nGroup == kIdeographs || nGroup == kRareIdeographs;
}

bool mayBreakBetween(wchar_t nBefore, wchar_t nAfter)
{
    return !continuesFontGroup(nAfter) && !isJoiner(nBefore) && !isVirama(nBefore) && !isLeadingVowel(nBefore);
}

std::optional<wchar_t> printedCharacter(wchar_t nBefore, wchar_t nCharacter)
{
    const unsigned nBeforeGroup = fontGroupOf(nBefore);
    const bool bAfterSymbol = nBeforeGroup == kSymbols || nBeforeGroup == knSupplementaryFontGroup;
    if (isBetween(nCharacter, 0xFE00, 0xFE0F) || isBetween(nCharacter, 0xE0000, 0xE0FFF) || nCharacter == 0xFEFF ||
        isBetween(nCharacter, 0x2061, 0x206F) || isBetween(nCharacter, 0x180B, 0x180E) ||
        (bAfterSymbol && (nCharacter == 0x200D || isSkinTone(nCharacter))))
        return std::nullopt;
    if (nCharacter == 0x0085 || nCharacter == 0x2028 || nCharacter == 0x2029)
        return L'\n';
    const bool bControl = nCharacter < 0x20 && nCharacter != L'\n' && nCharacter != L'\t';
    return bControl || isBetween(nCharacter, 0x7F, 0x9F) ? static_cast<wchar_t>(0xFFFD) : nCharacter;
}

TextDirection directionOf(wchar_t nCharacter)
{
    if (isBetween(nCharacter, 0x0590, 0x08FF) || isBetween(nCharacter, 0xFB1D, 0xFDFF) ||
        isBetween(nCharacter, 0xFE70, 0xFEFC) || isBetween(nCharacter, 0x10800, 0x10FFF) ||
        isBetween(nCharacter, 0x1E800, 0x1EFFF) || nCharacter == 0x200F)
        return TextDirection::kRightToLeft;
    const bool bLatin = isBetween(nCharacter, 'A', 'Z') || isBetween(nCharacter, 'a', 'z') ||
                        (isBetween(nCharacter, 0xC0, 0x2B8) && nCharacter != 0xD7 && nCharacter != 0xF7);
    const bool bOther = isBetween(nCharacter, 0x0370, 0x1FFF) || isBetween(nCharacter, 0x2C00, 0x2DFF) ||
                        isBetween(nCharacter, 0x3041, 0xD7FF) || isBetween(nCharacter, 0xF900, 0xFB17) ||
                        isBetween(nCharacter, 0x20000, 0x3FFFF) || nCharacter == 0x200E;
    return bLatin || bOther ? TextDirection::kLeftToRight : TextDirection::kNeutral;
}

}  // namespace tov

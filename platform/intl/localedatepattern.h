#pragma once

#include <string_view>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// A date or time pattern of the locale data and its forms in the date grammar of this system:
// "EEEE, d 'de' MMMM 'de' y" -> "dddd, d \"de\" MMMM \"de\" yyyy".
//
//   y, yy                yyyy        h, K (hours to 12)    h        a, b, B (day period)   tt
//   M, L                 M           H, k (hours to 24)    H        G (era)                gg
//   E, EE, EEE, ccc      ddd         d, m, s               alike    other letters          dropped
//   EEEE, cccc           dddd
//
// Direction marks are dropped and every blank becomes U+0020. Literal text that the grammar would read otherwise (with
// an ASCII letter, a quote, a backslash or a bracket) stands between double quotes.
class LocaleDatePattern
{
public:
    explicit LocaleDatePattern(std::wstring_view sPattern);

    String text() const;

    // With two digits for day and month: "d.M.y" -> "dd.MM.yyyy".
    String inputText() const;

    // With the month names that the locale `sTag` uses inside dates: "d MMMM" -> "d [L:ru-RU;dates]MMMM[L:ru-RU]".
    // A month that the data ask for by itself ("LLLL") stays as it is.
    String textWithMonthsInsideDates(std::wstring_view sTag) const;

    // The one character between hour and minute where it is no letter, otherwise ":".
    String hourMinuteSeparator() const;

    // Whether the full day name is the one that stands by itself ("cccc").
    bool namesDaysByThemselves() const;

private:
    // A run of one letter, or (letter 0) literal text.
    struct Token
    {
        wchar_t tLetter;
        String sText;
    };

    static String fieldText(const Token& tToken);

    std::vector<Token> m_vTokens;
};

}  // namespace tov

#pragma once

#include <random>

#include "webbedrock/string.h"

namespace tov {

// A text of up to `nMostPieces` pieces of markup and text, well-formed or not, drawn from `tRandom`.
inline String randomMarkup(std::mt19937& tRandom, unsigned nMostPieces)
{
    static constexpr const wchar_t* kPieces[] = {L"a",
                                                 L" ",
                                                 L"plain text ",
                                                 L"\x4E2D",
                                                 L"<b>",
                                                 L"</b>",
                                                 L"<i>",
                                                 L"</i>",
                                                 L"<br/>",
                                                 L"<br>",
                                                 L"<p class='x'>",
                                                 L"</p>",
                                                 L"<",
                                                 L">",
                                                 L"</",
                                                 L"/",
                                                 L"<!",
                                                 L"<!-- c -->",
                                                 L"-->",
                                                 L"&",
                                                 L";",
                                                 L"&nbsp;",
                                                 L"&amp;",
                                                 L"&LT;",
                                                 L"&quot;",
                                                 L"&apos;",
                                                 L"&gt;",
                                                 L"&#39;",
                                                 L"&unknown;",
                                                 L"<script>",
                                                 L"</script>",
                                                 L"</SCRIPT >",
                                                 L"<style x>",
                                                 L"</style>",
                                                 L"<object/>",
                                                 L"<EMBED>",
                                                 L"</embed",
                                                 L"\"",
                                                 L"'",
                                                 L"\x1",
                                                 L"[b]",
                                                 L"[/B]",
                                                 L"[br/]",
                                                 L"[",
                                                 L"]",
                                                 L"<a",
                                                 L"<scripts>",
                                                 L"\n"};
    std::uniform_int_distribution<unsigned> tLength(0, nMostPieces);
    std::uniform_int_distribution<std::size_t> tPiece(0, std::size(kPieces) - 1);
    String sText;
    for (unsigned nLeft = tLength(tRandom); nLeft != 0; --nLeft)
        sText += kPieces[tPiece(tRandom)];
    return sText;
}

}  // namespace tov

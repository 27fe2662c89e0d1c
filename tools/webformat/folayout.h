#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tov {

// How much room a column asks for. Widths of text are in thousandths of the font size.
struct FoColumnNeeds
{
    unsigned nLongestWord = 0;
    unsigned nLongestLine = 0;
    double fWidestPicture = 0;  // points
    bool bText = false;         // lines may be broken; otherwise a value keeps to one line where there is room
};

// The page that a table gets. Lengths are in points.
struct FoLayout
{
    double fPageWidth = 0;
    double fPageHeight = 0;
    double fMargin = 0;  // on all sides
    double fFontSize = 0;
    double fPadding = 0;          // left and right of a cell's content
    std::vector<double> vWidths;  // of the columns; their sum is the page's width without the margins

    // How wide a line in a column may be, in thousandths of the font size.
    unsigned lineWidth(std::size_t nColumn) const;
    // The same in points; at least 1, however many columns share the page.
    double contentWidth(std::size_t nColumn) const { return std::max(vWidths[nColumn] - 2 * fPadding, 1.0); }
};

// Chooses the smallest page, landscape from A4 in 8 points over A4 in 7 points to A0, on which no value is squeezed,
// and shares its width out: every column gets its longest word or, unless it is text, its longest value; what is left
// goes to the columns that would need it to hold their longest line, text up to 34 times the font size. Where the
// widest page is too narrow all columns shrink alike.
FoLayout chooseLayout(const std::vector<FoColumnNeeds>& vNeeds);

}  // namespace tov

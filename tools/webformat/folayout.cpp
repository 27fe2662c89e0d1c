#include "folayout.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tov {

namespace {

struct Page
{
    double fWidth;
    double fHeight;
    double fFontSize;
};

constexpr std::array<Page, 6> kaPages = {{{841.9, 595.3, 8},
                                          {841.9, 595.3, 7},
                                          {1190.6, 841.9, 7},
                                          {1683.8, 1190.6, 7},
                                          {2383.9, 1683.8, 7},
                                          {3370.4, 2383.9, 7}}};
constexpr double kfMargin = 28.3;  // 10 mm
constexpr double kfPadding = 3;
constexpr double kfWidestText = 34;   // lines of text beyond are broken
constexpr double kfWidestWord = 16;   // words of text beyond are broken
constexpr double kfWidestValue = 40;  // and values
// How much of the room between the narrowest and the natural width a page must offer.
constexpr double kfComfort = 0.4;

struct Widths
{
    double fNarrowest = 0;
    double fNatural = 0;
};

Widths widthsOf(const FoColumnNeeds& tNeeds, double fFontSize)
{
    const double fWord = tNeeds.nLongestWord / 1000.0;
    const double fLine = tNeeds.nLongestLine / 1000.0;
    const double fNatural = std::min(fLine, tNeeds.bText ? kfWidestText : kfWidestValue);
    const double fNarrowest = tNeeds.bText ? std::min({fWord, fNatural, kfWidestWord}) : fNatural;
    // A little more than measured: fonts differ.
    const auto tWith = [&](double fWidth)
    { return std::max(fWidth * 1.03 * fFontSize, tNeeds.fWidestPicture) + 2 * kfPadding; };
    return {tWith(std::max(fNarrowest, 2.0)), tWith(std::max(fNatural, 2.0))};
}

Widths sumOf(const std::vector<Widths>& vWidths)
{
    Widths tSum;
    for (const Widths& tWidths : vWidths)
    {
        tSum.fNarrowest += tWidths.fNarrowest;
        tSum.fNatural += tWidths.fNatural;
    }
    return tSum;
}

double sharedWidth(const Widths& tWidths, const Widths& tSum, double fRoom)
{
    if (tSum.fNatural <= fRoom)
        return tWidths.fNatural * fRoom / tSum.fNatural;
    if (tSum.fNarrowest >= fRoom)
        return tWidths.fNarrowest * fRoom / tSum.fNarrowest;
    return tWidths.fNarrowest +
           (tWidths.fNatural - tWidths.fNarrowest) * (fRoom - tSum.fNarrowest) / (tSum.fNatural - tSum.fNarrowest);
}

}  // namespace

unsigned FoLayout::lineWidth(std::size_t nColumn) const
{
    return static_cast<unsigned>(contentWidth(nColumn) * 1000 / fFontSize);
}

FoLayout chooseLayout(const std::vector<FoColumnNeeds>& vNeeds)
{
    FoLayout tLayout;
    for (const Page& tPage : kaPages)
    {
        std::vector<Widths> vWidths;
        for (const FoColumnNeeds& tNeeds : vNeeds)
            vWidths.push_back(widthsOf(tNeeds, tPage.fFontSize));
        const Widths tSum = sumOf(vWidths);
        const double fRoom = tPage.fWidth - 2 * kfMargin;
        tLayout = {tPage.fWidth, tPage.fHeight, kfMargin, tPage.fFontSize, kfPadding, {}};
        for (const Widths& tWidths : vWidths)
            tLayout.vWidths.push_back(sharedWidth(tWidths, tSum, fRoom));
        if (tSum.fNarrowest + kfComfort * (tSum.fNatural - tSum.fNarrowest) <= fRoom)
            break;
    }
    return tLayout;
}

}  // namespace tov

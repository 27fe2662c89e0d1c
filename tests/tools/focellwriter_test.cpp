#include "tools/webformat/focellwriter.h"

#include <gtest/gtest.h>

#include "tools/webformat/folayout.h"

namespace tov {

namespace {

constexpr const wchar_t* kpPng =  // 16 by 8 pixels
    L"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAABAAAAAICAMAAAA8BVCCAAAAA1BMVEX///"
    L"+nxBvIAAAADElEQVR4nGNgGMwAAACIAAFy"
    L"PPh9AAAAAElFTkSuQmCC";

String written(std::wstring_view sHtml, const FoCellWriter::Options& tOptions = {})
{
    FoCellWriter tWriter(tOptions);
    readHtmlFragment(sHtml, tWriter);
    return tWriter.finish();
}

struct Row
{
    int nLine;
    const wchar_t* pHtml;
    const wchar_t* pExpected;
};

struct PictureRow
{
    int nLine;
    FoImage tImage;
    double fWidest;
    double fWidth;
    double fHeight;
};

}  // namespace

TEST(FoCellWriter, WritesStylesAndLinksAsInlinesWithEverythingEncoded)
{
    constexpr Row kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"a &lt; b &amp; \"c\"", L"a &lt; b &amp; &quot;c&quot;"},
        {__LINE__, L"a<b>b</b>", L"a<fo:inline font-weight=\"bold\">b</fo:inline>"},
        {__LINE__, L"<b><i><u>a</u></i></b>",
         L"<fo:inline font-weight=\"bold\" font-style=\"italic\" text-decoration=\"underline\">a</fo:inline>"},
        {__LINE__, L"<a href=\"http://a/')&quot;<é b\">c</a>d",
         L"<fo:basic-link color=\"#0b57d0\" text-decoration=\"underline\" "
         L"external-destination=\"url('http://a/%27%29%22%3C%C3%A9%20b')\">c</fo:basic-link>d"},
        {__LINE__, L"<br>a<br>b<br>", L"\na\nb"},
        {__LINE__, L"<b>a<br>b</b>",
         L"<fo:inline font-weight=\"bold\">a</fo:inline>\n<fo:inline font-weight=\"bold\">b</fo:inline>"},
        {__LINE__, L"<pre> a  b</pre>", L"\u00A0a \u00A0b"},
        {__LINE__, L"a\u0007b", L"a\uFFFDb"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(written(tRow.pHtml), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoCellWriter, SetsCharactersOfOtherFontsApart)
{
    constexpr Row kRows[] = {
        {__LINE__, L"急須 (a)", L"<fo:inline>急須 </fo:inline>(a)"},
        {__LINE__, L"a𠮷野", L"a<fo:inline>𠮷</fo:inline><fo:inline>野</fo:inline>"},
        {__LINE__, L"❤\uFE0Fx", L"<fo:inline>❤</fo:inline>x"},
        {__LINE__, L"कि", L"<fo:inline>कि</fo:inline>"},
        {__LINE__, L"<b>急</b>", L"<fo:inline font-weight=\"bold\"><fo:inline>急</fo:inline></fo:inline>"},
        {__LINE__, L"e\u0301", L"e\u0301"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(written(tRow.pHtml), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(FoCellWriter, LetsEachLineRunInTheDirectionOfItsFirstLetter)
{
    const String sStart = L"<fo:bidi-override unicode-bidi=\"embed\" direction=\"rtl\">";
    const String sEnd = L"</fo:bidi-override>";
    EXPECT_EQ(written(L"שלום abc"), sStart + L"שלום abc" + sEnd);
    EXPECT_EQ(written(L"a<br>(1) שלום<br>b"), L"a\n" + sStart + L"(1) שלום" + sEnd + L"\nb");
    EXPECT_EQ(written(L"abc שלום"), L"abc שלום");
    const FoCellWriter::Options tRightToLeft = {10000, 72, TextDirection::kRightToLeft};
    EXPECT_EQ(written(L"שלום abc", tRightToLeft), L"שלום abc");
    EXPECT_EQ(written(L"abc", tRightToLeft),
              L"<fo:bidi-override unicode-bidi=\"embed\" direction=\"ltr\">abc</fo:bidi-override>");
    EXPECT_EQ(written(L"(1.00)", tRightToLeft), L"(1.00)");
    const FoCellWriter::Options tNumber = {10000, 72, TextDirection::kRightToLeft, TextDirection::kLeftToRight};
    EXPECT_EQ(written(L"-1", tNumber),
              L"<fo:bidi-override unicode-bidi=\"embed\" direction=\"ltr\">-1</fo:bidi-override>");
    EXPECT_EQ(written(L"", tNumber), L"");
}

TEST(FoCellWriter, BreaksWordsThatAreLongerThanALine)
{
    const FoCellWriter::Options tNarrow = {2000, 72, TextDirection::kLeftToRight};
    EXPECT_EQ(written(L"000 000", tNarrow), L"000 000");  // 1716 of 2000
    EXPECT_EQ(written(L"00000", tNarrow), L"000\u200B00");
    EXPECT_EQ(written(L"00<b>000</b>0", tNarrow), L"00<fo:inline font-weight=\"bold\">0\u200B00</fo:inline>0");
    EXPECT_EQ(written(L"00e\u0301\u0301\u03010", tNarrow), L"00e\u0301\u0301\u0301\u200B0");
    EXPECT_EQ(written(L"急須急須", tNarrow), L"<fo:inline>急須急須</fo:inline>");
    EXPECT_EQ(written(L"00&nbsp;&nbsp;&nbsp;00", tNarrow), L"00\u00A0\u00A0\u00A0\u200B00");
}

TEST(FoCellWriter, PrintsPicturesInTheirSizeAndNotWiderThanTheColumn)
{
    const PictureRow kRows[] = {
        {__LINE__, {kpPng, 0, 0, L""}, 72, 12, 6},
        {__LINE__, {kpPng, 32, 0, L""}, 72, 24, 12},
        {__LINE__, {kpPng, 0, 16, L""}, 72, 24, 12},
        {__LINE__, {kpPng, 8, 8, L""}, 72, 6, 6},
        {__LINE__, {kpPng, 0, 0, L""}, 8, 8, 4},
        {__LINE__, {kpPng, 16, 800, L""}, 72, 1.2, 60},
        {__LINE__, {L"http://a/b.png", 0, 0, L""}, 72, 36, 0},
        {__LINE__, {L"https://a/b.png", 16, 8, L""}, 72, 12, 6},
        {__LINE__, {L"HTTPS://a/b.png", 1600, 0, L""}, 72, 72, 0},
    };
    for (const PictureRow& tRow : kRows)
    {
        const std::optional<FoPictureSize> tSize = pictureSizeOf(tRow.tImage, tRow.fWidest);
        ASSERT_TRUE(tSize.has_value()) << "row at line " << tRow.nLine;
        EXPECT_NEAR(tSize->fWidth, tRow.fWidth, 0.01) << "row at line " << tRow.nLine;
        EXPECT_NEAR(tSize->fHeight, tRow.fHeight, 0.01) << "row at line " << tRow.nLine;
    }
    for (const wchar_t* pSource : {L"data:image/png;base64,AAAA", L"data:image/png;base64,", L"data:image/png,abc",
                                   L"data:image/png;base64", L"data:image/svg+xml;base64,PHN2Zy8+"})
        EXPECT_FALSE(pictureSizeOf({pSource, 16, 8, L""}, 72).has_value());
}

TEST(FoCellWriter, WritesPicturesAndTheTextOfThoseThatAreNone)
{
    EXPECT_EQ(written(L"a<img src=\"" + String(kpPng) + L"\">b"),
              L"a<fo:external-graphic src=\"url('" + String(kpPng) +
                  L"')\" content-width=\"12.0pt\" content-height=\"6.0pt\" scaling=\"non-uniform\"/>b");
    EXPECT_EQ(written(L"<img src=\"http://a/b'c\" width=16>"),
              L"<fo:external-graphic src=\"url('http://a/b%27c')\" content-width=\"12.0pt\"/>");
    EXPECT_EQ(written(L"<img src=\"data:image/png;base64,AAAA\" alt=\"a picture\">"), L"a picture");
}

TEST(FoLayout, TakesTheSmallestPageOnWhichNothingIsSqueezed)
{
    const FoColumnNeeds tValue = {10000, 10000, 0, false};
    const FoColumnNeeds tText = {8000, 200000, 0, true};
    EXPECT_NEAR(chooseLayout({tValue, tText}).fPageWidth, 841.9, 0.01);
    EXPECT_NEAR(chooseLayout({tValue, tText}).fFontSize, 8, 0.01);
    EXPECT_NEAR(chooseLayout(std::vector<FoColumnNeeds>(9, tValue)).fFontSize, 7, 0.01);
    EXPECT_NEAR(chooseLayout(std::vector<FoColumnNeeds>(12, tValue)).fPageWidth, 1190.6, 0.01);
    EXPECT_NEAR(chooseLayout(std::vector<FoColumnNeeds>(1000, tValue)).fPageWidth, 3370.4, 0.01);
    EXPECT_NEAR(chooseLayout({}).fPageWidth, 841.9, 0.01);
}

TEST(FoLayout, LeavesRoomInEveryColumnHoweverManyThereAre)
{
    const FoLayout tLayout = chooseLayout(std::vector<FoColumnNeeds>(5000, FoColumnNeeds{0, 0, 12, true}));
    EXPECT_NEAR(tLayout.contentWidth(0), 1, 0.01);
    EXPECT_GT(tLayout.lineWidth(0), 0U);
}

TEST(FoLayout, SharesThePageOut)
{
    for (const std::size_t nColumns : {1U, 2U, 7U, 30U, 500U})
    {
        const FoLayout tLayout =
            chooseLayout(std::vector<FoColumnNeeds>(nColumns, FoColumnNeeds{5000, 90000, 20, true}));
        double fSum = 0;
        for (const double fWidth : tLayout.vWidths)
            fSum += fWidth;
        EXPECT_NEAR(fSum, tLayout.fPageWidth - 2 * tLayout.fMargin, 0.01) << nColumns;
    }
    // A value keeps its line, text takes what is left.
    const FoLayout tLayout = chooseLayout({{4000, 20000, 0, false}, {4000, 900000, 0, true}, {4000, 900000, 0, true}});
    EXPECT_GE(tLayout.lineWidth(0), 20000U);
    EXPECT_GT(tLayout.vWidths[1], tLayout.vWidths[0]);
    EXPECT_NEAR(tLayout.vWidths[1], tLayout.vWidths[2], 0.01);
}

}  // namespace tov

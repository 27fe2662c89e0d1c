#pragma once

#include <optional>
#include <string_view>

#include "fomarkup.h"
#include "papertext.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// How large a picture is printed, in points; a height of 0 follows from the width.
struct FoPictureSize
{
    double fWidth = 0;
    double fHeight = 0;
};

// The size at which a picture is printed that may be at most `fWidest` points wide and 60 points high: the one that its
// markup asks for, at 96 pixels an inch, else its own. No value for a data URL that holds no image that the library
// recognises: it cannot be printed.
std::optional<FoPictureSize> pictureSizeOf(const FoImage& tImage, double fWidest);

// How much room a column's cells ask for: the sink takes them one after the other.
class FoCellMeasure final : public FoContentSink
{
public:
    void text(std::wstring_view sText, const FoStyle& tStyle) override;
    void image(const FoImage& tImage, const FoStyle& tStyle) override;
    void lineBreak() override;
    void endCell() { lineBreak(); }

    unsigned longestWord() const { return m_nLongestWord; }    // thousandths of the font size
    unsigned longestLine() const { return m_nLongestLine; }    // the same
    double widestPicture() const { return m_fWidestPicture; }  // points

private:
    unsigned m_nWord = 0;
    unsigned m_nLine = 0;
    unsigned m_nLongestWord = 0;
    unsigned m_nLongestLine = 0;
    double m_fWidestPicture = 0;
};

// Writes the content of a cell as FO that stands inside a block:
//
//     text "a<b" bold     -> <fo:inline font-weight="bold">a&lt;b</fo:inline>
//     text "急須"         -> <fo:inline>急須</fo:inline>
//
// Characters that need a font of their own stand in an inline of their own, because a processor chooses fonts word by
// word. A word that is longer than a line gets zero-width spaces where it may break. Line breaks are line ends, so the
// block must preserve them. Everything that came from a value is encoded. A line that runs against the report's
// direction is embedded in its own.
class FoCellWriter final : public FoContentSink
{
public:
    struct Options
    {
        unsigned nLineWidth = 10000;                             // thousandths of the font size
        double fWidestPicture = 72;                              // points
        TextDirection eDirection = TextDirection::kLeftToRight;  // of the report
        TextDirection eLines = TextDirection::kNeutral;          // of every line; kNeutral: of its first letter
    };

    explicit FoCellWriter(const Options& tOptions) : m_tOptions(tOptions) {}

    void text(std::wstring_view sText, const FoStyle& tStyle) override;
    void image(const FoImage& tImage, const FoStyle& tStyle) override;
    void lineBreak() override { ++m_nBreaks; }

    // Ends the cell, gives its FO and starts the next one. An empty cell is empty text.
    String finish();

private:
    void put(wchar_t nCharacter);
    void putBlank();
    void putBreaks();
    void makeRoom(wchar_t nCharacter);
    void enterGroup(wchar_t nCharacter);
    void endLine();
    void openStyle(const FoStyle& tStyle);
    void closeStyle();
    void closeGroup();
    void flushSegment();
    void raw(std::wstring_view sMarkup) { m_tLine.append(sMarkup.data(), sMarkup.size()); }
    void encoded(std::wstring_view sText);

    Options m_tOptions;
    String m_sContent;                            // the lines before
    StringBufferTemplate<wchar_t, 1023> m_tLine;  // this line
    String m_sSegment;                            // text that is not encoded yet
    FoStyle m_tStyle;                             // of the open elements
    unsigned m_nGroup = 0;
    unsigned m_nPiece = 0;      // the width since the last place where the line may break
    std::size_t m_nBreaks = 0;  // line breaks that wait for content
    wchar_t m_nLast = L'\n';
    TextDirection m_eFirst = TextDirection::kNeutral;
};

}  // namespace tov

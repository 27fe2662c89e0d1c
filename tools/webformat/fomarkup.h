#pragma once

#include <string_view>

#include "webbedrock/string.h"

namespace tov {

// How a run of a cell's text looks.
struct FoStyle
{
    bool bBold = false;
    bool bItalic = false;
    bool bUnderline = false;
    bool bRed = false;
    bool bPreformatted = false;  // every blank counts
    String sTarget;              // of the link that the run belongs to: http, https or mailto; empty: no link

    bool operator==(const FoStyle&) const = default;
};

// A picture inside a cell.
struct FoImage
{
    String sSource;       // http, https or a data URL
    unsigned nWidth = 0;  // in pixels, as the markup asks; 0: not given
    unsigned nHeight = 0;
    String sAlternative;  // the text to show in its place
};

// Takes the content of a cell piece by piece, in its order.
class FoContentSink
{
public:
    virtual ~FoContentSink() = default;

    virtual void text(std::wstring_view sText, const FoStyle& tStyle) = 0;
    virtual void image(const FoImage& tImage, const FoStyle& tStyle) = 0;
    virtual void lineBreak() = 0;
};

// Reads a cell in the form in which the formatters write it for the PDF: text with its markup characters encoded, the
// pieces of FO that they add (red text, images), and the wrapper that holds an HTML fragment, encoded, in its
// attribute:
//
//     5 &lt; 6                                              -> text "5 < 6"
//     <fo:inline color="red">(5.00)</fo:inline>             -> text "(5.00)", red
//     <lumfo:html2fo src="a &lt;b&gt;c&lt;/b&gt;"/>         -> text "a ", text "c", bold
//
// A wrapper without its end holds what is left of the cell. Line ends outside of it are line breaks.
//
// Any text at all may come: the reading never fails, takes time in proportion to the length, and hands over text and
// images only, however broken the markup is. What it hands over is not encoded.
void readFoCell(std::wstring_view sCell, FoContentSink& tSink);

// Reads a fragment of HTML. Links to http, https and mailto of at most 2,048 characters, b, strong, i, em, u, br, pre
// and img have their meaning; blocks start on a line of their own; of any other element the text remains, of script,
// style, object and embed nothing. Ends without a start are ignored, open ends end with the fragment. Named entities
// are those of XML, nbsp and the common punctuation; others stand as they are written.
//
// Example: "<b>a<i>b</b>c&amp;" -> "a" bold, "b" bold and italic, "c&" italic
void readHtmlFragment(std::wstring_view sHtml, FoContentSink& tSink);

}  // namespace tov

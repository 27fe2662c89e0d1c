#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "webformat/textformatter.h"

namespace tov {

// The meaning of one section of a text template: its elements in order, and how they are written.
//
//   template  = *token
//   token     = quoted / escaped / bracket / reference / semicolon / literal
//   quoted    = DQUOTE *any (DQUOTE / end)   ; a "\" in it drops out and takes the next character as it stands
//   escaped   = "\" any                      ; a "\" at the end shows nothing
//   bracket   = "[" *any ("]" / end)         ; shows nothing
//   reference = "@" [kind]                   ; the value; without a kind as plain text
//   kind      = "H"                          ; as HTML
//             / "N"                          ; blanks that do not break
//             / "J"                          ; as the inside of a JavaScript string
//             / "I" [*blank "(" [number] ["," [number]] ")"]     ; the address of an image, its width and height
//             / "T" ["H" / "J" / "N"] ["(" number ["," number] ")"]  ; cut: characters (20), characters of the tooltip
//   semicolon = ";"                          ; in FO mode the end of the section: the next is for null and empty values
//   literal   = any other character          ; "&nbsp;" keeps its semicolon in FO mode
//
// Literal text is encoded for the output, unless the section for that output wrote it. Example: `"<b>"@"</b>"` in an
// [html] section is the elements literal "<b>", reference kText, literal "</b>".
//
// Every text is a template: nothing is rejected. Time and memory are linear in its length. Once shared it is read only,
// by any number of threads.
class WEBFORMAT_EXPORT SubTextFormatter : public RefCountedBaseTemplate<MemAllocNewdel>, public ValueFormatterTypes
{
public:
    // How a reference treats the value.
    enum TextType : int
    {
        kText = 0,
        kHTML = 1,
        kNoBreakSpaces = 2,
        kJavaScriptString = 3,
        kImage = 4
    };

    struct TruncateFormat
    {
        static constexpr std::uint32_t knNoToolTip = 0xFFFFFFFF;

        bool bTruncate = false;
        std::uint32_t nChars = 20;
        std::uint32_t nToolTip = knNoToolTip;
    };

    // Pixels; -1: not given.
    struct ImageFormat
    {
        std::int32_t width = -1;
        std::int32_t height = -1;
    };

    // One element.
    struct Format
    {
        bool bLiteral = false;
        TextType eTextType = kText;  // references
        String sText;                // literals, encoded for the output already
        TruncateFormat truncateFormat;
        ImageFormat imageFormat;
        // Where the element stands in the section's source text, half open; 0 and 0 for what no template asked for.
        std::uint32_t nSourceStart = 0;
        std::uint32_t nSourceEnd = 0;
    };

    SubTextFormatter();
    ~SubTextFormatter() override;

    const std::vector<Format>& formats() const { return m_vFormats; }

private:
    std::vector<Format> m_vFormats;
};

}  // namespace tov

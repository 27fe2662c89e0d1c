#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "webformat/textformatter.h"

namespace tov {

class TextProgram;
struct TextTreatments;

// One section of a text template: its elements in order, and how they are written.
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
//             / "I" [*blank list]            ; the address of an image; the list is its width and height in pixels
//             / "T" [["H" / "J" / "N"] list] ; cut to so many characters (20); the second number, the length of a
//                                            ; tooltip, is kept and not used
//   list      = "(" [number] ["," [number]] ")"
//   semicolon = ";"                          ; FO mode: the end of the section, the next is for null and empty values
//   literal   = any other character          ; "&nbsp;" keeps its semicolon in FO mode
//
// FO mode is an [html] section written for kPDF or kXLSX: its HTML, encoded once more, stands in an element that hands
// it to an XSL-FO processor. In all other outputs a semicolon is text, and there is no section for null and empty
// values.
//
// Numbers are decimal, blanks before them and anything behind them up to the comma or the parenthesis are skipped; 0,
// no digits and no closing parenthesis mean "not given", and what is larger than a field is its largest value. Where
// the first number of a "T" is not given the whole list is ordinary text; where only the second is not, it is, too, but
// the first counts.
//
// Literal text is encoded for the output, unless the section for that output wrote it. Example: `"<b>"@"</b>"` in an
// [html] section is the elements literal "<b>", reference kText, literal "</b>".
//
// Every text is a template: nothing is rejected. Time and memory are linear in its length. Once shared it is read only,
// by any number of threads.
class WEBFORMAT_EXPORT SubTextFormatter : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    // Around the HTML of a template in FO mode.
    static const wchar_t* const ksHtmlStartTag;  // `<lumfo:html2fo src="`
    static const wchar_t* const ksHtmlEndTag;    // `"/>`

    // How a reference treats the value. Any other number counts as kText.
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

    // Append one element each. Literal text is written as it stands: it is encoded already.
    void AddLiteral(const String& sText);
    void AddChar(wchar_t nChar);
    void AddTextReference(TextType eType);
    void AddFormat(Format tFormat);

    // Append the reference whose letter, "I" or "T", stands before `pFrom`, and answer how many of the characters up to
    // `pEnd` belong to it: "(100,50) x" -> 8; what is no list -> 0.
    std::size_t parseImageFormat(const wchar_t* pFrom, const wchar_t* pEnd);
    std::size_t parseTruncateFormat(const wchar_t* pFrom, const wchar_t* pEnd);

    // Appends the elements, the references as `pValue` (null counts as empty) encoded for `eOutput`. A reference that
    // cuts is the last element that is written: whatever stands behind it is lost, which is kept.
    //
    // Example: the elements "<b>", kText, "</b>", the value `a&b` -> `<b>a&amp;b</b>` for kHTML.
    //
    // In a buffer that holds the start of an FO wrapper already, literals that are exactly such a start or end are left
    // out. Linear in the value, and in the buffer where there is such a literal. Allocates only if the buffer has to
    // grow; where that fails the buffer keeps its old contents.
    void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue, OutputType eOutput) const;

    const std::vector<Format>& formats() const { return m_vFormats; }

    // "kText", "kHTML", ...; an empty text for a value that is none of the enumeration.
    static const char* typeName(TextType eType);

private:
    friend class TextTemplateParser;
    friend class WebTextFormatterImpl;

    void render(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue, OutputType eOutput,
                const TextTreatments& tTreatments) const;

    std::vector<Format> m_vFormats;
    const std::unique_ptr<TextProgram> m_pProgram;  // the same in the form that renders
};

// The text engine: a template compiled once, rendered for each value. Values are null-terminated wide strings.
//
// Example: the template `"http://"@[html]"<a href=\"http://"@H"\">"@"</a>"`, the value `example` -> "http://example"
// for kText and `<a href="http://example">example</a>` for kHTML.
//
// A null or an empty value is written by the section for them: only templates in FO mode have one. Without it the value
// is "&nbsp;" in HTML and nothing elsewhere. A value that leaves the buffer empty is "&nbsp;" in HTML, too, so that its
// cell keeps its height. A section without any text is the template "@".
//
// Immutable; any number of threads may format through one object. A value allocates only if the buffer has to grow.
class WEBFORMAT_EXPORT WebTextFormatterImpl final : public WebTextFormatter
{
public:
    WebTextFormatterImpl(const String& sFormat, OutputType eOutput);
    ~WebTextFormatterImpl() override;

    OutputType outputType() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

    // The elements for values, and those for null and empty values: a null handle where the template has none.
    const SubTextFormatter& mainFormatter() const { return *m_hMain; }
    const Handle<const SubTextFormatter>& emptyFormatter() const { return m_hEmpty; }

    // The text that the elements' places refer to: the section for the output.
    const String& sourceText() const { return m_sSource; }

private:
    Handle<const SubTextFormatter> m_hMain;
    Handle<const SubTextFormatter> m_hEmpty;
    String m_sSource;
    OutputType m_eOutput;
    const TextTreatments& m_tTreatments;
};

}  // namespace tov

#pragma once

#include "webformat/valueformatter.h"

namespace tov {

class WebTextFormatDefinition;

// The base of formatters whose values are text or bytes: keeps the format string that the formatter was made from.
//
// Its factories make the formatters of text templates (see `SubTextFormatter` for the language).
//
// Example: the type kHypertextLink, the value `a&b.example` -> `<a href="a&b.example">a&amp;b.example</a>` in HTML and
// `a&b.example` in text.
class WEBFORMAT_EXPORT WebTextFormatter : public WebValueFormatter
{
public:
    ~WebTextFormatter() override;

    String GetCustomFormatString() const override;

    // The formatter of a definition: a custom definition's pattern, the pattern that a text type stands for, or a
    // format string of the older notation (see `WebConvertWhistlerFormat::ConvertTextFormat`). Null and any other kind
    // of definition: the pattern "@". The locale changes nothing. Never null; any thread.
    static WebValueFormatterHandle CreateTextFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                       const Locale& tLocale, OutputType eOutput);
    static WebValueFormatterHandle CreateTextFormatter(const WebTextFormatDefinition& tDefinition,
                                                       const Locale& tLocale, OutputType eOutput);
    static WebValueFormatterHandle ParseCustomFormat(const String& sFormat, const Locale& tLocale, OutputType eOutput);

    // Turns the bracket tags [b] [/b] [i] [/i] [u] [/u] [br/], in either case, into HTML tags; everything else stays.
    // True if there was one.
    //
    // Example: "[b]x[/b] [p]" -> "<b>x</b> [p]", true.
    static bool ConvertAnswersTagsToHTMLTags(String& sText);

    // Appends the text of an HTML fragment: tags are dropped, the elements script, object, style and embed with all
    // that they hold, and the entities nbsp (a blank), lt, gt, apos, quot and amp are decoded, once.
    //
    // Example: "x<script>y</script>z &amp;lt;" -> "xz &lt;".
    //
    // A "<" that nothing closes drops the rest; a suppressed element ends at the first closing tag of its own name.
    // Linear in the length; allocates only if the buffer has to grow.
    static void writeToBufferRemoveHtml(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pHtml);

protected:
    WebTextFormatter(SQLDataType::StorageType eValueStorageType, String sFormat);

private:
    String m_sFormat;
};

// Writes a text as a quoted SQL string literal for people to read: the text of a filter, a logical SQL statement.
//
// Example: `O'Brien` in kHTML -> `&#39;O&#39;&#39;Brien&#39;`, in kText -> `'O\u0027\u0027Brien'`.
//
// kText: the SQL-literal encoding of the value, then the JavaScript encoding. kHTML and kXML: an entity for each of
// " & < > and two for an apostrophe, then the JavaScript encoding; U+FFFE and U+FFFF, which XML does not allow, stay.
// All other outputs: only the two quotes, which is kept. The quotes are "&#39;" in kHTML and apostrophes elsewhere. A
// null value counts as empty. It has no format string.
//
// Immutable; any number of threads may format through one object. Values of any length are written without memory of
// their own: formatting allocates only if the buffer has to grow; where that fails, the buffer keeps its old length.
class WEBFORMAT_EXPORT TextSQLLiteralFormatter final : public WebTextFormatter
{
public:
    explicit TextSQLLiteralFormatter(OutputType eOutput);
    ~TextSQLLiteralFormatter() override;

    OutputType outputType() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

private:
    OutputType m_eOutput;
};

}  // namespace tov

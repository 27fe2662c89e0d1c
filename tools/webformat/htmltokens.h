#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// A start tag or an end tag.
struct HtmlTag
{
    String sName;                                        // in lower case; a prefix belongs to it
    bool bEnd = false;                                   // </b>
    bool bEmpty = false;                                 // <br/>
    std::vector<std::pair<String, String>> vAttributes;  // names in lower case, values decoded

    // The value of the first attribute of that name; empty where there is none.
    std::wstring_view attribute(std::wstring_view sName) const;
};

// Cuts HTML into tags and the text between them, as forgiving as a browser.
//
//     tag       = "<" ["/"] name *( blank / attribute / other ) ">"      ; blanks and "/" separate attributes
//     attribute = name [ "=" ( quoted / unquoted ) ]
//     name      = ALPHA *( any but blank, "/", ">" and, in attributes, "=" )
//     comment   = "<!--" ... "-->" / ( "<!" / "<?" / "</" and no letter ) ... ">"
//
// "<" before anything else is text. Comments are dropped, and so are what stands between the tags of a script or style
// sheet, and a tag or a comment without its end, with all that follows. The first 64 attributes of a tag count. Takes
// time in proportion to the length.
//
// Example: `a&lt;b<I class=x>` -> text "a<b"; tag "i" with class="x"
class HtmlTokens
{
public:
    // The text must outlive the object.
    explicit HtmlTokens(std::wstring_view sHtml) : m_sRest(sHtml) {}

    // Goes to the next token; false at the end.
    bool next();

    bool isTag() const { return m_bTag; }
    const HtmlTag& tag() const { return m_tTag; }   // of a tag
    const String& text() const { return m_sText; }  // of text, decoded

private:
    bool readComment();
    bool readTag();
    bool readAttribute();
    bool readValue(std::wstring_view& sValue);
    void skipRawContent();
    void skipBlanks();
    void readText();
    void skip(std::size_t nCount) { m_sRest.remove_prefix(nCount < m_sRest.size() ? nCount : m_sRest.size()); }

    std::wstring_view m_sRest;
    bool m_bTag = false;
    HtmlTag m_tTag;
    String m_sText;
};

// The text with its character references decoded: `a&lt;&#x41;&amp;lt;&what;` -> L"a<A&lt;&what;". Numbers that are no
// character become U+FFFD.
String decodedText(std::wstring_view sText);

// The text with A to Z in lower case.
String lowerAscii(std::wstring_view sText);

}  // namespace tov

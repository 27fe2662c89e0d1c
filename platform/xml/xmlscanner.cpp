#include "xml/xmlscanner.h"

#include <algorithm>
#include <utility>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::string_view kBlanks = " \t\n\r";

// A place in the bytes that knows its line and column.
class Cursor
{
public:
    explicit Cursor(std::string_view sBytes) : m_sBytes(sBytes) {}

    bool atEnd() const { return m_nAt == m_sBytes.size(); }
    char peek() const { return atEnd() ? '\0' : m_sBytes[m_nAt]; }
    std::size_t offset() const { return m_nAt; }
    XmlPlace place() const { return m_tPlace; }
    bool startsWith(std::string_view sText) const { return m_sBytes.substr(m_nAt).starts_with(sText); }

    void advance()
    {
        const unsigned char nByte = static_cast<unsigned char>(m_sBytes[m_nAt++]);
        if (nByte == '\n' || (nByte == '\r' && peek() != '\n'))
        {
            ++m_tPlace.nLine;
            m_tPlace.nColumn = 1;
        }
        else if ((nByte & 0xC0) != 0x80)
        {
            ++m_tPlace.nColumn;
        }
    }

    void advanceTo(std::size_t nOffset)
    {
        while (m_nAt < nOffset && !atEnd())
            advance();
    }

    // Moves to the first of those bytes, or to the end, and returns what it passed.
    std::string_view advanceToAnyOf(std::string_view sStops)
    {
        const std::size_t nStart = m_nAt;
        advanceTo(std::min(m_sBytes.find_first_of(sStops, m_nAt), m_sBytes.size()));
        return m_sBytes.substr(nStart, m_nAt - nStart);
    }

    // Moves behind the next occurrence of the text; false, and nowhere, where there is none.
    bool advanceBehind(std::string_view sText)
    {
        const std::size_t nFound = m_sBytes.find(sText, m_nAt);
        if (nFound == std::string_view::npos)
            return false;
        advanceTo(nFound + sText.size());
        return true;
    }

    void skipBlanks() { advanceTo(std::min(m_sBytes.find_first_not_of(kBlanks, m_nAt), m_sBytes.size())); }

    // What stands here, for a message.
    String found() const
    {
        if (atEnd())
            return L"the end of the document";
        std::size_t nEnd = m_nAt + 1;
        while (nEnd < m_sBytes.size() && (static_cast<unsigned char>(m_sBytes[nEnd]) & 0xC0) == 0x80)
            ++nEnd;
        return L"\"" + fromUtf8(m_sBytes.substr(m_nAt, nEnd - m_nAt)).value_or(L"\xFFFD") + L"\"";
    }

private:
    std::string_view m_sBytes;
    std::size_t m_nAt = 0;
    XmlPlace m_tPlace = {1, 1};
};

bool isPrefixDeclaration(std::string_view sName)
{
    return sName == "xmlns" || sName.starts_with("xmlns:");
}

// The offset of the first character that XML does not allow; the bytes are well-formed UTF-8.
std::size_t findForbidden(std::string_view sBytes)
{
    for (std::size_t i = 0; i < sBytes.size(); ++i)
    {
        const unsigned char nByte = static_cast<unsigned char>(sBytes[i]);
        if (nByte < 0x20 && kBlanks.find(sBytes[i]) == std::string_view::npos)
            return i;
        if (nByte == 0xEF && (sBytes.substr(i, 3) == "\xEF\xBF\xBE" || sBytes.substr(i, 3) == "\xEF\xBF\xBF"))
            return i;
    }
    return std::string_view::npos;
}

String describeForbidden(std::string_view sBytes)
{
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    const unsigned char nByte = static_cast<unsigned char>(sBytes.front());
    if (nByte == 0xEF)
        return sBytes[2] == '\xBE' ? L"U+FFFE" : L"U+FFFF";
    return String(L"U+00") + kDigits[nByte >> 4] + kDigits[nByte & 15];
}

class Scanner
{
public:
    Scanner(std::string_view sBytes, XmlScan& tScan, XmlError& tError)
        : m_sBytes(sBytes), m_tAt(sBytes), m_tScan(tScan), m_tError(tError)
    {
    }

    bool run() { return checkBytes() && checkEncoding() && scanTags(); }

private:
    bool fail(XmlPlace tPlace, String sMessage)
    {
        m_tError = {std::move(sMessage), tPlace.nLine, tPlace.nColumn};
        return false;
    }
    bool failExpected(const wchar_t* pExpected)
    {
        return fail(m_tAt.place(), L"found " + m_tAt.found() + L", expected " + pExpected);
    }

    bool checkBytes();
    bool checkEncoding();
    bool scanTags();
    bool scanMarkup();
    bool skipBehind(std::string_view sEnd, const wchar_t* pWhat);
    bool scanEndTag();
    bool scanStartTag();
    bool scanAttributes(std::size_t& nDeclarations, bool& bEmpty);
    bool scanAttribute(std::size_t& nDeclarations);
    bool scanAttributeValue(XmlPlace& tValue);
    bool atRoot() const { return m_tScan.vElements.size() == 1; }

    std::string_view m_sBytes;
    Cursor m_tAt;
    XmlScan& m_tScan;
    XmlError& m_tError;
    std::vector<std::size_t> m_vOpen;  // the prefix declarations of each open element
    std::size_t m_nDeclared = 0;       // of all open elements together
};

bool Scanner::checkBytes()
{
    if (m_sBytes.empty())
        return fail({1, 1}, L"the document is empty");
    if (m_sBytes.size() > XmlDocument::knMaxBytes)
        return fail({1, 1}, L"the document has " + std::to_wstring(m_sBytes.size()) + L" bytes, at most " +
                                std::to_wstring(XmlDocument::knMaxBytes) + L" are allowed");
    if (m_sBytes.starts_with("\xFF\xFE") || m_sBytes.starts_with("\xFE\xFF"))
        return fail({1, 1}, L"the document is UTF-16, expected UTF-8");
    std::size_t nBad = 0;
    if (!fromUtf8(m_sBytes, &nBad))
        return fail(xmlPlaceOf(m_sBytes, nBad), L"the bytes are not UTF-8");
    nBad = findForbidden(m_sBytes);
    if (nBad != std::string_view::npos)
        return fail(xmlPlaceOf(m_sBytes, nBad),
                    L"the character " + describeForbidden(m_sBytes.substr(nBad)) + L" is not allowed in XML");
    return true;
}

// An XML declaration may name no other encoding: the parser would switch to it.
bool Scanner::checkEncoding()
{
    if (!m_tAt.startsWith("<?xml") || m_sBytes.find_first_of(kBlanks) != 5)
        return true;
    const std::string_view sDeclaration = m_sBytes.substr(0, m_sBytes.find("?>"));
    std::size_t nAt = sDeclaration.find("encoding");
    nAt = nAt == std::string_view::npos ? nAt : sDeclaration.find_first_of("'\"", nAt);
    if (nAt == std::string_view::npos)
        return true;
    const std::size_t nEnd = std::min(sDeclaration.find(sDeclaration[nAt], nAt + 1), sDeclaration.size());
    const std::string_view sName = sDeclaration.substr(nAt + 1, nEnd - nAt - 1);
    constexpr std::string_view kUtf8 = "utf-8";
    if (std::equal(sName.begin(), sName.end(), kUtf8.begin(), kUtf8.end(),
                   [](char nLeft, char nRight)
                   { return (nLeft >= 'A' && nLeft <= 'Z' ? nLeft + 32 : nLeft) == nRight; }))
        return true;
    return fail(xmlPlaceOf(m_sBytes, nAt + 1),
                L"the declared encoding is \"" + fromUtf8(sName).value_or(String()) + L"\", expected \"UTF-8\"");
}

bool Scanner::scanTags()
{
    while (!m_tAt.atEnd())
    {
        m_tAt.advanceToAnyOf("<");
        if (!m_tAt.atEnd() && !scanMarkup())
            return false;
    }
    return true;
}

bool Scanner::scanMarkup()
{
    if (m_tAt.startsWith("<!--"))
        return skipBehind("-->", L"comment");
    if (m_tAt.startsWith("<![CDATA["))
        return skipBehind("]]>", L"CDATA section");
    if (m_tAt.startsWith("<?"))
        return skipBehind("?>", L"processing instruction");
    if (m_tAt.startsWith("<!DOCTYPE"))
        return fail(m_tAt.place(), L"found a document type declaration, which is not allowed");
    if (m_tAt.startsWith("<!"))
        return fail(m_tAt.place(), L"found \"<!\", expected a comment, a CDATA section or a tag");
    return m_tAt.startsWith("</") ? scanEndTag() : scanStartTag();
}

bool Scanner::skipBehind(std::string_view sEnd, const wchar_t* pWhat)
{
    const XmlPlace tStart = m_tAt.place();
    // "<!-->" and "<?>" do not end what they start.
    m_tAt.advanceTo(m_tAt.offset() + (sEnd == "-->" ? 4 : 2));
    return m_tAt.advanceBehind(sEnd) || fail(tStart, String(L"the ") + pWhat + L" does not end");
}

bool Scanner::scanEndTag()
{
    const XmlPlace tStart = m_tAt.place();
    if (!m_tAt.advanceBehind(">"))
        return fail(tStart, L"the tag does not end");
    if (!m_vOpen.empty())
    {
        m_nDeclared -= m_vOpen.back();
        m_vOpen.pop_back();
    }
    return true;
}

bool Scanner::scanStartTag()
{
    const XmlPlace tStart = m_tAt.place();
    if (m_vOpen.size() == static_cast<std::size_t>(XmlDocument::knMaxDepth))
        return fail(tStart, L"elements are nested more than " + std::to_wstring(XmlDocument::knMaxDepth) + L" deep");
    m_tAt.advance();
    if (m_tAt.advanceToAnyOf(" \t\n\r/>=<'\"").empty())
        return failExpected(L"the name of an element");
    m_tScan.vElements.push_back(tStart);
    if (atRoot())
        m_tScan.nRootNameEnd = m_tAt.offset();
    std::size_t nDeclarations = 0;
    bool bEmpty = false;
    if (!scanAttributes(nDeclarations, bEmpty))
        return false;
    if (m_nDeclared + nDeclarations > XmlDocument::knMaxAttributes)
        return fail(tStart, L"more than " + std::to_wstring(XmlDocument::knMaxAttributes) +
                                L" prefix declarations are in scope");
    if (!bEmpty)
    {
        m_nDeclared += nDeclarations;
        m_vOpen.push_back(nDeclarations);
    }
    return true;
}

bool Scanner::scanAttributes(std::size_t& nDeclarations, bool& bEmpty)
{
    for (std::size_t nCount = 0;; ++nCount)
    {
        m_tAt.skipBlanks();
        bEmpty = m_tAt.startsWith("/>");
        if (bEmpty || m_tAt.peek() == '>')
        {
            m_tAt.advanceTo(m_tAt.offset() + (bEmpty ? 2 : 1));
            return true;
        }
        if (nCount == XmlDocument::knMaxAttributes)
            return fail(m_tAt.place(),
                        L"the element has more than " + std::to_wstring(XmlDocument::knMaxAttributes) + L" attributes");
        if (!scanAttribute(nDeclarations))
            return false;
    }
}

bool Scanner::scanAttribute(std::size_t& nDeclarations)
{
    const std::string_view sName = m_tAt.advanceToAnyOf(" \t\n\r/>=<'\"");
    if (sName.empty())
        return failExpected(L"an attribute, \"/>\" or \">\"");
    m_tAt.skipBlanks();
    if (m_tAt.peek() != '=')
        return failExpected(L"\"=\" behind the name of an attribute");
    m_tAt.advance();
    m_tAt.skipBlanks();
    XmlPlace tValue;
    if (!scanAttributeValue(tValue))
        return false;
    if (!isPrefixDeclaration(sName))
    {
        m_tScan.vAttributes.push_back(tValue);
        return true;
    }
    ++nDeclarations;
    if (atRoot())
        m_tScan.vRootDeclarations.emplace_back(sName);
    return true;
}

bool Scanner::scanAttributeValue(XmlPlace& tValue)
{
    const char nQuote = m_tAt.peek();
    if (nQuote != '"' && nQuote != '\'')
        return failExpected(L"a value in quotes");
    m_tAt.advance();
    tValue = m_tAt.place();
    m_tAt.advanceToAnyOf(nQuote == '"' ? "\"<" : "'<");
    if (m_tAt.peek() != nQuote)
        return failExpected(L"the quote that ends the value");
    m_tAt.advance();
    return true;
}

}  // namespace

bool scanXml(std::string_view sBytes, XmlScan& tScan, XmlError& tError)
{
    return Scanner(sBytes, tScan, tError).run();
}

XmlPlace xmlPlaceOf(std::string_view sBytes, std::size_t nOffset)
{
    Cursor tCursor(sBytes);
    tCursor.advanceTo(nOffset);
    return tCursor.place();
}

}  // namespace tov

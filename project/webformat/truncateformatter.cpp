#include "webformat/truncateformatter.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "project/webformat/htmlfilter.h"
#include "project/webformat/outputencoders.h"

namespace tov {

namespace {

constexpr std::wstring_view ksSuffix = L"...";
constexpr std::wstring_view kShortStart = L"<span title=\"";
constexpr std::wstring_view kShortTitleEnd = L"\">";
constexpr std::wstring_view kSpanStart = L"<span>";
constexpr std::wstring_view kSpanEnd = L"</span>";
constexpr std::wstring_view kExpanderStart =
    L"<span class=\"ZoomInEnable\"><span "
    L"onclick=\"rudex.FormFields.CommentField.clickButton(event);\" "
    L"fullText=\"";
constexpr std::wstring_view kExpanderEnd = L"\">&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;</span></span>";

constexpr std::size_t kLongestEntity = 6;  // both ends included
constexpr std::wstring_view kCommentEnd = L"-->";

bool isASCIILetter(wchar_t nChar)
{
    return (nChar >= L'a' && nChar <= L'z') || (nChar >= L'A' && nChar <= L'Z');
}

// The tags that are open, each with all that stands between its "<" and ">".
class OpenTags
{
public:
    bool empty() const { return m_nCount == 0; }

    std::wstring_view top() const { return m_nCount <= m_aFirst.size() ? m_aFirst[m_nCount - 1] : m_vFurther.back(); }

    void push(std::wstring_view sTag)
    {
        if (m_nCount < m_aFirst.size())
            m_aFirst[m_nCount] = sTag;
        else
            m_vFurther.push_back(sTag);
        ++m_nCount;
    }

    void pop()
    {
        if (m_nCount-- > m_aFirst.size())
            m_vFurther.pop_back();
    }

private:
    std::array<std::wstring_view, 32> m_aFirst;
    std::vector<std::wstring_view> m_vFurther;
    std::size_t m_nCount = 0;
};

// The next place of a text that is looked for, remembered until the walk has passed it: a value full of tags that
// nothing closes is not searched to its end for each of them.
class NextPlace
{
public:
    NextPlace(std::wstring_view sText, std::wstring_view sWanted) : m_sText(sText), m_sWanted(sWanted) {}

    // The first place from `nFrom` on, npos if there is none. `nFrom` never falls from call to call.
    std::size_t from(std::size_t nFrom)
    {
        if (!m_bKnown || m_nPlace < nFrom)
            m_nPlace = m_sText.find(m_sWanted, nFrom);
        m_bKnown = true;
        return m_nPlace;
    }

private:
    std::wstring_view m_sText;
    std::wstring_view m_sWanted;
    std::size_t m_nPlace = 0;
    bool m_bKnown = false;
};

// The walk over one value: `write` writes its first `nLimit` visible characters with their markup.
class CutMarkup
{
public:
    CutMarkup(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
        : m_tWriter(tWriter),
          m_tEncoding(outputEncoders().kEncodingHTML),
          m_sHtml(sHtml),
          m_nLeft(nLimit),
          m_tTagEnd(sHtml, L">"),
          m_tCommentEnd(sHtml, kCommentEnd)
    {
    }

    void write()
    {
        while (m_nLeft != 0 && m_nAt != m_sHtml.size())
        {
            writeRun();
            if (m_nLeft != 0 && m_nAt != m_sHtml.size())
                writeMarkup();
        }
        for (; !m_tOpenTags.empty(); m_tOpenTags.pop())
            writeClosingTag();
        m_tWriter.write(ksSuffix);
    }

private:
    static constexpr std::size_t knNone = std::wstring_view::npos;

    // Characters up to the next markup.
    void writeRun()
    {
        const std::size_t nMost = std::min(m_nLeft, m_sHtml.size() - m_nAt);
        const wchar_t* const pStart = m_sHtml.data() + m_nAt;
        count(static_cast<std::size_t>(findMarkup(pStart, pStart + nMost) - pStart));
    }

    void writeMarkup()
    {
        const wchar_t nNext = m_nAt + 1 < m_sHtml.size() ? m_sHtml[m_nAt + 1] : L'\0';
        const bool bDone = m_sHtml[m_nAt] == L'&' ? takeEntity()
                           : isASCIILetter(nNext) ? takeOpeningTag()
                           : nNext == L'!'        ? takeComment()
                           : nNext == L'/'        ? takeClosingTag()
                                                  : false;
        if (!bDone)
            count(1);
    }

    // Writes visible characters, encoded.
    void count(std::size_t nCharacters)
    {
        m_tWriter.write(m_sHtml.substr(m_nAt, nCharacters), m_tEncoding);
        m_nAt += nCharacters;
        m_nLeft -= nCharacters;
    }

    void copyTo(std::size_t nEnd)
    {
        m_tWriter.write(m_sHtml.substr(m_nAt, nEnd - m_nAt));
        m_nAt = nEnd;
    }

    bool takeEntity()
    {
        const std::size_t nLength = m_sHtml.substr(m_nAt, kLongestEntity).find(L';');
        if (nLength == knNone)
            return false;
        copyTo(m_nAt + nLength + 1);
        --m_nLeft;
        return true;
    }

    // Kept: <br> and its like, which HTML never closes, are open tags too.
    bool takeOpeningTag()
    {
        const std::size_t nEnd = m_tTagEnd.from(m_nAt);
        if (nEnd == knNone)
            return false;
        if (m_sHtml[nEnd - 1] != L'/')
            m_tOpenTags.push(m_sHtml.substr(m_nAt + 1, nEnd - m_nAt - 1));
        copyTo(nEnd + 1);
        return true;
    }

    bool takeComment()
    {
        const std::size_t nEnd = m_tCommentEnd.from(m_nAt + 2);
        if (nEnd == knNone)
            return false;
        copyTo(nEnd + kCommentEnd.size());
        return true;
    }

    // Kept: an open tag with attributes is closed by no closing tag, which then counts as text.
    bool takeClosingTag()
    {
        const std::size_t nEnd = m_tTagEnd.from(m_nAt);
        if (nEnd == knNone || m_tOpenTags.empty() || m_sHtml.substr(m_nAt + 2, nEnd - m_nAt - 2) != m_tOpenTags.top())
            return false;
        m_tOpenTags.pop();
        copyTo(nEnd + 1);
        return true;
    }

    void writeClosingTag()
    {
        m_tWriter.write(L"</");
        m_tWriter.write(m_tOpenTags.top());
        m_tWriter.write(L">");
    }

    WholeTextWriter& m_tWriter;
    const W2WEncoding& m_tEncoding;
    std::wstring_view m_sHtml;
    std::size_t m_nLeft;  // visible characters
    std::size_t m_nAt = 0;
    NextPlace m_tTagEnd;
    NextPlace m_tCommentEnd;
    OpenTags m_tOpenTags;
};

void writeTruncatedText(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
{
    CutMarkup(tWriter, sHtml, nLimit).write();
}

// Kept: a text of exactly `nLimit` characters gets the dots although nothing was cut.
void writeCutText(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
{
    HtmlTextReader tReader(sHtml);
    while (nLimit != 0)
    {
        const std::wstring_view sRun = tReader.next(nLimit);
        if (sRun.empty())
            return;
        tWriter.write(sRun);
        nLimit -= sRun.size();
    }
    tWriter.write(ksSuffix);
}

void writeWithTitle(WholeTextWriter& tWriter, std::wstring_view sHtml)
{
    tWriter.write(kShortStart);
    writeHtmlText(tWriter, sHtml, outputEncoders().kEncodingHTML);
    tWriter.write(kShortTitleEnd);
    tWriter.write(sHtml);
    tWriter.write(kSpanEnd);
}

void writeWithExpander(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
{
    tWriter.write(kSpanStart);
    writeTruncatedText(tWriter, sHtml, nLimit);
    tWriter.write(kSpanEnd);
    tWriter.write(kExpanderStart);
    writeHtmlText(tWriter, sHtml, outputEncoders().kEncodingHTML);
    tWriter.write(kExpanderEnd);
}

// The length with markup decides, so that a value that is short to the eye may still get the dots.
bool isShort(std::wstring_view sHtml, std::size_t nLimit)
{
    return sHtml.size() < nLimit;
}

void writeAsText(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
{
    if (isShort(sHtml, nLimit))
        writeHtmlText(tWriter, sHtml);
    else
        writeCutText(tWriter, sHtml, nLimit);
}

void writeAsHtml(WholeTextWriter& tWriter, std::wstring_view sHtml, std::size_t nLimit)
{
    if (isShort(sHtml, nLimit))
        writeWithTitle(tWriter, sHtml);
    else
        writeWithExpander(tWriter, sHtml, nLimit);
}

}  // namespace

TruncateFormatter::TruncateFormatter(unsigned long nLength, ValueFormatterTypes::OutputType eOutput)
    : m_eOutput(eOutput), m_nLength(nLength)
{
}

void TruncateFormatter::formatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pText) const
{
    const std::wstring_view sText = pText == nullptr ? std::wstring_view() : std::wstring_view(pText);
    WholeTextWriter tWriter(tBuffer);
    if (m_eOutput == ValueFormatterTypes::kText)
        writeAsText(tWriter, sText, m_nLength);
    else if (m_eOutput == ValueFormatterTypes::kHTML)
        writeAsHtml(tWriter, sText, m_nLength);
    tWriter.finish();
}

}  // namespace tov

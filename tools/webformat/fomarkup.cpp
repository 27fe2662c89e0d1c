#include "fomarkup.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "htmltokens.h"

namespace tov {

namespace {

constexpr std::wstring_view ksWrapperStart = L"<lumfo:html2fo src=\"";
constexpr std::wstring_view ksWrapperEnd = L"\"/>";
constexpr std::wstring_view ksGraphic = L"<fo:external-graphic";

// Elements whose content is no text.
constexpr std::array<std::wstring_view, 4> kaSuppressed = {L"script", L"style", L"object", L"embed"};
// Elements that stand on lines of their own.
constexpr std::array<std::wstring_view, 24> kaBlocks = {
    L"address", L"article", L"blockquote", L"center", L"dd", L"div", L"dl", L"dt",
    L"footer",  L"h1",      L"h2",         L"h3",     L"h4", L"h5",  L"h6", L"header",
    L"li",      L"section", L"table",      L"ol",     L"p",  L"pre", L"tr", L"ul"};

template <std::size_t nSize>
bool contains(const std::array<std::wstring_view, nSize>& aNames, std::wstring_view sName)
{
    return std::find(aNames.begin(), aNames.end(), sName) != aNames.end();
}

bool isBlank(wchar_t nCharacter)
{
    return nCharacter == L' ' || nCharacter == L'\t' || nCharacter == L'\n' || nCharacter == L'\r' ||
           nCharacter == L'\f';
}

// The URL as a browser reads it: without blanks and controls at its ends and line ends inside.
String cleanUrl(std::wstring_view sUrl)
{
    while (!sUrl.empty() && sUrl.front() <= L' ')
        sUrl.remove_prefix(1);
    while (!sUrl.empty() && sUrl.back() <= L' ')
        sUrl.remove_suffix(1);
    String sResult(sUrl);
    std::erase_if(sResult,
                  [](wchar_t nCharacter) { return nCharacter == L'\t' || nCharacter == L'\n' || nCharacter == L'\r'; });
    return sResult;
}

bool hasScheme(std::wstring_view sUrl, std::wstring_view sScheme)
{
    return sUrl.size() > sScheme.size() && lowerAscii(sUrl.substr(0, sScheme.size())) == sScheme;
}

bool isWebAddress(std::wstring_view sUrl)
{
    return hasScheme(sUrl, L"http://") || hasScheme(sUrl, L"https://");
}

// Where a link may lead; nothing that runs or reads something where the document is opened. A longer address than
// servers take would be written again for every change of the link's look.
String linkTarget(std::wstring_view sUrl)
{
    constexpr std::size_t knLongestTarget = 2048;
    if (sUrl.size() > knLongestTarget)
        return String();
    String sClean = cleanUrl(sUrl);
    return isWebAddress(sClean) || hasScheme(sClean, L"mailto:") ? sClean : String();
}

// Where a picture may come from; nothing of the machine on which the document is made.
String imageSource(std::wstring_view sUrl)
{
    String sClean = cleanUrl(sUrl);
    return isWebAddress(sClean) || hasScheme(sClean, L"data:image/") ? sClean : String();
}

// Pixels: 0 for what is no number from 1 to 65535.
unsigned pixels(std::wstring_view sNumber)
{
    unsigned nResult = 0;
    for (const wchar_t nDigit : sNumber)
    {
        if (nDigit < L'0' || nDigit > L'9')
            break;
        nResult = nResult * 10 + static_cast<unsigned>(nDigit - L'0');
        if (nResult > 65535)
            return 0;
    }
    return nResult;
}

// Turns tags into the style of the text between them. Elements are counted, not nested: whatever order they end in,
// the text that is left over is right, and no depth is too deep.
class FragmentReader
{
public:
    explicit FragmentReader(FoContentSink& tSink) : m_tSink(tSink) {}
    virtual ~FragmentReader() = default;

    void read(std::wstring_view sHtml);

protected:
    virtual void handleTag(const HtmlTag& tTag);
    virtual void handleText(std::wstring_view sText);

    void handleImage(std::wstring_view sSource, const HtmlTag& tTag);
    void flush();
    void breakLine();
    FoStyle& styleForChange();

    FoContentSink& m_tSink;
    String m_sText;  // not handed over yet
    FoStyle m_tStyle;

private:
    void handleSuppressed(const HtmlTag& tTag);
    void countElement(const HtmlTag& tTag, unsigned& nCount, bool FoStyle::*pSwitch);
    void startBlock();
    void trimEnd();
    void appendFlowing(std::wstring_view sText);

    unsigned m_nBold = 0;
    unsigned m_nItalic = 0;
    unsigned m_nUnderline = 0;
    unsigned m_nPreformatted = 0;
    bool m_bContent = false;       // something was handed over
    bool m_bLineStart = true;      // nothing but blanks on this line so far
    bool m_bBlockPending = false;  // the next content starts a line
    String m_sSuppressed;          // the element whose end is awaited
};

void FragmentReader::read(std::wstring_view sHtml)
{
    HtmlTokens tTokens(sHtml);
    while (tTokens.next())
    {
        if (tTokens.isTag())
            handleTag(tTokens.tag());
        else if (m_sSuppressed.empty())
            handleText(tTokens.text());
    }
    trimEnd();
    flush();
}

void FragmentReader::handleTag(const HtmlTag& tTag)
{
    if (!m_sSuppressed.empty() || contains(kaSuppressed, tTag.sName))
        handleSuppressed(tTag);
    else if (tTag.sName == L"b" || tTag.sName == L"strong")
        countElement(tTag, m_nBold, &FoStyle::bBold);
    else if (tTag.sName == L"i" || tTag.sName == L"em")
        countElement(tTag, m_nItalic, &FoStyle::bItalic);
    else if (tTag.sName == L"u")
        countElement(tTag, m_nUnderline, &FoStyle::bUnderline);
    else if (tTag.sName == L"a")
        styleForChange().sTarget = tTag.bEnd ? String() : linkTarget(tTag.attribute(L"href"));
    else if (tTag.sName == L"br" && !tTag.bEnd)
        breakLine();
    else if (tTag.sName == L"img" && !tTag.bEnd)
        handleImage(tTag.attribute(L"src"), tTag);
    else if (contains(kaBlocks, tTag.sName))
    {
        startBlock();
        if (tTag.sName == L"pre")
            countElement(tTag, m_nPreformatted, &FoStyle::bPreformatted);
    }
}

void FragmentReader::handleSuppressed(const HtmlTag& tTag)
{
    if (m_sSuppressed.empty())
        m_sSuppressed = tTag.bEnd || tTag.bEmpty ? String() : tTag.sName;
    else if (tTag.bEnd && tTag.sName == m_sSuppressed)
        m_sSuppressed.clear();
}

FoStyle& FragmentReader::styleForChange()
{
    flush();
    return m_tStyle;
}

void FragmentReader::countElement(const HtmlTag& tTag, unsigned& nCount, bool FoStyle::*pSwitch)
{
    if (!tTag.bEnd)
        ++nCount;
    else if (nCount != 0)
        --nCount;
    if (m_tStyle.*pSwitch != (nCount != 0))
        styleForChange().*pSwitch = nCount != 0;
}

void FragmentReader::startBlock()
{
    m_bBlockPending = m_bContent || !m_bLineStart;
}

// A blank at the end of a line shows nowhere.
void FragmentReader::trimEnd()
{
    if (!m_tStyle.bPreformatted && !m_sText.empty() && m_sText.back() == L' ')
        m_sText.pop_back();
}

void FragmentReader::breakLine()
{
    trimEnd();
    flush();
    m_tSink.lineBreak();
    m_bContent = true;
    m_bLineStart = true;
    m_bBlockPending = false;
}

void FragmentReader::handleText(std::wstring_view sText)
{
    if (m_tStyle.bPreformatted || !std::all_of(sText.begin(), sText.end(), isBlank))
    {
        if (m_bBlockPending && !m_bLineStart)
            breakLine();
        m_bBlockPending = false;
    }
    if (!m_tStyle.bPreformatted)
        return appendFlowing(sText);
    for (std::size_t nEnd = 0; !sText.empty(); sText.remove_prefix(std::min(nEnd + 1, sText.size())))
    {
        nEnd = std::min(sText.find(L'\n'), sText.size());
        m_sText.append(sText.substr(0, nEnd));
        m_bLineStart = m_bLineStart && nEnd == 0;
        if (nEnd != sText.size())
            breakLine();
    }
}

// A run of blanks is one blank, and none at the start of a line.
void FragmentReader::appendFlowing(std::wstring_view sText)
{
    for (const wchar_t nCharacter : sText)
    {
        if (!isBlank(nCharacter))
        {
            m_sText += nCharacter;
            m_bLineStart = false;
        }
        else if (!m_bLineStart && (m_sText.empty() || m_sText.back() != L' '))
            m_sText += L' ';
    }
}

void FragmentReader::handleImage(std::wstring_view sSource, const HtmlTag& tTag)
{
    if (m_bBlockPending && !m_bLineStart)
        breakLine();
    m_bBlockPending = false;
    FoImage tImage = {imageSource(sSource), pixels(tTag.attribute(L"width")), pixels(tTag.attribute(L"height")),
                      String(tTag.attribute(L"alt"))};
    if (tImage.sSource.empty())
        return handleText(tImage.sAlternative);
    flush();
    m_tSink.image(tImage, m_tStyle);
    m_bContent = true;
    m_bLineStart = false;
}

void FragmentReader::flush()
{
    if (m_sText.empty())
        return;
    m_tSink.text(m_sText, m_tStyle);
    m_sText.clear();
    m_bContent = true;
}

// The level around the wrappers: the formatters' own FO besides what an author's pattern holds.
class CellReader final : public FragmentReader
{
public:
    using FragmentReader::FragmentReader;

private:
    void handleTag(const HtmlTag& tTag) override;
    void handleText(std::wstring_view sText) override;
    void handleInline(const HtmlTag& tTag);

    std::vector<bool> m_vInlines;  // whether each open inline is red
    std::size_t m_nUntracked = 0;  // open inlines below the deepest that is kept
};

void CellReader::handleTag(const HtmlTag& tTag)
{
    if (tTag.sName == L"fo:inline")
        handleInline(tTag);
    else if (tTag.sName == L"fo:external-graphic")
    {
        // url('...')
        const std::wstring_view sSource = tTag.attribute(L"src");
        const std::size_t nStart = std::min(sSource.find(L"url('"), sSource.size());
        const std::size_t nEnd = sSource.rfind(L"')");
        if (nStart + 5 <= sSource.size() && nEnd != std::wstring_view::npos && nEnd >= nStart + 5)
            handleImage(sSource.substr(nStart + 5, nEnd - nStart - 5), tTag);
    }
    else
        FragmentReader::handleTag(tTag);
}

void CellReader::handleInline(const HtmlTag& tTag)
{
    constexpr std::size_t knDeepest = 64;
    if (!tTag.bEnd && m_vInlines.size() < knDeepest)
        m_vInlines.push_back(tTag.attribute(L"color") == L"red");
    else if (!tTag.bEnd)
        ++m_nUntracked;
    else if (m_nUntracked != 0)
        --m_nUntracked;
    else if (!m_vInlines.empty())
        m_vInlines.pop_back();
    styleForChange().bRed = std::find(m_vInlines.begin(), m_vInlines.end(), true) != m_vInlines.end();
}

void CellReader::handleText(std::wstring_view sText)
{
    for (const wchar_t nCharacter : sText)
    {
        if (nCharacter == L'\n')
            breakLine();
        else if (nCharacter != L'\r')
            m_sText += nCharacter;
    }
}

// What stands in the wrapper's attribute: encoded HTML, and the element that the formatters write for images as it is.
void readWrapped(std::wstring_view sWrapped, FoContentSink& tSink)
{
    while (!sWrapped.empty())
    {
        const std::size_t nGraphic = std::min(sWrapped.find(ksGraphic), sWrapped.size());
        readHtmlFragment(decodedText(sWrapped.substr(0, nGraphic)), tSink);
        sWrapped.remove_prefix(nGraphic);
        const std::size_t nEnd = std::min(sWrapped.find(L"/>"), sWrapped.size());
        const std::size_t nTaken = std::min(nEnd + 2, sWrapped.size());
        CellReader(tSink).read(sWrapped.substr(0, nTaken));
        sWrapped.remove_prefix(nTaken);
    }
}

// Where the wrapper ends that starts before the text. An image's element inside the attribute has the same end.
std::size_t wrapperEnd(std::wstring_view sText)
{
    const std::size_t nEnd = sText.rfind(ksWrapperEnd);
    const std::size_t nGraphic = sText.rfind(ksGraphic);
    const bool bEndOfGraphic = nGraphic != std::wstring_view::npos && nEnd != std::wstring_view::npos &&
                               sText.find(L"/>", nGraphic) == nEnd + 1;
    return bEndOfGraphic ? std::wstring_view::npos : nEnd;
}

}  // namespace

void readHtmlFragment(std::wstring_view sHtml, FoContentSink& tSink)
{
    FragmentReader(tSink).read(sHtml);
}

void readFoCell(std::wstring_view sCell, FoContentSink& tSink)
{
    const std::size_t nWrapper = sCell.find(ksWrapperStart);
    CellReader(tSink).read(sCell.substr(0, nWrapper));
    if (nWrapper == std::wstring_view::npos)
        return;
    sCell.remove_prefix(nWrapper + ksWrapperStart.size());
    const std::size_t nEnd = wrapperEnd(sCell);
    readWrapped(sCell.substr(0, nEnd), tSink);
    if (nEnd != std::wstring_view::npos)
        CellReader(tSink).read(sCell.substr(nEnd + ksWrapperEnd.size()));
}

}  // namespace tov

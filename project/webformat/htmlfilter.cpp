#include "project/webformat/htmlfilter.h"

#include <algorithm>
#include <cstdint>

#include "utilities/stringutils.h"
#include "webformat/textformatter.h"

namespace tov {

namespace {

constexpr std::wstring_view s_ktHTMLLookUp[] = {L"script", L"object", L"style", L"embed"};

struct Entity
{
    std::wstring_view sName;
    std::wstring_view sText;
};

constexpr Entity s_tEntityMap[] = {
    {L"nbsp", L" "},  // kept: an ordinary blank, not U+00A0, so that lines of plain text still break there
    {L"lt", L"<"},   {L"gt", L">"}, {L"apos", L"'"}, {L"quot", L"\""}, {L"amp", L"&"},
};
constexpr std::size_t kLongestEntityName = 4;

constexpr std::wstring_view kBracketTags[] = {L"[b]", L"[/b]", L"[i]", L"[/i]", L"[u]", L"[/u]", L"[br/]"};

constexpr std::size_t kBlock = 16;

bool isBlank(wchar_t nChar)
{
    return nChar == L' ' || (nChar >= L'\t' && nChar <= L'\r');
}

bool endsTagName(wchar_t nChar)
{
    return nChar == L'>' || nChar == L'/' || isBlank(nChar);
}

// Without a branch on any one character, so that several are looked at in one step of the processor.
bool isPlainBlock(const wchar_t* pText)
{
    std::uint32_t nMarkup = 0;
    for (std::size_t nAt = 0; nAt < kBlock; ++nAt)
        nMarkup |= static_cast<std::uint32_t>(pText[nAt] == L'<') | static_cast<std::uint32_t>(pText[nAt] == L'&');
    return nMarkup == 0;
}

bool isName(std::wstring_view sText, std::wstring_view sName)
{
    return sText.size() == sName.size() && StringUtils::equalsIgnoreCase(sText, sName);
}

// The name of the hidden element that the tag opens, empty for every other tag. `sTag` stands between "<" and ">".
std::wstring_view openedHiddenElement(std::wstring_view sTag)
{
    std::size_t nName = 0;
    while (nName < sTag.size() && !endsTagName(sTag[nName]))
        ++nName;
    const std::wstring_view sName = sTag.substr(0, nName);
    for (const std::wstring_view sHidden : s_ktHTMLLookUp)
    {
        if (isName(sName, sHidden))
            return StringUtils::trim(sTag).ends_with(L'/') ? std::wstring_view() : sHidden;
    }
    return {};
}

// Whether "</" and the name stand at the start of the text.
bool startsWithClosingTag(std::wstring_view sText, std::wstring_view sName)
{
    if (!sText.starts_with(L"</"))
        return false;
    sText.remove_prefix(2);
    return StringUtils::startsWithIgnoreCase(sText, sName) && sText.size() > sName.size() &&
           endsTagName(sText[sName.size()]);
}

}  // namespace

const wchar_t* findMarkup(const wchar_t* pText, const wchar_t* pEnd)
{
    while (static_cast<std::size_t>(pEnd - pText) >= kBlock && isPlainBlock(pText))
        pText += kBlock;
    while (pText != pEnd && *pText != L'<' && *pText != L'&')
        ++pText;
    return pText;
}

std::wstring_view HtmlTextReader::next(std::size_t nMost)
{
    while (!m_sRest.empty())
    {
        const wchar_t* const pText = m_sRest.data();
        const wchar_t* const pMarkup = findMarkup(pText, pText + std::min(m_sRest.size(), nMost));
        if (pMarkup != pText)
            return takeRun(static_cast<std::size_t>(pMarkup - pText));
        if (*pMarkup == L'&')
            return takeFromAmpersand();
        skipTag();
    }
    return {};
}

std::wstring_view HtmlTextReader::takeRun(std::size_t nLength)
{
    const std::wstring_view sRun = m_sRest.substr(0, nLength);
    m_sRest.remove_prefix(nLength);
    return sRun;
}

std::wstring_view HtmlTextReader::takeFromAmpersand()
{
    const std::wstring_view sStart = m_sRest.substr(1, kLongestEntityName + 1);
    const std::size_t nName = sStart.find(L';');
    if (nName == std::wstring_view::npos)
        return takeRun(1);
    for (const Entity& tEntity : s_tEntityMap)
    {
        if (isName(sStart.substr(0, nName), tEntity.sName))
        {
            m_sRest.remove_prefix(1 + nName + 1);
            return tEntity.sText;
        }
    }
    return takeRun(1);
}

void HtmlTextReader::skipTag()
{
    const std::size_t nEnd = m_sRest.find(L'>');
    const std::wstring_view sTag = m_sRest.substr(1, nEnd - 1);
    skipBehind(nEnd);
    const std::wstring_view sHidden = openedHiddenElement(sTag);
    if (!sHidden.empty())
        skipElement(sHidden);
}

// Scripts hold what looks like tags: nothing but the element's own closing tag counts.
void HtmlTextReader::skipElement(std::wstring_view sName)
{
    while (!m_sRest.empty() && !startsWithClosingTag(m_sRest, sName))
    {
        const std::size_t nTag = m_sRest.find(L'<', 1);
        m_sRest.remove_prefix(std::min(nTag, m_sRest.size()));
    }
    skipBehind(m_sRest.find(L'>'));
}

// To the end of the text where `nAt` is npos.
void HtmlTextReader::skipBehind(std::size_t nAt)
{
    m_sRest.remove_prefix(nAt == std::wstring_view::npos ? m_sRest.size() : nAt + 1);
}

void writeHtmlText(WholeTextWriter& tWriter, std::wstring_view sHtml)
{
    HtmlTextReader tReader(sHtml);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        tWriter.write(sRun);
}

void writeHtmlText(WholeTextWriter& tWriter, std::wstring_view sHtml, const W2WEncoding& tEncoding)
{
    HtmlTextReader tReader(sHtml);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        tWriter.write(sRun, tEncoding);
}

std::size_t bracketTagLength(std::wstring_view sText)
{
    for (const std::wstring_view sTag : kBracketTags)
    {
        if (StringUtils::startsWithIgnoreCase(sText, sTag))
            return sTag.size();
    }
    return 0;
}

std::wstring_view BracketTagReader::next()
{
    if (const std::size_t nTag = bracketTagLength(m_sRest); nTag != 0)
        return takeTag(nTag);
    std::size_t nRun = m_sRest.find(L'[', 1);
    while (nRun != std::wstring_view::npos && bracketTagLength(m_sRest.substr(nRun)) == 0)
        nRun = m_sRest.find(L'[', nRun + 1);
    const std::wstring_view sRun = m_sRest.substr(0, nRun);
    m_sRest.remove_prefix(sRun.size());
    return sRun;
}

std::wstring_view BracketTagReader::takeTag(std::size_t nLength)
{
    m_bConverted = true;
    m_sRest.copy(m_aTag, nLength);
    m_sRest.remove_prefix(nLength);
    m_aTag[0] = L'<';
    m_aTag[nLength - 1] = L'>';
    return std::wstring_view(m_aTag, nLength);
}

bool WebTextFormatter::ConvertAnswersTagsToHTMLTags(String& sText)
{
    bool bConverted = false;
    for (std::size_t nAt = sText.find(L'['); nAt != String::npos; nAt = sText.find(L'[', nAt + 1))
    {
        const std::size_t nTag = bracketTagLength(std::wstring_view(sText).substr(nAt));
        if (nTag == 0)
            continue;
        sText[nAt] = L'<';
        sText[nAt + nTag - 1] = L'>';
        bConverted = true;
    }
    return bConverted;
}

void WebTextFormatter::writeToBufferRemoveHtml(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pHtml)
{
    if (pHtml == nullptr)
        return;
    WholeTextWriter tWriter(tBuffer);
    writeHtmlText(tWriter, pHtml);
    tWriter.finish();
}

}  // namespace tov

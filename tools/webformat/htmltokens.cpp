#include "htmltokens.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tov {

namespace {

constexpr std::array<std::pair<std::wstring_view, wchar_t>, 30> kaEntities = {
    {{L"amp", L'&'},         {L"lt", L'<'},          {L"gt", L'>'},         {L"quot", L'"'},
     {L"apos", L'\''},       {L"nbsp", L'\u00A0'},   {L"shy", L'\u00AD'},   {L"ensp", L'\u2002'},
     {L"emsp", L'\u2003'},   {L"thinsp", L'\u2009'}, {L"zwnj", L'\u200C'},  {L"zwj", L'\u200D'},
     {L"lrm", L'\u200E'},    {L"rlm", L'\u200F'},    {L"ndash", L'\u2013'}, {L"mdash", L'\u2014'},
     {L"lsquo", L'\u2018'},  {L"rsquo", L'\u2019'},  {L"ldquo", L'\u201C'}, {L"rdquo", L'\u201D'},
     {L"laquo", L'\u00AB'},  {L"raquo", L'\u00BB'},  {L"bull", L'\u2022'},  {L"hellip", L'\u2026'},
     {L"middot", L'\u00B7'}, {L"times", L'\u00D7'},  {L"euro", L'\u20AC'},  {L"copy", L'\u00A9'},
     {L"reg", L'\u00AE'},    {L"trade", L'\u2122'}}};
constexpr std::size_t knLongestReference = 12;  // &#x10FFFF; with two zeros to spare

bool isLetter(wchar_t nCharacter)
{
    return (nCharacter >= L'a' && nCharacter <= L'z') || (nCharacter >= L'A' && nCharacter <= L'Z');
}

bool isBlank(wchar_t nCharacter)
{
    return nCharacter == L' ' || (nCharacter >= L'\t' && nCharacter <= L'\r');
}

bool isNameCharacter(wchar_t nCharacter)
{
    return !isBlank(nCharacter) && nCharacter != L'/' && nCharacter != L'>';
}

// A digit's value, or 99.
unsigned digitValue(wchar_t nDigit)
{
    if (nDigit >= L'0' && nDigit <= L'9')
        return static_cast<unsigned>(nDigit - L'0');
    if (nDigit >= L'a' && nDigit <= L'f')
        return static_cast<unsigned>(nDigit - L'a') + 10;
    if (nDigit >= L'A' && nDigit <= L'F')
        return static_cast<unsigned>(nDigit - L'A') + 10;
    return 99;
}

// The character of "#65" or "#x41"; nothing else gives one.
wchar_t numberedCharacter(std::wstring_view sName)
{
    sName.remove_prefix(1);
    const bool bHex = !sName.empty() && (sName[0] == L'x' || sName[0] == L'X');
    if (bHex)
        sName.remove_prefix(1);
    std::uint32_t nCode = 0;
    for (const wchar_t nDigit : sName)
    {
        if (digitValue(nDigit) >= (bHex ? 16U : 10U))
            return 0;
        nCode = std::min<std::uint32_t>(nCode * (bHex ? 16 : 10) + digitValue(nDigit), 0x110000);
    }
    const bool bCharacter = nCode != 0 && nCode < 0x110000 && (nCode < 0xD800 || nCode > 0xDFFF);
    return sName.empty() ? L'\0' : static_cast<wchar_t>(bCharacter ? nCode : 0xFFFD);
}

wchar_t referencedCharacter(std::wstring_view sName)
{
    if (!sName.empty() && sName[0] == L'#')
        return numberedCharacter(sName);
    const String sLower = lowerAscii(sName);
    const auto tFound = std::find_if(kaEntities.begin(), kaEntities.end(),
                                     [&](const auto& tEntity) { return tEntity.first == sLower; });
    return tFound == kaEntities.end() ? L'\0' : tFound->second;
}

bool startsMarkup(std::wstring_view sText)
{
    if (sText.size() < 2 || sText[0] != L'<')
        return false;
    return isLetter(sText[1]) || sText[1] == L'/' || sText[1] == L'!' || sText[1] == L'?';
}

}  // namespace

String lowerAscii(std::wstring_view sText)
{
    String sResult(sText);
    for (wchar_t& nCharacter : sResult)
        if (nCharacter >= L'A' && nCharacter <= L'Z')
            nCharacter += L'a' - L'A';
    return sResult;
}

String decodedText(std::wstring_view sText)
{
    String sResult;
    while (!sText.empty())
    {
        const std::size_t nClean = std::min(sText.find(L'&'), sText.size());
        sResult.append(sText.substr(0, nClean));
        sText.remove_prefix(nClean);
        const std::size_t nEnd = sText.substr(0, knLongestReference).find(L';');
        const wchar_t nCharacter =
            nEnd == std::wstring_view::npos ? L'\0' : referencedCharacter(sText.substr(1, nEnd - 1));
        if (nCharacter != 0)
            sResult += nCharacter;
        else
            sResult.append(sText.substr(0, 1));
        sText.remove_prefix(nCharacter != 0 ? nEnd + 1 : std::min<std::size_t>(1, sText.size()));
    }
    return sResult;
}

std::wstring_view HtmlTag::attribute(std::wstring_view sWanted) const
{
    const auto tFound = std::find_if(vAttributes.begin(), vAttributes.end(),
                                     [&](const auto& tAttribute) { return tAttribute.first == sWanted; });
    return tFound == vAttributes.end() ? std::wstring_view() : std::wstring_view(tFound->second);
}

bool HtmlTokens::next()
{
    while (!m_sRest.empty())
    {
        m_bTag = startsMarkup(m_sRest);
        if (!m_bTag)
        {
            readText();
            return true;
        }
        if (readComment() || !readTag())
            continue;
        if (!m_tTag.bEnd && !m_tTag.bEmpty && (m_tTag.sName == L"script" || m_tTag.sName == L"style"))
            skipRawContent();
        return true;
    }
    return false;
}

bool HtmlTokens::readComment()
{
    const bool bEndTag = m_sRest[1] == L'/' && m_sRest.size() > 2 && isLetter(m_sRest[2]);
    if (isLetter(m_sRest[1]) || bEndTag)
        return false;
    const std::wstring_view sEnd = m_sRest.substr(0, 4) == L"<!--" ? L"-->" : L">";
    const std::size_t nEnd = m_sRest.find(sEnd, sEnd.size() == 3 ? 4 : 2);
    skip(nEnd == std::wstring_view::npos ? m_sRest.size() : nEnd + sEnd.size());
    return true;
}

// False where its end is missing; then nothing is left.
bool HtmlTokens::readTag()
{
    m_tTag = HtmlTag();
    m_tTag.bEnd = m_sRest[1] == L'/';
    skip(m_tTag.bEnd ? 2 : 1);
    std::size_t nName = 0;
    while (nName < m_sRest.size() && isNameCharacter(m_sRest[nName]))
        ++nName;
    m_tTag.sName = lowerAscii(m_sRest.substr(0, nName));
    skip(nName);
    while (!m_sRest.empty())
    {
        if (m_sRest[0] == L'>')
        {
            skip(1);
            return true;
        }
        m_tTag.bEmpty = m_sRest[0] == L'/' || (m_tTag.bEmpty && isBlank(m_sRest[0]));
        if (m_sRest[0] == L'/' || isBlank(m_sRest[0]))
            skip(1);
        else if (!readAttribute())
            break;
    }
    skip(m_sRest.size());
    return false;
}

// False where a quotation mark is never closed.
bool HtmlTokens::readAttribute()
{
    std::size_t nName = 1;  // a "=" in front belongs to the name
    while (nName < m_sRest.size() && isNameCharacter(m_sRest[nName]) && m_sRest[nName] != L'=')
        ++nName;
    String sName = lowerAscii(m_sRest.substr(0, nName));
    skip(nName);
    skipBlanks();
    std::wstring_view sValue;
    if (!m_sRest.empty() && m_sRest[0] == L'=' && !readValue(sValue))
        return false;
    constexpr std::size_t knMostAttributes = 64;
    if (m_tTag.vAttributes.size() < knMostAttributes)
        m_tTag.vAttributes.emplace_back(std::move(sName), decodedText(sValue));
    return true;
}

bool HtmlTokens::readValue(std::wstring_view& sValue)
{
    skip(1);
    skipBlanks();
    const bool bQuoted = !m_sRest.empty() && (m_sRest[0] == L'"' || m_sRest[0] == L'\'');
    std::size_t nEnd = bQuoted ? m_sRest.find(m_sRest[0], 1) : 0;
    if (nEnd == std::wstring_view::npos)
        return false;
    while (!bQuoted && nEnd < m_sRest.size() && !isBlank(m_sRest[nEnd]) && m_sRest[nEnd] != L'>')
        ++nEnd;
    sValue = bQuoted ? m_sRest.substr(1, nEnd - 1) : m_sRest.substr(0, nEnd);
    skip(bQuoted ? nEnd + 1 : nEnd);
    return true;
}

// What a script or a style sheet holds is neither tags nor text, up to the tag that ends it.
void HtmlTokens::skipRawContent()
{
    const String sEnd = L"</" + m_tTag.sName;
    while (!m_sRest.empty())
    {
        skip(m_sRest.find(L'<'));
        const bool bNameEnds = m_sRest.size() <= sEnd.size() || !isNameCharacter(m_sRest[sEnd.size()]);
        if (bNameEnds && lowerAscii(m_sRest.substr(0, sEnd.size())) == sEnd)
            return;
        skip(1);
    }
}

void HtmlTokens::skipBlanks()
{
    while (!m_sRest.empty() && isBlank(m_sRest[0]))
        skip(1);
}

void HtmlTokens::readText()
{
    std::size_t nEnd = 1;
    while (nEnd < m_sRest.size() && !startsMarkup(m_sRest.substr(nEnd)))
        ++nEnd;
    m_sText = decodedText(m_sRest.substr(0, nEnd));
    skip(nEnd);
}

}  // namespace tov

#include "intl/localedatepattern.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "intl/localetext.h"

namespace tov {

namespace {

constexpr wchar_t kLiteral = 0;
constexpr wchar_t kQuote = L'\'';
constexpr std::size_t kFullName = 4;

bool isAsciiLetter(wchar_t tChar)
{
    return (tChar >= L'a' && tChar <= L'z') || (tChar >= L'A' && tChar <= L'Z');
}

bool isOneOf(wchar_t tChar, std::wstring_view sChars)
{
    return sChars.find(tChar) != std::wstring_view::npos;
}

bool needsQuotes(wchar_t tChar)
{
    return isAsciiLetter(tChar) || isOneOf(tChar, L"\"\\[");
}

// Text of the data's own quotes, from behind the opening one; `nAt` moves behind the closing one. "''" is one "'".
String quotedText(std::wstring_view sPattern, std::size_t& nAt)
{
    String sText;
    for (; nAt < sPattern.size(); ++nAt)
    {
        if (sPattern[nAt] == kQuote)
        {
            ++nAt;
            if (nAt == sPattern.size() || sPattern[nAt] != kQuote)
                break;
        }
        sText += sPattern[nAt];
    }
    return sText.empty() ? String(1, kQuote) : sText;
}

String inDoubleQuotes(std::wstring_view sText)
{
    String sQuoted(1, L'"');
    for (const wchar_t tChar : sText)
    {
        if (isOneOf(tChar, L"\"\\"))
            sQuoted += L'\\';
        sQuoted += tChar;
    }
    return sQuoted += L'"';
}

void appendLiteral(String& sResult, const String& sText)
{
    // A point right behind the seconds would ask for their fraction.
    const bool bFraction = sResult.ends_with(L's') && sText.starts_with(L'.');
    const bool bQuote = bFraction || std::any_of(sText.begin(), sText.end(), needsQuotes);
    sResult += bQuote ? inDoubleQuotes(sText) : sText;
}

void appendField(String& sResult, const String& sField)
{
    // An empty literal keeps apart two fields of the same letter: the day and the name of the day.
    if (!sField.empty() && sResult.ends_with(sField.front()))
        sResult += L"\"\"";
    sResult += sField;
}

}  // namespace

LocaleDatePattern::LocaleDatePattern(std::wstring_view sPattern)
{
    const String sClean = withPlainBlanks(sPattern);
    for (std::size_t nAt = 0; nAt < sClean.size();)
    {
        const wchar_t tChar = sClean[nAt];
        if (tChar == kQuote)
        {
            m_vTokens.push_back({kLiteral, quotedText(sClean, ++nAt)});
            continue;
        }
        const bool bField = isAsciiLetter(tChar);
        std::size_t nEnd = nAt + 1;
        while (nEnd < sClean.size() &&
               (bField ? sClean[nEnd] == tChar : !isAsciiLetter(sClean[nEnd]) && sClean[nEnd] != kQuote))
            ++nEnd;
        m_vTokens.push_back({bField ? tChar : kLiteral, sClean.substr(nAt, nEnd - nAt)});
        nAt = nEnd;
    }
}

String LocaleDatePattern::fieldText(const Token& tToken)
{
    const std::size_t nCount = tToken.sText.size();
    switch (tToken.tLetter)
    {
    case L'y': return String(nCount <= 2 ? 4 : nCount, L'y');
    case L'M':
    case L'L': return String(nCount, L'M');
    case L'E':
    case L'c': return nCount >= kFullName ? L"dddd" : L"ddd";
    case L'h':
    case L'K': return String(nCount, L'h');
    case L'H':
    case L'k': return String(nCount, L'H');
    case L'd':
    case L'm':
    case L's': return tToken.sText;
    case L'a':
    case L'b':
    case L'B': return L"tt";
    case L'G': return L"gg";
    default: return String();
    }
}

String LocaleDatePattern::text() const
{
    String sResult;
    for (const Token& tToken : m_vTokens)
    {
        if (tToken.tLetter == kLiteral)
            appendLiteral(sResult, tToken.sText);
        else
            appendField(sResult, fieldText(tToken));
    }
    return sResult;
}

String LocaleDatePattern::inputText() const
{
    LocaleDatePattern tWide(*this);
    for (Token& tToken : tWide.m_vTokens)
    {
        if (isOneOf(tToken.tLetter, L"dML") && tToken.sText.size() == 1)
            tToken.sText.append(1, tToken.tLetter);
    }
    return tWide.text();
}

String LocaleDatePattern::textWithMonthsInsideDates(std::wstring_view sTag) const
{
    const String sName = L"[L:" + String(sTag);
    String sResult;
    for (const Token& tToken : m_vTokens)
    {
        if (tToken.tLetter == kLiteral)
            appendLiteral(sResult, tToken.sText);
        else if (tToken.tLetter == L'M' && tToken.sText.size() >= kFullName)
            sResult += sName + L";dates]" + fieldText(tToken) + sName + L"]";
        else
            appendField(sResult, fieldText(tToken));
    }
    return sResult;
}

String LocaleDatePattern::hourMinuteSeparator() const
{
    for (std::size_t n = 0; n + 2 < m_vTokens.size(); ++n)
    {
        const String& sBetween = m_vTokens[n + 1].sText;
        if (isOneOf(m_vTokens[n].tLetter, L"hHkK") && m_vTokens[n + 2].tLetter == L'm' && sBetween.size() == 1 &&
            !u_isalpha(static_cast<UChar32>(sBetween.front())))
            return sBetween;
    }
    return L":";
}

bool LocaleDatePattern::namesDaysByThemselves() const
{
    return std::any_of(m_vTokens.begin(), m_vTokens.end(),
                       [](const Token& tToken) { return tToken.tLetter == L'c' && tToken.sText.size() >= kFullName; });
}

}  // namespace tov
